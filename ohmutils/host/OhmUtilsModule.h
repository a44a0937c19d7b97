// The module entry of libOhmUtils: what the host's module loader calls when
// it brings the library into the session and takes it out. Attach loads the
// language resource library from beside the module (or the library search
// path) and fails without it, sets the module up as an MFC extension module
// and makes its three Lisp-callable names known; detach ends the extension
// module and frees the resource library. A program that links the library
// directly calls the entry itself, with attach at its start and detach at
// its end.
//
// Attach and detach run once each, on the loading thread (under the loader's
// lock on the platform); nothing else writes the module's state.
#pragma once

#include "ohmutils/OhmUtilsExport.h"
#include "win/WinDef.h"

// The entry: reason DLL_PROCESS_ATTACH or DLL_PROCESS_DETACH (win/module/Module.h).
// FALSE when attach fails (no resource library, or the extension module
// can't be set up); TRUE otherwise, and always for detach and the thread
// notifications.
extern "C" OHMUTILS_EXPORT BOOL DllMain(HINSTANCE module, DWORD reason, LPVOID reserved);
