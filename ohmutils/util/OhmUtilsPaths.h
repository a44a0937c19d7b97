// Taking paths apart, making and removing folders, and finding the folders
// that the host application and the suite work with. Stateless free
// functions over Windows-form paths (backslash separators); lengths count
// 16-bit units.
#pragma once

#include "mfc/CString.h"
#include "ohmutils/OhmUtilsExport.h"

// Appends a backslash unless the path's last unit is one already; only the
// backslash counts ("a/" becomes "a/\"). An empty path stays empty.
OHMUTILS_EXPORT void EnsureEndingBackslash(CString& path);
