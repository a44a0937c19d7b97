#include "ohmutils/util/OhmUtilsStringSplit.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "support/StoiFailure.h"
#include "support/u16.h"

namespace {

using Items = std::vector<std::u16string>;

TEST(OhmUtilsSplitString, NSeparatorsGiveNPlusOneItems) {
  struct Case {
    std::u16string source;
    Items expected;
  } cases[] = {
      {u"", {u""}},
      {u"a,,b,", {u"a", u"", u"b", u""}},
      {u",", {u"", u""}},
      {u" a , b", {u" a ", u" b"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(U8(c.source));
    Items items{u"old", u"items"};
    OhmUtilsSplitString(c.source, u',', items);
    EXPECT_EQ(items, c.expected);
  }
}

TEST(OhmUtilsSplitString, SourceMayBeAnItemOfTheOutput) {
  Items items{u"x;y"};
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
  const std::pair<std::u16string, const char*> cases[] = {
      {u"", "invalid"},
      {u"x1", "invalid"},
      {u"-", "invalid"},
      {u"2147483648", "out of range"},
      {u"-2147483649", "out of range"},
      {u"99999999999999999999999", "out of range"},
  };
  for (const auto& [bad, failure] : cases) {
    SCOPED_TRACE(U8(bad));
    std::vector<std::int32_t> values;
    EXPECT_EQ(StoiFailure([&] { OhmUtilsCvtStringToIntArray({u"1", bad, u"2"}, values); }), failure);
    EXPECT_EQ(values, std::vector<std::int32_t>{1});
  }
}

struct TokenCase {
  const char16_t* source;
  const char16_t* delimiters;
  bool whole;
  bool result;
  const char16_t* token;  // expected token ("prior" if untouched)
  const char16_t* rest;   // expected source afterwards
  const char16_t* found;  // expected delimiter found ("prior" if untouched)
};

TEST(GetToken, CutsTheFirstToken) {
  const TokenCase cases[] = {
      {u"a,b", u",", false, true, u"a", u"b", u","},           {u"b", u",", false, false, u"prior", u"b", u"prior"},
      {u",,a,b", u",", false, true, u"a", u"b", u","},         {u",,", u",", false, false, u"prior", u"", u"prior"},
      {u"a;b,c", u",;", false, true, u"a", u"b,c", u";"},      {u"a::b", u"::", true, true, u"a", u"b", u":"},
      {u"::a::b", u"::", true, true, u":a", u"b", u":"},  // a leading whole delimiter goes one unit at a time
      {u"abc", u"", false, false, u"prior", u"abc", u"prior"}, {u"abc", u"", true, false, u"prior", u"abc", u"prior"},
      {u"", u"", true, false, u"prior", u"", u"prior"},
  };
  for (const TokenCase& c : cases) {
    SCOPED_TRACE(U8(c.source) + " / " + U8(c.delimiters));
    CString source(c.source), token(u"prior"), found(u"prior");
    EXPECT_EQ(GetToken(source, token, c.delimiters, &found, c.whole), c.result);
    EXPECT_EQ(token, c.token);
    EXPECT_EQ(source, c.rest);
    EXPECT_EQ(found, c.found);
  }
}

TEST(GetToken, NullArgumentsAreSafe) {
  CString source(u"a,b"), token;
  EXPECT_FALSE(GetToken(source, token, nullptr, nullptr, false));
  EXPECT_EQ(source, u"a,b");
  EXPECT_TRUE(GetToken(source, token, u",", nullptr, false));
  EXPECT_EQ(token, u"a");
}

TEST(OhmUtilsReplaceSpecialXMLCharsInString, ReplacesTheNineCharacters) {
  struct Case {
    const char16_t* text;
    char16_t with;
    const char16_t* expected;
  } cases[] = {
      {u"a&b'c", u'_', u"a&b'c"},
      {u"<>/\\\":?*|", u'-', u"---------"},
      {u"a<b", u'|', u"a|b"},  // the replacement may itself be special
      {u"ab/cd", u'\0', u"ab"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(U8(c.text));
    ZdString out(u"old");
    OhmUtilsReplaceSpecialXMLCharsInString(ZdString(c.text), c.with, out);
    EXPECT_EQ(out.str(), c.expected);
  }
}

}  // namespace
