// Taking messages out of the queue and ending the loop: the host's message
// loop and automation do it, and nothing outside the stand-ins does, so these
// stay inside the library (tests reach them through Messages_testing.h).
#pragma once

#include "win/ui/Messages.h"

// Posts WM_QUIT with `exitCode` as its wParam; the loop ends when it takes it.
void PostQuitMessage(int exitCode);

// Copies the first queued message for `window` (any window for null) whose
// id lies in [first, last] (every id when both are 0) into *msg, and takes it
// out with PM_REMOVE. FALSE when there is none (or msg is null).
BOOL PeekMessageW(LPMSG msg, HWND window, UINT first, UINT last, UINT remove);
