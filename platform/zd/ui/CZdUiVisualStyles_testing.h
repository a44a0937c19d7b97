// Test seam of the visual styles: not host API.
#pragma once

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

namespace zd_testing {

// IsAppThemed gives `themed` from now on (0 at start).
void setAppThemed(int themed) noexcept;
// How often IsAppThemed was asked since the process started.
long appThemedQueries() noexcept;

}  // namespace zd_testing

OHM_PLATFORM_API_END
