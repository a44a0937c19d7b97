#include "win/CrtTime.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <ctime>

#include "support/TempFolder.h"
#include "win/CrtFind.h"

namespace {

TEST(CrtTime, LocalTimeRefusesTimesBefore1970AndAfter3000) {
  struct Case { __time64_t time; errno_t status; } cases[] = {
      {0, 0}, {1488722829, 0}, {32535215999, 0}, {-1, EINVAL}, {32535216000, EINVAL},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.time);
    std::tm result{};
    EXPECT_EQ(_localtime64_s(&result, &c.time), c.status);
    if (c.status != 0) {
      EXPECT_EQ(result.tm_year, -1);
    }
  }
  std::tm result{};
  EXPECT_EQ(_localtime64_s(&result, nullptr), EINVAL);
  EXPECT_EQ(_localtime64_s(nullptr, &cases[0].time), EINVAL);
}

TEST(CrtTime, LocalTimeAgreesWithTheRuntimesConversion) {
  std::tm wanted{};
  wanted.tm_year = 117, wanted.tm_mon = 2, wanted.tm_mday = 5, wanted.tm_hour = 14, wanted.tm_min = 7, wanted.tm_sec = 9;
  wanted.tm_isdst = -1;
  const __time64_t time = std::mktime(&wanted);
  std::tm result{};
  ASSERT_EQ(_localtime64_s(&result, &time), 0);
  EXPECT_EQ(result.tm_year, 117);
  EXPECT_EQ(result.tm_mday, 5);
  EXPECT_EQ(result.tm_hour, 14);
  EXPECT_EQ(result.tm_sec, 9);
  __time64_t stored = 0;
  EXPECT_EQ(_time64(&stored), stored);
  EXPECT_GT(stored, time);
}

TEST(CrtFind, FindsTheFirstMatchWithItsWriteTime) {
  TempFolder temp;
  temp.makeFile("b.txt", "12345");
  temp.makeFile("a.txt");
  const timespec times[2] = {{1488722829, 0}, {1488722829, 0}};
  ASSERT_EQ(::utimensat(AT_FDCWD, temp.posix("b.txt").c_str(), times, 0), 0);
  _wfinddata64_t data{};
  const std::intptr_t search = _wfindfirst64((temp.windows() + u"\\b.*").c_str(), &data);
  ASSERT_NE(search, -1);
  EXPECT_EQ(std::u16string(data.name), u"b.txt");
  EXPECT_EQ(data.time_write, 1488722829);
  EXPECT_EQ(data.size, 5);
  EXPECT_EQ(data.attrib, _A_NORMAL);
  EXPECT_EQ(_findclose(search), 0);
  EXPECT_EQ(_findclose(search), -1);

  const std::intptr_t first = _wfindfirst64((temp.windows() + u"\\*.txt").c_str(), &data);
  EXPECT_EQ(std::u16string(data.name), u"a.txt");
  EXPECT_EQ(_findclose(first), 0);
}

TEST(CrtFind, MissingGivesMinusOneAndEnoent) {
  _wfinddata64_t data{};
  errno = 0;
  EXPECT_EQ(_wfindfirst64(u"Q:\\x\\*", &data), -1);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(_wfindfirst64(nullptr, &data), -1);
  EXPECT_EQ(errno, EINVAL);
}

}  // namespace
