#include "win/fs/CrtFind.h"

#include <cerrno>
#include <string_view>

#include "win/fs/FileFunctions.h"

namespace {

__time64_t unixTime(const FILETIME& time) {
  constexpr long long kSecondsFrom1601To1970 = 11644473600LL;
  const unsigned long long ticks = (static_cast<unsigned long long>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
  return static_cast<__time64_t>(ticks / 10000000ULL) - kSecondsFrom1601To1970;
}

unsigned crtAttributes(DWORD attributes) {
  unsigned result = _A_NORMAL;
  if (attributes & FILE_ATTRIBUTE_READONLY) result |= _A_RDONLY;
  if (attributes & FILE_ATTRIBUTE_DIRECTORY) result |= _A_SUBDIR;
  return result;
}

void fill(const WIN32_FIND_DATAW& entry, _wfinddata64_t& data) {
  data.attrib = crtAttributes(entry.dwFileAttributes);
  data.time_create = unixTime(entry.ftCreationTime);
  data.time_access = unixTime(entry.ftLastAccessTime);
  data.time_write = unixTime(entry.ftLastWriteTime);
  data.size = (static_cast<std::int64_t>(entry.nFileSizeHigh) << 32) | entry.nFileSizeLow;
  const std::u16string_view name(entry.cFileName);
  name.copy(data.name, name.size());
  data.name[name.size()] = u'\0';
}

}  // namespace

std::intptr_t _wfindfirst64(const char16_t* pattern, _wfinddata64_t* data) {
  if (!pattern || !data) {
    errno = EINVAL;
    return -1;
  }
  WIN32_FIND_DATAW entry;
  const HANDLE search = FindFirstFileW(pattern, &entry);
  if (search == INVALID_HANDLE_VALUE) {
    errno = ENOENT;
    return -1;
  }
  fill(entry, *data);
  return reinterpret_cast<std::intptr_t>(search);
}

int _findclose(std::intptr_t handle) {
  if (FindClose(reinterpret_cast<HANDLE>(handle))) return 0;
  errno = EINVAL;
  return -1;
}
