// Test seam of the host's user interface: not host API.
#pragma once

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

namespace zd_testing {

// Makes the session headless (no frame, no view: their windows go) or gives
// it its user interface back (made anew at next use). Not headless at start.
void setHeadless(bool headless);

}  // namespace zd_testing

OHM_PLATFORM_API_END
