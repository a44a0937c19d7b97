#include "ohmutils/util/OhmUtilsFolders.h"

#include <list>
#include <string>

#include "win/LastError.h"
#include "win/WinError.h"
#include "win/fs/FileFunctions.h"
#include "win/fs/PathFunctions.h"
#include "win/fs/ShellFileOperation.h"

namespace {

constexpr int kFolderTextLimit = 259;  // units; the listing pattern adds one more

// Removes the write protection of one file of `folder` and deletes it;
// failures are left to show when the folder itself is removed.
void deleteFileIn(const ZdString& folder, const WIN32_FIND_DATAW& entry) {
  if (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) return;
  char16_t path[MAX_PATH];
  if (!PathCombineW(path, folder.kwszPtr(), entry.cFileName)) return;
  SetFileAttributesW(path, FILE_ATTRIBUTE_NORMAL);
  DeleteFileW(path);
}

// `path` cut at its last backslash; the root backslash of "\\x" stays, the
// root itself gives the empty text.
CString parentOf(const CString& path) {
  const int last = path.ReverseFind(u'\\');
  if (last < 0) return CString();
  return path.Left(last == 0 && path.GetLength() > 1 ? 1 : last);
}

}  // namespace

bool OhmUtilsDeleteFolder(const ZdString& folder) {
  if (folder.isEmpty() || folder.length() >= kFolderTextLimit) return false;
  WIN32_FIND_DATAW entry;
  const HANDLE search = FindFirstFileW(folder.concat(u"*").kwszPtr(), &entry);
  if (search == INVALID_HANDLE_VALUE) return false;
  do {
    deleteFileIn(folder, entry);
  } while (FindNextFileW(search, &entry));
  FindClose(search);
  if (GetLastError() != static_cast<DWORD>(ERROR_NO_MORE_FILES)) return false;
  return RemoveDirectoryW(folder.kwszPtr()) != FALSE;
}

bool CreateDirectoryRecursively(const CString& path) {
  if (PathFileExistsW(path)) return true;
  CString missing = path;
  if (!missing.IsEmpty() && missing[missing.GetLength() - 1] == u'\\') missing = missing.Left(missing.GetLength() - 1);
  std::list<CString> toMake;
  for (; !PathFileExistsW(missing); missing = parentOf(missing)) {
    if (missing.IsEmpty()) return false;
    toMake.push_front(missing);
  }
  for (const CString& folder : toMake)
    if (!CreateDirectoryW(folder, nullptr)) return false;
  return true;
}

int RemoveDirectoryRecursively(const CString& path) {
  if (!PathFileExistsW(path)) return 1;
  std::u16string list = path.str();
  list.append(2, u'\0');  // a list of names, ended by an empty one
  SHFILEOPSTRUCTW operation{};
  operation.wFunc = FO_DELETE;
  operation.pFrom = list.c_str();
  operation.fFlags = FOF_SILENT | FOF_NOCONFIRMATION | FOF_NOCONFIRMMKDIR | FOF_NOERRORUI;
  return SHFileOperationW(&operation);
}
