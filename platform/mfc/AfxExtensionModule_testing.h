// Test seam of the extension module functions: not MFC API.
#pragma once

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

namespace mfc_testing {

// The next AfxInitExtensionModule fails (FALSE, state untouched).
void failNextInitExtensionModule() noexcept;
// CDynLinkLibrary objects made and not yet deleted.
long liveDynLinkLibraries() noexcept;

}  // namespace mfc_testing

OHM_PLATFORM_API_END
