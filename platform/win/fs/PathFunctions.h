// The platform's path text functions (the shell's light-weight path API):
// taking a Windows-form path apart, joining, shortening for display, and
// asking whether a path names something. All but PathFileExistsW work on
// text only. Buffers given for a result hold MAX_PATH units unless a size is
// passed.
#pragma once

#include "OhmPlatformExport.h"
#include "win/WinDef.h"

OHM_PLATFORM_API_BEGIN

// Leaves only the last component of `path` in place, a trailing separator
// included ("C:\\a\\b\\" keeps "b\\"); a path without separator is unchanged.
// Separators are '\\', '/' and the ':' of a drive. Null is ignored.
void PathStripPathW(LPWSTR path);

// Cuts the last component and its backslash ("C:\\a\\b.dwg" -> "C:\\a"),
// keeping a root backslash ("C:\\a" -> "C:\\"). TRUE when something was
// removed; FALSE for a root, an empty text or null.
BOOL PathRemoveFileSpecW(LPWSTR path);

// Joins `folder` and `file` with one backslash into `dest` (MAX_PATH units)
// and drops "." and ".." components. A `file` with a drive stands alone; one
// starting with a backslash keeps only the folder's drive. `dest`, or null
// (dest emptied) when the result needs MAX_PATH units or more, when both
// parts are null, or for a null dest.
LPWSTR PathCombineW(LPWSTR dest, LPCWSTR folder, LPCWSTR file);

// Appends `more` to `path` (a buffer of MAX_PATH units) with one backslash
// between, as PathCombineW joins them; leading backslashes of `more` are
// skipped, so it always goes below `path`. TRUE on success; FALSE, `path`
// unchanged, when the result needs MAX_PATH units or more, or for null.
BOOL PathAppendW(LPWSTR path, LPCWSTR more);

// TRUE when the path names an existing file or folder; FALSE otherwise, for
// a path on a drive that isn't mapped, and for null.
BOOL PathFileExistsW(LPCWSTR path);

// Shortens `source` for display into `out` so that it takes at most
// `maxUnits` units, terminator included: middle components give way to "...",
// keeping the start and the last component ("C:\\a\\b\\c\\name.txt" ->
// "C:\\a\\...\\name.txt"); a last component that alone doesn't fit is cut and
// ends in "...". The separator written is '/' when the source uses it. A
// source that fits is copied. TRUE on success; FALSE for null pointers,
// non-zero flags or a size of 0 (nothing written). `out` must hold
// `maxUnits` units.
BOOL PathCompactPathExW(LPWSTR out, LPCWSTR source, UINT maxUnits, DWORD flags);

OHM_PLATFORM_API_END
