// The classification's patterns turn a text away before the matcher only
// where the matcher says no: random patterns, and the classification's own,
// against random texts of units that fold into each other (ASCII of both
// cases, U+0131 and U+017F, which fold to I and S), digits, and the
// pattern's special units.
#include "ohmutils/dwg/OhmDwgWildcardPattern_internal.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "support/u16.h"
#include "zd/ZdWcMatch.h"

namespace {

using ohm_internal::WildcardPattern;

std::u16string RandomText(std::mt19937& rng, std::u16string_view units, std::size_t maxLength) {
  std::u16string text(rng() % (maxLength + 1), u' ');
  for (char16_t& unit : text) unit = units[rng() % units.size()];
  return text;
}

void ExpectSameAnswer(const std::u16string& pattern, const std::u16string& text) {
  const WildcardPattern compiled(pattern.c_str());
  ASSERT_EQ(compiled.matches(text.c_str(), text.size()), zdutWcMatchEx(text.c_str(), pattern.c_str(), true))
      << "pattern \"" << U8(pattern) << "\", text \"" << U8(text) << "\"";
}

TEST(OhmDwgWildcardPattern, AnswersAsTheMatcherOnRandomPatterns) {
  std::mt19937 rng(1812);
  const std::u16string_view patternUnits = u"AaiSs_0#?*,\u0131\u00E9";
  const std::u16string_view textUnits = u"AaIiSs_09#?*\u0131\u017F\u00E9\u00C9";
  for (int round = 0; round < 40000; ++round)
    ExpectSameAnswer(RandomText(rng, patternUnits, 6), RandomText(rng, textUnits, 6));
}

TEST(OhmDwgWildcardPattern, AnswersAsTheMatcherOnTheClassificationsPatterns) {
  const char16_t* const patterns[] = {u"WDTYPE",
                                      u"TAG1,TAG1F,TAG1*PART1",
                                      u"TAG2,TAG_*,TAG2F,TAG2*PART1",
                                      u"PLCIO*",
                                      u"WD_WN*",
                                      u"HA#S*",
                                      u"?T0*,?T1*,?T_*",
                                      u"?A?X*",
                                      u"P_TAG1,P_TAG1_PART*"};
  std::mt19937 rng(1813);
  const std::u16string_view replacements = u"aAtT1S\u0131\u017F_0X";
  for (const char16_t* pattern : patterns) {
    for (int round = 0; round < 3000; ++round) {
      // The pattern with some units replaced, cut short or lengthened: texts near a match.
      std::u16string text = pattern;
      for (char16_t& unit : text)
        if (unit == u'*' || unit == u'?' || unit == u'#' || unit == u',' || rng() % 4 == 0)
          unit = replacements[rng() % replacements.size()];
      text.resize(rng() % (text.size() + 3), u'1');
      ExpectSameAnswer(pattern, text);
    }
  }
}

}  // namespace
