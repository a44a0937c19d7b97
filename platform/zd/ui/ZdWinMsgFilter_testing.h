// Test seam of the host's message filters and main loop: not host API.
#pragma once

#include <vector>

#include "OhmPlatformExport.h"
#include "win/ui/Messages.h"

OHM_PLATFORM_API_BEGIN

namespace zd_testing {

// The messages that reached `window` through the main loop since the last
// resetMessages, in order.
std::vector<MSG> deliveredMessages(HWND window);
// True while a message is queued, for any window.
bool hasQueuedMessages();
// Empties the queue and forgets the delivered messages; filters stay.
void resetMessages();
// The next zdedRegisterFilterWinMsg gives false and puts nothing in place.
void failNextRegisterFilter() noexcept;
// Filters in place.
std::size_t registeredFilterCount() noexcept;

}  // namespace zd_testing

OHM_PLATFORM_API_END
