// The calling thread's last error code, as the platform's functions leave it.
// Every file, module and resource stand-in that fails sets it; the codes are
// those of WinError.h.
#pragma once

#include "OhmPlatformExport.h"
#include "win/WinDef.h"

OHM_PLATFORM_API_BEGIN

DWORD GetLastError() noexcept;
void SetLastError(DWORD code) noexcept;

OHM_PLATFORM_API_END
