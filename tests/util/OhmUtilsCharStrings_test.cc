#include "ohmutils/util/OhmUtilsCharStrings.h"

#include <gtest/gtest.h>

#include <string>

#include "support/u16.h"

namespace {

// A surrogate pair (U+1F600) between "a" and "b": 3 characters in 4 units.
constexpr char16_t kPair[] =
    u"a\xD83D\xDE00"
    u"b";

TEST(GetCharCount, CountsSurrogatePairsOnce) {
  EXPECT_EQ(GetCharCount(nullptr), 0u);
  EXPECT_EQ(GetCharCount(u""), 0u);
  EXPECT_EQ(GetCharCount(u"abc"), 3u);
  EXPECT_EQ(GetCharCount(kPair), 3u);
}

TEST(GetByteCount, GivesUnitsSpannedByCharacters) {
  struct Case {
    const char16_t* text;
    int chars;
    int units;
  } cases[] = {
      {nullptr, 2, 0}, {u"abc", -1, 3}, {u"abc", 2, 2}, {u"abc", 3, 3}, {u"abc", 4, 3}, {u"abc", 0, 0},
      {u"abc", -7, 0}, {kPair, 1, 1},   {kPair, 2, 3},  {kPair, 3, 4},  {u"", 1, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << (c.text ? U8(c.text) : "null") << " chars " << c.chars);
    EXPECT_EQ(GetByteCount(c.text, c.chars), c.units);
  }
}

TEST(GetCharIndexOfSubInString, FindsFromTheStartCharacterAndCountsFromTheStringStart) {
  struct Case {
    const char16_t* text;
    const char16_t* sub;
    bool ignoreCase;
    int start;
    int index;
  } cases[] = {
      {nullptr, u"a", false, 0, -1},
      {u"abc", nullptr, false, 0, -1},
      {u"abcabc", u"BC", true, 2, 4},
      {u"abcabc", u"BC", true, 0, 1},
      {u"abc", u"BC", false, 0, -1},
      {u"abcabc", u"bc", false, 5, -1},
      {u"abc", u"", false, 2, 2},
      {u"abc", u"", false, 9, 3},
      {u"abc", u"", false, -1, 3},
      {u"abc", u"c", false, -1, -1},
      {u"abc", u"a", false, -4, 0},
      {kPair, u"b", false, 0, 2},
      {u"\xD83D\xDE00xa\xD83D\xDE00xa", u"XA", true, 2, 4},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << (c.text ? U8(c.text) : "null") << " / " << (c.sub ? U8(c.sub) : "null")
                                    << " start " << c.start);
    EXPECT_EQ(GetCharIndexOfSubInString(c.text, c.sub, c.ignoreCase, c.start), c.index);
  }
}

TEST(GetStringAtCharIndex, PointsIntoTheCallersString) {
  const char16_t* text = u"abc";
  struct Case {
    int index;
    const char16_t* expected;
  } cases[] = {
      {-5, text}, {0, text}, {1, text + 1}, {3, text + 3}, {9, text + 3},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.index);
    EXPECT_EQ(GetStringAtCharIndex(text, c.index), c.expected);
  }
  EXPECT_EQ(GetStringAtCharIndex(nullptr, 1), nullptr);
  EXPECT_EQ(GetStringAtCharIndex(kPair, 2), kPair + 3);
}

TEST(GetStringAtCharCount, IsTheIndexLessOne) {
  const char16_t* text = u"abc";
  EXPECT_EQ(GetStringAtCharCount(text, 0), text);
  EXPECT_EQ(GetStringAtCharCount(text, 1), text);
  EXPECT_EQ(GetStringAtCharCount(text, 3), text + 2);
  EXPECT_EQ(GetStringAtCharCount(text, 4000000000u), text + 3);
}

