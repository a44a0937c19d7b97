// Posted window messages: one queue for the user interface thread, first in
// first out. Whoever runs the message loop (the host) takes the messages out
// and decides where they go (Messages_internal.h).
//
// Thread safety: PostMessageW may be called from any thread; the loop's
// calls belong to the user interface thread.
#pragma once

#include "OhmPlatformExport.h"
#include "win/WinDef.h"

OHM_PLATFORM_API_BEGIN

// Message ids.
inline constexpr UINT WM_NULL = 0x0000;
inline constexpr UINT WM_CLOSE = 0x0010;
inline constexpr UINT WM_QUIT = 0x0012;
inline constexpr UINT WM_KEYDOWN = 0x0100;
inline constexpr UINT WM_KEYUP = 0x0101;
inline constexpr UINT WM_CHAR = 0x0102;
inline constexpr UINT WM_MOUSEMOVE = 0x0200;
inline constexpr UINT WM_LBUTTONDOWN = 0x0201;
inline constexpr UINT WM_LBUTTONUP = 0x0202;
inline constexpr UINT WM_RBUTTONDOWN = 0x0204;
inline constexpr UINT WM_MOUSEWHEEL = 0x020A;

// PeekMessageW's removal choice.
inline constexpr UINT PM_NOREMOVE = 0x0000;
inline constexpr UINT PM_REMOVE = 0x0001;

struct MSG {
  HWND hwnd;  // the window it was posted to; null for a thread message (WM_QUIT)
  UINT message;
  WPARAM wParam;
  LPARAM lParam;
  DWORD time;  // a running count of the messages posted, in posting order
  POINT pt;    // the cursor's screen position when it was posted
};
using LPMSG = MSG*;

// The position packed in a mouse message's lParam, as signed 16-bit values.
inline int GET_X_LPARAM(LPARAM lParam) { return static_cast<short>(LOWORD(lParam)); }
inline int GET_Y_LPARAM(LPARAM lParam) { return static_cast<short>(HIWORD(lParam)); }

// Puts a message for `window` at the end of the queue. FALSE with
// ERROR_INVALID_WINDOW_HANDLE for a handle that isn't a window (null posts a
// thread message, as on the platform).
BOOL PostMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

OHM_PLATFORM_API_END
