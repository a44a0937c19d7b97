#include "win/ui/Messages.h"

#include <algorithm>
#include <deque>
#include <mutex>

#include "win/LastError.h"
#include "win/WinError.h"
#include "win/ui/Cursor.h"
#include "win/ui/Messages_internal.h"
#include "win/ui/Messages_testing.h"
#include "win/ui/Window.h"
#include "win/ui/Window_internal.h"

namespace {

struct Queue {
  std::mutex mutex;
  std::deque<MSG> messages;
  DWORD posted = 0;
};

Queue& queue() {
  static Queue state;
  return state;
}

void post(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  POINT position{0, 0};
  GetCursorPos(&position);
  std::lock_guard lock(queue().mutex);
  queue().messages.push_back(MSG{window, message, wParam, lParam, ++queue().posted, position});
}

bool matches(const MSG& msg, HWND window, UINT first, UINT last) {
  if (window && msg.hwnd != window) return false;
  return (first == 0 && last == 0) || (msg.message >= first && msg.message <= last);
}

}  // namespace

BOOL PostMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (window && !IsWindow(window)) {
    SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return FALSE;
  }
  post(window, message, wParam, lParam);
  return TRUE;
}

void PostQuitMessage(int exitCode) { post(nullptr, WM_QUIT, static_cast<WPARAM>(exitCode), 0); }

BOOL PeekMessageW(LPMSG msg, HWND window, UINT first, UINT last, UINT remove) {
  if (!msg) return FALSE;
  std::lock_guard lock(queue().mutex);
  auto& messages = queue().messages;
  const auto it =
      std::find_if(messages.begin(), messages.end(), [&](const MSG& m) { return matches(m, window, first, last); });
  if (it == messages.end()) return FALSE;
  *msg = *it;
  if (remove & PM_REMOVE) messages.erase(it);
  return TRUE;
}

namespace win_testing {

BOOL peekMessage(LPMSG msg, HWND window, UINT first, UINT last, UINT remove) {
  return PeekMessageW(msg, window, first, last, remove);
}

}  // namespace win_testing
