#include "win/module/Module.h"

#include <dlfcn.h>
#include <link.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <mutex>
#include <optional>

#include "win/LastError.h"
#include "win/Utf8.h"
#include "win/WinError.h"
#include "win/fs/PathMapping.h"
#include "win/module/Module_testing.h"

namespace {

struct LoadedModules {
  std::mutex mutex;
  std::string dllDirectory;                  // POSIX; empty when none is set
  std::multimap<HMODULE, void*> references;  // module -> dlopen handle, one entry per reference
};

LoadedModules& loaded() {
  static LoadedModules modules;
  return modules;
}

bool hasFolder(std::u16string_view name) { return name.find_first_of(u"\\/:") != std::u16string_view::npos; }

std::size_t baseNameStart(std::u16string_view path) {
  const std::size_t slash = path.find_last_of(u"\\/");
  return slash == std::u16string_view::npos ? 0 : slash + 1;
}

std::string lowerAscii(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

// The file of a bare name in the folder of SetDllDirectoryW, if it is there.
std::optional<std::string> inDllDirectory(const std::string& file) {
  std::lock_guard lock(loaded().mutex);
  if (loaded().dllDirectory.empty()) return std::nullopt;
  const std::string path = loaded().dllDirectory + "/" + file;
  return ::access(path.c_str(), F_OK) == 0 ? std::optional(path) : std::nullopt;
}

// The path the dynamic loader is given: POSIX for a name with a folder or one
// found in the folder of SetDllDirectoryW, else the bare file name for the
// search path.
std::optional<std::string> loaderPath(std::u16string_view moduleName) {
  const std::u16string file = ModuleNameToFileName(moduleName);
  if (hasFolder(file)) return WindowsPathToPosix(file);
  const std::string bare = Utf16ToUtf8(file);
  return inDllDirectory(bare).value_or(bare);
}

link_map* linkMapOf(void* handle) {
  link_map* map = nullptr;
  return dlinfo(handle, RTLD_DI_LINKMAP, &map) == 0 ? map : nullptr;
}

// The first entry of the process's chain of loaded objects: the program.
link_map* programMap() {
  static link_map* const map = linkMapOf(dlopen(nullptr, RTLD_LAZY));
  return map;
}

link_map* findLoaded(HMODULE module) {
  for (link_map* map = programMap(); map; map = map->l_next)
    if (reinterpret_cast<HMODULE>(map) == module) return map;
  return nullptr;
}

// "libx.so" answers to "libx.so", "libx.so.1", "libx.so.1.2.3".
bool fileNameMatches(const std::string& candidate, const std::string& wanted) {
  if (candidate.compare(0, wanted.size(), wanted) != 0) return false;
  const std::string rest = candidate.substr(wanted.size());
  return rest.empty() || (rest[0] == '.' && rest.find_first_not_of("0123456789.") == std::string::npos);
}

const link_map* definingModule(void* address) {
  Dl_info info{};
  link_map* map = nullptr;
  return dladdr1(address, &info, reinterpret_cast<void**>(&map), RTLD_DL_LINKMAP) ? map : nullptr;
}

std::string programPath() {
  std::string path(4096, '\0');
  const ssize_t length = ::readlink("/proc/self/exe", path.data(), path.size());
  path.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
  return path;
}

std::string modulePath(const link_map* map) {
  return map->l_name && *map->l_name ? std::string(map->l_name) : programPath();
}

}  // namespace

std::u16string ModuleNameToFileName(std::u16string_view moduleName) {
  const std::size_t start = baseNameStart(moduleName);
  const std::u16string_view base = moduleName.substr(start);
  if (base.size() <= 4 || lowerAscii(Utf16ToUtf8(base.substr(base.size() - 4))) != ".dll")
    return std::u16string(moduleName);
  return std::u16string(moduleName.substr(0, start)) + u"lib" + std::u16string(base.substr(0, base.size() - 4)) +
         u".so";
}

HMODULE LoadLibraryW(LPCWSTR moduleName) {
  if (!moduleName || !*moduleName) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return nullptr;
  }
  const std::optional<std::string> path = loaderPath(moduleName);
  void* handle = path ? dlopen(path->c_str(), RTLD_NOW | RTLD_LOCAL) : nullptr;
  link_map* map = handle ? linkMapOf(handle) : nullptr;
  if (!map) {
    if (handle) dlclose(handle);
    const bool present = path && hasFolder(moduleName) && ::access(path->c_str(), F_OK) == 0;
    SetLastError(present ? ERROR_BAD_EXE_FORMAT : ERROR_MOD_NOT_FOUND);
    return nullptr;
  }
  const HMODULE module = reinterpret_cast<HMODULE>(map);
  std::lock_guard lock(loaded().mutex);
  loaded().references.emplace(module, handle);
  return module;
}

