// The module's own resources: only its version block, the project's version.
#include "ohmutils/OhmUtilsExport.h"
#include "win/module/ResourceTable.h"
#include "win/module/VersionInfo.h"

namespace {

constexpr VersionBlock kModuleVersion = MakeVersionBlock(OHM_VERSION_MAJOR, OHM_VERSION_MINOR, OHM_VERSION_PATCH, 0);

}  // namespace

extern "C" OHMUTILS_EXPORT const ResourceEntry OhmResourceDirectory[] = {
    {RT_VERSION_ID, VS_VERSION_INFO, &kModuleVersion, sizeof(VersionBlock)},
    {0, 0, nullptr, 0},
};
