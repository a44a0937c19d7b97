#include "ohmutils/util/OhmUtilsStringSplit.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <tuple>

#include "support/StoiFailure.h"
#include "support/u16.h"

namespace {

using Items = std::vector<std::u16string>;

TEST(OhmUtilsSplitString, NSeparatorsGiveNPlusOneItems) {
  const std::pair<std::u16string, Items> cases[] = {{u"", {u""}}, {u"a,,b,", {u"a", u"", u"b", u""}}};
  for (const auto& [source, expected] : cases) {
    Items items{u"old", u"items"};
    OhmUtilsSplitString(source, u',', items);
    EXPECT_EQ(items, expected) << U8(source);
  }
  Items items{u"x;y"};  // the source may be an item of the output
  OhmUtilsSplitString(items[0], u';', items);
  EXPECT_EQ(items, (Items{u"x", u"y"}));
}

TEST(OhmUtilsCvtStringToIntArray, ReadsAsTheStandardConversion) {
  std::vector<std::int32_t> values{99};
  OhmUtilsCvtStringToIntArray({u" 12", u"-3", u"7x", u"+5", u"\t-2147483648", u"2147483647"}, values);
  EXPECT_EQ(values, (std::vector<std::int32_t>{12, -3, 7, 5, -2147483647 - 1, 2147483647}));
  OhmUtilsCvtStringToIntArray({}, values);
  EXPECT_TRUE(values.empty());
}

TEST(OhmUtilsCvtStringToIntArray, FailuresKeepWhatWasConverted) {
  const std::pair<std::u16string, const char*> cases[] = {{u"", "invalid"},
                                                          {u"x1", "invalid"},
                                                          {u"-", "invalid"},
                                                          {u"2147483648", "out of range"},
                                                          {u"-2147483649", "out of range"},
                                                          {u"99999999999999999999999", "out of range"}};
  for (const auto& [bad, failure] : cases) {
    SCOPED_TRACE(U8(bad));
    std::vector<std::int32_t> values;
    EXPECT_EQ(StoiFailure([&] { OhmUtilsCvtStringToIntArray({u"1", bad, u"2"}, values); }), failure);
    EXPECT_EQ(values, std::vector<std::int32_t>{1});
  }
}

TEST(GetToken, CutsTheFirstToken) {
  // source, delimiters, whole, result, token, rest of the source, delimiter found ("prior": untouched)
  const std::tuple<const char16_t*, const char16_t*, bool, bool, const char16_t*, const char16_t*, const char16_t*>
      cases[] = {
          {u"a,b", u",", false, true, u"a", u"b", u","},          {u"b", u",", false, false, u"prior", u"b", u"prior"},
          {u",,a,b", u",", false, true, u"a", u"b", u","},        {u",,", u",", false, false, u"prior", u"", u"prior"},
          {u"a;b,c", u",;", false, true, u"a", u"b,c", u";"},     {u"a::b", u"::", true, true, u"a", u"b", u":"},
          {u"::a::b", u"::", true, true, u":a", u"b", u":"},  // a leading whole delimiter goes one unit at a time
          {u"abc", u"", true, false, u"prior", u"abc", u"prior"},
      };
  for (const auto& [text, delimiters, whole, result, token, rest, found] : cases) {
    SCOPED_TRACE(U8(text) + " / " + U8(delimiters));
    CString source(text), gotToken(u"prior"), gotFound(u"prior");
    EXPECT_EQ(GetToken(source, gotToken, delimiters, &gotFound, whole), result);
    EXPECT_EQ(gotToken, token);
    EXPECT_EQ(source, rest);
    EXPECT_EQ(gotFound, found);
  }
  CString source(u"a,b"), token;  // null delimiters and no place for the found one
  EXPECT_FALSE(GetToken(source, token, nullptr, nullptr, false));
  EXPECT_EQ(source, u"a,b");
  EXPECT_TRUE(GetToken(source, token, u",", nullptr, false));
  EXPECT_EQ(token, u"a");
}

TEST(OhmUtilsReplaceSpecialXMLCharsInString, ReplacesTheNineCharacters) {
  const std::tuple<const char16_t*, char16_t, const char16_t*> cases[] = {
      {u"a&b'c", u'_', u"a&b'c"}, {u"<>/\\\":?*|", u'-', u"---------"}, {u"ab/cd", u'\0', u"ab"}};
  for (const auto& [text, with, expected] : cases) {
    ZdString out(u"old");
    OhmUtilsReplaceSpecialXMLCharsInString(ZdString(text), with, out);
    EXPECT_EQ(out.str(), expected) << U8(text);
  }
}

}  // namespace
