#include "win/fs/FileFunctions.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "win/CrtChar.h"
#include "win/LastError.h"
#include "win/Utf8.h"
#include "win/WinError.h"
#include "win/fs/FileFunctions_testing.h"
#include "win/fs/PathMapping.h"

namespace {

struct FindSearch {
  std::vector<WIN32_FIND_DATAW> entries;
  std::size_t next = 0;
};

struct FileState {
  std::mutex mutex;
  std::set<FindSearch*> searches;
  std::optional<DWORD> findNextFault;
  std::optional<DWORD> createDirectoryFault;
};

FileState& state() {
  static FileState s;
  return s;
}

BOOL fail(DWORD error) {
  SetLastError(error);
  return FALSE;
}

HANDLE failSearch(DWORD error) {
  SetLastError(error);
  return INVALID_HANDLE_VALUE;
}

// Takes a pending fault, if any.
std::optional<DWORD> takeFault(std::optional<DWORD>& fault) {
  std::lock_guard lock(state().mutex);
  return std::exchange(fault, std::nullopt);
}

// The POSIX path of a Windows-form path; nullopt (last error
// ERROR_PATH_NOT_FOUND) for null, empty or a drive that isn't mapped.
std::optional<std::string> posixPath(LPCWSTR path) {
  std::optional<std::string> posix = path && *path ? WindowsPathToPosix(path) : std::nullopt;
  if (!posix) SetLastError(ERROR_PATH_NOT_FOUND);
  return posix;
}

std::string parentOf(const std::string& posix) {
  std::string trimmed = posix;
  while (trimmed.size() > 1 && trimmed.back() == '/') trimmed.pop_back();
  const std::size_t slash = trimmed.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : trimmed.substr(0, slash);
}

bool isFolder(const std::string& posix) {
  struct stat info {};
  return ::stat(posix.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

// The platform's code for a failed call on `posix`: a missing leaf and a
// missing folder on the way are told apart, as the platform does.
DWORD errorFor(int error, const std::string& posix) {
  switch (error) {
    case ENOENT:
      return isFolder(parentOf(posix)) ? ERROR_FILE_NOT_FOUND : ERROR_PATH_NOT_FOUND;
    case ENOTDIR:
      return ERROR_PATH_NOT_FOUND;
    case EEXIST:
      return ERROR_ALREADY_EXISTS;
    case ENOTEMPTY:
      return ERROR_DIR_NOT_EMPTY;
    case ENAMETOOLONG:
      return ERROR_FILENAME_EXCED_RANGE;
    case EACCES:
    case EPERM:
    case EROFS:
    case EBUSY:
      return ERROR_ACCESS_DENIED;
    default:
      return ERROR_INVALID_FUNCTION;
  }
}

FILETIME fileTime(const timespec& time) {
  constexpr long long kSecondsFrom1601To1970 = 11644473600LL;
  const unsigned long long ticks =
      static_cast<unsigned long long>(time.tv_sec + kSecondsFrom1601To1970) * 10000000ULL + time.tv_nsec / 100;
  return FILETIME{static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
}

DWORD attributesOf(const struct stat& info) {
  if (S_ISDIR(info.st_mode)) return FILE_ATTRIBUTE_DIRECTORY;
  return (info.st_mode & S_IWUSR) ? FILE_ATTRIBUTE_NORMAL : FILE_ATTRIBUTE_READONLY;
}

std::optional<WIN32_FIND_DATAW> findData(const std::string& folder, const std::string& name) {
  struct stat info {};
  if (::stat((folder + "/" + name).c_str(), &info) != 0) return std::nullopt;
  WIN32_FIND_DATAW data{};
  data.dwFileAttributes = attributesOf(info);
  data.ftCreationTime = fileTime(info.st_ctim);
  data.ftLastAccessTime = fileTime(info.st_atim);
  data.ftLastWriteTime = fileTime(info.st_mtim);
  data.nFileSizeHigh = static_cast<DWORD>(static_cast<unsigned long long>(info.st_size) >> 32);
  data.nFileSizeLow = static_cast<DWORD>(info.st_size);
  const std::u16string wide = Utf8ToUtf16(name);
  if (wide.size() >= MAX_PATH) return std::nullopt;
  wide.copy(data.cFileName, wide.size());
  return data;
}

// The platform's wildcard match: '*' any run, '?' one unit, case ignored.
bool wildcardMatch(std::u16string_view pattern, std::u16string_view name) {
  if (pattern.empty()) return name.empty();
  if (pattern[0] == u'*')
    return wildcardMatch(pattern.substr(1), name) || (!name.empty() && wildcardMatch(pattern, name.substr(1)));
  if (name.empty() || (pattern[0] != u'?' && CrtToUpper(pattern[0]) != CrtToUpper(name[0]))) return false;
  return wildcardMatch(pattern.substr(1), name.substr(1));
}

// A trailing ".*" also matches names without a dot ("*.*" matches every name).
bool namePatternMatch(std::u16string_view pattern, std::u16string_view name) {
  if (wildcardMatch(pattern, name)) return true;
  return pattern.size() >= 2 && pattern.substr(pattern.size() - 2) == u".*" &&
         wildcardMatch(pattern.substr(0, pattern.size() - 2), name);
}

// Every name in `folder` (sorted, "." and ".." first); nullopt when it can't be read.
std::optional<std::vector<std::string>> folderNames(const std::string& folder) {
  DIR* dir = ::opendir(folder.c_str());
  if (!dir) return std::nullopt;
  std::vector<std::string> names;
  while (const dirent* entry = ::readdir(dir)) {
    const std::string name = entry->d_name;
    if (name != "." && name != "..") names.push_back(name);
  }
  ::closedir(dir);
  std::sort(names.begin(), names.end());
  names.insert(names.begin(), {".", ".."});
  return names;
}

void copyEntry(const FindSearch& search, WIN32_FIND_DATAW* data) {
  if (data) *data = search.entries[search.next];
}

FindSearch* liveSearch(HANDLE handle) {
  std::lock_guard lock(state().mutex);
  auto* search = static_cast<FindSearch*>(handle);
  return state().searches.count(search) ? search : nullptr;
}

}  // namespace

HANDLE FindFirstFileW(LPCWSTR pattern, WIN32_FIND_DATAW* data) {
  const std::u16string_view text = pattern ? pattern : u"";
  const std::size_t separator = text.find_last_of(u"\\/");
  const bool drive = text.size() >= 2 && text[1] == u':';
  const std::size_t nameStart = separator != std::u16string_view::npos ? separator + 1 : (drive ? 2 : 0);
  const std::u16string folderText(text.substr(0, nameStart));
  const std::optional<std::string> folder = folderText.empty() ? std::string(".") : posixPath(folderText.c_str());
  if (!folder) return INVALID_HANDLE_VALUE;
  const auto names = folderNames(*folder);
  if (!names) return failSearch(ERROR_PATH_NOT_FOUND);
  auto search = std::make_unique<FindSearch>();
  for (const std::string& name : *names) {
    if (!namePatternMatch(text.substr(nameStart), Utf8ToUtf16(name))) continue;
    if (auto entry = findData(*folder, name)) search->entries.push_back(*entry);
  }
  if (search->entries.empty()) return failSearch(ERROR_FILE_NOT_FOUND);
  copyEntry(*search, data);
  std::lock_guard lock(state().mutex);
  state().searches.insert(search.get());
  return search.release();
}

BOOL FindNextFileW(HANDLE handle, WIN32_FIND_DATAW* data) {
  FindSearch* search = liveSearch(handle);
  if (!search) return fail(ERROR_INVALID_HANDLE);
  if (const auto fault = takeFault(state().findNextFault)) return fail(*fault);
  if (search->next + 1 >= search->entries.size()) return fail(ERROR_NO_MORE_FILES);
  ++search->next;
  copyEntry(*search, data);
  return TRUE;
}

BOOL FindClose(HANDLE handle) {
  FindSearch* search = liveSearch(handle);
  if (!search) return fail(ERROR_INVALID_HANDLE);
  {
    std::lock_guard lock(state().mutex);
    state().searches.erase(search);
  }
  delete search;
  return TRUE;
}

BOOL SetFileAttributesW(LPCWSTR path, DWORD attributes) {
  const std::optional<std::string> posix = posixPath(path);
  struct stat info {};
  if (!posix) return FALSE;
  if (::stat(posix->c_str(), &info) != 0) return fail(errorFor(errno, *posix));
  if (S_ISDIR(info.st_mode)) return TRUE;  // a folder's read-only flag protects nothing on the platform
  const bool readOnly = attributes & FILE_ATTRIBUTE_READONLY;
  const mode_t mode = readOnly ? (info.st_mode & ~mode_t{0222}) : (info.st_mode | S_IWUSR);
  if (::chmod(posix->c_str(), mode & 07777) != 0) return fail(errorFor(errno, *posix));
  return TRUE;
}

BOOL DeleteFileW(LPCWSTR path) {
  const std::optional<std::string> posix = posixPath(path);
  struct stat info {};
  if (!posix) return FALSE;
  if (::stat(posix->c_str(), &info) != 0) return fail(errorFor(errno, *posix));
  if (S_ISDIR(info.st_mode) || !(info.st_mode & S_IWUSR)) return fail(ERROR_ACCESS_DENIED);
  if (::unlink(posix->c_str()) != 0) return fail(errorFor(errno, *posix));
  return TRUE;
}

BOOL CreateDirectoryW(LPCWSTR path, SECURITY_ATTRIBUTES*) {
  if (const auto fault = takeFault(state().createDirectoryFault)) return fail(*fault);
  const std::optional<std::string> posix = posixPath(path);
  if (!posix) return FALSE;
  if (::mkdir(posix->c_str(), 0777) != 0) return fail(errno == ENOENT ? ERROR_PATH_NOT_FOUND : errorFor(errno, *posix));
  return TRUE;
}

BOOL RemoveDirectoryW(LPCWSTR path) {
  const std::optional<std::string> posix = posixPath(path);
  if (!posix) return FALSE;
  if (::rmdir(posix->c_str()) == 0) return TRUE;
  if (errno == ENOTDIR && !isFolder(*posix)) return fail(ERROR_DIRECTORY);
  return fail(errno == EEXIST ? ERROR_DIR_NOT_EMPTY : errorFor(errno, *posix));
}

namespace win_testing {

long liveFindHandles() noexcept {
  std::lock_guard lock(state().mutex);
  return static_cast<long>(state().searches.size());
}

void failNextFindNextFile(DWORD error) noexcept {
  std::lock_guard lock(state().mutex);
  state().findNextFault = error;
}

void failNextCreateDirectory(DWORD error) noexcept {
  std::lock_guard lock(state().mutex);
  state().createDirectoryFault = error;
}

}  // namespace win_testing

DWORD GetTempPathW(DWORD size, LPWSTR buffer) {
  const char* tmpdir = std::getenv("TMPDIR");
  std::u16string folder = PosixPathToWindows(tmpdir && *tmpdir ? tmpdir : "/tmp");
  if (folder.empty() || folder.back() != u'\\') folder += u'\\';
  const auto length = static_cast<DWORD>(folder.size());
  if (!buffer || length + 1 > size) return length + 1;
  folder.copy(buffer, length);
  buffer[length] = u'\0';
  return length;
}
