// Cutting strings into pieces, pieces into numbers, and cleaning a string of
// the characters that file names and XML names can't hold. Stateless free
// functions; positions and lengths count 16-bit units.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "mfc/CString.h"
#include "ohmutils/OhmUtilsExport.h"
#include "win/WinDef.h"
#include "zd/ZdString.h"

// Replaces `items` with the pieces of `source` between `separator` units,
// empty pieces included: N separators always give N+1 items. No trimming,
// quoting or escapes.
OHMUTILS_EXPORT void OhmUtilsSplitString(const std::u16string& source, char16_t separator,
                                         std::vector<std::u16string>& items);

// Replaces `values` with the decimal value of each string, read as the
// standard wide string to int conversion reads: leading white space skipped,
// an optional sign, digits, anything after them ignored.
// Throws std::invalid_argument("invalid stoi argument") for a string without
// digits and std::out_of_range("stoi argument out of range") outside int32;
// the values converted before the failing string stay in `values`.
OHMUTILS_EXPORT void OhmUtilsCvtStringToIntArray(const std::vector<std::u16string>& strings,
                                                 std::vector<std::int32_t>& values);

// Cuts the first token off `source`. Leading delimiters are dropped one unit
// at a time, so they never give empty tokens. At a later hit: `token` becomes
// the text before it, `delimiterFound` (if given) the unit at the hit, and
// `source` the text behind the delimiter (one unit, or the whole delimiters
// string with `wholeDelimiter`); true. No hit: false, `token` and
// `delimiterFound` untouched, the remaining text left in `source` for the
// caller to take as the last token. A null `delimiters`, or an empty one
// with `wholeDelimiter`, gives false and changes nothing.
OHMUTILS_EXPORT bool GetToken(CString& source, CString& token, LPCWSTR delimiters, CString* delimiterFound,
                              bool wholeDelimiter);

// `output` becomes `text` with each of < > / \ " : ? * | replaced by
// `replacement`. Nothing is expanded into an entity; & and ' stay. The result
// passes through a terminated string, so a replacement of 0 ends it at the
// first special character.
OHMUTILS_EXPORT void OhmUtilsReplaceSpecialXMLCharsInString(const ZdString& text, char16_t replacement,
                                                            ZdString& output);
