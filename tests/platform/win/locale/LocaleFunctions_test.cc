#include "win/locale/LocaleFunctions.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <tuple>

#include "support/ScopedEnv.h"
#include "support/platwinLastError.h"
#include "support/u16.h"
#include "win/LastError.h"
#include "win/WinError.h"
#include "win/locale/DatePicture.h"

namespace {

constexpr SYSTEMTIME kAfternoon{2017, 3, 0, 5, 14, 7, 9, 0};  // Sunday 5 March 2017, 14:07:09
constexpr SYSTEMTIME kMorning{2005, 11, 0, 20, 9, 5, 3, 0};   // Sunday 20 November 2005, 09:05:03

std::u16string date(const SYSTEMTIME& time, const char16_t* picture, DWORD flags = 0) {
  char16_t buffer[256] = {};
  EXPECT_GT(GetDateFormatW(LOCALE_USER_DEFAULT, flags, &time, picture, buffer, 256), 0);
  return buffer;
}

std::u16string time(const SYSTEMTIME& when, const char16_t* picture) {
  char16_t buffer[256] = {};
  EXPECT_GT(GetTimeFormatW(LOCALE_USER_DEFAULT, 0, &when, picture, buffer, 256), 0);
  return buffer;
}

std::u16string info(LCTYPE type) {
  char16_t buffer[256] = {};
  EXPECT_GT(GetLocaleInfoW(LOCALE_USER_DEFAULT, type, buffer, 256), 0);
  return buffer;
}

struct LocaleCase {
  const char* locale;
  std::u16string shortDate, afternoon, morning, decimal, list;
};

class UserLocaleTest : public ::testing::TestWithParam<LocaleCase> {};

TEST_P(UserLocaleTest, ShortDateDefaultTimeAndSeparatorsFollowTheEnvironment) {
  const LocaleCase& c = GetParam();
  ScopedEnv locale("LC_ALL", c.locale);
  EXPECT_EQ(date(kAfternoon, nullptr, DATE_SHORTDATE), c.shortDate);
  EXPECT_EQ(date(kAfternoon, nullptr, 0), c.shortDate);
  EXPECT_EQ(time(kAfternoon, nullptr), c.afternoon);
  EXPECT_EQ(time(kMorning, nullptr), c.morning);
  EXPECT_EQ(info(LOCALE_SDECIMAL), c.decimal);
  EXPECT_EQ(info(LOCALE_SLIST), c.list);
}

INSTANTIATE_TEST_SUITE_P(
    Locales, UserLocaleTest,
    ::testing::Values(LocaleCase{"de_DE.UTF-8", u"05.03.2017", u"14:07:09", u"09:05:03", u",", u";"},
                      LocaleCase{"C", u"3/5/2017", u"2:07:09 PM", u"9:05:03 AM", u".", u","}),
    [](const ::testing::TestParamInfo<LocaleCase>& param) { return std::string(param.param.locale).substr(0, 5); });

TEST(UserLocale, LcAllComesBeforeLcTimeAndLang) {
  ScopedEnv all("LC_ALL", ""), lang("LANG", "de_DE.UTF-8");
  EXPECT_EQ(info(LOCALE_SDECIMAL), u",");
  ScopedEnv time("LC_TIME", "ja_JP.UTF-8");
  EXPECT_EQ(date(kAfternoon, nullptr), u"2017/03/05");
  ScopedEnv english("LC_ALL", "en_US.UTF-8");
  EXPECT_EQ(date(kAfternoon, nullptr), u"3/5/2017");
}

// A picture filled in by the date or the time function.
using Filled = std::u16string (*)(const SYSTEMTIME&, const char16_t*);
std::u16string datePicture(const SYSTEMTIME& when, const char16_t* picture) { return date(when, picture); }

// Date pictures: fields, quotes, and time letters as text; time pictures:
// clocks, markers, and date letters as text.
TEST(Pictures, FieldsQuotesClocksAndLettersOfTheOtherKind) {
  ScopedEnv locale("LC_ALL", "en_US");
  const SYSTEMTIME midnight{2017, 3, 0, 5, 0, 0, 0, 0};
  const std::tuple<Filled, SYSTEMTIME, const char16_t*, const char16_t*> cases[] = {
      {datePicture, kAfternoon, u"d/M/yy", u"5/3/17"},
      {datePicture, kAfternoon, u"dddd, MMMM dd yyyy", u"Sunday, March 05 2017"},
      {datePicture, kAfternoon, u"ddd MMM", u"Sun Mar"},
      {datePicture, kMorning, u"y|yy|yyy|yyyyy", u"5|05|2005|2005"},
      {datePicture, kAfternoon, u"'o''clock' ''d''", u"o'clock '5'"},
      {datePicture, kAfternoon, u"gg yyyy", u"AD 2017"},
      {datePicture, kAfternoon, u"hh:mm:ss", u"hh:mm:ss"},
      {datePicture, kAfternoon, u"'unclosed d", u"unclosed d"},
      {time, kAfternoon, u"HHmmss", u"140709"},
      {time, kAfternoon, u"h:mm:ss tt", u"2:07:09 PM"},
      {time, midnight, u"hh t", u"12 A"},
      {time, kAfternoon, u"yyyy 'at' HH", u"yyyy at 14"},
  };
  for (const auto& [format, when, picture, expected] : cases) EXPECT_EQ(format(when, picture), expected) << U8(picture);
}

TEST(LocaleFunctions, FailuresGiveZeroAndTheLastError) {
  ScopedEnv locale("LC_ALL", "en_US");
  const SYSTEMTIME february30{2017, 2, 0, 30, 0, 0, 0, 0};
  const SYSTEMTIME hour24{2017, 2, 0, 3, 24, 0, 0, 0};
  char16_t buffer[256] = u"untouched";
  constexpr LCID kUser = LOCALE_USER_DEFAULT;
  const std::tuple<const char*, std::function<int()>, DWORD> cases[] = {
      {"date that doesn't exist", [&] { return GetDateFormatW(kUser, 0, &february30, nullptr, buffer, 256); },
       ERROR_INVALID_PARAMETER},
      {"another locale", [&] { return GetDateFormatW(0x0409, 0, &kAfternoon, nullptr, buffer, 256); },
       ERROR_INVALID_PARAMETER},
      {"short date with a picture",
       [&] { return GetDateFormatW(kUser, DATE_SHORTDATE, &kAfternoon, u"yy", buffer, 256); }, ERROR_INVALID_FLAGS},
      {"date buffer too small", [&] { return GetDateFormatW(kUser, 0, &kAfternoon, u"yyyyMMdd", buffer, 8); },
       ERROR_INSUFFICIENT_BUFFER},
      {"hour 24", [&] { return GetTimeFormatW(kUser, 0, &hour24, nullptr, buffer, 256); }, ERROR_INVALID_PARAMETER},
      {"time flags", [&] { return GetTimeFormatW(kUser, 2, &kAfternoon, nullptr, buffer, 256); }, ERROR_INVALID_FLAGS},
      {"unknown locale text", [&] { return GetLocaleInfoW(kUser, 0x7777, buffer, 256); }, ERROR_INVALID_FLAGS},
  };
  for (const auto& [what, call, error] : cases) EXPECT_TRUE(FailsWith(call, error)) << what;
  EXPECT_EQ(std::u16string(buffer), u"untouched");
}

TEST(PictureFromIcuPattern, TurnsIcuPatternsIntoWindowsPictures) {
  const std::tuple<std::u16string, std::u16string> cases[] = {
      {u"M/d/yy", u"M/d/yyyy"},
      {u"h:mm:ss\u202Fa", u"h:mm:ss tt"},
      {u"EEEE, d. MMMM y 'um' HH:mm", u"dddd, d. MMMM yyyy 'um' HH:mm"},
      {u"EEE LLL", u"ddd MMM"},
      {u"HH:mm:ss.SSS", u"HH:mm:ss."},
      {u"h 'o''clock' a", u"h 'o''clock' tt"},
      {u"K:mm G", u"h:mm gg"},
  };
  for (const auto& [pattern, picture] : cases) EXPECT_EQ(PictureFromIcuPattern(pattern), picture) << U8(pattern);
}

}  // namespace
