// Test seam of the local heap: not platform API.
#pragma once

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

namespace win_testing {

// Blocks of LocalAlloc and FormatMessageW not yet given to LocalFree.
long liveLocalBlocks() noexcept;

}  // namespace win_testing

OHM_PLATFORM_API_END
