// The C runtime's file opening with a Windows-form path and a share mode.
// Files are plain FILE streams of the C library, read and written with
// fread/fwrite and closed with fclose. Linux has no share modes: every file
// is open to other readers and writers whatever the mode says, which is what
// _SH_DENYNO asks for; the other modes are accepted and not enforced.
#pragma once

#include <cstdio>

#include "OhmPlatformExport.h"
#include "win/WinDef.h"

OHM_PLATFORM_API_BEGIN

// Share modes.
inline constexpr int _SH_DENYRW = 0x10;
inline constexpr int _SH_DENYWR = 0x20;
inline constexpr int _SH_DENYRD = 0x30;
inline constexpr int _SH_DENYNO = 0x40;

// Opens `path` with the C library's `mode` ("wb", "rb", "a+"...; a "t" or
// "ccs=" part is dropped). The stream; null with errno set when the path
// can't be opened, is on a drive that isn't mapped (ENOENT), or for null
// arguments (EINVAL).
FILE* _wfsopen(LPCWSTR path, LPCWSTR mode, int shareFlag);

OHM_PLATFORM_API_END
