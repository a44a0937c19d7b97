// Test seam of the cursor functions: not platform API.
#pragma once

namespace win_testing {

// LoadCursorW calls that gave a cursor, since the process started.
long cursorLoads() noexcept;
// SetCursor calls that put a cursor on show, since the process started.
long cursorSets() noexcept;

}  // namespace win_testing
