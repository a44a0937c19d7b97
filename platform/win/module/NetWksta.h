// The workstation query: the machine's name, its work group and the version
// of the operating system that runs it. Here the version is the running
// kernel's release ("6.1.0-18-amd64" gives major 6, minor 1).
//
// Ownership: the record NetWkstaGetInfo allocates (its strings inside it)
// is the caller's until NetApiBufferFree; the test seam counts those live.
//
// Thread safety: all functions may be called from any thread.
#pragma once

#include "OhmPlatformExport.h"
#include "win/WinDef.h"

OHM_PLATFORM_API_BEGIN

using NET_API_STATUS = DWORD;
inline constexpr NET_API_STATUS NERR_Success = 0;
inline constexpr DWORD PLATFORM_ID_NT = 500;

struct WKSTA_INFO_100 {
  DWORD wki100_platform_id;
  LPWSTR wki100_computername;
  LPWSTR wki100_langroup;
  DWORD wki100_ver_major;
  DWORD wki100_ver_minor;
};

// Fills a new WKSTA_INFO_100 for level 100 and points *buffer at it.
// NERR_Success; ERROR_INVALID_LEVEL for another level, ERROR_BAD_NETPATH for
// a server other than this machine (null or empty is this machine),
// ERROR_INVALID_PARAMETER for a null buffer, ERROR_NOT_ENOUGH_MEMORY;
// *buffer is left alone on failure.
NET_API_STATUS NetWkstaGetInfo(LPWSTR serverName, DWORD level, LPBYTE* buffer);

// Frees a record of NetWkstaGetInfo; NERR_Success (also for null),
// ERROR_INVALID_PARAMETER for a stranger.
NET_API_STATUS NetApiBufferFree(LPVOID buffer);

OHM_PLATFORM_API_END
