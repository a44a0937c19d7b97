// Test seam of the module functions: not platform API.
#pragma once

#include <string>
#include <vector>

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

namespace win_testing {

// References taken by LoadLibraryW and not yet given back by FreeLibrary.
long loadedLibraryCount() noexcept;
// The POSIX paths of the modules those references hold, one per reference.
std::vector<std::string> loadedLibraryPaths();

}  // namespace win_testing

OHM_PLATFORM_API_END
