#include "win/ui/Window.h"

#include <map>
#include <memory>
#include <string>

#include "win/LastError.h"
#include "win/WinError.h"
#include "win/ui/Window_internal.h"
#include "win/ui/Window_testing.h"

namespace {

struct Window {
  std::u16string className;
  std::u16string name;
  HWND parent;
  POINT origin;  // of the client area, on the screen
  POINT size;
};

struct Windows {
  std::map<HWND, std::unique_ptr<Window>> all;
  HWND active = nullptr;
};

Windows& windows() {
  static Windows state;
  return state;
}

Window* find(HWND window) {
  const auto it = windows().all.find(window);
  return it == windows().all.end() ? nullptr : it->second.get();
}

HWND handleOf(Window* window) { return reinterpret_cast<HWND>(window); }

bool invalidWindow() {
  SetLastError(ERROR_INVALID_WINDOW_HANDLE);
  return false;
}

void destroyTree(HWND window) {
  for (auto it = windows().all.begin(); it != windows().all.end();)
    if (it->second->parent == window) {
      const HWND child = it->first;
      destroyTree(child);
      it = windows().all.upper_bound(child);
    } else {
      ++it;
    }
  if (windows().active == window) windows().active = nullptr;
  windows().all.erase(window);
}

}  // namespace

HWND CreateWindowExW(DWORD, LPCWSTR className, LPCWSTR windowName, DWORD style, int x, int y, int width, int height,
                     HWND parent, void*, HINSTANCE, LPVOID) {
  const bool child = (style & WS_CHILD) != 0;
  if (child && !parent) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return nullptr;
  }
  const Window* parentWindow = parent ? find(parent) : nullptr;
  if (parent && !parentWindow) return invalidWindow(), nullptr;
  POINT origin{x, y};
  if (child) origin = POINT{parentWindow->origin.x + x, parentWindow->origin.y + y};
  auto window = std::make_unique<Window>(
      Window{className ? className : u"", windowName ? windowName : u"", parent, origin, POINT{width, height}});
  const HWND handle = handleOf(window.get());
  windows().all.emplace(handle, std::move(window));
  return handle;
}

BOOL DestroyWindow(HWND window) {
  if (!find(window)) return invalidWindow();
  destroyTree(window);
  return TRUE;
}

BOOL IsWindow(HWND window) noexcept { return find(window) ? TRUE : FALSE; }

HWND GetActiveWindow() noexcept { return windows().active; }

HWND SetActiveWindow(HWND window) {
  if (window && !find(window)) return invalidWindow(), nullptr;
  const HWND previous = windows().active;
  windows().active = window;
  return previous;
}

BOOL ScreenToClient(HWND window, LPPOINT point) {
  const Window* found = find(window);
  if (!found) return invalidWindow();
  if (!point) return FALSE;
  point->x -= found->origin.x;
  point->y -= found->origin.y;
  return TRUE;
}

namespace win_testing {

HWND createWindow(DWORD style, int x, int y, int width, int height, HWND parent) {
  return CreateWindowExW(0, u"", u"", style, x, y, width, height, parent, nullptr, nullptr, nullptr);
}
BOOL destroyWindow(HWND window) { return DestroyWindow(window); }
BOOL isWindow(HWND window) noexcept { return IsWindow(window); }
HWND setActiveWindow(HWND window) { return SetActiveWindow(window); }

}  // namespace win_testing
