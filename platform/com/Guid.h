// GUID: the 128-bit identifier of COM classes (CLSID) and interfaces (IID).
// A plain value, compared field by field.
#pragma once

#include <cstring>

#include "OhmPlatformExport.h"
#include "win/WinDef.h"

OHM_PLATFORM_API_BEGIN

struct GUID {
  DWORD Data1;
  WORD Data2;
  WORD Data3;
  BYTE Data4[8];
};

using IID = GUID;
using CLSID = GUID;
using REFIID = const IID&;
using REFCLSID = const CLSID&;
using REFGUID = const GUID&;

inline bool IsEqualGUID(REFGUID a, REFGUID b) noexcept { return std::memcmp(&a, &b, sizeof(GUID)) == 0; }
inline bool operator==(REFGUID a, REFGUID b) noexcept { return IsEqualGUID(a, b); }

OHM_PLATFORM_API_END
