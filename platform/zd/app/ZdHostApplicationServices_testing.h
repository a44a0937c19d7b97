// Test seam of the application services: not host API.
#pragma once

#include <string>

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

namespace zd_testing {

// Sets the roamable root folder (Windows form); an empty text goes back to the default.
void setRoamableRootFolder(const std::u16string& folder);
// getRoamableRootFolder gives `status` (non-zero) until called with 0.
void failRoamableRootFolder(int status);

}  // namespace zd_testing

OHM_PLATFORM_API_END
