// Measuring, indexing and clipping wide strings by character. Callers count
// positions in characters while the strings are arrays of 16-bit units; these
// functions are where the two counts meet. One character is one step of the
// platform's CharNextW/CharPrevW (a surrogate pair is one character).
//
// An index counts characters from the start (0 is the first); a count is
// one-based (1 is the first). Returned positions point into the caller's own
// string and live as long as it does. Stateless; safe on any thread.
#pragma once

#include "mfc/CString.h"
#include "ohmutils/OhmUtilsExport.h"

// Number of characters of `text`; 0 for null or empty.
OHMUTILS_EXPORT unsigned GetCharCount(const char16_t* text);

// Number of units that the first `charCount` characters span (despite the
// name, units, not bytes); the whole length for -1 or a count reaching the
// end; 0 for null, for 0 and for other negative counts.
OHMUTILS_EXPORT int GetByteCount(const char16_t* text, int charCount);

// Character index, from the start of `text`, of the first match of `sub` at
// or after character `startIndex` (-1: the end); with `ignoreCase`, a-z match
// A-Z. -1 when there is none or either string is null. An empty `sub` matches
// at the start (or at the end when the start lies beyond it).
OHMUTILS_EXPORT int GetCharIndexOfSubInString(const char16_t* text, const char16_t* sub, bool ignoreCase,
                                              int startIndex);

// Position of the character at `index`; `text` itself for an index of 0 or
// less (null stays null); the terminator for an index past the end; null for
// a null text.
OHMUTILS_EXPORT const char16_t* GetStringAtCharIndex(const char16_t* text, int index);

// GetStringAtCharIndex with `count` less one: counts 0 and 1 give `text`.
OHMUTILS_EXPORT const char16_t* GetStringAtCharCount(const char16_t* text, unsigned count);

// Position of the character `index` places before the last one (0 or less:
// the last character); the start of `text` when the index reaches beyond it.
// Null for a null or empty text.
OHMUTILS_EXPORT const char16_t* RevGetStringAtCharIndex(const char16_t* text, int index);

// RevGetStringAtCharIndex with `count` less one: counts 0 and 1 give the last character.
OHMUTILS_EXPORT const char16_t* RevGetStringAtCharCount(const char16_t* text, unsigned count);

// Sets `output` to `source`, cut to its first `limitUnits` units (a cut may
// split a character). True, also for an empty source; false with an empty
// output for a null source or a limit of 0 or less.
OHMUTILS_EXPORT bool SetStringWithLength(CString& output, const char16_t* source, int limitUnits);

// Appends `source`, cut to its first `limitUnits` units, to `output`. A limit
// of 0 appends nothing (it doesn't mean unlimited). True; false and `output`
// unchanged for a null source.
OHMUTILS_EXPORT bool AppendLimitMax(CString& output, const char16_t* source, unsigned limitUnits);

// Sets `output` to `source` shortened for display to fewer than `limit` units,
// middle path components giving way to "...", when `source` has `limit` or
// more characters: true when it was compacted. False with `output` a copy of
// `source` when it has fewer characters than `limit`; false and an empty
// output when the platform can't compact to that size (a limit of 0).
OHMUTILS_EXPORT bool TrimStringMiddle(const CString& source, CString& output, unsigned limit);

// Removes every trailing backslash ("C:\\a\\\\" -> "C:\\a", "C:\\" -> "C:").
OHMUTILS_EXPORT void TrimEndingBackslashes(CString& text);
