// Modules: loading shared objects by their Windows module names, finding the
// modules a process has loaded, and the path each was loaded from.
//
// One rule maps a module name to its file: a last path component "X.dll"
// (any case of ".dll") is the file "libX.so" in the same folder; any other
// name is the file as named. A name with a folder is loaded from that path
// (Windows form, translated by PathMapping); a bare name is looked for in the
// folder of SetDllDirectoryW first, then along the dynamic loader's library
// search path (LD_LIBRARY_PATH, the system folders).
// A loaded module also answers to its versioned file names ("libX.so.1").
//
// An HMODULE is the dynamic loader's handle of the module; the process's
// program is GetModuleHandleW(nullptr). Every LoadLibraryW that succeeds
// takes one reference, which FreeLibrary gives back; the test seam counts
// the references held (Module_testing.h).
//
// Thread safety: all functions may be called from any thread; errors are
// left in the calling thread's last error.
#pragma once

#include <string>
#include <string_view>

#include "OhmPlatformExport.h"
#include "win/WinDef.h"

OHM_PLATFORM_API_BEGIN

// Reasons a module's entry function is called with.
inline constexpr DWORD DLL_PROCESS_DETACH = 0;
inline constexpr DWORD DLL_PROCESS_ATTACH = 1;
inline constexpr DWORD DLL_THREAD_ATTACH = 2;
inline constexpr DWORD DLL_THREAD_DETACH = 3;

// A module's entry function, exported under the name "DllMain".
using ModuleEntryFunction = BOOL (*)(HINSTANCE module, DWORD reason, LPVOID reserved);

// The file name of a module name by the one rule above ("a\\X.dll" gives "a\\libX.so").
std::u16string ModuleNameToFileName(std::u16string_view moduleName);

// Loads a module (or takes another reference to a loaded one). Null with
// ERROR_INVALID_PARAMETER for a null or empty name, ERROR_MOD_NOT_FOUND when
// no such file can be found or loaded, ERROR_BAD_EXE_FORMAT when the file is
// there but isn't a loadable module.
HMODULE LoadLibraryW(LPCWSTR moduleName);

// Makes `folder` (Windows form) the first place where LoadLibraryW looks for
// a bare module name; null or empty takes it away again. FALSE with
// ERROR_FILE_NOT_FOUND, nothing changed, for a folder on a drive that isn't mapped.
BOOL SetDllDirectoryW(LPCWSTR folder);

// Gives back one reference of LoadLibraryW; the module unloads with the
// last. FALSE with ERROR_INVALID_HANDLE for a handle LoadLibraryW didn't give.
BOOL FreeLibrary(HMODULE module);

// The loaded module of that name (by the rule above, compared ignoring case,
// folder ignored), without taking a reference; the program for null. Null
// with ERROR_MOD_NOT_FOUND when no such module is loaded.
HMODULE GetModuleHandleW(LPCWSTR moduleName);

// Copies the module's full path (Windows form) with its terminator into
// `buffer` of `size` units; the program's path for null. The length without
// terminator; when it doesn't fit, the path cut to size - 1 units, the result
// `size` and ERROR_INSUFFICIENT_BUFFER; 0 with ERROR_INVALID_HANDLE for a
// module that isn't loaded or a null buffer.
DWORD GetModuleFileNameW(HMODULE module, LPWSTR buffer, DWORD size);

// The address of an exported function or object; null with
// ERROR_PROC_NOT_FOUND when the module doesn't export the name.
void* GetProcAddress(HMODULE module, LPCSTR name);

// The exported name of a module's entry function.
inline constexpr const char* kModuleEntryName = "DllMain";

OHM_PLATFORM_API_END
