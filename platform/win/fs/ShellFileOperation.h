// The shell's file operation, as far as the library uses it: deleting files
// and whole folder trees. Paths are in Windows form, translated by
// WindowsPathToPosix; a path on a drive that isn't mapped counts as missing.
// There is no recycle bin here: with or without FOF_ALLOWUNDO a delete is
// final. No user interface is ever shown, whatever the flags say.
#pragma once

#include "OhmPlatformExport.h"
#include "win/WinDef.h"

OHM_PLATFORM_API_BEGIN

using FILEOP_FLAGS = WORD;

inline constexpr UINT FO_MOVE = 1;
inline constexpr UINT FO_COPY = 2;
inline constexpr UINT FO_DELETE = 3;  // the one operation carried out here
inline constexpr UINT FO_RENAME = 4;

inline constexpr FILEOP_FLAGS FOF_SILENT = 0x0004;          // no progress dialog
inline constexpr FILEOP_FLAGS FOF_NOCONFIRMATION = 0x0010;  // answer "yes to all"
inline constexpr FILEOP_FLAGS FOF_ALLOWUNDO = 0x0040;       // to the recycle bin (final here)
inline constexpr FILEOP_FLAGS FOF_NOCONFIRMMKDIR = 0x0200;  // make folders without asking
inline constexpr FILEOP_FLAGS FOF_NOERRORUI = 0x0400;       // no error dialog

// Results besides 0 (done) and the Windows error codes.
inline constexpr int DE_ACCESSDENIEDSRC = 0x78;  // an entry could not be removed
inline constexpr int DE_INVALIDFILES = 0x7C;     // empty or malformed source list

struct SHFILEOPSTRUCTW {
  HWND hwnd;      // owner of dialogs; none are shown
  UINT wFunc;     // FO_DELETE
  LPCWSTR pFrom;  // names, each terminated, the list ended by one more terminator
  LPCWSTR pTo;    // not used by a delete
  FILEOP_FLAGS fFlags;
  BOOL fAnyOperationsAborted;  // set to FALSE
  LPVOID hNameMappings;        // not used
  LPCWSTR lpszProgressTitle;   // not used
};

// Carries out the operation on every name of pFrom: a file is deleted, a
// folder with everything in it, read-only entries included. 0 when all went;
// ERROR_FILE_NOT_FOUND for a name that isn't there (the names before it are
// gone); DE_ACCESSDENIEDSRC when the file system refused; DE_INVALIDFILES for
// an empty list; ERROR_INVALID_PARAMETER for a null operation or an
// operation other than FO_DELETE.
int SHFileOperationW(SHFILEOPSTRUCTW* operation);

OHM_PLATFORM_API_END
