// Test seam of the document manager: not host API.
#pragma once

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

namespace zd_testing {

// Iterators made by newZdApDocumentIterator and not yet deleted.
long liveDocumentIterators() noexcept;
// The next newZdApDocumentIterator gives null.
void failNextDocumentIterator() noexcept;

}  // namespace zd_testing

OHM_PLATFORM_API_END
