// The host's user interface: its main frame window and, inside it, the
// drawing view that shows the current document. Both are made at first use
// and live for the session. A headless session (the host running without a
// user interface, as for batch work) has neither; the test seam switches it
// (ZdApplicationFrame_testing.h).
//
// Screen layout of the stand-in: the frame's client area starts at 100, 50
// of the screen; the view lies in it at 0, 48, so the view's client origin is
// 100, 98 on the screen. The frame is the active window when it is made.
//
// Thread safety: the host's main thread only.
#pragma once

#include "OhmPlatformExport.h"
#include "mfc/CWnd.h"

OHM_PLATFORM_API_BEGIN

// The drawing view: the window in which the current document is shown.
class ZdDwgView : public CWnd {};

// The host's main frame window; null in a headless session.
CWnd* zdedGetZedaFrame();

// The view of the current document; null when no document is current, and
// in a headless session.
ZdDwgView* zdedGetZedaDwgView();

OHM_PLATFORM_API_END
