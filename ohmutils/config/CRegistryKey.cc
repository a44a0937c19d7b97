#include "ohmutils/config/CRegistryKey.h"

#include <algorithm>
#include <string>

#include "mfc/AfxMessageBox.h"
#include "ohmutils/host/OhmUtilsModule_internal.h"
#include "win/WinError.h"
#include "win/module/FormatMessage.h"
#include "win/registry/Registry.h"
#include "win/ui/MessageBox.h"

namespace {

// Strings of the language resource library.
constexpr UINT kRegistryTitle = 112;
constexpr UINT kKeyNotCountable = 113;
constexpr UINT kKeyToDeleteMissing = 114;

// Buffer sizes of a listing pass (units of a name or class, bytes of data)
// and of a read into a CString (units, one fewer offered to the registry).
constexpr DWORD kListNameUnits = 1000;
constexpr DWORD kListDataBytes = 1000;
constexpr DWORD kReadUnits = 2000;

constexpr DWORD kReadWriteAccess = 0x2001F;

CString ResourceString(UINT id) {
  CString text;
  text.LoadString(ohm_internal::ResourceLibrary(), id);
  return text;
}

// Counts the sub keys or values of `key` (either pointer may be null); the
// status, after a box with string 113 when the key can't be counted.
long CountEntries(HKEY key, DWORD* subKeys, DWORD* values) {
  const long status = RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, subKeys, nullptr, nullptr, values, nullptr,
                                       nullptr, nullptr, nullptr);
  if (status != ERROR_SUCCESS) AfxMessageBox(ResourceString(kKeyNotCountable));
  return status;
}

// The information box of a listing pass that failed: the system's text of
// `status` under the registry title.
void ShowListingFailure(long status) {
  LPWSTR text = nullptr;
  FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                 static_cast<DWORD>(status), LANG_NEUTRAL_SUBLANG_DEFAULT, reinterpret_cast<LPWSTR>(&text), 0, nullptr);
  MessageBoxW(nullptr, text ? text : u"", ResourceString(kRegistryTitle), MB_ICONINFORMATION);
  LocalFree(text);
}

// The information box of a DeleteKey that failed with `status`.
void ShowDeleteFailure(long status) {
  WCHAR text[kListNameUnits] = {};
  FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, static_cast<DWORD>(status),
                 LANG_NEUTRAL_SUBLANG_DEFAULT, text, kListNameUnits, nullptr);
  CString message(text);
  if (status == ERROR_FILE_NOT_FOUND) message += ResourceString(kKeyToDeleteMissing);
  MessageBoxW(nullptr, message, ResourceString(kRegistryTitle), MB_ICONINFORMATION);
}

// The text in `size` bytes of value data, up to its first terminator.
CString TextOf(const char16_t* data, DWORD size) {
  const char16_t* end = data + std::min(size, kListDataBytes) / 2;
  return CString(data, static_cast<int>(std::find(data, end, u'\0') - data));
}

DWORD NumberOf(const BYTE* data) {
  return DWORD(data[0]) | DWORD(data[1]) << 8 | DWORD(data[2]) << 16 | DWORD(data[3]) << 24;
}

// One listed value as the lists carry it.
REGITEM ItemOf(DWORD type, const WCHAR* name, const char16_t* data, DWORD size) {
  REGITEM item;
  item.type = type;
  item.name = name;
  if (type == REG_SZ) item.stringValue = TextOf(data, size);
  if (type == REG_DWORD) item.dwordValue = NumberOf(reinterpret_cast<const BYTE*>(data));
  return item;
}

}  // namespace

CRegistryKey::CRegistryKey() : rootKey(HKEY_CURRENT_USER) { Attach(rootKey); }

CRegistryKey::~CRegistryKey() { Detach(); }

void CRegistryKey::useRoot(HKEY root) {
  rootKey = root;
  Detach();
  Attach(rootKey);
}

long CRegistryKey::SetRootToHCUK() {
  useRoot(HKEY_CURRENT_USER);
  return 0;
}

long CRegistryKey::SetRootToHLMK() {
  useRoot(HKEY_LOCAL_MACHINE);
  return 0;
}

long CRegistryKey::Open(LPCWSTR subKey, DWORD access) { return CRegKey::Open(rootKey, subKey, access); }

long CRegistryKey::Create(LPCWSTR subKey) {
  return CRegKey::Create(rootKey, subKey, nullptr, REG_OPTION_NON_VOLATILE, kReadWriteAccess, nullptr, nullptr);
}

long CRegistryKey::DeleteKey(LPCWSTR subKey) {
  const long status = RecurseDeleteKey(subKey);
  if (status != ERROR_SUCCESS) ShowDeleteFailure(status);
  return status;
}

long CRegistryKey::DeleteAllValues() {
  CList<REGITEM, REGITEM&> listed;
  GetValueList(&listed);
  long status = ERROR_SUCCESS;
  while (!valueList.IsEmpty() && status == ERROR_SUCCESS) status = RegDeleteValueW(m_hKey, valueList.RemoveHead().name);
  return status;
}

