// Test seam of the registry: not platform API.
#pragma once

#include <string>

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

namespace win_testing {

// Points the registry at the store file `posixPath` (made when first used);
// empty goes back to the default place. REQUIRES: no key handle is open.
void useRegistryStore(const std::string& posixPath);

// Key handles opened and not yet closed, in this process.
long openRegistryKeys() noexcept;

}  // namespace win_testing

OHM_PLATFORM_API_END
