#include "win/CrtChar.h"

#include <algorithm>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace {

#if defined(__SSE2__)
// Eight units at a time: a-z lose 0x20, everything else stays. Unsigned
// range test via the sign flip: 'a' <= u <= 'z' as signed after xor 0x8000.
inline __m128i upperEight(__m128i units) {
  const __m128i flip = _mm_set1_epi16(static_cast<short>(0x8000));
  const __m128i shifted = _mm_xor_si128(units, flip);
  const __m128i aboveA = _mm_cmpgt_epi16(shifted, _mm_set1_epi16(static_cast<short>(('a' - 1) ^ 0x8000)));
  const __m128i belowZ = _mm_cmplt_epi16(shifted, _mm_set1_epi16(static_cast<short>(('z' + 1) ^ 0x8000)));
  const __m128i isLower = _mm_and_si128(aboveA, belowZ);
  return _mm_sub_epi16(units, _mm_and_si128(isLower, _mm_set1_epi16(0x20)));
}

// Index of the first block of eight where the texts differ after folding, or size rounded down to 8.
std::size_t equalPrefixNoCase(const char16_t* a, const char16_t* b, std::size_t size) {
  std::size_t i = 0;
  for (; i + 8 <= size; i += 8) {
    const __m128i x = upperEight(_mm_loadu_si128(reinterpret_cast<const __m128i*>(a + i)));
    const __m128i y = upperEight(_mm_loadu_si128(reinterpret_cast<const __m128i*>(b + i)));
    if (_mm_movemask_epi8(_mm_cmpeq_epi16(x, y)) != 0xFFFF) return i;
  }
  return i;
}
#else
std::size_t equalPrefixNoCase(const char16_t*, const char16_t*, std::size_t) { return 0; }
#endif

}  // namespace

std::u16string CrtUpperCopy(std::u16string_view text) {
  std::u16string upper(text);
  std::transform(upper.begin(), upper.end(), upper.begin(), CrtToUpper);
  return upper;
}

bool CrtEqualNoCase(std::u16string_view a, std::u16string_view b) noexcept {
  if (a.size() != b.size()) return false;
  // Most paths compared are equal to the unit; a byte compare settles those at once.
  if (std::memcmp(a.data(), b.data(), a.size() * sizeof(char16_t)) == 0) return true;
  const std::size_t start = equalPrefixNoCase(a.data(), b.data(), a.size());
  return std::equal(a.begin() + static_cast<std::ptrdiff_t>(start), a.end(),
                    b.begin() + static_cast<std::ptrdiff_t>(start),
                    [](char16_t x, char16_t y) { return CrtToUpper(x) == CrtToUpper(y); });
}
