// Writing a database as a DXF drawing file: in progress.
#include "zd/ZdDbDatabase.h"

Zeda::ErrorStatus ZdDbDatabase::dxfOut(const char16_t*, const std::u16string&) const { return Zeda::eNotImplementedYet; }
