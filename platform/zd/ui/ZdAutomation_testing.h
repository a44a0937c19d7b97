// Test seam of the host's automation: not host API.
#pragma once

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

namespace zd_testing {

// References to the automation object held beyond the host's own.
long automationReferences() noexcept;
// How often Quit was called since the process started.
long quitRequests() noexcept;
// The next QueryInterface for IZedaApplication gives E_NOINTERFACE and null.
void failNextApplicationQuery() noexcept;

}  // namespace zd_testing

OHM_PLATFORM_API_END
