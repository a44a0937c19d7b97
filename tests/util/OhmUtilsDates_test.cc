#include "ohmutils/util/OhmUtilsDates.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <ctime>
#include <regex>
#include <string>

#include "support/ScopedEnv.h"
#include "support/TempFolder.h"
#include "support/u16.h"
#include "win/WinError.h"
#include "win/locale/LocaleFunctions_testing.h"

namespace {

constexpr SYSTEMTIME kAfternoon{2017, 3, 0, 5, 14, 7, 9, 0};  // 5 March 2017, 14:07:09

TEST(FormatDate, AFailingFormatGivesTheEmptyText) {
  ScopedEnv locale("LC_ALL", "en_US");
  CString output(u"x");
  win_testing::failNextGetDateFormat(ERROR_INVALID_PARAMETER);
  FormatDate(&kAfternoon, output, true, DATE_SHORTDATE, nullptr);
  EXPECT_EQ(output, u"x ");
  win_testing::failNextGetTimeFormat(ERROR_INVALID_PARAMETER);
  FormatTime(&kAfternoon, output, false, 0, nullptr);
  EXPECT_EQ(output, u"");
}

TEST(GetLocaleDateTime, IsTheShortDateABlankAndTheDefaultTimeOfNow) {
  ScopedEnv locale("LC_ALL", "en_US");
  CString output(u"old");
  GetLocaleDateTime(output);
  const std::regex form(R"(\d{1,2}/\d{1,2}/\d{4} \d{1,2}:\d{2}:\d{2} (AM|PM))");
  EXPECT_TRUE(std::regex_match(U8(output.str()), form)) << U8(output.str());
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  EXPECT_NE(output.Find(U16(std::to_string(local.tm_year + 1900)).c_str()), -1);
}

// A file in a temporary folder whose last write was at the given local time.
class FileTimeTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_FALSE(mTemp.posix().empty());
    mTemp.makeFile("sheet.dwg");
    setLocalWriteTime("sheet.dwg", 2017, 3, 5, 14, 7, 9);
  }
  void setLocalWriteTime(const std::string& name, int year, int month, int day, int hour, int minute, int second) {
    std::tm local{};
    local.tm_year = year - 1900, local.tm_mon = month - 1, local.tm_mday = day;
    local.tm_hour = hour, local.tm_min = minute, local.tm_sec = second, local.tm_isdst = -1;
    setWriteTime(name, std::mktime(&local));
  }
  void setWriteTime(const std::string& name, std::time_t time) {
    const timespec times[2] = {{time, 0}, {time, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, mTemp.posix(name).c_str(), times, 0), 0);
  }
  std::u16string path(const std::string& name = "sheet.dwg") const { return mTemp.windows(name); }
  ScopedEnv mLocale{"LC_ALL", "en_US.UTF-8"};
  TempFolder mTemp;
};

TEST_F(FileTimeTest, ModeChoosesDateTimeOrBoth) {
  for (const auto& [mode, expected] : {std::pair{1, u"3/5/2017 2:07:09 PM"}, {2, u"3/5/2017"}, {3, u"2:07:09 PM"}}) {
    CString output(u"old text");
    GetFileLocaleDateTime(path().c_str(), output, mode, nullptr);
    EXPECT_EQ(output, expected) << mode;
  }
}

TEST_F(FileTimeTest, StampIsFourteenDigitsInTheLocalTime) {
  CString output, stamp(u"old");
  GetFileLocaleDateTime(path().c_str(), output, 2, &stamp);
  EXPECT_EQ(stamp, u"20170305140709");
  EXPECT_EQ(output, u"3/5/2017");
  ScopedEnv german("LC_ALL", "de_DE");  // the stamp doesn't follow the locale
  GetFileLocaleDateTime(path().c_str(), output, 0, &stamp);
  EXPECT_EQ(stamp, u"20170305140709");
  EXPECT_EQ(output, u"05.03.2017 14:07:09");
}

TEST_F(FileTimeTest, NothingChangesWithoutAFileOrALocalTime) {
  mTemp.makeFile("old.dwg");
  setWriteTime("old.dwg", -86400 * 400);  // 1968
  const std::u16string missing = path("missing.dwg"), old = path("old.dwg");
  for (const char16_t* path : {static_cast<const char16_t*>(nullptr), u"", missing.c_str(), old.c_str()}) {
    SCOPED_TRACE(path ? U8(path) : "null");
    CString output(u"output"), stamp(u"stamp");
    GetFileLocaleDateTime(path, output, 0, &stamp);
    EXPECT_EQ(output, u"output");
    EXPECT_EQ(stamp, u"stamp");
  }
}

TEST(LocaleSeparators, FollowTheLocaleAndFallBackWhenTheQueryFails) {
  ScopedEnv german("LC_ALL", "de_DE.UTF-8");  // neither separator is the fallback's
  CString separator(u"old");
  GetLocaleDecimalSep(separator);
  EXPECT_EQ(separator, u",");
  GetLocaleListSep(separator);
  EXPECT_EQ(separator, u";");
  win_testing::failNextGetLocaleInfo(ERROR_INVALID_PARAMETER);
  GetLocaleDecimalSep(separator);
  EXPECT_EQ(separator, u".");
  win_testing::failNextGetLocaleInfo(ERROR_INVALID_PARAMETER);
  GetLocaleListSep(separator);
  EXPECT_EQ(separator, u",");
}

}  // namespace
