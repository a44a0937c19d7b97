#include "zd/ZdWcMatch.h"

#include <gtest/gtest.h>

#include <random>
#include <tuple>

#include "support/u16.h"
#include "win/CrtChar.h"

namespace {

// Alternatives, the empty pattern and case beyond ASCII; generated input covers the rest.
TEST(ZdWcMatch, PatternsOfTheClassification) {
  const std::tuple<const char16_t*, const char16_t*, bool> cases[] = {
      {u"TAG1_X_PART1", u"TAG1,TAG1F,TAG1*PART1", true},
      {u"", u"", true},
      {u"\u00e9t\u00e9", u"\u00c9T\u00c9", true},
  };
  for (const auto& [text, pattern, match] : cases) {
    SCOPED_TRACE(U8(text) + " ~ " + U8(pattern));
    EXPECT_EQ(zdutWcMatchEx(text, pattern, true), match);
  }
  EXPECT_FALSE(zdutWcMatchEx(u"tag1", u"TAG1", false));
  EXPECT_FALSE(zdutWcMatchEx(nullptr, u"*", true));
  EXPECT_FALSE(zdutWcMatchEx(u"x", nullptr, true));
}

// Plain recursive matcher of one alternative, the definition written out.
bool Reference(std::u16string_view t, std::u16string_view p) {
  if (p.empty()) return t.empty();
  if (p[0] == u'*') return Reference(t, p.substr(1)) || (!t.empty() && Reference(t.substr(1), p));
  if (t.empty()) return false;
  const char16_t up = CrtToUpper(p[0]), ut = CrtToUpper(t[0]);
  const bool unit = p[0] == u'?' || (p[0] == u'#' ? (t[0] >= u'0' && t[0] <= u'9') : up == ut);
  return unit && Reference(t.substr(1), p.substr(1));
}

bool ReferenceAll(std::u16string_view t, std::u16string_view p) {
  for (;;) {
    const std::size_t comma = p.find(u',');
    if (Reference(t, p.substr(0, comma))) return true;
    if (comma == std::u16string_view::npos) return false;
    p.remove_prefix(comma + 1);
  }
}

TEST(ZdWcMatch, AgreesWithTheDefinitionOnGeneratedInput) {
  std::mt19937 rng(4711);
  // Texts hold the pattern's special units too: in a text they are plain units.
  // '/' and ':' stand either side of the digits, which '#' matches from '0' to '9'.
  auto make = [&](const std::u16string& units, std::size_t maxLength) {
    std::u16string s(rng() % (maxLength + 1), u' ');
    for (char16_t& unit : s) unit = units[rng() % units.size()];
    return s;
  };
  for (int i = 0; i < 20000; ++i) {
    const std::u16string text = make(u"aAbB019/:_ #?*,`{", 8), pattern = make(u"aAbB01_*?#,", 8);
    ASSERT_EQ(zdutWcMatchEx(text.c_str(), pattern.c_str(), true), ReferenceAll(text, pattern))
        << U8(text) << " ~ " << U8(pattern);
  }
}

}  // namespace
