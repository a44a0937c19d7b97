// ReplaceStringInString: every occurrence of a substring in a CString
// replaced, left to right and without overlap (CString::Replace).
#pragma once

#include "mfc/CString.h"
#include "ohmutils/OhmUtilsExport.h"
#include "win/WinDef.h"

// True when at least one replacement was made. An empty or null `find`
// replaces nothing and gives false; a null `replacement` counts as empty.
OHMUTILS_EXPORT bool ReplaceStringInString(CString& text, LPCWSTR find, LPCWSTR replacement);
