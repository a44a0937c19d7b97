// Windows of the user interface: each is a rectangle on the screen with a
// parent or none, made by whoever shows it (the host makes its frame and
// drawing view) and known by its handle until it is destroyed. There is no
// drawing: a window here is where messages go and what screen positions are
// measured from. A window's client area is the whole window (no borders or
// captions), so its client origin is its top-left corner on the screen.
//
// One window at a time is the active one; none at start. Windows are made,
// destroyed and activated by the host's frame (Window_internal.h).
//
// Thread safety: the user interface thread only, as on the platform.
#pragma once

#include "OhmPlatformExport.h"
#include "win/WinDef.h"

OHM_PLATFORM_API_BEGIN

// Window styles: a child lies inside its parent, measured from the parent's client origin.
inline constexpr DWORD WS_OVERLAPPED = 0x00000000;
inline constexpr DWORD WS_CHILD = 0x40000000;
inline constexpr DWORD WS_VISIBLE = 0x10000000;

// The active window; null when none is.
HWND GetActiveWindow() noexcept;

// Turns a screen position into one in `window`'s client area. FALSE with
// ERROR_INVALID_WINDOW_HANDLE, the point unchanged, for a handle that isn't a
// window; FALSE for a null point.
BOOL ScreenToClient(HWND window, LPPOINT point);

OHM_PLATFORM_API_END
