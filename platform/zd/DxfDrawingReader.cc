// Reading DXF drawing files into a database: in progress.
#include "zd/ZdDbDatabase.h"

Zeda::ErrorStatus ZdDbDatabase::readDwgFile(const char16_t*, int, bool, const char16_t*) {
  return Zeda::eNotImplementedYet;
}
