#include "win/CharSteps.h"

#include <gtest/gtest.h>

namespace {

// "a", U+1F600 as a surrogate pair, "b", a lone low surrogate, "c".
constexpr char16_t kMixed[] =
    u"a\xD83D\xDE00"
    u"b\xDC00"
    u"c";

// A lone high surrogate before the terminator is one unit.
TEST(CharNextW, StepsOverASurrogatePairAsOneCharacter) {
  const char16_t* expected[] = {kMixed + 1, kMixed + 3, kMixed + 4, kMixed + 5, kMixed + 6, kMixed + 6};
  const char16_t* position = kMixed;
  for (const char16_t* next : expected) {
    SCOPED_TRACE(position - kMixed);
    position = CharNextW(position);
    EXPECT_EQ(position, next);
  }
  EXPECT_EQ(CharNextW(nullptr), nullptr);
  constexpr char16_t lone[] = u"\xD83D";
  EXPECT_EQ(CharNextW(lone), lone + 1);
}

TEST(CharPrevW, StepsBackOverASurrogatePairAndStopsAtStart) {
  const char16_t* expected[] = {kMixed + 5, kMixed + 4, kMixed + 3, kMixed + 1, kMixed, kMixed};
  const char16_t* position = kMixed + 6;
  for (const char16_t* previous : expected) {
    SCOPED_TRACE(position - kMixed);
    position = CharPrevW(kMixed, position);
    EXPECT_EQ(position, previous);
  }
  // A pair that straddles `start`: the low surrogate alone is the first character.
  EXPECT_EQ(CharPrevW(kMixed + 2, kMixed + 3), kMixed + 2);
  EXPECT_EQ(CharPrevW(nullptr, kMixed), nullptr);
}

}  // namespace
