#include "win/fs/CrtFile.h"

#include <cerrno>
#include <optional>
#include <string>

#include "win/Utf8.h"
#include "win/fs/PathMapping.h"

namespace {

// The mode the C library takes: the runtime's own text and encoding parts dropped.
std::string libraryMode(LPCWSTR mode) {
  std::string narrow = Utf16ToUtf8(mode);
  narrow = narrow.substr(0, narrow.find(','));
  std::string kept;
  for (char c : narrow)
    if (c != 't' && c != ' ') kept += c;
  return kept;
}

}  // namespace

FILE* _wfsopen(LPCWSTR path, LPCWSTR mode, int) {
  if (!path || !mode) {
    errno = EINVAL;
    return nullptr;
  }
  const std::optional<std::string> posix = WindowsPathToPosix(path);
  if (!posix || posix->empty()) {
    errno = ENOENT;
    return nullptr;
  }
  return std::fopen(posix->c_str(), libraryMode(mode).c_str());
}
