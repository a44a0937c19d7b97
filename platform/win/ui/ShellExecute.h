// ShellExecuteW: the shell's "do this with that file" request. Two forms are
// understood, both handed to the UI sink (UiSink.h), which opens the target
// with the desktop's opener:
//  - the file protocol handler: file "rundll32.exe" (any case, any folder)
//    with parameters "url.dll,FileProtocolHandler <address>"; the target is
//    the address, which the opener passes to the browser or whatever else
//    handles its scheme;
//  - the verb "open" (or none) on an existing file or folder (Windows form,
//    mapped to POSIX); the target is its POSIX path.
// Anything else reaches the sink with an empty target.
#pragma once

#include "OhmPlatformExport.h"
#include "win/WinDef.h"

OHM_PLATFORM_API_BEGIN

// Show commands.
inline constexpr int SW_HIDE = 0;
inline constexpr int SW_SHOWNORMAL = 1;
// Results of ShellExecuteW at or below 32 are errors; these are the shell's own.
inline constexpr INT_PTR SE_ERR_NOASSOC = 31;  // nothing is associated with the request

// Carries out the request through the UI sink. Its result as a module handle
// (the platform's historical type): above 32 on success; ERROR_FILE_NOT_FOUND
// when there is nothing to run the request with, SE_ERR_NOASSOC for a
// request of neither form above.
HINSTANCE ShellExecuteW(HWND owner, LPCWSTR verb, LPCWSTR file, LPCWSTR parameters, LPCWSTR directory, int show);

OHM_PLATFORM_API_END
