// The keys of the occurrence property maps, one set shared by every
// cross-reference entity class. Which map holds which key:
//   mProperties of a component:      CONTACT, REF
//   mSheetProperties of a component: SHEET, SHEETDWGNAME, IEC_INST, IEC_LOC, IEC_PROJ
//   mProperties of a pin:            TERM, TERMCODE
// LNUMBER, STRIPSEQ, TERMDESC and ADDR belong to the producers; no operation
// of the library reads them.
#pragma once

#include <string>

#include "ohmutils/OhmUtilsExport.h"

namespace OhmDsKeys {

OHMUTILS_EXPORT extern const std::u16string CONTACT;  // contact kind: NO, NC, NONC or NCNO, any case
OHMUTILS_EXPORT extern const std::u16string REF;      // reference on the sheet, token %N
OHMUTILS_EXPORT extern const std::u16string LNUMBER;
OHMUTILS_EXPORT extern const std::u16string STRIPSEQ;
OHMUTILS_EXPORT extern const std::u16string SHEET;         // sheet number, token %S
OHMUTILS_EXPORT extern const std::u16string SHEETDWGNAME;  // drawing name of the sheet, token %D
OHMUTILS_EXPORT extern const std::u16string IEC_INST;      // IEC installation code, token %I
OHMUTILS_EXPORT extern const std::u16string IEC_LOC;       // IEC location code, token %L
OHMUTILS_EXPORT extern const std::u16string IEC_PROJ;      // IEC project code, token %P
OHMUTILS_EXPORT extern const std::u16string TERM;          // terminal text as drawn
OHMUTILS_EXPORT extern const std::u16string TERMDESC;
OHMUTILS_EXPORT extern const std::u16string TERMCODE;  // terminal number, decimal integer text
OHMUTILS_EXPORT extern const std::u16string ADDR;

}  // namespace OhmDsKeys
