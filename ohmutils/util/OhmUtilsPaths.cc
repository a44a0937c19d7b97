#include "ohmutils/util/OhmUtilsPaths.h"

#include "win/SplitPath.h"

void EnsureEndingBackslash(CString& path) {
  if (!path.IsEmpty() && path.ReverseFind(u'\\') != path.GetLength() - 1) path += u'\\';
}

bool OhmUtilsGetFileNameWithoutExt(const ZdString& path, ZdString& output) {
  output.setEmpty();
  char16_t drive[3], dir[256], name[256], ext[256];
  if (_wsplitpath_s(path.kwszPtr(), drive, 3, dir, 256, name, 256, ext, 256) != 0) return false;
  output.assign(name);
  return true;
}
