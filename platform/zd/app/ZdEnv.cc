#include "zd/app/ZdEnv.h"

#include <cstdlib>
#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "win/CrtChar.h"
#include "win/Utf8.h"
#include "zd/ZdCodes.h"
#include "zd/app/ZdEnv_testing.h"

namespace {

std::mutex gMutex;
std::map<std::u16string, std::optional<std::u16string>> gSettings;  // upper-case name -> value
std::optional<int> gNextGetFault;

const std::optional<std::u16string>& lookUp(const std::u16string& upperName) {
  auto [it, inserted] = gSettings.try_emplace(upperName);
  if (inserted) {
    const char* seeded = std::getenv(("OHM_ENV_" + Utf16ToUtf8(upperName)).c_str());
    if (seeded) it->second = Utf8ToUtf16(seeded);
  }
  return it->second;
}

}  // namespace

int zdedGetEnv(const char16_t* name, char16_t* buffer, std::size_t size) {
  if (!name || !buffer) return RTERROR;
  std::lock_guard lock(gMutex);
  if (gNextGetFault) {
    const int status = *gNextGetFault;
    gNextGetFault.reset();
    return status;
  }
  const std::optional<std::u16string>& value = lookUp(CrtUpperCopy(name));
  if (!value) return RTERROR;
  if (value->size() + 1 > size) return RTREJ;
  std::char_traits<char16_t>::copy(buffer, value->c_str(), value->size() + 1);
  return RTNORM;
}

int zdedSetEnv(const char16_t* name, const char16_t* value) {
  if (!name || !value) return RTERROR;
  std::lock_guard lock(gMutex);
  gSettings[CrtUpperCopy(name)] = std::u16string(value);
  return RTNORM;
}

namespace zd_testing {

void resetEnv() {
  std::lock_guard lock(gMutex);
  gSettings.clear();
  gNextGetFault.reset();
}

void failNextGetEnv(int status) {
  std::lock_guard lock(gMutex);
  gNextGetFault = status;
}

}  // namespace zd_testing
