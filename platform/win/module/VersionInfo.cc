#include "win/module/VersionInfo.h"

#include <dlfcn.h>
#include <link.h>
#include <unistd.h>

#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "win/LastError.h"
#include "win/WinError.h"
#include "win/fs/PathMapping.h"
#include "win/module/Module.h"
#include "win/module/ResourceTable.h"

namespace {

// A path the dynamic loader takes as a file, never as a name to search for.
std::string filePathForLoader(std::string path) { return path.find('/') == std::string::npos ? "./" + path : path; }

std::vector<BYTE> versionBlockOf(void* handle) {
  link_map* map = nullptr;
  if (dlinfo(handle, RTLD_DI_LINKMAP, &map) != 0) return {};
  const auto* entry =
      static_cast<const ResourceEntry*>(GetProcAddress(reinterpret_cast<HMODULE>(map), kResourceDirectorySymbol));
  for (; entry && entry->type != 0; ++entry) {
    if (entry->type != RT_VERSION_ID || entry->id != VS_VERSION_INFO) continue;
    const auto* bytes = static_cast<const BYTE*>(entry->data);
    return std::vector<BYTE>(bytes, bytes + entry->size);
  }
  return {};
}

// The file's version block; nullopt with the last error set when there is none.
std::optional<std::vector<BYTE>> readVersionBlock(LPCWSTR fileName) {
  const std::optional<std::string> path = fileName ? WindowsPathToPosix(fileName) : std::nullopt;
  if (!path || path->empty() || ::access(path->c_str(), F_OK) != 0) {
    SetLastError(ERROR_FILE_NOT_FOUND);
    return std::nullopt;
  }
  void* handle = dlopen(filePathForLoader(*path).c_str(), RTLD_LAZY | RTLD_LOCAL);
  if (!handle) {
    SetLastError(ERROR_BAD_EXE_FORMAT);
    return std::nullopt;
  }
  std::vector<BYTE> block = versionBlockOf(handle);
  dlclose(handle);
  if (block.empty()) {
    SetLastError(ERROR_RESOURCE_TYPE_NOT_FOUND);
    return std::nullopt;
  }
  return block;
}

bool isVersionBlock(const VersionBlock& block) {
  return block.wValueLength == sizeof(VS_FIXEDFILEINFO) && block.value.dwSignature == VS_FFI_SIGNATURE &&
         std::u16string_view(block.szKey) == u"VS_VERSION_INFO";
}

}  // namespace

DWORD GetFileVersionInfoSizeW(LPCWSTR fileName, LPDWORD handle) {
  if (handle) *handle = 0;
  const std::optional<std::vector<BYTE>> block = readVersionBlock(fileName);
  return block ? static_cast<DWORD>(block->size()) : 0;
}

BOOL GetFileVersionInfoW(LPCWSTR fileName, DWORD, DWORD size, LPVOID data) {
  const std::optional<std::vector<BYTE>> block = readVersionBlock(fileName);
  if (!block) return FALSE;
  if (!data || size < block->size()) {
    SetLastError(ERROR_INSUFFICIENT_BUFFER);
    return FALSE;
  }
  std::memcpy(data, block->data(), block->size());
  return TRUE;
}

BOOL VerQueryValueW(LPCVOID block, LPCWSTR subBlock, LPVOID* value, UINT* length) {
  if (!block || !subBlock || !value || !length) return FALSE;
  const auto* version = static_cast<const VersionBlock*>(block);
  if (std::u16string_view(subBlock) != u"\\" || !isVersionBlock(*version)) return FALSE;
  *value = const_cast<VS_FIXEDFILEINFO*>(&version->value);
  *length = sizeof(VS_FIXEDFILEINFO);
  return TRUE;
}
