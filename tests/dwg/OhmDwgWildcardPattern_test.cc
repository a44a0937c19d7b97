// The classification's patterns turn a text away before the matcher only
// where the matcher says no: random patterns, and texts near the
// classification's own, of units that fold into each other (ASCII of both
// cases, U+0131 and U+017F, which fold to I and S), digits and the pattern's
// special units.
#include "ohmutils/dwg/OhmDwgWildcardPattern_internal.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>
#include <vector>

#include "support/u16.h"
#include "zd/ZdWcMatch.h"

namespace {

std::u16string RandomText(std::mt19937& rng, std::u16string_view units, std::size_t maxLength) {
  std::u16string text(rng() % (maxLength + 1), u' ');
  for (char16_t& unit : text) unit = units[rng() % units.size()];
  return text;
}

TEST(OhmDwgWildcardPattern, AnswersAsTheMatcher) {
  std::mt19937 rng(1812);
  std::vector<std::pair<std::u16string, std::u16string>> cases;  // pattern, text
  for (int round = 0; round < 40000; ++round)
    cases.emplace_back(RandomText(rng, u"AaiSs_0#?*,\u0131\u00E9", 6),
                       RandomText(rng, u"AaIiSs_09#?*\u0131\u017F\u00E9", 6));
  for (const char16_t* pattern : {u"WDTYPE", u"TAG1,TAG1F,TAG1*PART1", u"TAG2,TAG_*,TAG2F,TAG2*PART1", u"PLCIO*",
                                  u"HA#S*", u"?T0*,?T1*,?T_*", u"?A?X*", u"P_TAG1,P_TAG1_PART*"}) {
    for (int round = 0; round < 3000; ++round) {
      // The pattern with some units replaced, cut short or lengthened.
      std::u16string text = pattern;
      for (char16_t& unit : text)
        if (std::u16string_view(u"*?#,").find(unit) != std::u16string_view::npos || rng() % 4 == 0)
          unit = u"aAtT1S\u0131\u017F_0X"[rng() % 11];
      text.resize(rng() % (text.size() + 3), u'1');
      cases.emplace_back(pattern, text);
    }
  }
  for (const auto& [pattern, text] : cases) {
    const ohm_internal::WildcardPattern compiled(pattern.c_str());
    ASSERT_EQ(compiled.matches(text.c_str(), text.size()), zdutWcMatchEx(text.c_str(), pattern.c_str(), true))
        << "pattern \"" << U8(pattern) << "\", text \"" << U8(text) << "\"";
  }
}

}  // namespace
