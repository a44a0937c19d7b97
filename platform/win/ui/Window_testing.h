// Test seam of the windows: tests make the windows that the host would.
#pragma once

#include "OhmPlatformExport.h"
#include "win/WinDef.h"

OHM_PLATFORM_API_BEGIN

namespace win_testing {

// CreateWindowExW with the given style, position and size, and no class or name.
HWND createWindow(DWORD style, int x, int y, int width, int height, HWND parent);
BOOL destroyWindow(HWND window);
BOOL isWindow(HWND window) noexcept;
HWND setActiveWindow(HWND window);

}  // namespace win_testing

OHM_PLATFORM_API_END
