#include "win/CrtString.h"

#include <cerrno>
#include <string_view>

errno_t wcscpy_s(char16_t* dest, std::size_t size, const char16_t* source) noexcept {
  if (!dest || size == 0) return EINVAL;
  if (!source) {
    dest[0] = u'\0';
    return EINVAL;
  }
  const std::u16string_view text(source);
  if (text.size() >= size) {
    dest[0] = u'\0';
    return ERANGE;
  }
  text.copy(dest, text.size());
  dest[text.size()] = u'\0';
  return 0;
}

char16_t* wcstok_s(char16_t* text, const char16_t* delimiters, char16_t** context) noexcept {
  if (!delimiters || !context) return nullptr;
  char16_t* position = text ? text : *context;
  if (!position) return nullptr;
  const std::u16string_view separators(delimiters);
  while (*position && separators.find(*position) != std::u16string_view::npos) ++position;
  if (!*position) {
    *context = position;
    return nullptr;
  }
  char16_t* token = position;
  while (*position && separators.find(*position) == std::u16string_view::npos) ++position;
  if (*position) *position++ = u'\0';
  *context = position;
  return token;
}
