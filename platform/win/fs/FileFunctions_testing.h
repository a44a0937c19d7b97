// Test seam of the file functions: not platform API.
#pragma once

#include "OhmPlatformExport.h"
#include "win/WinDef.h"

OHM_PLATFORM_API_BEGIN

namespace win_testing {

// Search handles made by FindFirstFileW (and _wfindfirst64) and not yet closed.
long liveFindHandles() noexcept;
// The next FindNextFileW gives FALSE with last error `error`, entries left or not.
void failNextFindNextFile(DWORD error) noexcept;
// The next CreateDirectoryW gives FALSE with last error `error` and makes nothing.
void failNextCreateDirectory(DWORD error) noexcept;

}  // namespace win_testing

OHM_PLATFORM_API_END
