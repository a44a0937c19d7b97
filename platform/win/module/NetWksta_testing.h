// Test seam of the workstation query: not platform API.
#pragma once

#include "OhmPlatformExport.h"
#include "win/module/NetWksta.h"

OHM_PLATFORM_API_BEGIN

namespace win_testing {

// NetWkstaGetInfo fails with `status` until called with NERR_Success.
void failNetWkstaGetInfo(NET_API_STATUS status) noexcept;
// NetWkstaGetInfo reports this version instead of the kernel's; clearWorkstationVersion goes back.
void setWorkstationVersion(DWORD major, DWORD minor) noexcept;
void clearWorkstationVersion() noexcept;
// Records of NetWkstaGetInfo not yet freed.
long liveNetApiBuffers() noexcept;
// How often NetWkstaGetInfo was called since the process started.
long netWkstaGetInfoCalls() noexcept;

}  // namespace win_testing

OHM_PLATFORM_API_END
