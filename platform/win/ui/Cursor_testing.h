// Test seam of the cursor functions: not platform API.
#pragma once

#include "OhmPlatformExport.h"
#include "win/WinDef.h"

OHM_PLATFORM_API_BEGIN

namespace win_testing {

// LoadCursorW calls that gave a cursor, since the process started.
long cursorLoads() noexcept;
// SetCursor calls that put a cursor on show, since the process started.
long cursorSets() noexcept;
// The cursor on show; null when none is.
HCURSOR cursorOnShow() noexcept;
// Moves the pointer to x, y of the screen, as a person would.
void movePointerTo(int x, int y) noexcept;

}  // namespace win_testing

OHM_PLATFORM_API_END
