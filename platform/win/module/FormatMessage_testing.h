// Test seam of the local heap: not platform API.
#pragma once

namespace win_testing {

// Blocks of LocalAlloc and FormatMessageW not yet given to LocalFree.
long liveLocalBlocks() noexcept;

}  // namespace win_testing
