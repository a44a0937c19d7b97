// CString's loading of strings from resources: apart from CString.cc so that
// the string type itself doesn't need the module and resource functions.
#include "mfc/AfxExtensionModule.h"
#include "mfc/CString.h"
#include "win/module/Resource.h"

BOOL CString::LoadString(HINSTANCE module, UINT id) {
  const WCHAR* text = nullptr;
  const int length = LoadStringW(module, id, reinterpret_cast<LPWSTR>(&text), 0);
  if (length <= 0 || !text) return FALSE;
  m_str.assign(text, static_cast<std::size_t>(length));
  return TRUE;
}

BOOL CString::LoadString(UINT id) {
  for (HMODULE module : AfxResourceChain())
    if (LoadString(module, id)) return TRUE;
  return FALSE;
}
