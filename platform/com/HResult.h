// HRESULT: the status of a COM call. Negative (top bit set) is a failure;
// zero and positive values are successes, S_FALSE being the "worked, but the
// answer is no" success. These are the codes that the COM and XML DOM
// stand-ins give and the library looks at.
#pragma once

#include "OhmPlatformExport.h"
#include "win/WinDef.h"

OHM_PLATFORM_API_BEGIN

using HRESULT = LONG;

constexpr bool SUCCEEDED(HRESULT hr) noexcept { return hr >= 0; }
constexpr bool FAILED(HRESULT hr) noexcept { return hr < 0; }

// A Win32 error code in the HRESULT form (facility 7); 0 and negative values pass unchanged.
constexpr HRESULT HRESULT_FROM_WIN32(LONG code) noexcept {
  return code <= 0 ? code : static_cast<HRESULT>((static_cast<DWORD>(code) & 0xFFFFu) | 0x80070000u);
}

constexpr HRESULT MakeFailure(DWORD code) noexcept { return static_cast<HRESULT>(code); }

inline constexpr HRESULT S_OK = 0;                                       // success
inline constexpr HRESULT S_FALSE = 1;                                    // success, answer "no" / nothing found
inline constexpr HRESULT E_NOTIMPL = MakeFailure(0x80004001);            // not offered by this stand-in
inline constexpr HRESULT E_NOINTERFACE = MakeFailure(0x80004002);        // the object has no such interface
inline constexpr HRESULT E_POINTER = MakeFailure(0x80004003);            // a null pointer where one is needed
inline constexpr HRESULT E_FAIL = MakeFailure(0x80004005);               // unspecified failure
inline constexpr HRESULT E_UNEXPECTED = MakeFailure(0x8000FFFF);         // a call out of order
inline constexpr HRESULT E_ACCESSDENIED = MakeFailure(0x80070005);       // no right to the file or object
inline constexpr HRESULT E_OUTOFMEMORY = MakeFailure(0x8007000E);        // no memory for a string or object
inline constexpr HRESULT E_INVALIDARG = MakeFailure(0x80070057);         // an argument of the wrong kind
inline constexpr HRESULT RPC_E_CHANGED_MODE = MakeFailure(0x80010106);   // the thread started COM in another model
inline constexpr HRESULT DISP_E_TYPEMISMATCH = MakeFailure(0x80020005);  // a variant that can't be converted
inline constexpr HRESULT DISP_E_BADVARTYPE = MakeFailure(0x80020008);    // a variant type not known
inline constexpr HRESULT DISP_E_OVERFLOW = MakeFailure(0x8002000A);      // a number out of the target's range
inline constexpr HRESULT CLASS_E_NOAGGREGATION =
    MakeFailure(0x80040110);  // an outer object for a class that can't be aggregated
inline constexpr HRESULT REGDB_E_CLASSNOTREG = MakeFailure(0x80040154);  // no class of that id (in that context)
inline constexpr HRESULT CO_E_NOTINITIALIZED = MakeFailure(0x800401F0);  // the thread has not started COM

OHM_PLATFORM_API_END
