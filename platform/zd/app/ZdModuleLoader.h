// The host's module loader: how the host brings a plug-in module into the
// session and takes it out again. Loading calls the module's entry function
// (kModuleEntryName of win/module/Module.h) with DLL_PROCESS_ATTACH; a module whose
// attach fails gets DLL_PROCESS_DETACH at once, as on the platform, and is
// unloaded. Unloading calls the entry with
// DLL_PROCESS_DETACH before the module is freed.
//
// The loader holds one module reference per successful load.
//
// Thread safety: the host's main thread only.
#pragma once

#include "OhmPlatformExport.h"
#include "win/WinDef.h"

OHM_PLATFORM_API_BEGIN

// Loads the module `path` (Windows form; "X.dll" is the file libX.so, see
// win/module/Module.h) and attaches it; the module, or null when it can't be loaded
// (GetLastError tells why), has no entry (ERROR_PROC_NOT_FOUND) or its attach
// fails (ERROR_DLL_INIT_FAILED).
HMODULE zdLoadModule(const char16_t* path);

// Detaches and unloads a module of zdLoadModule; false (nothing done) for a
// module the loader doesn't hold.
bool zdUnloadModule(HMODULE module);

OHM_PLATFORM_API_END
