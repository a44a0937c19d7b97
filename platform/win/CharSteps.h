// The platform's character steps over terminated UTF-16 text. One step
// passes one character: a single unit, or a surrogate pair (a high surrogate
// directly followed by a low one). A lone surrogate is a character of its own.
// Nothing else (combining marks, joiners) is looked at.
//
// The results point into the caller's text; they live as long as it does.
#pragma once

#include "OhmPlatformExport.h"
#include "win/WinDef.h"

OHM_PLATFORM_API_BEGIN

// The character after the one at `text`; `text` itself when it is the
// terminator; null for a null text.
LPWSTR CharNextW(LPCWSTR text) noexcept;

// The character before `current`, never before `start`; `start` when
// `current` is `start`; null when either pointer is null.
LPWSTR CharPrevW(LPCWSTR start, LPCWSTR current) noexcept;

OHM_PLATFORM_API_END
