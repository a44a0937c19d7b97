#include "win/CharSteps.h"

namespace {

bool isHighSurrogate(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool isLowSurrogate(char16_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

}  // namespace

LPWSTR CharNextW(LPCWSTR text) noexcept {
  if (!text) return nullptr;
  if (*text == u'\0') return const_cast<LPWSTR>(text);
  if (isHighSurrogate(text[0]) && isLowSurrogate(text[1])) return const_cast<LPWSTR>(text + 2);
  return const_cast<LPWSTR>(text + 1);
}

LPWSTR CharPrevW(LPCWSTR start, LPCWSTR current) noexcept {
  if (!start || !current) return nullptr;
  if (current <= start) return const_cast<LPWSTR>(start);
  LPCWSTR previous = current - 1;
  if (previous > start && isLowSurrogate(*previous) && isHighSurrogate(previous[-1])) --previous;
  return const_cast<LPWSTR>(previous);
}
