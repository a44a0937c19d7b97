#include "win/locale/CrtTime.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace {

TEST(CrtTime, LocalTimeRefusesTimesBefore1970AndAfter3000) {
  struct Case {
    __time64_t time;
    errno_t status;
  } cases[] = {
      {0, 0},
      {32535215999, 0},
      {-1, EINVAL},
      {32535216000, EINVAL},
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

}  // namespace
