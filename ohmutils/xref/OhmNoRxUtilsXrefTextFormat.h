// OhmNoRxUtilsXrefTextFormat: turns a format such as "%S.%N" and a record of
// reference values into finished cross-reference text. It knows nothing of
// occurrences, settings or drawings, so any module may call it with records of
// its own. All members are static.
//
// Tokens, substituted in this fixed order, each for every occurrence, left to
// right: %S sheet, %N reference, %A value A, %B value B, %I IEC installation,
// %L IEC location, %P IEC project, %D sheet drawing name. A later step sees
// the text that earlier steps made, so a value holding a later token is
// expanded in turn. %G and %F and anything else stay as they are; there is no
// escape.
//
// Thread safety: the class holds no state of its own; its tables are
// constant. Calls may run on several threads at once, each with its own
// output.
#pragma once

#include <cstdint>
#include <string>

#include "mfc/CString.h"
#include "ohmutils/OhmUtilsExport.h"

class OHMUTILS_EXPORT OhmNoRxUtilsXrefTextFormat {
 public:
  struct Option {
    std::u16string mXrefFormat;     // format when the occurrence lies in the host drawing
    std::u16string mXrefAltFormat;  // format when it lies in any other drawing
    bool mUnderline = false;        // wrap the text in the underline code
  };

  struct RefData {
    std::u16string mDwgPath;       // drawing that holds the occurrence; chooses the format
    std::u16string mSheet;         // %S
    std::u16string mSheetDwgName;  // %D
    std::u16string mExtra1;        // kept empty; nothing reads it
    std::u16string mRef;           // %N
    std::u16string mExtra2;        // kept empty; nothing reads it
    std::u16string mIecProject;    // %P
    std::u16string mIecInst;       // %I
    std::u16string mIecLoc;        // %L
    std::u16string mValueA;        // %A
    std::u16string mValueB;        // %B
  };

  // Replaces `output` with the text: mXrefFormat when `hostDwgPath` and
  // data.mDwgPath are equal after a-z -> A-Z (two empty paths are equal),
  // mXrefAltFormat otherwise, with the tokens substituted, then wrapped in
  // "%%u" when option.mUnderline is set. Always true. On allocation failure
  // the output keeps its earlier content.
  static bool getXrefText(const Option& option, const std::u16string& hostDwgPath, const RefData& data,
                          std::u16string& output);
};
