// Test seam of COM start-up and object creation: not platform API.
#pragma once

#include "com/HResult.h"

namespace com_testing {

// The next CoCreateInstance returns `hr` and no object.
void failNextCreateInstance(HRESULT hr);
// The next OleRun returns `hr`.
void failNextOleRun(HRESULT hr);

}  // namespace com_testing
