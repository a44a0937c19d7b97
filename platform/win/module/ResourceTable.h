// How a resource library carries its resources: it exports one table under
// the name "OhmResourceDirectory", an array of entries ended by an entry of
// type 0. The resource functions (Resource.h, VersionInfo.h) read it; the
// libraries of resources/ define it. Strings are entries of type RT_STRING
// keyed by their string id (not by blocks of 16 as in the platform's files),
// holding the units without a terminator.
//
// The table and the data it points at are constant for the life of the
// loaded module.
#pragma once

#include "OhmPlatformExport.h"
#include "win/WinDef.h"

OHM_PLATFORM_API_BEGIN

// Resource types, as MAKEINTRESOURCE values give them.
inline constexpr WORD RT_STRING_ID = 6;
inline constexpr WORD RT_RCDATA_ID = 10;
inline constexpr WORD RT_VERSION_ID = 16;
#define RT_STRING MAKEINTRESOURCEW(6)
#define RT_RCDATA MAKEINTRESOURCEW(10)
#define RT_VERSION MAKEINTRESOURCEW(16)
// The id of a module's version block.
inline constexpr WORD VS_VERSION_INFO = 1;

struct ResourceEntry {
  WORD type;         // RT_*_ID; 0 ends the table
  WORD id;           // string id, resource id, VS_VERSION_INFO
  const void* data;  // the bytes; for a string its units
  DWORD size;        // bytes of data
};

// The exported name of a resource library's table.
inline constexpr const char* kResourceDirectorySymbol = "OhmResourceDirectory";

// An entry for a string resource held in a literal.
template <std::size_t N>
constexpr ResourceEntry StringResource(WORD id, const char16_t (&text)[N]) {
  return ResourceEntry{RT_STRING_ID, id, text, static_cast<DWORD>((N - 1) * sizeof(char16_t))};
}

OHM_PLATFORM_API_END
