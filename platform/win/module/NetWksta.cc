#include "win/module/NetWksta.h"

#include <sys/utsname.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <new>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <utility>

#include "win/CrtChar.h"
#include "win/Utf8.h"
#include "win/WinError.h"
#include "win/module/NetWksta_testing.h"

namespace {

struct WkstaState {
  std::mutex mutex;
  std::set<void*> buffers;
  NET_API_STATUS fault = NERR_Success;
  std::optional<std::pair<DWORD, DWORD>> version;
  long calls = 0;
};

WkstaState& state() {
  static WkstaState s;
  return s;
}

struct MachineInfo {
  std::u16string name;
  DWORD major = 0;
  DWORD minor = 0;
};

MachineInfo thisMachine() {
  utsname names{};
  ::uname(&names);
  MachineInfo info{CrtUpperCopy(Utf8ToUtf16(names.nodename)), 0, 0};
  unsigned major = 0, minor = 0;
  if (std::sscanf(names.release, "%u.%u", &major, &minor) == 2) info = {info.name, major, minor};
  return info;
}

bool isThisMachine(LPCWSTR server, const std::u16string& name) {
  if (!server || !*server) return true;
  std::u16string_view wanted(server);
  while (!wanted.empty() && wanted.front() == u'\\') wanted.remove_prefix(1);
  return CrtEqualNoCase(wanted, name);
}

// One block: the record, then its two strings.
WKSTA_INFO_100* newRecord(const MachineInfo& info, std::u16string_view group) {
  const std::size_t bytes = sizeof(WKSTA_INFO_100) + (info.name.size() + group.size() + 2) * sizeof(WCHAR);
  auto* record = static_cast<WKSTA_INFO_100*>(std::calloc(bytes, 1));
  if (!record) return nullptr;
  auto* text = reinterpret_cast<LPWSTR>(record + 1);
  record->wki100_platform_id = PLATFORM_ID_NT;
  record->wki100_computername = text;
  text = std::copy(info.name.begin(), info.name.end(), text) + 1;
  record->wki100_langroup = text;
  std::copy(group.begin(), group.end(), text);
  record->wki100_ver_major = info.major;
  record->wki100_ver_minor = info.minor;
  return record;
}

}  // namespace

NET_API_STATUS NetWkstaGetInfo(LPWSTR serverName, DWORD level, LPBYTE* buffer) {
  WkstaState& s = state();
  std::lock_guard lock(s.mutex);
  ++s.calls;
  if (s.fault != NERR_Success) return s.fault;
  if (!buffer) return ERROR_INVALID_PARAMETER;
  if (level != 100) return ERROR_INVALID_LEVEL;
  MachineInfo info = thisMachine();
  if (!isThisMachine(serverName, info.name)) return ERROR_BAD_NETPATH;
  if (s.version) std::tie(info.major, info.minor) = *s.version;
  WKSTA_INFO_100* record = newRecord(info, u"WORKGROUP");
  if (!record) return ERROR_NOT_ENOUGH_MEMORY;
  s.buffers.insert(record);
  *buffer = reinterpret_cast<LPBYTE>(record);
  return NERR_Success;
}

NET_API_STATUS NetApiBufferFree(LPVOID buffer) {
  if (!buffer) return NERR_Success;
  {
    std::lock_guard lock(state().mutex);
    if (state().buffers.erase(buffer) == 0) return ERROR_INVALID_PARAMETER;
  }
  std::free(buffer);
  return NERR_Success;
}

namespace win_testing {

void failNetWkstaGetInfo(NET_API_STATUS status) noexcept {
  std::lock_guard lock(state().mutex);
  state().fault = status;
}

void setWorkstationVersion(DWORD major, DWORD minor) noexcept {
  std::lock_guard lock(state().mutex);
  state().version = std::make_pair(major, minor);
}

void clearWorkstationVersion() noexcept {
  std::lock_guard lock(state().mutex);
  state().version.reset();
}

long liveNetApiBuffers() noexcept {
  std::lock_guard lock(state().mutex);
  return static_cast<long>(state().buffers.size());
}

long netWkstaGetInfoCalls() noexcept {
  std::lock_guard lock(state().mutex);
  return state().calls;
}

}  // namespace win_testing
