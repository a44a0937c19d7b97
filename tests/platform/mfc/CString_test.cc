#include "mfc/CString.h"

#include <gtest/gtest.h>

#include <tuple>

#include "support/u16.h"

namespace {

TEST(CString, FindFollowsTheRuntimeBounds) {
  const CString text(u"a,b,,c");
  const std::tuple<LPCWSTR, int, int> cases[] = {
      {u",,", 2, 3},
      {u"x", 0, -1},
      {u"", 6, 6},
      {u",", -1, -1},
  };
  for (const auto& [sub, start, expected] : cases) {
    SCOPED_TRACE(U8(sub) + " from " + std::to_string(start));
    EXPECT_EQ(text.Find(sub, start), expected);
  }
  EXPECT_EQ(text.Find(u'c', 5), 5);
  EXPECT_EQ(text.Find(u'c', 6), -1);  // a unit is not found at the end position
  EXPECT_EQ(text.FindOneOf(u""), -1);
  EXPECT_EQ(text.FindOneOf(u"cb"), 2);
  EXPECT_EQ(text.ReverseFind(u','), 4);
}

TEST(CString, PiecesClampTheirArguments) {
  const CString text(u"abcdef");
  EXPECT_EQ(text.Left(-1), u"");
  EXPECT_EQ(text.Mid(-3, 2), u"ab");
  EXPECT_EQ(text.Mid(5, 9), u"f");
  EXPECT_EQ(text.Mid(9, 1), u"");
}

TEST(CString, ReplaceCountsLeftToRightWithoutOverlap) {
  // Text, what is replaced by what, the text after and the count.
  const std::tuple<LPCWSTR, LPCWSTR, LPCWSTR, LPCWSTR, int> cases[] = {
      {u"aaa", u"aa", u"b", u"ba", 1},
      {u"abc", u"", u"x", u"abc", 0},
      {u"%S%S", u"%S", u"%S%S", u"%S%S%S%S", 2},
      {u"abc", nullptr, u"x", u"abc", 0},
  };
  for (const auto& [before, from, to, after, count] : cases) {
    CString text(before);
    EXPECT_EQ(text.Replace(from, to), count) << U8(before);
    EXPECT_EQ(text, after);
  }
}

TEST(CString, EditingInPlace) {
  CString text(u"  ab\tc \u3000");
  EXPECT_EQ(text.Trim(), u"ab\tc");
  EXPECT_EQ(CString(u"a;,;").TrimRight(u",;"), u"a");
  EXPECT_EQ(CString(u"abc").Delete(1, 9), 1);
  EXPECT_EQ(CString(u"abc").Insert(9, u'd'), 4);
  EXPECT_EQ(CString(u"aé-z").MakeUpper(), u"Aé-Z");  // a-z only, as the default locale does
  EXPECT_LT(CString(u"ABC").CompareNoCase(u"abd"), 0);
  EXPECT_EQ(CString(u"ABC").CompareNoCase(u"abc"), 0);
}

TEST(CString, FormatCoversTextAndNumbers) {
  CString text;
  text.Format(u"%s=%d (%05.1f) [%-4s] %c%% %x %hs %I64d|%*d|%.2s", u"key", -42, 3.14159, u"ab", u'Z', 255u, "n\xC3\xA4",
              1LL << 40, 4, 7, u"xyz");
  EXPECT_EQ(U8(text.str()), "key=-42 (003.1) [ab  ] Z% ff nä 1099511627776|   7|xy");
}

}  // namespace
