// Making, destroying and activating windows: the host's frame does it, and
// nothing outside the stand-ins does, so these stay inside the library (tests
// reach them through Window_testing.h).
#pragma once

#include "win/ui/Window.h"

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

// Makes `window` the active one (null: none is active); the one that was, or
// null. Null with ERROR_INVALID_WINDOW_HANDLE, nothing changed, for a handle
// that isn't a window.
HWND SetActiveWindow(HWND window);
