#include "ohmutils/xref/OhmUtXrefEntity.h"

#include "ohmutils/dwg/OhmDwgUtils.h"
#include "ohmutils/xref/OhmDsOccurrence_internal.h"
#include "ohmutils/xref/OhmDsPropertyKeys.h"
#include "ohmutils/xref/OhmNoRxUtilsXrefTextFormat.h"
#include "win/CrtChar.h"

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

// Whether `text` is `upper` after a-z -> A-Z, without making the upper-case copy.
bool equalsAfterUpper(const std::u16string& text, const std::u16string& upper) {
  if (text.size() != upper.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i)
    if (CrtToUpper(text[i]) != upper[i]) return false;
  return true;
}

}  // namespace

bool OhmUtXrefEntity::isValidContactForRelayCoilNO(const std::u16string& contact) {
  return equalsAfterUpper(contact, mContactRelayCoilNO);
}

bool OhmUtXrefEntity::isValidContactForRelayCoilNC(const std::u16string& contact) {
  return equalsAfterUpper(contact, mContactRelayCoilNC);
}

bool OhmUtXrefEntity::isValidContactForRelayCoilFormC(const std::u16string& contact) {
  return equalsAfterUpper(contact, mContactRelayCoilNCNO) || equalsAfterUpper(contact, mContactRelayCoilNONC);
}

bool OhmUtXrefEntity::generateXrefText(const OhmDsComponentOcc& occurrence, std::u16string& text,
                                       bool underline) const {
  using ohm_internal::lookupProperty;
  OhmNoRxUtilsXrefTextFormat::Option& option = mScratchOption;
  // An option that isn't set gives an empty format.
  option.mXrefFormat.clear();
  option.mXrefAltFormat.clear();
  mSettingOverride.getSettingValue(OhmCfgSetting::WD_XREF_FORMAT, option.mXrefFormat);
  mSettingOverride.getSettingValue(OhmCfgSetting::WD_XREF_ALTFORMAT, option.mXrefAltFormat);
  option.mUnderline = underline;
  const OhmDsOccurrence::PropertyMap& sheet = occurrence.mSheetProperties;
  OhmNoRxUtilsXrefTextFormat::RefData& data = mScratchRefData;
  data.mDwgPath = occurrence.mOccID.mDwgPath;
  data.mSheet = lookupProperty(sheet, OhmDsKeys::SHEET);
  data.mRef = lookupProperty(occurrence.mProperties, OhmDsKeys::REF);
  data.mIecInst = lookupProperty(sheet, OhmDsKeys::IEC_INST);
  data.mIecLoc = lookupProperty(sheet, OhmDsKeys::IEC_LOC);
  data.mIecProject = lookupProperty(sheet, OhmDsKeys::IEC_PROJ);
  data.mValueA = occurrence.mXrefValueA;
  data.mValueB = occurrence.mXrefValueB;
  data.mSheetDwgName = lookupProperty(sheet, OhmDsKeys::SHEETDWGNAME);
  return OhmNoRxUtilsXrefTextFormat::getXrefText(option, mHostDwgPath, data, text);
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
