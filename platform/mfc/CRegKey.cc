#include "mfc/CRegKey.h"

#include <cassert>
#include <utility>

#include "win/WinError.h"

namespace ATL {

LONG CRegKey::Open(HKEY parent, LPCWSTR keyName, REGSAM access) {
  HKEY opened = nullptr;
  const LONG status = RegOpenKeyExW(parent, keyName, 0, access, &opened);
  if (status != ERROR_SUCCESS) return status;
  Close();
  m_hKey = opened;
  m_samWOW64 = access & (KEY_WOW64_32KEY | KEY_WOW64_64KEY);
  return ERROR_SUCCESS;
}

LONG CRegKey::Create(HKEY parent, LPCWSTR keyName, LPWSTR keyClass, DWORD options, REGSAM access,
                     LPSECURITY_ATTRIBUTES security, LPDWORD disposition) {
  HKEY created = nullptr;
  const LONG status = RegCreateKeyExW(parent, keyName, 0, keyClass, options, access, security, &created, disposition);
  if (status != ERROR_SUCCESS) return status;
  Close();
  m_hKey = created;
  m_samWOW64 = access & (KEY_WOW64_32KEY | KEY_WOW64_64KEY);
  return ERROR_SUCCESS;
}

LONG CRegKey::Close() noexcept {
  if (!m_hKey) return ERROR_SUCCESS;
  m_samWOW64 = 0;
  return RegCloseKey(std::exchange(m_hKey, nullptr));
}

void CRegKey::Attach(HKEY key) noexcept {
  assert(!m_hKey && "CRegKey::Attach: a key is held");
  m_hKey = key;
}

HKEY CRegKey::Detach() noexcept {
  m_samWOW64 = 0;
  return std::exchange(m_hKey, nullptr);
}

LONG CRegKey::DeleteSubKey(LPCWSTR subKey) { return RegDeleteKeyExW(m_hKey, subKey, m_samWOW64, 0); }

LONG CRegKey::RecurseDeleteKey(LPCWSTR subKey) {
  CRegKey key;
  if (LONG status = key.Open(m_hKey, subKey, KEY_READ | DELETE | m_samWOW64)) return status;
  WCHAR child[REG_MAX_KEY_NAME + 1];
  DWORD size = REG_MAX_KEY_NAME + 1;
  FILETIME written;
  while (RegEnumKeyExW(key.m_hKey, 0, child, &size, nullptr, nullptr, nullptr, &written) == ERROR_SUCCESS) {
    if (LONG status = key.RecurseDeleteKey(child)) return status;
    size = REG_MAX_KEY_NAME + 1;
  }
  key.Close();
  return DeleteSubKey(subKey);
}

LONG CRegKey::DeleteValue(LPCWSTR name) { return RegDeleteValueW(m_hKey, name); }

}  // namespace ATL
