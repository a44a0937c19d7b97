#include "ohmutils/host/OhmWaitCursor.h"

#include "win/ui/Cursor.h"
#include "win/ui/Messages.h"
#include "win/ui/Window.h"
#include "zd/ui/ZdApplicationFrame.h"
#include "zd/ui/ZdWinMsgFilter.h"

namespace {

int gFilterRegistered = 0;
HCURSOR gWaitCursor = nullptr;
HCURSOR gPreviousCursor = nullptr;

// Mouse moves with a packed position of 0 pass: the moves that begin and end
// post are of that kind, and so is one at the view's 0, 0.
bool WaitCursorFilter(MSG* msg) {
  if (msg->message != WM_MOUSEMOVE || msg->lParam == 0) return false;
  if (gWaitCursor) SetCursor(gWaitCursor);
  return true;
}

void PostMouseMoveTwice(HWND view, LPARAM position) {
  PostMessageW(view, WM_MOUSEMOVE, 0, position);
  PostMessageW(view, WM_MOUSEMOVE, 0, position);
}

// The position x, y packed as a mouse message carries it, each cut to 16 bits.
LPARAM PackedPosition(const POINT& point) {
  const auto x = static_cast<DWORD>(point.x) & 0xFFFF;
  const auto y = static_cast<DWORD>(point.y) & 0xFFFF;
  return static_cast<LPARAM>(x | (y << 16));
}

}  // namespace

bool OhmBeginWaitCursor() {
  if (gFilterRegistered) return false;
  ZdDwgView* view = zdedGetZedaDwgView();
  if (!view) return false;
  gWaitCursor = LoadCursorW(nullptr, IDC_WAIT);
  gPreviousCursor = SetCursor(gWaitCursor);
  PostMouseMoveTwice(view->GetSafeHwnd(), 0);
  gFilterRegistered = zdedRegisterFilterWinMsg(WaitCursorFilter) ? 1 : 0;
  return true;
}

void OhmEndWaitCursor() {
  if (!gFilterRegistered) return;
  ZdDwgView* view = zdedGetZedaDwgView();
  zdedRemoveFilterWinMsg(WaitCursorFilter);
  gFilterRegistered = 0;
  if (gPreviousCursor) SetCursor(gPreviousCursor);
  POINT position{0, 0};
  GetCursorPos(&position);
  if (!view) return;
  ScreenToClient(view->GetSafeHwnd(), &position);
  PostMouseMoveTwice(view->GetSafeHwnd(), PackedPosition(position));
}
