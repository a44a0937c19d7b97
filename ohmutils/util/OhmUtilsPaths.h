// Taking Windows-form paths apart and putting extensions on them. Stateless
// free functions over text only (nothing here touches the file system);
// the backslash is the separator, lengths count 16-bit units.
#pragma once

#include "mfc/CString.h"
#include "ohmutils/OhmUtilsExport.h"
#include "zd/ZdString.h"

// Sets `output` to the last component of `path` ("C:\\a\\b.dwg" gives
// "b.dwg"). True; false with an empty output for a path of 260 units or more.
OHMUTILS_EXPORT bool OhmUtilsGetFileNameWithExt(const ZdString& path, ZdString& output);

// The file name of `path` without folder and extension ("C:\\a\\b.c.dwg" gives
// "b.c"). False with an empty output when a part of the path is too long to
// take apart (drive over 2 units, folder, name or extension over 255).
OHMUTILS_EXPORT bool OhmUtilsGetFileNameWithoutExt(const ZdString& path, ZdString& output);

// Sets `output` to the folder of `path`, without trailing backslash unless it
// is a root ("C:\\a\\b.dwg" gives "C:\\a", "b.dwg" gives ""). False with an
// empty output when there is nothing to cut ("C:\\") or for a path of 260
// units or more.
OHMUTILS_EXPORT bool OhmUtilsGetFolderPath(const ZdString& path, ZdString& output);

// Appends a backslash unless the path's last unit is one already; only the
// backslash counts ("a/" becomes "a/\"). An empty path stays empty.
OHMUTILS_EXPORT void EnsureEndingBackslash(CString& path);

// Gives `path` the extension `extension` (without dot) when it has none; with
// `replace`, an extension that is there gives way to it, otherwise it stays
// whatever it is. An extension is the text after the last dot when no '\\' or
// '/' follows that dot ("a." has an empty one). Nothing happens for an empty
// path or a null or empty extension.
OHMUTILS_EXPORT void EnsureExtension(CString& path, const char16_t* extension, bool replace);
