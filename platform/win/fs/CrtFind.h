// The C runtime's file search, as far as the library uses it: the first
// entry that matches a Windows-form path or pattern, with its times in
// seconds since 1970. Built on FindFirstFileW, so the same path mapping and
// wildcard rules apply and a search handle is counted until _findclose.
#pragma once

#include <cstdint>

#include "OhmPlatformExport.h"
#include "win/locale/CrtTime.h"

OHM_PLATFORM_API_BEGIN

inline constexpr unsigned _A_NORMAL = 0x00;
inline constexpr unsigned _A_RDONLY = 0x01;
inline constexpr unsigned _A_SUBDIR = 0x10;

struct _wfinddata64_t {
  unsigned attrib;         // _A_NORMAL, or _A_RDONLY / _A_SUBDIR
  __time64_t time_create;  // the status change time on Linux
  __time64_t time_access;
  __time64_t time_write;
  std::int64_t size;
  char16_t name[260];
};

// Starts a search and fills `data` with its first entry. A handle for
// _findclose; -1 with errno ENOENT when nothing matches or the folder isn't
// there, EINVAL for a null argument.
std::intptr_t _wfindfirst64(const char16_t* pattern, _wfinddata64_t* data);

// Ends a search. 0; -1 with errno EINVAL for a handle that isn't a search.
int _findclose(std::intptr_t handle);

OHM_PLATFORM_API_END
