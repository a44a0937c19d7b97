#include "zd/ZdWcMatch.h"

#include <unicode/uchar.h>

#include <string_view>


namespace {

char16_t foldBeyondAscii(char16_t unit) {
  const UChar32 upper = u_toupper(unit);
  return upper <= 0xFFFF ? static_cast<char16_t>(upper) : unit;
}

// ASCII is folded inline (a-z only, as the C runtime does): names and tags
// are nearly always ASCII, and this runs for every unit compared.
inline char16_t fold(char16_t unit, bool ignoreCase) {
  if (!ignoreCase) return unit;
  if (unit < 0x80) return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - (u'a' - u'A')) : unit;
  return foldBeyondAscii(unit);
}

bool unitMatches(char16_t patternUnit, char16_t textUnit, bool ignoreCase) {
  switch (patternUnit) {
    case u'?': return true;
    case u'#': return textUnit >= u'0' && textUnit <= u'9';
    default: return fold(patternUnit, ignoreCase) == fold(textUnit, ignoreCase);
  }
}

// One alternative against the whole text. Greedy, with a return to the last
// '*' on a mismatch: each '*' resumes at most once per text position, so the
// time is bounded by text times pattern.
bool alternativeMatches(std::u16string_view text, std::u16string_view pattern, bool ignoreCase) {
  std::size_t t = 0, p = 0;
  std::size_t starP = std::u16string_view::npos, starT = 0;
  while (t < text.size()) {
    if (p < pattern.size() && pattern[p] == u'*') {
      starP = p++;
      starT = t;
    } else if (p < pattern.size() && unitMatches(pattern[p], text[t], ignoreCase)) {
      ++p;
      ++t;
    } else if (starP != std::u16string_view::npos) {
      p = starP + 1;
      t = ++starT;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == u'*') ++p;
  return p == pattern.size();
}

}  // namespace

bool zdutWcMatchEx(const char16_t* text, const char16_t* pattern, bool ignoreCase) {
  if (!text || !pattern) return false;
  const std::u16string_view subject(text);
  std::u16string_view rest(pattern);
  for (;;) {
    const std::size_t comma = rest.find(u',');
    if (alternativeMatches(subject, rest.substr(0, comma), ignoreCase)) return true;
    if (comma == std::u16string_view::npos) return false;
    rest.remove_prefix(comma + 1);
  }
}
