#include "win/locale/CrtTime.h"

#include <cerrno>

namespace {

constexpr __time64_t kLastTime = 32535215999;  // 3000-12-31 23:59:59 UTC

void markInvalid(std::tm& result) {
  result.tm_sec = result.tm_min = result.tm_hour = result.tm_mday = result.tm_mon = result.tm_year = -1;
  result.tm_wday = result.tm_yday = result.tm_isdst = -1;
}

}  // namespace

__time64_t _time64(__time64_t* destination) noexcept {
  const __time64_t now = static_cast<__time64_t>(std::time(nullptr));
  if (destination) *destination = now;
  return now;
}

errno_t _localtime64_s(std::tm* result, const __time64_t* time) noexcept {
  if (!result || !time) return EINVAL;
  const std::time_t value = static_cast<std::time_t>(*time);
  if (*time < 0 || *time > kLastTime || !localtime_r(&value, result)) {
    markInvalid(*result);
    return EINVAL;
  }
  return 0;
}
