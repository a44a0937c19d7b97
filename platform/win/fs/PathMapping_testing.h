// Test seam of the path mapping: not platform API.
#pragma once

#include <string>

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

namespace win_testing {

// Maps drive `letter` to the POSIX folder `root`; an empty root removes the drive.
void mapDrive(char16_t letter, const std::string& root);

}  // namespace win_testing

OHM_PLATFORM_API_END
