// CWnd: MFC's object for a window (win/ui/Window.h). An object made by its
// window's owner and attached to the handle is the window's permanent
// object; FromHandle gives it, or else a temporary object that MFC keeps for
// the handle until the window is gone (the caller never deletes it).
//
// Thread safety: the user interface thread only.
#pragma once

#include "OhmPlatformExport.h"
#include "mfc/CCmdTarget.h"
#include "win/WinDef.h"

OHM_PLATFORM_API_BEGIN

class CWnd : public CCmdTarget {
 public:
  CWnd() = default;
  ~CWnd() override;

  // The window's handle; null for no window.
  HWND GetSafeHwnd() const noexcept { return m_hWnd; }
  // Makes this the permanent object of `window`; FALSE when this object
  // already has a window, the handle is null, or it has a permanent object.
  BOOL Attach(HWND window);
  // Ends the attachment; the handle it had, or null.
  HWND Detach() noexcept;

  // The object of `window`: its permanent one, else a temporary one; null for null.
  static CWnd* FromHandle(HWND window);

  HWND m_hWnd = nullptr;
};

OHM_PLATFORM_API_END
