#include "win/CrtChar.h"

#include <algorithm>

std::u16string CrtUpperCopy(std::u16string_view text) {
  std::u16string upper(text);
  std::transform(upper.begin(), upper.end(), upper.begin(), CrtToUpper);
  return upper;
}

bool CrtEqualNoCase(std::u16string_view a, std::u16string_view b) noexcept {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char16_t x, char16_t y) { return CrtToUpper(x) == CrtToUpper(y); });
}
