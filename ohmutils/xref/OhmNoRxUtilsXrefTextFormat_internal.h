// The text format's algorithm for callers inside the library that already
// hold the token values somewhere: the entities point at an occurrence's
// properties instead of copying them into a RefData first. The rules and the
// results are those of OhmNoRxUtilsXrefTextFormat::getXrefText.
//
// Thread safety: no state; calls may run on several threads at once, each
// with its own output.
#pragma once

#include <array>
#include <string>

namespace ohm_internal {

// The substituted tokens, in the order of their steps.
enum XrefToken { kSheet, kRef, kValueA, kValueB, kIecInst, kIecLoc, kIecProject, kSheetDwgName, kXrefTokenCount };

// The value of each token (%S %N %A %B %I %L %P %D). Every pointer is set,
// to an empty string where a value is missing, and stays valid for the call.
using XrefTextValues = std::array<const std::u16string*, kXrefTokenCount>;

// Whether two drawing paths are equal after a-z -> A-Z; two empty paths are.
bool sameDrawingPath(const std::u16string& a, const std::u16string& b) noexcept;

// Replaces `output` with `format`, its tokens substituted in the fixed order,
// wrapped in "%%u" when `underline` is set. `output` may be the format or one
// of the values; should an allocation fail, it keeps its earlier content.
void formatXrefText(const std::u16string& format, bool underline, const XrefTextValues& values, std::u16string& output);

}  // namespace ohm_internal
