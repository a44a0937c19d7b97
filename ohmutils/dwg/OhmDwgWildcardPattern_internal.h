// A wildcard pattern of the classification (block names and attribute tags,
// matched by zdutWcMatchEx ignoring case), with two facts about it worked out
// once, when it is made (at compile time for constants), so that most texts
// that can't match are turned away without asking the matcher: the fewest
// units a matching text has (each element but '*' takes at least one), and
// which ASCII units a matching text may start with. Both only turn away texts
// that can't match, so every answer is the matcher's. A value type that
// borrows the pattern's units; immutable, so any thread may use it.
#pragma once

#include <array>
#include <cstddef>

#include "zd/ZdWcMatch.h"

namespace ohm_internal {

class WildcardPattern {
 public:
  constexpr explicit WildcardPattern(const char16_t* pattern) : mPattern(pattern) {
    mMinLength = static_cast<std::size_t>(-1);
    const char16_t* alternative = pattern;
    for (;;) {
      const char16_t* end = alternative;
      std::size_t units = 0;
      for (; *end != u'\0' && *end != u','; ++end) units += *end == u'*' ? 0 : 1;
      mMinLength = units < mMinLength ? units : mMinLength;
      acceptFirstUnitOf(alternative);
      if (*end == u'\0') break;
      alternative = end + 1;
    }
  }

  // zdutWcMatchEx(text, pattern, true) for a non-null `text` of `length` units.
  bool matches(const char16_t* text, std::size_t length) const {
    if (length < mMinLength) return false;
    if (text[0] < 0x80 && !mFirstUnits[text[0]]) return false;
    return zdutWcMatchEx(text, mPattern, true);
  }

 private:
  // The ASCII units that the first element of `alternative` takes. The
  // matcher folds ASCII a-z to A-Z and any other unit beyond ASCII, so only
  // a pattern unit beyond ASCII could take more; such a unit is let take all,
  // as is an empty alternative.
  constexpr void acceptFirstUnitOf(const char16_t* alternative) {
    for (char16_t unit = 0; unit < 0x80; ++unit) mFirstUnits[unit] = mFirstUnits[unit] || takes(*alternative, unit);
  }
  static constexpr bool takes(char16_t element, char16_t unit) {
    switch (element) {
      case u'*':
      case u'?':
      case u',':
      case u'\0':
        return true;
      case u'#':
        return unit >= u'0' && unit <= u'9';
      default:
        return element >= 0x80 || upper(element) == upper(unit);
    }
  }
  static constexpr char16_t upper(char16_t unit) {
    return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - (u'a' - u'A')) : unit;
  }

  const char16_t* mPattern;
  std::size_t mMinLength = 0;
  std::array<bool, 0x80> mFirstUnits{};
};

}  // namespace ohm_internal
