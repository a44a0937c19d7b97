// Test seam of the variants: not platform API.
#pragma once

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

namespace com_testing {

// The next string _variant_t finds no memory for its text (and raises _com_error with E_OUTOFMEMORY).
void failNextStringVariant();

}  // namespace com_testing

OHM_PLATFORM_API_END
