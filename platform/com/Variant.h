// VARIANT and _variant_t: a value of one of a few types, tagged by `vt`.
// This build keeps the types the library exchanges with the XML DOM: empty,
// null, 32-bit integers (VT_I4, VT_INT) and strings (VT_BSTR). The string is
// held as a std::u16string, so copying a variant copies its text and nothing
// needs freeing; only the field that `vt` names is meaningful.
//
// VariantChangeType converts between those types with the platform's rules:
// a null variant converts to nothing (DISP_E_TYPEMISMATCH), an empty one to
// "" or 0, numbers to decimal text and decimal text to numbers.
//
// Thread safety: plain values.
#pragma once

#include <string>

#include "OhmPlatformExport.h"
#include "com/HResult.h"

OHM_PLATFORM_API_BEGIN

using VARTYPE = unsigned short;
inline constexpr VARTYPE VT_EMPTY = 0;  // no value
inline constexpr VARTYPE VT_NULL = 1;   // the SQL-style null: a value that is known to be missing
inline constexpr VARTYPE VT_I4 = 3;     // lVal
inline constexpr VARTYPE VT_BSTR = 8;   // bstrVal
inline constexpr VARTYPE VT_INT = 22;   // intVal

using VARIANT_BOOL = short;
inline constexpr VARIANT_BOOL VARIANT_TRUE = -1;
inline constexpr VARIANT_BOOL VARIANT_FALSE = 0;

struct VARIANT {
  VARTYPE vt = VT_EMPTY;
  LONG lVal = 0;
  INT intVal = 0;
  std::u16string bstrVal;
};
using VARIANTARG = VARIANT;

// Converts `source` to type `vt` into `dest` (which may be `source`). S_OK;
// DISP_E_TYPEMISMATCH for a null variant or text that isn't a number;
// DISP_E_OVERFLOW for a number beyond 32 bits; DISP_E_BADVARTYPE for a type
// this build doesn't hold; E_POINTER for a null argument. `dest` is left as
// it was on failure. `flags` are accepted and ignored.
HRESULT VariantChangeType(VARIANTARG* dest, const VARIANTARG* source, unsigned short flags, VARTYPE vt);

class _variant_t : public VARIANT {
 public:
  _variant_t() = default;
  // A string variant (null gives ""). Raises _com_error with E_OUTOFMEMORY
  // when there is no memory for the text, as the platform's does.
  _variant_t(const char16_t* text);
  // An integer variant; `type` is VT_I4 or VT_INT (anything else gives VT_I4).
  _variant_t(LONG value, VARTYPE type = VT_I4) noexcept;
  // A copy of a plain VARIANT.
  _variant_t(const VARIANT& other) : VARIANT(other) {}
};

OHM_PLATFORM_API_END
