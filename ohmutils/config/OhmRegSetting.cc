#include "ohmutils/config/OhmRegSetting.h"

#include "ohmutils/config/CRegistryKey.h"
#include "win/WinError.h"
#include "zd/app/ZdHostApplicationServices.h"

namespace {

constexpr DWORD kReadAccess = 0x20019;
constexpr DWORD kReadWriteAccess = 0x2001F;

// "<product root>\Settings\<section>", relative to HKEY_CURRENT_USER.
CString SectionKeyPath(LPCWSTR section) {
  CString path(zddbHostApplicationServices()->getUserRegistryProductRootKey());
  path += u"\\Settings";
  path += u"\\";
  path += section;
  return path;
}

}  // namespace

bool OhmGetRegSetting(LPCWSTR section, LPCWSTR name, CString& value) {
  if (!section || !name) return false;
  const CString path = SectionKeyPath(section);
  CRegistryKey key;
  key.SetRootToHCUK();
  if (key.Open(path, kReadAccess) != ERROR_SUCCESS) return false;
  const bool read = key.GetValue(name, value) == ERROR_SUCCESS;
  key.Close();
  return read;
}

bool OhmSetRegSetting(LPCWSTR section, LPCWSTR name, LPCWSTR value) {
  if (!section || !name || !value) return false;
  const CString path = SectionKeyPath(section);
  CRegistryKey key;
  key.SetRootToHCUK();
  if (key.Open(path, kReadWriteAccess) != ERROR_SUCCESS && key.Create(path) != ERROR_SUCCESS) return false;
  const bool written = key.SetValue(name, value) == ERROR_SUCCESS;
  key.Close();
  return written;
}
