// The mouse cursor: the system's shared cursors by id, the one cursor on
// show, and the pointer's position on the screen. A system cursor's handle is
// the same for every load and is never freed. The arrow is on show at start,
// and the pointer stands at 0, 0 of the screen.
//
// This stand-in has no pointing device: the position changes only when a
// test moves it (Cursor_testing.h), which generates no mouse message.
//
// Thread safety: the user interface thread only.
#pragma once

#include "OhmPlatformExport.h"
#include "win/WinDef.h"

OHM_PLATFORM_API_BEGIN

// Ids of the system's cursors, for LoadCursorW with no instance.
#define IDC_ARROW MAKEINTRESOURCEW(32512)
#define IDC_IBEAM MAKEINTRESOURCEW(32513)
#define IDC_WAIT MAKEINTRESOURCEW(32514)
#define IDC_CROSS MAKEINTRESOURCEW(32515)
#define IDC_HAND MAKEINTRESOURCEW(32649)
#define IDC_APPSTARTING MAKEINTRESOURCEW(32650)

// The system cursor `id` for a null instance. Null with
// ERROR_RESOURCE_NAME_NOT_FOUND for an id the system doesn't have, for a
// named cursor, and for any cursor of a module (modules carry none here).
HCURSOR LoadCursorW(HINSTANCE instance, LPCWSTR id);

// Puts `cursor` on show (null: no cursor is shown); the one on show before.
// Null with ERROR_INVALID_CURSOR_HANDLE, nothing changed, for a handle that
// LoadCursorW didn't give.
HCURSOR SetCursor(HCURSOR cursor);

// The pointer's screen position into *point; FALSE for null.
BOOL GetCursorPos(LPPOINT point) noexcept;

OHM_PLATFORM_API_END
