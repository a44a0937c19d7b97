// Windows of the user interface: each is a rectangle on the screen with a
// parent or none, made by whoever shows it (the host makes its frame and
// drawing view) and known by its handle until it is destroyed. There is no
// drawing: a window here is where messages go and what screen positions are
// measured from. A window's client area is the whole window (no borders or
// captions), so its client origin is its top-left corner on the screen.
//
// One window at a time is the active one; none at start.
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

// Makes a window at x, y (screen for a top-level window, the parent's client
// area for WS_CHILD) of the given size. The class and the name are kept as
// given; the menu, instance and creation data are accepted and not used. The
// new window's handle; null with ERROR_INVALID_WINDOW_HANDLE for a parent
// that isn't a window, ERROR_INVALID_PARAMETER for WS_CHILD without a parent.
HWND CreateWindowExW(DWORD exStyle, LPCWSTR className, LPCWSTR windowName, DWORD style, int x, int y, int width,
                     int height, HWND parent, void* menu, HINSTANCE instance, LPVOID param);

// Destroys a window and its children (an active one stops being active).
// FALSE with ERROR_INVALID_WINDOW_HANDLE for a handle that isn't a window.
BOOL DestroyWindow(HWND window);

// TRUE while `window` is a window that hasn't been destroyed.
BOOL IsWindow(HWND window) noexcept;

// The active window; null when none is.
HWND GetActiveWindow() noexcept;

// Makes `window` the active one (null: none is active); the one that was, or
// null. Null with ERROR_INVALID_WINDOW_HANDLE, nothing changed, for a handle
// that isn't a window.
HWND SetActiveWindow(HWND window);

// Turns a screen position into one in `window`'s client area. FALSE with
// ERROR_INVALID_WINDOW_HANDLE, the point unchanged, for a handle that isn't a
// window; FALSE for a null point.
BOOL ScreenToClient(HWND window, LPPOINT point);

OHM_PLATFORM_API_END
