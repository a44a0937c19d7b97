// Test seam of the shell's file operation: not platform API.
#pragma once

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

namespace win_testing {

// The next SHFileOperationW gives `status` and touches nothing.
void failNextFileOperation(int status) noexcept;

}  // namespace win_testing

OHM_PLATFORM_API_END
