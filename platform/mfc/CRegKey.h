// ATL's CRegKey: one registry key handle and the operations that open,
// create, close and delete keys with it. The object owns the handle it
// holds (m_hKey) and closes it on destruction, unless it was detached.
// Attaching a root (HKEY_CURRENT_USER...) is allowed; closing a root does
// nothing. Statuses are those of the registry functions (win/registry/Registry.h).
//
// Thread safety: one object by one thread at a time.
#pragma once

#include "OhmPlatformExport.h"
#include "win/WinDef.h"
#include "win/registry/Registry.h"

OHM_PLATFORM_API_BEGIN

namespace ATL {

class CRegKey {
 public:
  CRegKey() noexcept = default;
  explicit CRegKey(HKEY key) noexcept : m_hKey(key) {}
  ~CRegKey() { Close(); }
  CRegKey(const CRegKey&) = delete;
  CRegKey& operator=(const CRegKey&) = delete;

  operator HKEY() const noexcept { return m_hKey; }

  // Opens `keyName` below `parent`; on success the key held before is closed
  // and replaced. The status of RegOpenKeyExW; the key held is kept on failure.
  LONG Open(HKEY parent, LPCWSTR keyName, REGSAM access = KEY_READ | KEY_WRITE);
  // Opens or makes `keyName` below `parent` as RegCreateKeyExW does; on
  // success the key held before is closed and replaced. Its status.
  LONG Create(HKEY parent, LPCWSTR keyName, LPWSTR keyClass = nullptr, DWORD options = REG_OPTION_NON_VOLATILE,
              REGSAM access = KEY_READ | KEY_WRITE, LPSECURITY_ATTRIBUTES security = nullptr,
              LPDWORD disposition = nullptr);
  // Closes the key held, if any; the status of RegCloseKey, ERROR_SUCCESS when none is held.
  LONG Close() noexcept;
  // Takes `key` as the key held. REQUIRES: none is held.
  void Attach(HKEY key) noexcept;
  // Gives up the key held without closing it; the handle (null when none).
  HKEY Detach() noexcept;

  // Deletes sub key `subKey` that has no sub keys; the status of RegDeleteKeyExW.
  LONG DeleteSubKey(LPCWSTR subKey);
  // Deletes sub key `subKey` with everything below it, deepest first; the
  // first failing status (what was deleted before it stays deleted).
  LONG RecurseDeleteKey(LPCWSTR subKey);
  // Deletes value `name` of the key held; the status of RegDeleteValueW.
  LONG DeleteValue(LPCWSTR name);

  HKEY m_hKey = nullptr;
  REGSAM m_samWOW64 = 0;  // the registry view of deletes; one view here
};

}  // namespace ATL

OHM_PLATFORM_API_END
