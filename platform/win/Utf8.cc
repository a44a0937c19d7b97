#include "win/Utf8.h"

#include <unicode/ustring.h>

#include <new>

namespace {

constexpr UChar32 kReplacement = 0xFFFD;

}  // namespace

std::string Utf16ToUtf8(std::u16string_view text) {
  if (text.empty()) return {};
  // Every UTF-16 unit becomes at most three UTF-8 bytes.
  std::string out(text.size() * 3, '\0');
  int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strToUTF8WithSub(out.data(), static_cast<int32_t>(out.size()), &length, text.data(),
                     static_cast<int32_t>(text.size()), kReplacement, nullptr, &status);
  if (U_FAILURE(status)) throw std::bad_alloc();
  out.resize(static_cast<std::size_t>(length));
  return out;
}

std::u16string Utf8ToUtf16(std::string_view text) {
  if (text.empty()) return {};
  // Every UTF-8 byte becomes at most one UTF-16 unit.
  std::u16string out(text.size(), u'\0');
  int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strFromUTF8WithSub(out.data(), static_cast<int32_t>(out.size()), &length, text.data(),
                       static_cast<int32_t>(text.size()), kReplacement, nullptr, &status);
  if (U_FAILURE(status)) throw std::bad_alloc();
  out.resize(static_cast<std::size_t>(length));
  return out;
}
