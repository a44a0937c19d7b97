// The module-wide state that other parts of the library read.
#pragma once

#include "win/WinDef.h"

namespace ohm_internal {

// The file name the module goes by, and its language resource library.
inline constexpr const char16_t* kModuleFileName = u"OhmUtils.dll";
inline constexpr const char16_t* kLanguageResourceLibrary = u"OhmUtilsRes.dll";
inline constexpr const char16_t* kAuditResourceLibrary = u"OhmAuditRes.dll";
inline constexpr const char16_t* kCannedDatabaseResourceLibrary = u"OHM_MBRES.dll";

// The language resource library loaded at attach; null before attach,
// after detach, or when attach failed.
HINSTANCE ResourceLibrary() noexcept;

}  // namespace ohm_internal
