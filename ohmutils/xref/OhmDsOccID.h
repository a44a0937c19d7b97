// OhmDsOccID: the identity of one component occurrence: the drawing that holds
// it and the rest of its identity within that drawing. Plain data, filled by
// the caller; the library only reads mDwgPath and copies mOccKey.
#pragma once

#include <string>

#include "ohmutils/OhmUtilsExport.h"

class OHMUTILS_EXPORT OhmDsOccID {
 public:
  OhmDsOccID() = default;
  OhmDsOccID(const OhmDsOccID&) = default;
  OhmDsOccID& operator=(const OhmDsOccID&) = default;
  virtual ~OhmDsOccID();

  std::u16string mDwgPath;  // full path of the drawing; compared ignoring a-z case with the host path
  std::u16string mOccKey;   // the rest of the identity; copied, never read
};
