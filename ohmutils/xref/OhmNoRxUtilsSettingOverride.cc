#include "ohmutils/xref/OhmNoRxUtilsSettingOverride.h"

OhmNoRxUtilsSettingOverride::OhmNoRxUtilsSettingOverride(const SettingMap& settings) { setSettingMap(settings); }

OhmNoRxUtilsSettingOverride& OhmNoRxUtilsSettingOverride::operator=(const OhmNoRxUtilsSettingOverride& other) {
  if (this != &other) {
    ++mChangeCount;
    mSettingMap = other.mSettingMap;
    mBaseSettingMap = other.mBaseSettingMap;
  }
  return *this;
}

OhmNoRxUtilsSettingOverride::~OhmNoRxUtilsSettingOverride() = default;

void OhmNoRxUtilsSettingOverride::setSettingMap(const SettingMap& settings) {
  ++mChangeCount;
  if (&settings != &mBaseSettingMap) mBaseSettingMap = settings;
  mSettingMap = mBaseSettingMap;
}

void OhmNoRxUtilsSettingOverride::clearOverride() {
  ++mChangeCount;
  mSettingMap = mBaseSettingMap;
}

void OhmNoRxUtilsSettingOverride::applyOverride(const SettingMap& overrides) {
  clearOverride();
  for (const auto& [option, value] : overrides) {
    if (value.empty()) continue;
    const auto it = mSettingMap.find(option);
    if (it != mSettingMap.end()) it->second = value;
  }
}

bool OhmNoRxUtilsSettingOverride::getSettingValue(OhmCfgSetting::WD_M_ATTRIB option, std::u16string& value) const {
  const std::u16string* found = findSettingValue(option);
  if (found) value = *found;
  return found != nullptr;
}

const std::u16string* OhmNoRxUtilsSettingOverride::findSettingValue(OhmCfgSetting::WD_M_ATTRIB option) const {
  const auto it = mSettingMap.find(option);
  return it == mSettingMap.end() ? nullptr : &it->second;
}
