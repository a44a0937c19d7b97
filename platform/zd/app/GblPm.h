// The suite's global manager module: named global values that the suite's
// modules share (the project's folders, the user's folder, ...). Names are
// compared exactly. A value not set by anyone is taken, at its first look-up,
// from the environment variable OHM_<name> (OHM_GBL_wd_usr for "GBL_wd_usr"),
// so a shell session can give the suite its folders.
//
// Thread safety: all functions may be called from any thread.
#pragma once

#include <string>

#include "OhmPlatformExport.h"
#include "zd/ZdValueNode.h"

OHM_PLATFORM_API_BEGIN

// The value as text; empty when the name has no value.
std::u16string GblPm_GetCachedGblValue(const char16_t* name);

// The value as a one-node RTSTR list that the module keeps (the caller must
// not release it; it stays valid until the value changes); null when the name
// has no value.
ZdValueNode* GblPm_GetGblValue(const char16_t* name);

// Sets (or, with a null value, removes) a global value.
void GblPm_SetGblValue(const char16_t* name, const char16_t* value);

OHM_PLATFORM_API_END
