#include "win/module/Resource.h"

#include <algorithm>

#include "win/LastError.h"
#include "win/WinError.h"
#include "win/module/Module.h"

namespace {

// The module's resource table; null (ERROR_RESOURCE_DATA_NOT_FOUND) without one.
const ResourceEntry* directoryOf(HMODULE module) {
  if (!module) module = GetModuleHandleW(nullptr);
  const auto* table = static_cast<const ResourceEntry*>(GetProcAddress(module, kResourceDirectorySymbol));
  if (!table) SetLastError(ERROR_RESOURCE_DATA_NOT_FOUND);
  return table;
}

// The entry of `type` and `id`; null with the error that says what is missing.
const ResourceEntry* findEntry(HMODULE module, WORD type, WORD id) {
  const ResourceEntry* entry = directoryOf(module);
  if (!entry) return nullptr;
  bool typeSeen = false;
  for (; entry->type != 0; ++entry) {
    typeSeen = typeSeen || entry->type == type;
    if (entry->type == type && entry->id == id) return entry;
  }
  SetLastError(typeSeen ? ERROR_RESOURCE_NAME_NOT_FOUND : ERROR_RESOURCE_TYPE_NOT_FOUND);
  return nullptr;
}

WORD intResource(LPCWSTR resource) { return static_cast<WORD>(reinterpret_cast<UINT_PTR>(resource)); }

}  // namespace

int LoadStringW(HINSTANCE module, UINT id, LPWSTR buffer, int size) {
  if (!buffer || size < 0) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return 0;
  }
  const ResourceEntry* entry = id <= 0xFFFF ? findEntry(module, RT_STRING_ID, static_cast<WORD>(id)) : nullptr;
  if (!entry) {
    if (id > 0xFFFF) SetLastError(ERROR_RESOURCE_NAME_NOT_FOUND);
    return 0;
  }
  const auto* text = static_cast<const WCHAR*>(entry->data);
  const int length = static_cast<int>(entry->size / sizeof(WCHAR));
  if (size == 0) {
    *reinterpret_cast<const WCHAR**>(buffer) = text;
    return length;
  }
  const int copied = std::min(length, size - 1);
  std::copy_n(text, copied, buffer);
  buffer[copied] = u'\0';
  return copied;
}

HRSRC FindResourceW(HMODULE module, LPCWSTR name, LPCWSTR type) {
  if (!IS_INTRESOURCE(name) || !IS_INTRESOURCE(type)) {
    SetLastError(ERROR_RESOURCE_NAME_NOT_FOUND);
    return nullptr;
  }
  const ResourceEntry* entry = findEntry(module, intResource(type), intResource(name));
  return reinterpret_cast<HRSRC>(const_cast<ResourceEntry*>(entry));
}

DWORD SizeofResource(HMODULE, HRSRC resource) {
  if (!resource) SetLastError(ERROR_INVALID_HANDLE);
  return resource ? reinterpret_cast<const ResourceEntry*>(resource)->size : 0;
}

HGLOBAL LoadResource(HMODULE, HRSRC resource) {
  if (!resource) {
    SetLastError(ERROR_INVALID_HANDLE);
    return nullptr;
  }
  return const_cast<void*>(reinterpret_cast<const ResourceEntry*>(resource)->data);
}

LPVOID LockResource(HGLOBAL data) { return data; }
