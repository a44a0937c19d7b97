#include "ohmutils/util/OhmUtilsPaths.h"

void EnsureEndingBackslash(CString& path) {
  if (!path.IsEmpty() && path.ReverseFind(u'\\') != path.GetLength() - 1) path += u'\\';
}
