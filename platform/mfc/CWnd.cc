#include "mfc/CWnd.h"

#include <map>
#include <memory>

#include "win/ui/Window.h"
#include "win/ui/Window_internal.h"

namespace {

struct HandleMaps {
  std::map<HWND, CWnd*> permanent;
  std::map<HWND, std::unique_ptr<CWnd>> temporary;
};

// Never destroyed: windows' objects may outlive the static objects of this file.
HandleMaps& maps() {
  static HandleMaps* const state = new HandleMaps;
  return *state;
}

// Temporary objects of windows that are gone go with them.
void dropStaleTemporaries() {
  std::erase_if(maps().temporary, [](const auto& entry) { return !IsWindow(entry.first); });
}

}  // namespace

LPDISPATCH CCmdTarget::GetIDispatch(BOOL addRef) {
  if (m_dispatch && addRef) m_dispatch->AddRef();
  return m_dispatch;
}

CWnd::~CWnd() { Detach(); }

BOOL CWnd::Attach(HWND window) {
  if (m_hWnd || !window || maps().permanent.count(window)) return FALSE;
  maps().permanent.emplace(window, this);
  m_hWnd = window;
  return TRUE;
}

HWND CWnd::Detach() noexcept {
  const HWND window = m_hWnd;
  const auto it = maps().permanent.find(window);
  if (it != maps().permanent.end() && it->second == this) maps().permanent.erase(it);
  m_hWnd = nullptr;
  return window;
}

CWnd* CWnd::FromHandle(HWND window) {
  if (!window) return nullptr;
  if (const auto it = maps().permanent.find(window); it != maps().permanent.end()) return it->second;
  dropStaleTemporaries();
  std::unique_ptr<CWnd>& temporary = maps().temporary[window];
  if (!temporary) {
    temporary = std::make_unique<CWnd>();
    temporary->m_hWnd = window;
  }
  return temporary.get();
}
