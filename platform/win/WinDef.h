// The Windows spellings of the basic types, over the fixed-width types of this
// build. Library text is UTF-16: a WCHAR is one 16-bit unit, and a "wide"
// pointer of the library's interface is a const char16_t*.
//
// Sizes follow the 64-bit Windows data model (LONG and DWORD are 32 bits), so
// that numbers stored by the library (registry values, status codes) keep the
// widths their callers expect.
#pragma once

#include <cstddef>
#include <cstdint>

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

using WCHAR = char16_t;
using TCHAR = WCHAR;
using LPWSTR = WCHAR*;
using LPCWSTR = const WCHAR*;
using LPTSTR = LPWSTR;
using LPCTSTR = LPCWSTR;
using LPSTR = char*;
using LPCSTR = const char*;

using BOOL = int;
using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using UINT = std::uint32_t;
using INT = std::int32_t;
using LONGLONG = std::int64_t;
using ULONGLONG = std::uint64_t;
using DWORD_PTR = std::uintptr_t;
using INT_PTR = std::intptr_t;
using UINT_PTR = std::uintptr_t;
using LONG_PTR = std::intptr_t;
using WPARAM = UINT_PTR;
using LPARAM = LONG_PTR;
using LRESULT = LONG_PTR;
using LPVOID = void*;
using LPCVOID = const void*;
using LPBYTE = BYTE*;
using LPDWORD = DWORD*;
using PLONG = LONG*;

// Opaque handles: distinct pointer types, as with STRICT on the platform.
using HANDLE = void*;
struct HWND__;
using HWND = HWND__*;
struct HINSTANCE__;
using HINSTANCE = HINSTANCE__*;
using HMODULE = HINSTANCE;
struct HKEY__;
using HKEY = HKEY__*;
using PHKEY = HKEY*;
struct HCURSOR__;
using HCURSOR = HCURSOR__*;
struct HRSRC__;
using HRSRC = HRSRC__*;
using HGLOBAL = void*;
using HLOCAL = void*;

// Macros, as on the platform; other headers (ICU's) may define them the same way.
#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif

// Longest path the classic path functions accept, terminator included.
inline constexpr std::size_t MAX_PATH = 260;

struct POINT {
  LONG x;
  LONG y;
};
using LPPOINT = POINT*;

struct FILETIME {
  DWORD dwLowDateTime;
  DWORD dwHighDateTime;
};

#define MAKEINTRESOURCEW(i) (reinterpret_cast<LPWSTR>(static_cast<UINT_PTR>(static_cast<WORD>(i))))
#define IS_INTRESOURCE(r) ((reinterpret_cast<UINT_PTR>(r) >> 16) == 0)
#define LOWORD(l) (static_cast<WORD>(static_cast<DWORD_PTR>(l) & 0xffff))
#define HIWORD(l) (static_cast<WORD>((static_cast<DWORD_PTR>(l) >> 16) & 0xffff))
#define MAKELPARAM(lo, hi) \
  (static_cast<LPARAM>(static_cast<DWORD>((static_cast<WORD>(lo)) | (static_cast<DWORD>(static_cast<WORD>(hi)) << 16))))

OHM_PLATFORM_API_END
