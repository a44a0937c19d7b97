// Test seam of COM start-up and object creation: not platform API.
#pragma once

#include "OhmPlatformExport.h"
#include "com/HResult.h"

OHM_PLATFORM_API_BEGIN

namespace com_testing {

// The next CoCreateInstance returns `hr` and no object.
void failNextCreateInstance(HRESULT hr);
// The next OleRun returns `hr`.
void failNextOleRun(HRESULT hr);

}  // namespace com_testing

OHM_PLATFORM_API_END
