#include "ohmutils/xref/OhmUtXrefEntity.h"

#include "ohmutils/dwg/OhmDwgUtils.h"
#include "ohmutils/xref/OhmDsOccurrence_internal.h"
#include "ohmutils/xref/OhmDsPropertyKeys.h"
#include "ohmutils/xref/OhmNoRxUtilsXrefTextFormat_internal.h"
#include "ohmutils/xref/OhmUtXrefEntity_internal.h"

const std::u16string OhmUtXrefEntity::mContactRelayCoilNO = u"NO";
const std::u16string OhmUtXrefEntity::mContactRelayCoilNC = u"NC";
const std::u16string OhmUtXrefEntity::mContactRelayCoilNONC = u"NONC";
const std::u16string OhmUtXrefEntity::mContactRelayCoilNCNO = u"NCNO";

OhmUtXrefEntity::OhmUtXrefEntity(OhmNoRxUtilsSettingOverride& settingOverride) : mSettingOverride(settingOverride) {}

OhmUtXrefEntity::OhmUtXrefEntity(const OhmUtXrefEntity& other)
    : mStyle(other.mStyle),
      mSettingOverride(other.mSettingOverride),
      mHostDwgPath(other.mHostDwgPath),
      mInitialized(other.mInitialized) {}

OhmUtXrefEntity::~OhmUtXrefEntity() = default;

void OhmUtXrefEntity::applyEntityOverrides(const ZdDbEntity* entity) {
  OhmNoRxUtilsSettingOverride::SettingMap overrides;
  getXrefOptionEntOverride(entity, overrides);
  mSettingOverride.applyOverride(overrides);
}

void OhmUtXrefEntity::setHostDwgPath(const std::u16string& hostDwgPath) { mHostDwgPath = hostDwgPath; }

OhmUtXrefEntity::Style OhmUtXrefEntity::getXrefEntityStyle(const std::u16string& optionText) {
  if (optionText == u"0") return StyleText;
  if (optionText == u"1") return StyleGraphic;
  if (optionText == u"2") return StyleTable;
  return StyleNone;
}

namespace {

// The values of the format tokens in the occurrence's maps, each map read in
// one pass; they point into the occurrence.
ohm_internal::XrefTextValues xrefTextValuesOf(const OhmDsComponentOcc& occurrence) {
  using namespace ohm_internal;
  const auto sheet = lookupProperties(occurrence.mSheetProperties, keys::kSheet, keys::kIecInst, keys::kIecLoc,
                                      keys::kIecProj, keys::kSheetDwgName);
  XrefTextValues values;
  values[kSheet] = sheet[0];
  values[kRef] = &lookupProperty(occurrence.mProperties, OhmDsKeys::REF);
  values[kValueA] = &occurrence.mXrefValueA;
  values[kValueB] = &occurrence.mXrefValueB;
  values[kIecInst] = sheet[1];
  values[kIecLoc] = sheet[2];
  values[kIecProject] = sheet[3];
  values[kSheetDwgName] = sheet[4];
  return values;
}

}  // namespace

bool OhmUtXrefEntity::isValidContactForRelayCoilNO(const std::u16string& contact) {
  return ohm_internal::contactTextOf(contact) == ohm_internal::ContactText::NO;
}

bool OhmUtXrefEntity::isValidContactForRelayCoilNC(const std::u16string& contact) {
  return ohm_internal::contactTextOf(contact) == ohm_internal::ContactText::NC;
}

bool OhmUtXrefEntity::isValidContactForRelayCoilFormC(const std::u16string& contact) {
  return ohm_internal::contactTextOf(contact) == ohm_internal::ContactText::FormC;
}

bool OhmUtXrefEntity::generateXrefText(const OhmDsComponentOcc& occurrence, std::u16string& text,
                                       bool underline) const {
  const bool sameDrawing = ohm_internal::sameDrawingPath(mHostDwgPath, occurrence.mOccID.mDwgPath);
  // An option that isn't set gives an empty format.
  const std::u16string* format =
      mSettingOverride.findSettingValue(sameDrawing ? OhmCfgSetting::WD_XREF_FORMAT : OhmCfgSetting::WD_XREF_ALTFORMAT);
  ohm_internal::formatXrefText(format ? *format : ohm_internal::emptyProperty(), underline,
                               xrefTextValuesOf(occurrence), text);
  return true;
}

void OhmUtXrefEntity::init() { mInitialized = true; }

void OhmUtXrefEntity::getXrefOptionEntOverride(const ZdDbEntity* entity,
                                               OhmNoRxUtilsSettingOverride::SettingMap& overrides) const {
  if (!entity) return;
  readXDataOptions(*entity,
                   {{u"KVA_WD_XREF_STYLE", OhmCfgSetting::WD_XREF_STYLE},
                    {u"KVA_WD_XREF_FORMAT", OhmCfgSetting::WD_XREF_FORMAT},
                    {u"KVA_WD_XREF_ALTFORMAT", OhmCfgSetting::WD_XREF_ALTFORMAT}},
                   overrides);
}

void OhmUtXrefEntity::readXDataOptions(const ZdDbEntity& entity, std::initializer_list<XDataOption> options,
                                       OhmNoRxUtilsSettingOverride::SettingMap& overrides) {
  for (const XDataOption& each : options) {
    std::u16string value;
    if (OhmDwgUtils::getOhmEntityXData(&entity, each.appName, value)) overrides[each.option] = value;
  }
}
