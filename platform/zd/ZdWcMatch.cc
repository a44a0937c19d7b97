#include "zd/ZdWcMatch.h"

#include <unicode/uchar.h>

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
    case u'?':
      return true;
    case u'#':
      return textUnit >= u'0' && textUnit <= u'9';
    default:
      return patternUnit == textUnit || fold(patternUnit, ignoreCase) == fold(textUnit, ignoreCase);
  }
}

// An alternative ends at ',' or at the end of the pattern.
inline bool endsAlternative(char16_t unit) { return unit == u'\0' || unit == u','; }

// The alternative at `pattern` against the whole of `text`, both read in
// place, without measuring either first. Greedy, with a return to the last
// '*' on a mismatch: each '*' resumes at most once per text position, so the
// time is bounded by text times pattern.
bool alternativeMatches(const char16_t* text, const char16_t* pattern, bool ignoreCase) {
  const char16_t* t = text;
  const char16_t* p = pattern;
  const char16_t* starP = nullptr;
  const char16_t* starT = nullptr;
  while (*t) {
    if (*p == u'*') {
      starP = p++;
      starT = t;
    } else if (!endsAlternative(*p) && unitMatches(*p, *t, ignoreCase)) {
      ++p;
      ++t;
    } else if (starP) {
      p = starP + 1;
      t = ++starT;
    } else {
      return false;
    }
  }
  while (*p == u'*') ++p;
  return endsAlternative(*p);
}

}  // namespace

bool zdutWcMatchEx(const char16_t* text, const char16_t* pattern, bool ignoreCase) {
  if (!text || !pattern) return false;
  for (const char16_t* alternative = pattern;; ++alternative) {
    if (alternativeMatches(text, alternative, ignoreCase)) return true;
    while (!endsAlternative(*alternative)) ++alternative;
    if (*alternative == u'\0') return false;
  }
}
