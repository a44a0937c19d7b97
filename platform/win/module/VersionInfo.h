// Version blocks: the version resource of a module file, and its fixed file
// information. Reading a file's block loads the file for a moment, as
// LoadLibraryW would (its initialisers run), and unloads it; a copy of a
// module already loaded in the process loads as a second module, so don't
// point these at copies of the platform's or the library's own modules.
//
// A version block starts as the platform's VS_VERSIONINFO does: a header
// (total length, value length, type 0), the key "VS_VERSION_INFO", padding to
// 32 bits and the VS_FIXEDFILEINFO value. This build's blocks carry no
// string or variable file information behind it.
//
// Thread safety: all functions may be called from any thread.
#pragma once

#include "OhmPlatformExport.h"
#include "win/WinDef.h"

OHM_PLATFORM_API_BEGIN

inline constexpr DWORD VS_FFI_SIGNATURE = 0xFEEF04BD;
inline constexpr DWORD VS_FFI_STRUCVERSION = 0x00010000;
inline constexpr DWORD VOS_NT_WINDOWS32 = 0x00040004;
inline constexpr DWORD VFT_DLL = 2;

struct VS_FIXEDFILEINFO {
  DWORD dwSignature;      // VS_FFI_SIGNATURE
  DWORD dwStrucVersion;   // VS_FFI_STRUCVERSION
  DWORD dwFileVersionMS;  // major << 16 | minor
  DWORD dwFileVersionLS;  // build << 16 | revision
  DWORD dwProductVersionMS;
  DWORD dwProductVersionLS;
  DWORD dwFileFlagsMask;
  DWORD dwFileFlags;
  DWORD dwFileOS;
  DWORD dwFileType;
  DWORD dwFileSubtype;
  DWORD dwFileDateMS;
  DWORD dwFileDateLS;
};

// The head of a version block, as laid out in a module's resources.
struct VersionBlock {
  WORD wLength;       // bytes of the whole block
  WORD wValueLength;  // bytes of the value: sizeof(VS_FIXEDFILEINFO)
  WORD wType;         // 0: binary value
  WCHAR szKey[16];    // u"VS_VERSION_INFO"
  WORD padding;
  VS_FIXEDFILEINFO value;
};

// A version block for file and product version a.b.c.d of a module.
constexpr VersionBlock MakeVersionBlock(WORD a, WORD b, WORD c, WORD d) {
  const DWORD ms = static_cast<DWORD>(a) << 16 | b;
  const DWORD ls = static_cast<DWORD>(c) << 16 | d;
  return VersionBlock{
      sizeof(VersionBlock),
      sizeof(VS_FIXEDFILEINFO),
      0,
      u"VS_VERSION_INFO",
      0,
      {VS_FFI_SIGNATURE, VS_FFI_STRUCVERSION, ms, ls, ms, ls, 0x3F, 0, VOS_NT_WINDOWS32, VFT_DLL, 0, 0, 0}};
}

// Bytes of the version block of the module file `fileName` (Windows form,
// loaded as named, no search). 0 with ERROR_FILE_NOT_FOUND when there is no
// such file, ERROR_BAD_EXE_FORMAT when it isn't a module,
// ERROR_RESOURCE_TYPE_NOT_FOUND when it has no version block. `handle` is
// set to 0 when given.
DWORD GetFileVersionInfoSizeW(LPCWSTR fileName, LPDWORD handle);

// Copies the version block into `data` of `size` bytes. FALSE with the
// errors of GetFileVersionInfoSizeW, or ERROR_INSUFFICIENT_BUFFER when
// `size` is smaller than the block (nothing is copied then).
BOOL GetFileVersionInfoW(LPCWSTR fileName, DWORD handle, DWORD size, LPVOID data);

// Points `*value` into `block` at the sub-block named `subBlock` and sets
// `*length` to its size in bytes. Only the root "\\" (the VS_FIXEDFILEINFO)
// is there; FALSE for any other name, a block that isn't a version block, or
// a null argument, with the outputs untouched.
BOOL VerQueryValueW(LPCVOID block, LPCWSTR subBlock, LPVOID* value, UINT* length);

OHM_PLATFORM_API_END
