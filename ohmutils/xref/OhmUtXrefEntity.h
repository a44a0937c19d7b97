// OhmUtXrefEntity: the abstract base of the three presentations of a
// cross-reference (attribute text, contact symbol text, table). A short-lived
// worker that the factory makes for one drawing entity: it keeps what the
// entity's options gave, not the entity.
//
// Ownership: the option set is the caller's and must outlive the entity;
// entities may share one, and then all see the overrides of the one whose
// applyEntityOverrides ran last.
//
// For derived classes: constructors set mStyle; getXrefOptionEntOverride
// calls the base's first, then adds only options the entity's xdata holds;
// init, if overridden, returns at once when isInitialized(), calls the base's
// (which sets the flag) and then does its own work; every reference text goes
// through generateXrefText.
//
// Thread safety: one object, with its option set, by one thread at a time.
// Operations on distinct objects with distinct option sets may run on several
// threads at once.
#pragma once

#include <initializer_list>
#include <map>
#include <string>

#include "ohmutils/OhmUtilsExport.h"
#include "ohmutils/xref/OhmDsComponentOcc.h"
#include "ohmutils/xref/OhmNoRxUtilsSettingOverride.h"
#include "ohmutils/xref/OhmNoRxUtilsXrefTextFormat.h"
#include "zd/db/ZdDbObject.h"

class OHMUTILS_EXPORT OhmUtXrefEntity {
 public:
  enum Style {
    StyleNone = 0,     // option text other than "0", "1", "2"
    StyleText = 1,     // "0": OhmUtXrefTextEntity
    StyleGraphic = 2,  // "1": OhmUtXrefGraphicEntity
    StyleTable = 3,    // "2": OhmUtXrefTableEntity
  };

  explicit OhmUtXrefEntity(OhmNoRxUtilsSettingOverride& settingOverride);
  // Copies style, host path and the initialised flag; shares the option set.
  OhmUtXrefEntity(const OhmUtXrefEntity& other);
  OhmUtXrefEntity& operator=(const OhmUtXrefEntity&) = delete;
  virtual ~OhmUtXrefEntity();

  // Lays the drawing entity's xdata over the caller's settings in the option
  // set (earlier overrides are gone); a null entity only clears them.
  void applyEntityOverrides(const ZdDbEntity* entity);
  // The drawing in which the text will stand, compared with each occurrence's.
  void setHostDwgPath(const std::u16string& hostDwgPath);
  // The presentation of this object's class.
  Style getStyle() const noexcept { return mStyle; }

  // "0", "1", "2" exactly give StyleText, StyleGraphic, StyleTable; anything else StyleNone.
  static Style getXrefEntityStyle(const std::u16string& optionText);
  // CONTACT values, a-z folded, no trimming: "NO"; "NC"; "NONC" or "NCNO".
  static bool isValidContactForRelayCoilNO(const std::u16string& contact);
  static bool isValidContactForRelayCoilNC(const std::u16string& contact);
  static bool isValidContactForRelayCoilFormC(const std::u16string& contact);

 protected:
  // The reference text of an occurrence under options 14 and 47, read afresh;
  // always true (an empty format gives an empty text).
  bool generateXrefText(const OhmDsComponentOcc& occurrence, std::u16string& text, bool underline) const;
  bool isInitialized() const noexcept { return mInitialized; }
  // Marks the entity as initialised.
  virtual void init();
  // Adds to `overrides` the options 60, 14, 47 that the entity's xdata holds.
  virtual void getXrefOptionEntOverride(const ZdDbEntity* entity,
                                        OhmNoRxUtilsSettingOverride::SettingMap& overrides) const = 0;

  // An xdata option record and the option number it overrides.
  struct XDataOption {
    const char16_t* appName;
    OhmCfgSetting::WD_M_ATTRIB option;
  };
  // Sets in `overrides` each option whose record the entity's xdata holds, in order.
  static void readXDataOptions(const ZdDbEntity& entity, std::initializer_list<XDataOption> options,
                               OhmNoRxUtilsSettingOverride::SettingMap& overrides);

  static const std::u16string mContactRelayCoilNO;    // "NO"
  static const std::u16string mContactRelayCoilNC;    // "NC"
  static const std::u16string mContactRelayCoilNONC;  // "NONC"
  static const std::u16string mContactRelayCoilNCNO;  // "NCNO"

  Style mStyle = StyleNone;
  OhmNoRxUtilsSettingOverride& mSettingOverride;
  std::u16string mHostDwgPath;
  bool mInitialized = false;
};
