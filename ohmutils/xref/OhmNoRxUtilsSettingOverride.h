// OhmNoRxUtilsSettingOverride: the option set that cross-reference entities
// read. The caller fills it with its settings (mBaseSettingMap); an entity
// lays its drawing entity's xdata over them (mSettingMap) with applyOverride.
//
// Invariant between calls: mSettingMap has exactly the keys of
// mBaseSettingMap; values differ only where an override took effect. An
// override never adds a key and never blanks a value.
//
// Ownership: entities hold a reference; the caller keeps the object alive as
// long as any entity made with it. All entities over one object see the
// overrides of the one made last.
//
// Thread safety: one thread at a time; the const readers may run side by side
// while nothing writes.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "ohmutils/OhmUtilsExport.h"
#include "ohmutils/xref/OhmCfgSetting.h"

class OHMUTILS_EXPORT OhmNoRxUtilsSettingOverride {
 public:
  using SettingMap = std::map<OhmCfgSetting::WD_M_ATTRIB, std::u16string>;

  OhmNoRxUtilsSettingOverride() = default;
  // As setSettingMap(settings).
  explicit OhmNoRxUtilsSettingOverride(const SettingMap& settings);
  // Copies both maps; the copy keeps the other's overrides.
  OhmNoRxUtilsSettingOverride(const OhmNoRxUtilsSettingOverride& other) = default;
  OhmNoRxUtilsSettingOverride& operator=(const OhmNoRxUtilsSettingOverride& other);
  virtual ~OhmNoRxUtilsSettingOverride();

  // New settings; earlier overrides are gone. Passing getSettingMap() takes
  // the current overrides over as settings.
  void setSettingMap(const SettingMap& settings);
  // Back to the settings as given.
  void clearOverride();
  // Clears earlier overrides, then lays each non-empty value over a key that
  // the settings hold. Empty values and unknown keys are skipped.
  void applyOverride(const SettingMap& overrides);
  // The effective settings.
  const SettingMap& getSettingMap() const noexcept { return mSettingMap; }
  // True and the value in `value` when the option is set (an empty value
  // included); false with `value` exactly as the caller left it otherwise.
  bool getSettingValue(OhmCfgSetting::WD_M_ATTRIB option, std::u16string& value) const;
  // The value of the option in place, or null when it isn't set. Valid until
  // the set next changes.
  const std::u16string* findSettingValue(OhmCfgSetting::WD_M_ATTRIB option) const;
  // Grows at every call that may change the effective settings, so that a
  // reader that keeps what it worked out from them can tell when to read again.
  std::uint64_t changeCount() const noexcept { return mChangeCount; }

 private:
  SettingMap mSettingMap;      // effective settings: base with the last overrides on top
  SettingMap mBaseSettingMap;  // the settings as the caller gave them
  std::uint64_t mChangeCount = 0;
};
