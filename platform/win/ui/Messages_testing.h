// Test seam of the message queue: tests take messages out as the host's loop would.
#pragma once

#include "OhmPlatformExport.h"
#include "win/ui/Messages.h"

OHM_PLATFORM_API_BEGIN

namespace win_testing {

// PeekMessageW.
BOOL peekMessage(LPMSG msg, HWND window, UINT first, UINT last, UINT remove);

}  // namespace win_testing

OHM_PLATFORM_API_END
