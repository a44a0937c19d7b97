// The C runtime's single-character classes in the default ("C") locale, for
// one UTF-16 unit. Case mapping touches a-z and A-Z only: it is the comparison
// rule for paths, tags and contact kinds and never depends on the user's
// locale, so results are the same on every machine. White space is the
// Unicode White_Space set, which the runtime's wide iswspace accepts.
#pragma once

#include <string>
#include <string_view>

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

inline constexpr char16_t CrtToUpper(char16_t unit) noexcept {
  return (unit >= u'a' && unit <= u'z') ? static_cast<char16_t>(unit - (u'a' - u'A')) : unit;
}

inline constexpr char16_t CrtToLower(char16_t unit) noexcept {
  return (unit >= u'A' && unit <= u'Z') ? static_cast<char16_t>(unit + (u'a' - u'A')) : unit;
}

constexpr bool CrtIsSpace(char16_t unit) noexcept {
  return (unit >= 0x09 && unit <= 0x0D) || unit == 0x20 || unit == 0x85 || unit == 0xA0 || unit == 0x1680 ||
         (unit >= 0x2000 && unit <= 0x200A) || unit == 0x2028 || unit == 0x2029 || unit == 0x202F || unit == 0x205F ||
         unit == 0x3000;
}

// Upper-case copy, unit by unit with CrtToUpper.
std::u16string CrtUpperCopy(std::u16string_view text);

// True when both texts have the same length and their units agree after CrtToUpper.
bool CrtEqualNoCase(std::u16string_view a, std::u16string_view b) noexcept;

OHM_PLATFORM_API_END
