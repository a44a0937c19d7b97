// The version block every resource library of the project carries: the
// project's version, as the build gives it, with revision 0.
#pragma once

#include "win/module/ResourceTable.h"
#include "win/module/VersionInfo.h"

inline constexpr VersionBlock kResourceLibraryVersion =
    MakeVersionBlock(OHM_VERSION_MAJOR, OHM_VERSION_MINOR, OHM_VERSION_PATCH, 0);

// The table entry of that block.
inline constexpr ResourceEntry kVersionResource{RT_VERSION_ID, VS_VERSION_INFO, &kResourceLibraryVersion,
                                                sizeof(VersionBlock)};
