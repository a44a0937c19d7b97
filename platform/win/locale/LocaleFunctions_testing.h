// Test seam of the locale functions: not platform API.
#pragma once

#include "win/WinDef.h"

namespace win_testing {

// The next GetDateFormatW gives 0 with last error `error` and writes nothing.
void failNextGetDateFormat(DWORD error) noexcept;
// The next GetTimeFormatW gives 0 with last error `error` and writes nothing.
void failNextGetTimeFormat(DWORD error) noexcept;
// The next GetLocaleInfoW gives 0 with last error `error` and writes nothing.
void failNextGetLocaleInfo(DWORD error) noexcept;

}  // namespace win_testing
