// The version of the suite's main module, "ohmmain.dll", as found on the
// host's search path: the file version of its version block.
#pragma once

#include "mfc/CString.h"
#include "ohmutils/OhmUtilsExport.h"

// Sets `version` to "a.b.c.d", the main module's file version; false and
// `version` unchanged when the module isn't on the host's search path or has
// no version block.
OHMUTILS_EXPORT bool OhmGetBuildVersion(CString& version);
