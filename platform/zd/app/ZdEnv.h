// The host's settings: named texts of the user's profile, such as "ZEDA"
// (the support file search path, folders separated by semicolons) and
// "TemplatePath". Names compare ignoring case. A setting that nobody has set
// is seeded, at its first look-up, from the environment variable
// OHM_ENV_<NAME> (OHM_ENV_ZEDA for "ZEDA"), so a shell session can give the
// host its folders.
//
// Thread safety: all functions may be called from any thread.
#pragma once

#include <cstddef>

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

// Copies the setting with its terminator into `buffer` of `size` units.
// RTNORM; RTERROR for an unknown setting or a null argument; RTREJ when the
// buffer is too small (nothing is written then).
int zdedGetEnv(const char16_t* name, char16_t* buffer, std::size_t size);

// Sets a setting; RTNORM, or RTERROR for a null argument.
int zdedSetEnv(const char16_t* name, const char16_t* value);

OHM_PLATFORM_API_END
