#include "win/fs/ShellFileOperation.h"

#include <atomic>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "win/WinError.h"
#include "win/fs/PathMapping.h"
#include "win/fs/ShellFileOperation_testing.h"

namespace {

constexpr int kNoFault = 0;
std::atomic<int> gNextFault{kNoFault};

// The names of a list of terminated names ended by an empty one.
std::vector<std::u16string_view> sourceNames(LPCWSTR list) {
  std::vector<std::u16string_view> names;
  for (std::u16string_view name(list); !name.empty(); name = std::u16string_view(name.data() + name.size() + 1))
    names.push_back(name);
  return names;
}

int deleteTree(std::u16string_view name) {
  const std::optional<std::string> posix = WindowsPathToPosix(name);
  std::error_code error;
  if (!posix || !std::filesystem::exists(std::filesystem::symlink_status(*posix, error))) return ERROR_FILE_NOT_FOUND;
  std::filesystem::remove_all(*posix, error);
  return error ? DE_ACCESSDENIEDSRC : 0;
}

}  // namespace

int SHFileOperationW(SHFILEOPSTRUCTW* operation) {
  if (const int fault = gNextFault.exchange(kNoFault); fault != kNoFault) return fault;
  if (!operation || operation->wFunc != FO_DELETE) return ERROR_INVALID_PARAMETER;
  operation->fAnyOperationsAborted = FALSE;
  if (!operation->pFrom) return DE_INVALIDFILES;
  const std::vector<std::u16string_view> names = sourceNames(operation->pFrom);
  if (names.empty()) return DE_INVALIDFILES;
  for (std::u16string_view name : names)
    if (const int status = deleteTree(name); status != 0) return status;
  return 0;
}

namespace win_testing {

void failNextFileOperation(int status) noexcept { gNextFault = status; }

}  // namespace win_testing
