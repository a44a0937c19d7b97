// OhmUtXrefEntityFactory: where a cross-reference starts. Given a drawing
// entity and the caller's option set, it picks the presentation the entity
// asks for (its KVA_WD_XREF_STYLE xdata, else option 60), makes the matching
// entity object and lays the drawing entity's options over the option set.
//
// Ownership: a returned object is the caller's to delete; it holds a
// reference to the option set, which must outlive it. The drawing entity is
// only read during the call. The option set is left with this drawing
// entity's overrides, those of an earlier entity gone, except when no object
// is made: then it stays as it was.
#pragma once

#include <string>

#include "ohmutils/OhmUtilsExport.h"
#include "ohmutils/xref/OhmUtXrefEntity.h"
#include "ohmutils/xref/OhmUtXrefTextEntity.h"

class OHMUTILS_EXPORT OhmUtXrefEntityFactory {
 public:
  OhmUtXrefEntityFactory() = delete;

  // A text, graphic or table object for the entity's style; null for a null
  // entity, an empty style with no option 60, or a style text other than
  // "0", "1", "2".
  static OhmUtXrefEntity* getXrefEntity(const ZdDbEntity* entity, OhmNoRxUtilsSettingOverride& settingOverride);
  // A text object whatever the style says; null only for a null entity.
  static OhmUtXrefTextEntity* getXrefTextEntity(const ZdDbEntity* entity, OhmNoRxUtilsSettingOverride& settingOverride);

 private:
  // The entity's KVA_WD_PINLIST xdata; false (output empty) without it.
  static bool getPinList(const ZdDbEntity* entity, std::u16string& pinList);
};
