#include "win/module/FormatMessage.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <string_view>

#include "win/LastError.h"
#include "win/WinError.h"
#include "win/module/FormatMessage_testing.h"

namespace {

// The system's English texts of the codes this platform gives.
const std::map<DWORD, std::u16string_view>& systemTexts() {
  static const std::map<DWORD, std::u16string_view> texts{
      {ERROR_SUCCESS, u"The operation completed successfully."},
      {ERROR_INVALID_FUNCTION, u"Incorrect function."},
      {ERROR_FILE_NOT_FOUND, u"The system cannot find the file specified."},
      {ERROR_PATH_NOT_FOUND, u"The system cannot find the path specified."},
      {ERROR_ACCESS_DENIED, u"Access is denied."},
      {ERROR_INVALID_HANDLE, u"The handle is invalid."},
      {ERROR_NOT_ENOUGH_MEMORY, u"Not enough memory resources are available to process this command."},
      {ERROR_INVALID_DATA, u"The data is invalid."},
      {ERROR_NO_MORE_FILES, u"There are no more files."},
      {ERROR_SHARING_VIOLATION, u"The process cannot access the file because it is being used by another process."},
      {ERROR_BAD_NETPATH, u"The network path was not found."},
      {ERROR_FILE_EXISTS, u"The file exists."},
      {ERROR_INVALID_PARAMETER, u"The parameter is incorrect."},
      {ERROR_INSUFFICIENT_BUFFER, u"The data area passed to a system call is too small."},
      {ERROR_INVALID_NAME, u"The filename, directory name, or volume label syntax is incorrect."},
      {ERROR_INVALID_LEVEL, u"The system call level is not correct."},
      {ERROR_MOD_NOT_FOUND, u"The specified module could not be found."},
      {ERROR_PROC_NOT_FOUND, u"The specified procedure could not be found."},
      {ERROR_DIR_NOT_EMPTY, u"The directory is not empty."},
      {ERROR_BAD_PATHNAME, u"The specified path is invalid."},
      {ERROR_ALREADY_EXISTS, u"Cannot create a file when that file already exists."},
      {ERROR_BAD_EXE_FORMAT, u"%1 is not a valid Win32 application."},
      {ERROR_FILENAME_EXCED_RANGE, u"The filename or extension is too long."},
      {ERROR_MORE_DATA, u"More data is available."},
      {ERROR_NO_MORE_ITEMS, u"No more data is available."},
      {ERROR_MR_MID_NOT_FOUND,
       u"The system cannot find message text for message number 0x%1 in the message file for %2."},
      {ERROR_BADDB, u"The configuration registry database is corrupt."},
      {ERROR_CANTOPEN, u"The configuration registry key could not be opened."},
      {ERROR_CANTREAD, u"The configuration registry key could not be read."},
      {ERROR_CANTWRITE, u"The configuration registry key could not be written."},
      {ERROR_KEY_DELETED, u"Illegal operation attempted on a registry key that has been marked for deletion."},
      {ERROR_RESOURCE_DATA_NOT_FOUND, u"The specified image file did not contain a resource section."},
      {ERROR_RESOURCE_TYPE_NOT_FOUND, u"The specified resource type cannot be found in the image file."},
      {ERROR_RESOURCE_NAME_NOT_FOUND, u"The specified resource name cannot be found in the image file."},
      {ERROR_RESOURCE_LANG_NOT_FOUND, u"The specified resource language ID cannot be found in the image file."},
  };
  return texts;
}

struct LocalHeap {
  std::mutex mutex;
  std::set<void*> blocks;
};

LocalHeap& heap() {
  static LocalHeap h;
  return h;
}

bool knownLanguage(DWORD language) {
  return language == 0 || language == LANG_NEUTRAL_SUBLANG_DEFAULT || language == LANG_ENGLISH_US;
}

DWORD fail(LONG code) {
  SetLastError(code);
  return 0;
}

DWORD copyInto(const std::u16string& text, LPWSTR buffer, DWORD size) {
  if (text.size() + 1 > size) return fail(ERROR_INSUFFICIENT_BUFFER);
  std::copy(text.begin(), text.end(), buffer);
  buffer[text.size()] = u'\0';
  return static_cast<DWORD>(text.size());
}

DWORD allocateFor(const std::u16string& text, LPWSTR* target) {
  auto* block = static_cast<LPWSTR>(LocalAlloc(LMEM_FIXED, (text.size() + 1) * sizeof(WCHAR)));
  if (!block) return fail(ERROR_NOT_ENOUGH_MEMORY);
  std::copy(text.begin(), text.end(), block);
  *target = block;
  return static_cast<DWORD>(text.size());
}

}  // namespace

DWORD FormatMessageW(DWORD flags, LPCVOID, DWORD messageId, DWORD languageId, LPWSTR buffer, DWORD size, va_list*) {
  if (!buffer) return fail(ERROR_INVALID_PARAMETER);
  const auto it = systemTexts().find(messageId);
  if (!(flags & FORMAT_MESSAGE_FROM_SYSTEM) || (flags & FORMAT_MESSAGE_FROM_STRING) || it == systemTexts().end())
    return fail(ERROR_MR_MID_NOT_FOUND);
  if (!knownLanguage(languageId)) return fail(ERROR_RESOURCE_LANG_NOT_FOUND);
  const std::u16string text = std::u16string(it->second) + u"\r\n";
  if (flags & FORMAT_MESSAGE_ALLOCATE_BUFFER) return allocateFor(text, reinterpret_cast<LPWSTR*>(buffer));
  return copyInto(text, buffer, size);
}

HLOCAL LocalAlloc(UINT, std::size_t bytes) {
  void* block = std::calloc(std::max<std::size_t>(bytes, 1), 1);
  if (!block) return nullptr;
  std::lock_guard lock(heap().mutex);
  heap().blocks.insert(block);
  return block;
}

HLOCAL LocalFree(HLOCAL block) {
  if (!block) return nullptr;
  {
    std::lock_guard lock(heap().mutex);
    if (heap().blocks.erase(block) == 0) {
      SetLastError(ERROR_INVALID_HANDLE);
      return block;
    }
  }
  std::free(block);
  return nullptr;
}

namespace win_testing {

long liveLocalBlocks() noexcept {
  std::lock_guard lock(heap().mutex);
  return static_cast<long>(heap().blocks.size());
}

}  // namespace win_testing
