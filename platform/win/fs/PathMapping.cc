#include "win/fs/PathMapping.h"

#include <cstdlib>
#include <map>
#include <mutex>

#include "win/CrtChar.h"
#include "win/Utf8.h"
#include "win/fs/PathMapping_testing.h"

namespace {

// Drive letter (upper case) -> POSIX root folder.
std::map<char16_t, std::string>& driveTable() {
  static std::map<char16_t, std::string> table = [] {
    std::map<char16_t, std::string> drives{{u'Z', "/"}};
    const char* extra = std::getenv("OHM_DRIVES");
    std::string_view list = extra ? extra : "";
    while (!list.empty()) {
      const std::string_view item = list.substr(0, list.find(';'));
      list.remove_prefix(std::min(list.size(), item.size() + 1));
      if (item.size() >= 3 && item[1] == '=') drives[CrtToUpper(static_cast<char16_t>(item[0]))] = item.substr(2);
    }
    return drives;
  }();
  return table;
}

std::mutex gDriveMutex;

bool isSeparator(char16_t unit) { return unit == u'\\' || unit == u'/'; }

}  // namespace

std::optional<std::string> WindowsPathToPosix(std::u16string_view path) {
  if (path.size() >= 2 && isSeparator(path[0]) && isSeparator(path[1])) return std::nullopt;
  std::string root;
  if (path.size() >= 2 && path[1] == u':') {
    std::lock_guard lock(gDriveMutex);
    const auto it = driveTable().find(CrtToUpper(path[0]));
    if (it == driveTable().end()) return std::nullopt;
    root = it->second;
    path.remove_prefix(2);
    if (!root.empty() && root.back() == '/' && !path.empty() && isSeparator(path[0])) root.pop_back();
    if (!path.empty() && !isSeparator(path[0]) && !root.empty() && root.back() != '/') root += '/';
  }
  std::string posix = Utf16ToUtf8(path);
  for (char& c : posix)
    if (c == '\\') c = '/';
  return root + posix;
}

std::u16string PosixPathToWindows(std::string_view path) {
  std::u16string windows = Utf8ToUtf16(path);
  for (char16_t& unit : windows)
    if (unit == u'/') unit = u'\\';
  return windows;
}

namespace win_testing {

void mapDrive(char16_t letter, const std::string& root) {
  std::lock_guard lock(gDriveMutex);
  if (root.empty()) {
    driveTable().erase(CrtToUpper(letter));
  } else {
    driveTable()[CrtToUpper(letter)] = root;
  }
}

}  // namespace win_testing
