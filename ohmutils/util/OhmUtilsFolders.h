// Making and removing folders on disk. Stateless free functions over
// Windows-form paths (backslash separators), which the platform maps to the
// file system. A failure part way leaves what was done so far: nothing is
// rolled back.
#pragma once

#include "mfc/CString.h"
#include "ohmutils/OhmUtilsExport.h"
#include "zd/ZdString.h"

// Deletes the files directly in `folder` (read-only ones too) and then the
// folder itself. `folder` must end with a backslash: the listing is `folder`
// followed by "*". Subfolders are not descended into. True when the folder
// was removed; false for an empty text or one of 259 units or more, a folder
// that can't be listed, a listing that ends in an error, or a folder still
// holding a subfolder (its files are gone then).
OHMUTILS_EXPORT bool OhmUtilsDeleteFolder(const ZdString& folder);

// Makes `path` and every missing folder above it, outermost first. True when
// the path exists already or every folder was made; false at the first folder
// that can't be made (those made before it stay), and when no folder of the
// path exists at all (an unmapped drive, a relative path without parent).
OHMUTILS_EXPORT bool CreateDirectoryRecursively(const CString& path);

// Removes `path` with everything in it, silently and for good. 0 when it was
// removed; 1 when it wasn't there; otherwise the shell's non-zero status.
OHMUTILS_EXPORT int RemoveDirectoryRecursively(const CString& path);
