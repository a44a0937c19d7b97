// Test seam of the shell's file operation: not platform API.
#pragma once

namespace win_testing {

// The next SHFileOperationW gives `status` and touches nothing.
void failNextFileOperation(int status) noexcept;

}  // namespace win_testing
