// The platform's file and folder functions over the Linux file system:
// listing a folder, file attributes, deleting files, making and removing
// folders. Paths are in Windows form and are translated by WindowsPathToPosix
// when the call touches the file system; a path on a drive that isn't mapped
// fails as a path that doesn't exist. Every failure sets the thread's last
// error (GetLastError); success leaves it as it was.
//
// Attributes on Linux: a folder is FILE_ATTRIBUTE_DIRECTORY; a file without
// the owner's write permission is FILE_ATTRIBUTE_READONLY, and, as on the
// platform, DeleteFileW refuses it until its attributes are set back to
// normal. Other files are FILE_ATTRIBUTE_NORMAL.
//
// A search handle belongs to its caller until FindClose; the stand-in counts
// live ones (FileFunctions_testing.h).
#pragma once

#include "OhmPlatformExport.h"
#include "win/WinDef.h"

OHM_PLATFORM_API_BEGIN

inline constexpr DWORD FILE_ATTRIBUTE_READONLY = 0x01;
inline constexpr DWORD FILE_ATTRIBUTE_DIRECTORY = 0x10;
inline constexpr DWORD FILE_ATTRIBUTE_NORMAL = 0x80;  // no other attribute; given alone
inline constexpr DWORD INVALID_FILE_ATTRIBUTES = 0xFFFFFFFF;

inline const HANDLE INVALID_HANDLE_VALUE = reinterpret_cast<HANDLE>(static_cast<LONG_PTR>(-1));

struct SECURITY_ATTRIBUTES;  // accepted and not used: the default security applies

struct WIN32_FIND_DATAW {
  DWORD dwFileAttributes;
  FILETIME ftCreationTime;  // the status change time on Linux
  FILETIME ftLastAccessTime;
  FILETIME ftLastWriteTime;
  DWORD nFileSizeHigh;
  DWORD nFileSizeLow;
  DWORD dwReserved0;
  DWORD dwReserved1;
  WCHAR cFileName[MAX_PATH];
  WCHAR cAlternateFileName[14];  // always empty: there are no short names
};

// Starts listing the folder of `pattern` and gives the first entry whose name
// matches its last component ('*' any run, '?' one unit, ignoring case; "*.*"
// matches every name). The folder's own "." and ".." come first, then the
// names in sorted order. A search handle; INVALID_HANDLE_VALUE when nothing
// matches (ERROR_FILE_NOT_FOUND) or the folder isn't there
// (ERROR_PATH_NOT_FOUND).
HANDLE FindFirstFileW(LPCWSTR pattern, WIN32_FIND_DATAW* data);

// The next matching entry. FALSE past the last (ERROR_NO_MORE_FILES) or for
// a handle that isn't a search (ERROR_INVALID_HANDLE).
BOOL FindNextFileW(HANDLE search, WIN32_FIND_DATAW* data);

// Ends a search. FALSE for a handle that isn't a search (ERROR_INVALID_HANDLE).
BOOL FindClose(HANDLE search);

// Sets FILE_ATTRIBUTE_READONLY of a file on or off (every other attribute,
// and any attribute of a folder, is accepted and ignored).
// FALSE when the path isn't there (ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND).
BOOL SetFileAttributesW(LPCWSTR path, DWORD attributes);

// Deletes a file. FALSE when it isn't there, when it is a folder or
// read-only (ERROR_ACCESS_DENIED).
BOOL DeleteFileW(LPCWSTR path);

// Makes one folder. FALSE when it exists (ERROR_ALREADY_EXISTS) or its parent
// doesn't (ERROR_PATH_NOT_FOUND).
BOOL CreateDirectoryW(LPCWSTR path, SECURITY_ATTRIBUTES* security);

// Removes an empty folder. FALSE when it isn't there, isn't empty
// (ERROR_DIR_NOT_EMPTY) or isn't a folder (ERROR_DIRECTORY).
BOOL RemoveDirectoryW(LPCWSTR path);

// Copies the temporary folder (Windows form, ending in a backslash) with its
// terminator into `buffer` of `size` units: the folder of TMPDIR, or /tmp
// when that is unset or empty. Whether the folder exists isn't checked. The
// units copied without the terminator; when it doesn't fit, the units needed
// with the terminator, and the buffer is untouched.
DWORD GetTempPathW(DWORD size, LPWSTR buffer);

OHM_PLATFORM_API_END
