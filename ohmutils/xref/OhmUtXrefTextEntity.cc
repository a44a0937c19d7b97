#include "ohmutils/xref/OhmUtXrefTextEntity.h"

#include "ohmutils/xref/OhmDsPropertyKeys.h"
#include "win/CrtChar.h"

namespace {

// The occurrence types that a plain "XREF" tag lists, tested one by one (not as bits).
bool isAcceptedType(std::int32_t type) { return type == 4 || type == 8 || type == 16 || type == 32 || type == 64; }

}  // namespace

OhmUtXrefTextEntity::OhmUtXrefTextEntity(OhmNoRxUtilsSettingOverride& settingOverride)
    : OhmUtXrefEntity(settingOverride) {
  mStyle = StyleText;
}

OhmUtXrefTextEntity::OhmUtXrefTextEntity(const OhmUtXrefTextEntity& other)
    : OhmUtXrefEntity(other), mXrefAttPrompt(other.mXrefAttPrompt) {}

OhmUtXrefTextEntity::~OhmUtXrefTextEntity() = default;

bool OhmUtXrefTextEntity::isXrefTag(const std::u16string& tag) { return CrtEqualNoCase(tag, u"XREF"); }

bool OhmUtXrefTextEntity::isXrefTagForRelayCoil(const std::u16string& tag) {
  return isXrefTagForRelayCoilNC(tag) || isXrefTagForRelayCoilNO(tag);
}

bool OhmUtXrefTextEntity::isXrefTagForRelayCoilNC(const std::u16string& tag) { return CrtEqualNoCase(tag, u"XREFNC"); }

bool OhmUtXrefTextEntity::isXrefTagForRelayCoilNO(const std::u16string& tag) { return CrtEqualNoCase(tag, u"XREFNO"); }

bool OhmUtXrefTextEntity::getXrefText(const std::u16string& tag, const OhmDsComponentOcc& occurrence,
                                      std::u16string& text) const {
  text.clear();
  const std::u16string& contact = occurrence.getProperty(OhmDsKeys::CONTACT);
  if (isXrefTag(tag)) {
    if (!isAcceptedType(occurrence.mType)) return false;
  } else if (!isXrefTagForRelayCoil(tag)) {
    return false;
  } else {
    const bool formC = isValidContactForRelayCoilFormC(contact);
    const bool accepted = isXrefTagForRelayCoilNO(tag) ? isValidContactForRelayCoilNO(contact) || formC
                                                       : isValidContactForRelayCoilNC(contact) || formC;
    if (!accepted) return false;
  }
  bool underline = false;
  if (isValidContactForRelayCoilNC(contact)) {
    underline = true;
  } else if (isValidContactForRelayCoilFormC(contact)) {
    underline = isXrefTagForRelayCoilNC(tag);
  }
  generateXrefText(occurrence, text, underline);
  return true;
}

std::u16string OhmUtXrefTextEntity::getSeparator() const {
  std::u16string separator = u",";
  mSettingOverride.getSettingValue(OhmCfgSetting::WD_XREF_TXTBTWN, separator);
  return separator;
}

void OhmUtXrefTextEntity::setXrefAttPrompt(const std::u16string& prompt) { mXrefAttPrompt = prompt; }

std::uint64_t OhmUtXrefTextEntity::removeLabelPrefixFromAttribute(const std::u16string& tag,
                                                                  std::u16string& value) const {
  const std::u16string prefix = mXrefAttPrompt + u" ";
  if (!isXrefTag(tag) || mXrefAttPrompt.empty() || prefix.size() > value.size()) return 0;
  if (value.compare(0, prefix.size(), prefix) != 0) return 0;
  value.erase(0, prefix.size());
  return prefix.size();
}

void OhmUtXrefTextEntity::getXrefOptionEntOverride(const ZdDbEntity* entity,
                                                   OhmNoRxUtilsSettingOverride::SettingMap& overrides) const {
  OhmUtXrefEntity::getXrefOptionEntOverride(entity, overrides);
  if (entity) readXDataOptions(*entity, {{u"KVA_WD_XREF_TXTBTWN", OhmCfgSetting::WD_XREF_TXTBTWN}}, overrides);
}
