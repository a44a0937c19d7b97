#include "com/Variant.h"

#include <atomic>
#include <charconv>
#include <new>

#include "com/ComError.h"
#include "com/Variant_testing.h"
#include "win/Utf8.h"

namespace {

std::atomic<bool> gFailNextString{false};

bool isIntegerType(VARTYPE vt) { return vt == VT_I4 || vt == VT_INT; }
bool isHeldType(VARTYPE vt) { return vt == VT_EMPTY || vt == VT_NULL || vt == VT_BSTR || isIntegerType(vt); }

LONG integerOf(const VARIANT& v) { return v.vt == VT_INT ? v.intVal : v.lVal; }

// Decimal text with optional blanks around it, as the platform's conversion takes it.
HRESULT parseInteger(const std::u16string& text, LONG* value) {
  std::string narrow = Utf16ToUtf8(text);
  std::size_t first = narrow.find_first_not_of(" \t");
  std::size_t last = narrow.find_last_not_of(" \t");
  if (first == std::string::npos) return DISP_E_TYPEMISMATCH;
  const char* begin = narrow.data() + first;
  const char* end = narrow.data() + last + 1;
  if (*begin == '+') ++begin;
  auto [stop, error] = std::from_chars(begin, end, *value);
  if (error == std::errc::result_out_of_range) return DISP_E_OVERFLOW;
  if (error != std::errc() || stop != end) return DISP_E_TYPEMISMATCH;
  return S_OK;
}

VARIANT withInteger(LONG value, VARTYPE vt) {
  VARIANT result;
  result.vt = vt;
  (vt == VT_INT ? result.intVal : result.lVal) = value;
  return result;
}

HRESULT toText(const VARIANT& source, VARIANT* result) {
  result->vt = VT_BSTR;
  if (source.vt == VT_BSTR) result->bstrVal = source.bstrVal;
  if (isIntegerType(source.vt)) result->bstrVal = Utf8ToUtf16(std::to_string(integerOf(source)));
  return S_OK;
}

HRESULT toInteger(const VARIANT& source, VARTYPE vt, VARIANT* result) {
  LONG value = 0;
  if (source.vt == VT_BSTR) {
    if (HRESULT hr = parseInteger(source.bstrVal, &value); FAILED(hr)) return hr;
  } else if (isIntegerType(source.vt)) {
    value = integerOf(source);
  }
  *result = withInteger(value, vt);
  return S_OK;
}

}  // namespace

HRESULT VariantChangeType(VARIANTARG* dest, const VARIANTARG* source, unsigned short /*flags*/, VARTYPE vt) {
  if (!dest || !source) return E_POINTER;
  if (!isHeldType(vt) || !isHeldType(source->vt)) return DISP_E_BADVARTYPE;
  if (source->vt == vt) {
    *dest = *source;
    return S_OK;
  }
  if (source->vt == VT_NULL || vt == VT_NULL) return DISP_E_TYPEMISMATCH;
  VARIANT result;
  HRESULT hr = vt == VT_EMPTY ? S_OK : vt == VT_BSTR ? toText(*source, &result) : toInteger(*source, vt, &result);
  if (SUCCEEDED(hr)) *dest = std::move(result);
  return hr;
}

_variant_t::_variant_t(const char16_t* text) {
  vt = VT_BSTR;
  try {
    if (gFailNextString.exchange(false)) throw std::bad_alloc();
    if (text) bstrVal = text;
  } catch (const std::bad_alloc&) {
    // The platform's string variant reports a failed allocation this way.
    throw _com_error(E_OUTOFMEMORY);
  }
}

_variant_t::_variant_t(LONG value, VARTYPE type) noexcept
    : VARIANT(withInteger(value, type == VT_INT ? VT_INT : VT_I4)) {}

void com_testing::failNextStringVariant() { gFailNextString = true; }
