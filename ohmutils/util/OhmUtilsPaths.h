// Taking paths apart, making and removing folders, and finding the folders
// that the host application and the suite work with. Stateless free
// functions over Windows-form paths (backslash separators); lengths count
// 16-bit units.
#pragma once

#include "mfc/CString.h"
#include "ohmutils/OhmUtilsExport.h"
#include "zd/ZdString.h"

// Appends a backslash unless the path's last unit is one already; only the
// backslash counts ("a/" becomes "a/\"). An empty path stays empty.
OHMUTILS_EXPORT void EnsureEndingBackslash(CString& path);

// The file name of `path` without folder and extension ("C:\\a\\b.c.dwg" gives
// "b.c"). False with an empty output when a part of the path is too long to
// take apart (drive over 2 units, folder, name or extension over 255).
OHMUTILS_EXPORT bool OhmUtilsGetFileNameWithoutExt(const ZdString& path, ZdString& output);
