#include "ohmutils/util/OhmUtilsDates.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <ctime>
#include <regex>
#include <string>
#include <tuple>

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

// A file in a temporary folder whose last write was at 14:07:09 on 5 March 2017, local time.
class FileTimeTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_FALSE(mTemp.posix().empty());
    std::tm local{};
    local.tm_year = 117, local.tm_mon = 2, local.tm_mday = 5, local.tm_hour = 14, local.tm_min = 7, local.tm_sec = 9;
    local.tm_isdst = -1;
    setWriteTime("sheet.dwg", std::mktime(&local));
  }
  void setWriteTime(const std::string& name, std::time_t time) {
    mTemp.makeFile(name);
    const timespec times[2] = {{time, 0}, {time, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, mTemp.posix(name).c_str(), times, 0), 0);
  }
  ScopedEnv mLocale{"LC_ALL", "en_US.UTF-8"};
  TempFolder mTemp;
};

// The mode chooses date, time or both; the stamp is fourteen digits of the
// local time whatever the locale, and only written when asked for.
TEST_F(FileTimeTest, ModeChoosesDateTimeOrBothAndTheStampIgnoresTheLocale) {
  const std::tuple<const char*, int, bool, const char16_t*> cases[] = {
      {"en_US.UTF-8", 1, false, u"3/5/2017 2:07:09 PM"},
      {"en_US.UTF-8", 2, true, u"3/5/2017"},
      {"en_US.UTF-8", 3, false, u"2:07:09 PM"},
      {"de_DE", 0, true, u"05.03.2017 14:07:09"},
  };
  for (const auto& [locale, mode, withStamp, expected] : cases) {
    SCOPED_TRACE(testing::Message() << locale << " mode " << mode);
    ScopedEnv scoped("LC_ALL", locale);
    CString output(u"old text"), stamp(u"old");
    GetFileLocaleDateTime(mTemp.windows("sheet.dwg").c_str(), output, mode, withStamp ? &stamp : nullptr);
    EXPECT_EQ(output.str(), expected);
    EXPECT_EQ(stamp.str(), withStamp ? u"20170305140709" : u"old");
  }
}

TEST_F(FileTimeTest, NothingChangesWithoutAFileOrALocalTime) {
  setWriteTime("old.dwg", -86400 * 400);  // 1968
  const std::u16string missing = mTemp.windows("missing.dwg"), old = mTemp.windows("old.dwg");
  for (const char16_t* path : {static_cast<const char16_t*>(nullptr), u"", missing.c_str(), old.c_str()}) {
    SCOPED_TRACE(path ? U8(path) : "null");
    CString output(u"output"), stamp(u"stamp");
    GetFileLocaleDateTime(path, output, 0, &stamp);
    EXPECT_EQ(output, u"output");
    EXPECT_EQ(stamp, u"stamp");
  }
}

// Neither of the German separators is the fallback's.
TEST(LocaleSeparators, FollowTheLocaleAndFallBackWhenTheQueryFails) {
  ScopedEnv german("LC_ALL", "de_DE.UTF-8");
  for (const auto& [read, localized, fallback] :
       {std::tuple{&GetLocaleDecimalSep, u",", u"."}, {&GetLocaleListSep, u";", u","}}) {
    CString separator(u"old");
    read(separator);
    EXPECT_EQ(separator.str(), localized);
    win_testing::failNextGetLocaleInfo(ERROR_INVALID_PARAMETER);
    read(separator);
    EXPECT_EQ(separator.str(), fallback);
  }
}

}  // namespace