BOOL SetDllDirectoryW(LPCWSTR folder) {
  std::optional<std::string> posix = std::string();
  if (folder && *folder) posix = WindowsPathToPosix(folder);
  if (!posix) {
    SetLastError(ERROR_FILE_NOT_FOUND);
    return FALSE;
  }
  std::lock_guard lock(loaded().mutex);
  loaded().dllDirectory = *posix;
  return TRUE;
}

BOOL FreeLibrary(HMODULE module) {
  void* handle = nullptr;
  {
    std::lock_guard lock(loaded().mutex);
    const auto it = loaded().references.find(module);
    if (it == loaded().references.end()) {
      SetLastError(ERROR_INVALID_HANDLE);
      return FALSE;
    }
    handle = it->second;
    loaded().references.erase(it);
  }
  dlclose(handle);
  return TRUE;
}

HMODULE GetModuleHandleW(LPCWSTR moduleName) {
  if (!moduleName) return reinterpret_cast<HMODULE>(programMap());
  const std::u16string file = ModuleNameToFileName(moduleName);
  const std::string wanted = lowerAscii(Utf16ToUtf8(std::u16string_view(file).substr(baseNameStart(file))));
  for (link_map* map = programMap()->l_next; map; map = map->l_next) {
    const std::string name = map->l_name ? map->l_name : "";
    if (fileNameMatches(lowerAscii(name.substr(name.find_last_of('/') + 1)), wanted))
      return reinterpret_cast<HMODULE>(map);
  }
  SetLastError(ERROR_MOD_NOT_FOUND);
  return nullptr;
}

DWORD GetModuleFileNameW(HMODULE module, LPWSTR buffer, DWORD size) {
  const link_map* map = module ? findLoaded(module) : programMap();
  if (!map || !buffer) {
    SetLastError(ERROR_INVALID_HANDLE);
    return 0;
  }
  const std::u16string path = PosixPathToWindows(modulePath(map));
  if (size == 0) {
    SetLastError(ERROR_INSUFFICIENT_BUFFER);
    return 0;
  }
  const std::size_t copied = std::min<std::size_t>(path.size(), size - 1);
  std::copy_n(path.begin(), copied, buffer);
  buffer[copied] = u'\0';
  if (copied < path.size()) {
    SetLastError(ERROR_INSUFFICIENT_BUFFER);
    return size;
  }
  return static_cast<DWORD>(copied);
}

void* GetProcAddress(HMODULE module, LPCSTR name) {
  const link_map* map = module ? findLoaded(module) : nullptr;
  void* handle = map ? dlopen(map == programMap() ? nullptr : map->l_name, RTLD_LAZY | RTLD_NOLOAD) : nullptr;
  void* address = handle && name ? dlsym(handle, name) : nullptr;
  if (handle) dlclose(handle);
  // dlsym also searches the module's dependencies; only the module's own exports count.
  if (address && definingModule(address) != map) address = nullptr;
  if (!address) SetLastError(ERROR_PROC_NOT_FOUND);
  return address;
}

namespace win_testing {

long loadedLibraryCount() noexcept {
  std::lock_guard lock(loaded().mutex);
  return static_cast<long>(loaded().references.size());
}

std::vector<std::string> loadedLibraryPaths() {
  std::lock_guard lock(loaded().mutex);
  std::vector<std::string> paths;
  for (const auto& [module, handle] : loaded().references)
    paths.push_back(modulePath(reinterpret_cast<const link_map*>(module)));
  return paths;
}

}  // namespace win_testing
