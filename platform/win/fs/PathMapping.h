// Where Windows-form paths meet the Linux file system. Inside the library a
// path is in Windows form: the POSIX path written with backslashes
// (\home\me\a.dxf); forward slashes are accepted too. A drive prefix "X:" is
// looked up in the drive table: Z: is "/" unless changed, and the environment
// variable OHM_DRIVES adds or replaces entries ("C=/srv/c;D=/mnt/d"). Letters
// compare ignoring case. File stand-ins translate at the moment they touch
// the file system, and only here.
//
// Thread safety: the drive table is read once, at first use; after that all
// functions may be called from any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

// The POSIX path (UTF-8) of a Windows-form path; nullopt for a drive that
// the table does not map, or a UNC path (\\server\share), which has no place here.
std::optional<std::string> WindowsPathToPosix(std::u16string_view path);

// The Windows form of a POSIX path: its separators become backslashes; no drive.
std::u16string PosixPathToWindows(std::string_view path);

OHM_PLATFORM_API_END
