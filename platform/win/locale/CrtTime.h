// The C runtime's 64-bit time functions: the current calendar time and its
// conversion to local time (the process's time zone, from TZ as usual on
// Linux). Stateless; safe on any thread.
#pragma once

#include <cstdint>
#include <ctime>

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

using errno_t = int;
using __time64_t = std::int64_t;  // seconds since 1970-01-01 00:00:00 UTC

// The current time; also stored through `destination` unless it is null.
__time64_t _time64(__time64_t* destination) noexcept;

// Fills `result` with the local time of `time`. 0; EINVAL for a null
// argument, and, as on the platform, for a time before 1970 or after
// 3000-12-31 23:59:59 UTC (every field of `result` is then -1).
errno_t _localtime64_s(std::tm* result, const __time64_t* time) noexcept;

OHM_PLATFORM_API_END
