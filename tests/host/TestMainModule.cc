// A stand-in for the suite's main module in the version tests: a module
// with nothing but a version block, file version 23.1.47.0.
#include "win/module/ResourceTable.h"
#include "win/module/VersionInfo.h"

namespace {

constexpr VersionBlock kVersion = MakeVersionBlock(23, 1, 47, 0);

}  // namespace

extern "C" __attribute__((visibility("default"))) const ResourceEntry OhmResourceDirectory[] = {
    {RT_VERSION_ID, VS_VERSION_INFO, &kVersion, sizeof(VersionBlock)},
    {0, 0, nullptr, 0},
};
