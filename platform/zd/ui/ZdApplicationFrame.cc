#include "zd/ui/ZdApplicationFrame.h"

#include "win/ui/Window.h"
#include "win/ui/Window_internal.h"
#include "zd/app/ZdDocManager.h"
#include "zd/ui/ZdApplicationFrame_testing.h"

namespace {

constexpr POINT kFrameOrigin{100, 50};
constexpr POINT kFrameSize{1280, 960};
constexpr POINT kViewOffset{0, 48};
constexpr POINT kViewSize{1280, 880};

struct HostUi {
  CWnd frame;
  ZdDwgView view;
  bool headless = false;
};

// Never destroyed: the windows' objects stay valid to the process's end.
HostUi& ui() {
  static HostUi* const state = new HostUi;
  return *state;
}

void makeWindows() {
  const HWND frame = CreateWindowExW(0, u"ZedaMainFrame", u"Zeda", WS_OVERLAPPED | WS_VISIBLE, kFrameOrigin.x,
                                     kFrameOrigin.y, kFrameSize.x, kFrameSize.y, nullptr, nullptr, nullptr, nullptr);
  const HWND view = CreateWindowExW(0, u"ZedaDwgView", u"", WS_CHILD | WS_VISIBLE, kViewOffset.x, kViewOffset.y,
                                    kViewSize.x, kViewSize.y, frame, nullptr, nullptr, nullptr);
  ui().frame.Attach(frame);
  ui().view.Attach(view);
  SetActiveWindow(frame);
}

void destroyWindows() {
  DestroyWindow(ui().frame.Detach());
  ui().view.Detach();
}

// The frame, made if need be; null when headless.
CWnd* frame() {
  if (ui().headless) return nullptr;
  if (!ui().frame.GetSafeHwnd()) makeWindows();
  return &ui().frame;
}

}  // namespace

CWnd* zdedGetZedaFrame() { return frame(); }

ZdDwgView* zdedGetZedaDwgView() {
  if (!frame() || !zdDocManagerPtr()->curDocument()) return nullptr;
  return &ui().view;
}

namespace zd_testing {

void setHeadless(bool headless) {
  if (headless && ui().frame.GetSafeHwnd()) destroyWindows();
  ui().headless = headless;
}

}  // namespace zd_testing
