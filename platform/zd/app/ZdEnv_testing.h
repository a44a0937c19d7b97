// Test seam of the host settings: not host API.
#pragma once

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

namespace zd_testing {

// Forgets every setting (they are seeded from the environment again) and clears the fault.
void resetEnv();
// The next zdedGetEnv call gives `status` and writes nothing.
void failNextGetEnv(int status);

}  // namespace zd_testing

OHM_PLATFORM_API_END
