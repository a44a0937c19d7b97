#include "ohmutils/util/OhmUtilsCharStrings.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "support/u16.h"

namespace {

// A surrogate pair (U+1F600) between "a" and "b": 3 characters in 4 units.
constexpr char16_t kPair[] =
    u"a\xD83D\xDE00"
    u"b";

std::string Shown(const char16_t* text) { return text ? U8(text) : "null"; }

TEST(GetCharCount, CountsSurrogatePairsOnce) {
  EXPECT_EQ(GetCharCount(nullptr), 0u);
  EXPECT_EQ(GetCharCount(u""), 0u);
  EXPECT_EQ(GetCharCount(kPair), 3u);
}

TEST(GetByteCount, GivesUnitsSpannedByCharacters) {
  const std::tuple<const char16_t*, int, int> cases[] = {
      {nullptr, 2, 0}, {u"abc", -1, 3}, {u"abc", 2, 2}, {u"abc", 4, 3}, {u"abc", -7, 0}, {kPair, 1, 1}, {kPair, 2, 3}};
  for (const auto& [text, chars, units] : cases) {
    SCOPED_TRACE(testing::Message() << Shown(text) << " chars " << chars);
    EXPECT_EQ(GetByteCount(text, chars), units);
  }
}

TEST(GetCharIndexOfSubInString, FindsFromTheStartCharacterAndCountsFromTheStringStart) {
  // text, sub, ignore case, start, index
  const std::tuple<const char16_t*, const char16_t*, bool, int, int> cases[] = {
      {nullptr, u"a", false, 0, -1},
      {u"abc", nullptr, false, 0, -1},
      {u"abcabc", u"BC", true, 2, 4},
      {u"abcabc", u"BC", true, 0, 1},
      {u"abc", u"BC", false, 0, -1},
      {u"abc", u"", false, -1, 3},
      {u"abc", u"a", false, -4, 0},
      {kPair, u"b", false, 0, 2},
      {u"\xD83D\xDE00xa\xD83D\xDE00xa", u"XA", true, 2, 4}};
  for (const auto& [text, sub, ignoreCase, start, index] : cases) {
    SCOPED_TRACE(testing::Message() << Shown(text) << " / " << Shown(sub) << " start " << start);
    EXPECT_EQ(GetCharIndexOfSubInString(text, sub, ignoreCase, start), index);
  }
}

// Forward by index and by count, and back from the last character.
TEST(GetStringAtCharIndex, PointsIntoTheCallersString) {
  const char16_t* text = u"abc";
  for (const auto& [index, at] : {std::pair{-5, 0}, {1, 1}, {9, 3}})
    EXPECT_EQ(GetStringAtCharIndex(text, index), text + at) << index;
  EXPECT_EQ(GetStringAtCharIndex(nullptr, 1), nullptr);
  EXPECT_EQ(GetStringAtCharIndex(kPair, 2), kPair + 3);
  for (const auto& [count, at] : {std::pair{0u, 0}, {3u, 2}, {4000000000u, 3}})
    EXPECT_EQ(GetStringAtCharCount(text, count), text + at) << count;
  for (const auto& [index, at] : {std::pair{-2, 2}, {1, 1}, {7, 0}})
    EXPECT_EQ(RevGetStringAtCharIndex(text, index), text + at) << index;
  EXPECT_EQ(RevGetStringAtCharIndex(nullptr, 0), nullptr);
  EXPECT_EQ(RevGetStringAtCharIndex(u"", 0), nullptr);
  EXPECT_EQ(RevGetStringAtCharIndex(kPair, 1), kPair + 1);  // the whole pair, not its low half
  EXPECT_EQ(RevGetStringAtCharCount(text, 0), text + 2);
  EXPECT_EQ(RevGetStringAtCharCount(text, 3), text);
}

// Both write into a CString the caller holds; SetStringWithLength replaces
// "old", AppendLimitMax appends to "x".
TEST(SetStringWithLength, CutsOrAppendsToTheLimitInUnits) {
  const std::tuple<bool, const char16_t*, int, bool, std::u16string> cases[] = {
      {false, u"abcd", 2, true, u"ab"},   {false, u"abcd", 9, true, u"abcd"},  {false, u"abcd", 0, false, u""},
      {false, nullptr, 5, false, u""},    {false, kPair, 2, true, u"a\xD83D"}, {true, u"abcd", 2, true, u"xab"},
      {true, u"abcd", 9, true, u"xabcd"}, {true, nullptr, 9, false, u"x"},
  };
  for (const auto& [append, source, limit, result, expected] : cases) {
    SCOPED_TRACE(testing::Message() << (append ? "append " : "set ") << Shown(source) << " limit " << limit);
    CString output(append ? u"x" : u"old");
    EXPECT_EQ(append ? AppendLimitMax(output, source, static_cast<unsigned>(limit))
                     : SetStringWithLength(output, source, limit),
              result);
    EXPECT_EQ(output.str(), expected);
  }
}

TEST(TrimStringMiddle, CompactsFromTheLimitOnward) {
  const CString path(u"C:\\path1\\path2\\sample.txt");  // 25 characters
  const std::tuple<unsigned, bool, std::u16string> cases[] = {
      {26, false, u"C:\\path1\\path2\\sample.txt"},
      {25, true, u"C:\\path1\\...\\sample.txt"},  // exactly the limit: compacted to 24 units at most
      {0, false, u""}};
  for (const auto& [limit, result, expected] : cases) {
    SCOPED_TRACE(limit);
    CString output(u"old");
    EXPECT_EQ(TrimStringMiddle(path, output, limit), result);
    EXPECT_EQ(output.str(), expected);
    EXPECT_TRUE(!result || output.GetLength() < static_cast<int>(limit)) << "no shorter than the limit";
  }
  CString text = path;  // the output may be the source
  EXPECT_TRUE(TrimStringMiddle(text, text, 16));
  EXPECT_EQ(text.str(), u"...\\sample.txt");
}

TEST(TrimEndingBackslashes, RemovesEveryTrailingBackslash) {
  for (const auto& [before, after] : {std::pair{u"C:\\a\\\\\\", u"C:\\a"}, {u"\\\\", u""}, {u"a/", u"a/"}}) {
    CString text(before);
    TrimEndingBackslashes(text);
    EXPECT_EQ(text, after) << U8(before);
  }
}

}  // namespace
