#include "ohmutils/util/OhmUtilsPaths.h"

#include "win/CrtString.h"
#include "win/fs/PathFunctions.h"
#include "win/fs/SplitPath.h"

bool OhmUtilsGetFileNameWithExt(const ZdString& path, ZdString& output) {
  output.setEmpty();
  char16_t buffer[MAX_PATH];
  if (wcscpy_s(buffer, MAX_PATH, path.kwszPtr()) != 0) return false;
  PathStripPathW(buffer);
  output.assign(buffer);
  return true;
}

bool OhmUtilsGetFileNameWithoutExt(const ZdString& path, ZdString& output) {
  output.setEmpty();
  char16_t drive[3], dir[256], name[256], ext[256];
  if (_wsplitpath_s(path.kwszPtr(), drive, 3, dir, 256, name, 256, ext, 256) != 0) return false;
  output.assign(name);
  return true;
}

bool OhmUtilsGetFolderPath(const ZdString& path, ZdString& output) {
  output.setEmpty();
  char16_t buffer[MAX_PATH];
  if (wcscpy_s(buffer, MAX_PATH, path.kwszPtr()) != 0 || !PathRemoveFileSpecW(buffer)) return false;
  output.assign(buffer);
  return true;
}

void EnsureEndingBackslash(CString& path) {
  if (!path.IsEmpty() && path.ReverseFind(u'\\') != path.GetLength() - 1) path += u'\\';
}

void EnsureExtension(CString& path, const char16_t* extension, bool replace) {
  if (path.IsEmpty() || !extension || !*extension) return;
  const int dot = path.ReverseFind(u'.');
  const bool hasExtension = dot >= 0 && path.Mid(dot + 1).FindOneOf(u"\\/") < 0;
  if (!hasExtension) {
    path += u'.';
    path += extension;
  } else if (replace) {
    path = path.Left(dot + 1) + extension;
  }
}
