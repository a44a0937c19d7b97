// Resource libraries and the module's folder: finding where a loaded module
// lies, and loading a resource library from beside it, or else from the
// library search path. Stateless free functions.
#pragma once

#include "mfc/CString.h"
#include "ohmutils/OhmUtilsExport.h"
#include "win/WinDef.h"

// Loads `resourceLibrary` from the folder of the loaded module
// `moduleFileName`, else by its bare name through the library search path.
// The library's handle (free it with UnloadResDll); null when both fail,
// after a "Load Error" stop box that names the library and the system's
// reason.
OHMUTILS_EXPORT HINSTANCE LoadResDll(LPCWSTR moduleFileName, LPCWSTR resourceLibrary);

// Frees a library of LoadResDll; null is ignored.
OHMUTILS_EXPORT void UnloadResDll(HINSTANCE resourceLibrary);

// Sets `folder` to the folder of the loaded module `moduleFileName`, without
// a trailing backslash. For a module that isn't loaded, the folder of the
// program; empty when the path has no backslash or can't be had.
OHMUTILS_EXPORT void GenerateProgramDir(CString& folder, LPCWSTR moduleFileName);
