#include "win/locale/CrtTime.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <utility>

namespace {

TEST(CrtTime, LocalTimeRefusesTimesBefore1970AndAfter3000) {
  // A refused time leaves a year of -1.
  for (const auto& [time, status] :
       {std::pair<__time64_t, errno_t>{0, 0}, {32535215999, 0}, {-1, EINVAL}, {32535216000, EINVAL}}) {
    std::tm result{};
    EXPECT_EQ(_localtime64_s(&result, &time), status) << time;
    EXPECT_EQ(result.tm_year == -1, status != 0) << time;
  }
  std::tm result{};
  const __time64_t epoch = 0;
  EXPECT_EQ(_localtime64_s(&result, nullptr), EINVAL);
  EXPECT_EQ(_localtime64_s(nullptr, &epoch), EINVAL);
}

}  // namespace
