#include "ohmutils/xref/OhmNoRxUtilsSettingOverride.h"

OhmNoRxUtilsSettingOverride::OhmNoRxUtilsSettingOverride(const SettingMap& settings) { setSettingMap(settings); }

OhmNoRxUtilsSettingOverride& OhmNoRxUtilsSettingOverride::operator=(const OhmNoRxUtilsSettingOverride& other) {
  if (this != &other) {
    mSettingMap = other.mSettingMap;
    mBaseSettingMap = other.mBaseSettingMap;
  }
  return *this;
}

OhmNoRxUtilsSettingOverride::~OhmNoRxUtilsSettingOverride() = default;

void OhmNoRxUtilsSettingOverride::setSettingMap(const SettingMap& settings) {
  if (&settings != &mBaseSettingMap) mBaseSettingMap = settings;
  mSettingMap = mBaseSettingMap;
}

void OhmNoRxUtilsSettingOverride::clearOverride() { mSettingMap = mBaseSettingMap; }

void OhmNoRxUtilsSettingOverride::applyOverride(const SettingMap& overrides) {
  clearOverride();
  for (const auto& [option, value] : overrides) {
    if (value.empty()) continue;
    const auto it = mSettingMap.find(option);
    if (it != mSettingMap.end()) it->second = value;
  }
}

bool OhmNoRxUtilsSettingOverride::getSettingValue(OhmCfgSetting::WD_M_ATTRIB option, std::u16string& value) const {
  const auto it = mSettingMap.find(option);
  if (it == mSettingMap.end()) return false;
  value = it->second;
  return true;
}
