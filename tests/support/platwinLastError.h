// Checks a failing call of the platform stand-ins: it gives its failure value
// (0, FALSE or null) and leaves the expected last error. The last error is
// cleared before the call, so a code left by an earlier call can't pass.
#pragma once

#include <gtest/gtest.h>

#include "win/LastError.h"

template <class Call, class Code>
::testing::AssertionResult FailsWith(Call call, Code error) {
  SetLastError(0);
  const auto result = call();
  const DWORD last = GetLastError();
  if (result == decltype(result){} && last == static_cast<DWORD>(error)) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "gave " << result << " with last error " << last << ", expected "
                                       << static_cast<DWORD>(error);
}
