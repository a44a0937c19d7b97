// The platform's error codes, as GetLastError and the registry functions give them.
#pragma once

#include "OhmPlatformExport.h"
#include "win/WinDef.h"

OHM_PLATFORM_API_BEGIN

inline constexpr LONG ERROR_SUCCESS = 0;
inline constexpr LONG ERROR_INVALID_FUNCTION = 1;
inline constexpr LONG ERROR_FILE_NOT_FOUND = 2;  // a file or registry key/value that isn't there
inline constexpr LONG ERROR_PATH_NOT_FOUND = 3;  // a folder on the way isn't there
inline constexpr LONG ERROR_ACCESS_DENIED = 5;   // no right to do it (read-only key, file)
inline constexpr LONG ERROR_INVALID_HANDLE = 6;
inline constexpr LONG ERROR_NOT_ENOUGH_MEMORY = 8;
inline constexpr LONG ERROR_INVALID_DATA = 13;
inline constexpr LONG ERROR_NO_MORE_FILES = 18;  // a file search has no further match
inline constexpr LONG ERROR_SHARING_VIOLATION = 32;
inline constexpr LONG ERROR_FILE_EXISTS = 80;
inline constexpr LONG ERROR_INVALID_PARAMETER = 87;
inline constexpr LONG ERROR_INSUFFICIENT_BUFFER = 122;
inline constexpr LONG ERROR_INVALID_NAME = 123;
inline constexpr LONG ERROR_MOD_NOT_FOUND = 126;  // a module (shared object) that can't be loaded
inline constexpr LONG ERROR_PROC_NOT_FOUND = 127;
inline constexpr LONG ERROR_DIR_NOT_EMPTY = 145;
inline constexpr LONG ERROR_BAD_PATHNAME = 161;  // a registry path that starts with a backslash
inline constexpr LONG ERROR_ALREADY_EXISTS = 183;
inline constexpr LONG ERROR_FILENAME_EXCED_RANGE = 206;
inline constexpr LONG ERROR_DIRECTORY = 267;      // a folder was expected, a file is there
inline constexpr LONG ERROR_MORE_DATA = 234;      // the caller's buffer is too small
inline constexpr LONG ERROR_NO_MORE_ITEMS = 259;  // an enumeration index past the end
inline constexpr LONG ERROR_RESOURCE_DATA_NOT_FOUND = 1812;
inline constexpr LONG ERROR_RESOURCE_TYPE_NOT_FOUND = 1813;
inline constexpr LONG ERROR_RESOURCE_NAME_NOT_FOUND = 1814;
inline constexpr LONG ERROR_INVALID_FLAGS = 1004;  // flags that the call doesn't take, or not together
inline constexpr LONG ERROR_BADDB = 1009;          // the registry store is not a readable database
inline constexpr LONG ERROR_CANTOPEN = 1011;
inline constexpr LONG ERROR_CANTREAD = 1012;
inline constexpr LONG ERROR_CANTWRITE = 1013;
inline constexpr LONG ERROR_KEY_DELETED = 1018;
// Modules, messages and the workstation query.
inline constexpr LONG ERROR_BAD_NETPATH = 53;        // a remote machine that can't be reached
inline constexpr LONG ERROR_INVALID_LEVEL = 124;     // an information level the call doesn't know
inline constexpr LONG ERROR_BAD_EXE_FORMAT = 193;    // a file that isn't a loadable module
inline constexpr LONG ERROR_MR_MID_NOT_FOUND = 317;  // no message text for that code
inline constexpr LONG ERROR_RESOURCE_LANG_NOT_FOUND = 1815;
inline constexpr LONG ERROR_DLL_INIT_FAILED = 1114;  // a module's entry refused the attach
// Windows, messages and cursors.
inline constexpr LONG ERROR_INVALID_WINDOW_HANDLE = 1400;  // no window of that handle (or it was destroyed)
inline constexpr LONG ERROR_INVALID_CURSOR_HANDLE = 1402;  // no cursor of that handle

OHM_PLATFORM_API_END
