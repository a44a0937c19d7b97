// Test seam of the locale functions: not platform API.
#pragma once

#include "OhmPlatformExport.h"
#include "win/WinDef.h"

OHM_PLATFORM_API_BEGIN

namespace win_testing {

// The next GetDateFormatW gives 0 with last error `error` and writes nothing.
void failNextGetDateFormat(DWORD error) noexcept;
// The next GetTimeFormatW gives 0 with last error `error` and writes nothing.
void failNextGetTimeFormat(DWORD error) noexcept;
// The next GetLocaleInfoW gives 0 with last error `error` and writes nothing.
void failNextGetLocaleInfo(DWORD error) noexcept;

}  // namespace win_testing

OHM_PLATFORM_API_END
