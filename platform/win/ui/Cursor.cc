#include "win/ui/Cursor.h"

#include <array>
#include <atomic>

#include "win/LastError.h"
#include "win/WinError.h"
#include "win/ui/Cursor_testing.h"

namespace {

// The system cursors: a handle is the address of its id's entry.
constexpr std::array<WORD, 16> kSystemCursorIds{32512, 32513, 32514, 32515, 32516, 32640, 32641, 32642,
                                                32643, 32644, 32645, 32646, 32648, 32649, 32650, 32651};

HCURSOR systemCursor(WORD id) {
  for (const WORD& entry : kSystemCursorIds)
    if (entry == id) return reinterpret_cast<HCURSOR>(const_cast<WORD*>(&entry));
  return nullptr;
}

bool isSystemCursor(HCURSOR cursor) {
  const auto* entry = reinterpret_cast<const WORD*>(cursor);
  return entry >= kSystemCursorIds.data() && entry < kSystemCursorIds.data() + kSystemCursorIds.size();
}

struct CursorState {
  HCURSOR shown = systemCursor(32512);
  POINT position{0, 0};
  std::atomic<long> loads{0};
  std::atomic<long> sets{0};
};

CursorState& state() {
  static CursorState cursors;
  return cursors;
}

}  // namespace

HCURSOR LoadCursorW(HINSTANCE instance, LPCWSTR id) {
  const HCURSOR cursor =
      !instance && IS_INTRESOURCE(id) ? systemCursor(static_cast<WORD>(reinterpret_cast<UINT_PTR>(id))) : nullptr;
  if (!cursor) {
    SetLastError(ERROR_RESOURCE_NAME_NOT_FOUND);
    return nullptr;
  }
  ++state().loads;
  return cursor;
}

HCURSOR SetCursor(HCURSOR cursor) {
  if (cursor && !isSystemCursor(cursor)) {
    SetLastError(ERROR_INVALID_CURSOR_HANDLE);
    return nullptr;
  }
  if (cursor) ++state().sets;
  const HCURSOR previous = state().shown;
  state().shown = cursor;
  return previous;
}

BOOL GetCursorPos(LPPOINT point) noexcept {
  if (!point) return FALSE;
  *point = state().position;
  return TRUE;
}

namespace win_testing {

long cursorLoads() noexcept { return state().loads.load(); }
long cursorSets() noexcept { return state().sets.load(); }
HCURSOR cursorOnShow() noexcept { return state().shown; }
void movePointerTo(int x, int y) noexcept { state().position = POINT{x, y}; }

}  // namespace win_testing