long CRegistryKey::GetSubKeyList(CList<SUBKEY, SUBKEY&>* list) {
  if (!list) return ERROR_INVALID_PARAMETER;
  DWORD count = 0;
  if (const long status = CountEntries(m_hKey, &count, nullptr)) return status;
  WCHAR name[kListNameUnits] = {};
  WCHAR keyClass[kListNameUnits] = {};
  long status = ERROR_SUCCESS;
  for (DWORD index = 0; index < count; ++index) {
    DWORD nameSize = kListNameUnits, classSize = kListNameUnits;
    FILETIME written;
    status =
        RegEnumKeyExW(m_hKey, index, name, &nameSize, nullptr, keyClass, &classSize, &written) ? ERROR_MORE_DATA : 0;
    SUBKEY entry{CString(name)};
    subKeyList.AddTail(entry);
    list->AddTail(entry);
  }
  if (status != ERROR_SUCCESS) ShowListingFailure(status);
  return status;
}

long CRegistryKey::GetValueList(CList<REGITEM, REGITEM&>* list) {
  if (!list) return ERROR_INVALID_PARAMETER;
  DWORD count = 0;
  if (const long status = CountEntries(m_hKey, nullptr, &count)) return status;
  WCHAR name[kListNameUnits] = {};
  char16_t data[kListDataBytes / 2] = {};
  long status = ERROR_SUCCESS;
  for (DWORD index = 0; index < count; ++index) {
    DWORD nameSize = kListNameUnits, dataSize = kListDataBytes, type = REG_NONE;
    status = RegEnumValueW(m_hKey, index, name, &nameSize, nullptr, &type, reinterpret_cast<LPBYTE>(data), &dataSize)
                 ? ERROR_MORE_DATA
                 : 0;
    REGITEM item = ItemOf(type, name, data, dataSize);
    valueList.AddTail(item);
    list->AddTail(item);
  }
  if (status != ERROR_SUCCESS) ShowListingFailure(status);
  return status;
}

long CRegistryKey::GetValue(LPCWSTR name, DWORD& value) {
  DWORD type = REG_NONE, size = sizeof value;
  const long status = RegQueryValueExW(m_hKey, name, nullptr, &type, reinterpret_cast<LPBYTE>(&value), &size);
  if (status != ERROR_SUCCESS) return status;
  return type == REG_DWORD ? ERROR_SUCCESS : ERROR_INVALID_DATA;
}

long CRegistryKey::GetValue(LPCWSTR name, CString& value) {
  LPWSTR buffer = value.GetBuffer(static_cast<int>(kReadUnits));
  const long status = GetValue(name, buffer, kReadUnits - 1);
  value.ReleaseBuffer();
  return status;
}

long CRegistryKey::GetValue(LPCWSTR name, LPWSTR buffer, DWORD size) {
  if (!name || !buffer) return ERROR_INVALID_PARAMETER;
  if (size == 0xFFFFFFFF) size = static_cast<DWORD>(std::char_traits<char16_t>::length(buffer));
  DWORD type = REG_NONE, bytes = size * 2;
  const long status = RegQueryValueExW(m_hKey, name, nullptr, &type, reinterpret_cast<LPBYTE>(buffer), &bytes);
  if (status != ERROR_SUCCESS) return status;
  if (type != REG_SZ && type != REG_EXPAND_SZ) return ERROR_INVALID_DATA;
  if (bytes == 0) {
    buffer[0] = u'\0';
    return ERROR_SUCCESS;
  }
  return bytes % 2 || buffer[bytes / 2 - 1] != u'\0' ? ERROR_INVALID_DATA : ERROR_SUCCESS;
}

long CRegistryKey::SetValue(REGITEM* item) {
  if (!item) return ERROR_INVALID_PARAMETER;
  return item->type == REG_SZ ? SetValue(item->name, item->stringValue) : SetValue(item->name, item->dwordValue);
}

long CRegistryKey::SetValue(CList<REGITEM, REGITEM&>* list) {
  if (!list) return ERROR_INVALID_PARAMETER;
  long status = ERROR_SUCCESS;
  for (POSITION pos = list->GetHeadPosition(); pos;) status = SetValue(&list->GetNext(pos));
  return status;
}

long CRegistryKey::SetValue(LPCWSTR name, LPCWSTR text) {
  if (!text) return ERROR_INVALID_DATA;
  const auto bytes = static_cast<DWORD>((std::char_traits<char16_t>::length(text) + 1) * 2);
  return RegSetValueExW(m_hKey, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text), bytes);
}

long CRegistryKey::SetValue(LPCWSTR name, DWORD number) {
  return RegSetValueExW(m_hKey, name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), sizeof number);
}

long CRegistryKey::CopyKey(LPCWSTR) {
  AfxMessageBox(u"The method CopyKey is not available.");
  return 0;
}

bool CRegistryKey::Exists(LPCWSTR) {
  AfxMessageBox(u"The method Exists is not available.");
  return false;
}

long CRegistryKey::GetRemoteKey(LPCWSTR) {
  AfxMessageBox(u"GetRemoteKey has not yet been defined");
  return 0;
}

long CRegistryKey::SetSecurity() {
  AfxMessageBox(u"SetSecurity has not yet been defined");
  return 0;
}
