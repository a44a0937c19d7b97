// Test seam of the value lists: not host API. Counts live nodes and strings,
// and makes allocation fail on demand, so a test can reach every failure path
// and see that everything built was released.
#pragma once

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

namespace zd_testing {

// Nodes made by zdutNewRb/zdutBuildList and not yet released by zdutRelRb.
long liveValueNodes() noexcept;
// Strings made by zdutNewString (or inside zdutBuildList) not yet released.
long liveValueStrings() noexcept;

// zdutNewRb, zdutNewString and zdutBuildList fail (give null) after `okCalls`
// more successful node or string allocations; -1 (the default) never fails.
void failValueAllocationAfter(long okCalls) noexcept;

}  // namespace zd_testing

OHM_PLATFORM_API_END
