// OhmDwgUtils: read-only access to drawing objects, all static. Every fact
// the suite keeps on a drawing entity stands in its xdata or in the
// attributes of a block reference; these are the lookups through which all
// of it is read. Each operation opens what it reads itself and ends every
// access, and releases every value chain, before it returns.
//
// Thread safety: the host's main thread, as for every drawing access.
#pragma once

#include <string>

#include "ohmutils/OhmUtilsExport.h"
#include "zd/ZdDbBlockReference.h"
#include "zd/ZdDbObject.h"

class OHMUTILS_EXPORT OhmDwgUtils {
 public:
  // The class has no data; assignment does nothing and gives this object.
  OhmDwgUtils& operator=(const OhmDwgUtils& other);

  // The value of the option record `appName` on `entity`: an xdata record of
  // application name (1001), control string (1002) and text (1000), in that
  // order; further items are ignored. True and the text in `value` (its old
  // content replaced); false with `value` untouched for a null entity, no
  // such xdata, or a record of another shape.
  static bool getOhmEntityXData(const ZdDbEntity* entity, const std::u16string& appName, std::u16string& value);

  // The text of the first attribute, in drawing order, whose tag matches the
  // wildcard `tagPattern` ignoring case (alternatives allowed). A borrowed
  // pointer into the attribute, valid while the drawing is loaded and the
  // attribute unchanged; an empty text is non-null. Null for a null argument,
  // no attribute iterator, or no match; attributes that can't be opened or
  // have no tag are passed over.
  static const char16_t* getAttributeValue(const ZdDbBlockReference* blockReference, const char16_t* tagPattern);
};
