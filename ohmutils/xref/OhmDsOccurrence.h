// OhmDsOccurrence: what component and pin occurrences have in common. Plain
// data that the caller fills in full before a call; the library reads it only
// during the call and keeps nothing of it.
//
// Both maps order keys unit by unit as unsigned 16-bit numbers, so keys are
// case-sensitive. A key that is absent and a key with an empty value read the
// same: as the empty string.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "ohmutils/OhmUtilsExport.h"
#include "ohmutils/xref/OhmDsOccID.h"

class OHMUTILS_EXPORT OhmDsOccurrence {
 public:
  using PropertyMap = std::map<std::u16string, std::u16string>;

  OhmDsOccurrence() = default;
  OhmDsOccurrence(const OhmDsOccurrence&) = default;
  OhmDsOccurrence& operator=(const OhmDsOccurrence&) = default;
  virtual ~OhmDsOccurrence();

  // The value under `key` in mProperties; a reference to a shared empty
  // string when the key is empty or absent. Valid while the record lives and
  // its map is unchanged.
  const std::u16string& getProperty(const std::u16string& key) const;

  std::int32_t mType = 0;        // class code; 4, 8, 16, 32 and 64 are the ones a plain XREF tag takes
  OhmDsOccID mOccID;             // identity
  PropertyMap mProperties;       // the occurrence's own properties (CONTACT, REF; TERM, TERMCODE on pins)
  PropertyMap mSheetProperties;  // sheet and location (SHEET, SHEETDWGNAME, IEC_INST, IEC_LOC, IEC_PROJ)
  std::u16string mXrefValueA;    // value of the format token %A
  std::u16string mXrefValueB;    // value of the format token %B
};