TEST(RevGetStringAtCharIndex, CountsBackFromTheLastCharacter) {
  const char16_t* text = u"abc";
  struct Case {
    int index;
    const char16_t* expected;
  } cases[] = {
      {-2, text + 2}, {0, text + 2}, {1, text + 1}, {2, text}, {7, text},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.index);
    EXPECT_EQ(RevGetStringAtCharIndex(text, c.index), c.expected);
  }
  EXPECT_EQ(RevGetStringAtCharIndex(nullptr, 0), nullptr);
  EXPECT_EQ(RevGetStringAtCharIndex(u"", 0), nullptr);
  EXPECT_EQ(RevGetStringAtCharIndex(kPair, 1), kPair + 1);  // the whole pair, not its low half
  EXPECT_EQ(RevGetStringAtCharCount(text, 0), text + 2);
  EXPECT_EQ(RevGetStringAtCharCount(text, 1), text + 2);
  EXPECT_EQ(RevGetStringAtCharCount(text, 3), text);
}

TEST(SetStringWithLength, CutsToTheLimitInUnits) {
  struct Case {
    const char16_t* source;
    int limit;
    bool result;
    std::u16string output;
  } cases[] = {
      {u"abcd", 2, true, u"ab"}, {u"abcd", 4, true, u"abcd"}, {u"abcd", 9, true, u"abcd"},  {u"abcd", 0, false, u""},
      {u"", 5, true, u""},       {nullptr, 5, false, u""},    {kPair, 2, true, u"a\xD83D"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << (c.source ? U8(c.source) : "null") << " limit " << c.limit);
    CString output(u"old");
    EXPECT_EQ(SetStringWithLength(output, c.source, c.limit), c.result);
    EXPECT_EQ(output.str(), c.output);
  }
}

TEST(AppendLimitMax, AppendsUpToTheLimitInUnits) {
  struct Case {
    const char16_t* source;
    unsigned limit;
    bool result;
    std::u16string output;
  } cases[] = {
      {u"abcd", 2, true, u"xab"},
      {u"abcd", 9, true, u"xabcd"},
      {u"abcd", 0, true, u"x"},
      {nullptr, 9, false, u"x"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << (c.source ? U8(c.source) : "null") << " limit " << c.limit);
    CString output(u"x");
    EXPECT_EQ(AppendLimitMax(output, c.source, c.limit), c.result);
    EXPECT_EQ(output.str(), c.output);
  }
}

TEST(TrimStringMiddle, CompactsFromTheLimitOnward) {
  const CString path(u"C:\\path1\\path2\\sample.txt");  // 25 characters
  struct Case {
    unsigned limit;
    bool result;
    std::u16string output;
  } cases[] = {
      {26, false, u"C:\\path1\\path2\\sample.txt"},
      {25, true, u"C:\\path1\\...\\sample.txt"},  // exactly the limit: compacted to 24 units at most
      {16, true, u"...\\sample.txt"},
      {10, true, u"sample..."},
      {0, false, u""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.limit);
    CString output(u"old");
    EXPECT_EQ(TrimStringMiddle(path, output, c.limit), c.result);
    EXPECT_EQ(output.str(), c.output);
    if (c.result) {
      EXPECT_LT(output.GetLength(), static_cast<int>(c.limit));
    }
  }
}

TEST(TrimStringMiddle, OutputMayBeTheSource) {
  CString text(u"C:\\path1\\path2\\sample.txt");
  EXPECT_TRUE(TrimStringMiddle(text, text, 16));
  EXPECT_EQ(text.str(), u"...\\sample.txt");
}

TEST(TrimEndingBackslashes, RemovesEveryTrailingBackslash) {
  struct Case {
    const char16_t* text;
    const char16_t* expected;
  } cases[] = {
      {u"C:\\a\\\\\\", u"C:\\a"},
      {u"a\\b", u"a\\b"},
      {u"\\\\", u""},
      {u"a/", u"a/"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(U8(c.text));
    CString text(c.text);
    TrimEndingBackslashes(text);
    EXPECT_EQ(text, c.expected);
  }
}

}  // namespace
