// The wait cursor: begin and end in every order, what the message filter
// lets through, and the mouse moves the view gets at both ends.
#include "ohmutils/host/OhmWaitCursor.h"

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "win/ui/Cursor.h"
#include "win/ui/Cursor_testing.h"
#include "win/ui/Messages.h"
#include "zd/app/ZdDocManager.h"
#include "zd/ui/ZdApplicationFrame.h"
#include "zd/ui/ZdWinMsgFilter.h"
#include "zd/ui/ZdWinMsgFilter_testing.h"

namespace {

class WaitCursor : public ::testing::Test {
 protected:
  void SetUp() override {
    mDocument = zdDocManagerPtr()->addDocument(u"\\tmp\\wait.dwg", nullptr);
    ASSERT_NE(zdedGetZedaDwgView(), nullptr);
    mView = zdedGetZedaDwgView()->GetSafeHwnd();
    zd_testing::resetMessages();
    mFilters = zd_testing::registeredFilterCount();
    SetCursor(Cursor(IDC_CROSS));
  }
  void TearDown() override {
    OhmEndWaitCursor();
    EXPECT_EQ(zd_testing::registeredFilterCount(), mFilters);
    if (mDocument) zdDocManagerPtr()->closeDocument(mDocument);
    zd_testing::resetMessages();
  }
  static HCURSOR Cursor(LPCWSTR id) { return LoadCursorW(nullptr, id); }
  // The mouse moves the view got from the host's loop, as their packed positions.
  std::vector<LPARAM> ViewMouseMoves() {
    zdHostPumpMessages();
    std::vector<LPARAM> positions;
    for (const MSG& msg : zd_testing::deliveredMessages(mView))
      if (msg.message == WM_MOUSEMOVE) positions.push_back(msg.lParam);
    zd_testing::resetMessages();
    return positions;
  }

  ZdApDocument* mDocument = nullptr;
  HWND mView = nullptr;
  std::size_t mFilters = 0;
};

TEST_F(WaitCursor, BeginShowsTheWaitCursorAndTheTwoZeroMovesPassTheFilter) {
  ASSERT_TRUE(OhmBeginWaitCursor());
  EXPECT_EQ(win_testing::cursorOnShow(), Cursor(IDC_WAIT));
  EXPECT_EQ(zd_testing::registeredFilterCount(), mFilters + 1);
  EXPECT_EQ(ViewMouseMoves(), (std::vector<LPARAM>{0, 0}));

  SetCursor(Cursor(IDC_IBEAM));
  EXPECT_FALSE(OhmBeginWaitCursor()) << "a second begin changes nothing";
  EXPECT_EQ(win_testing::cursorOnShow(), Cursor(IDC_IBEAM));
  EXPECT_TRUE(ViewMouseMoves().empty());
  EXPECT_EQ(zd_testing::registeredFilterCount(), mFilters + 1);
  OhmEndWaitCursor();
  EXPECT_EQ(win_testing::cursorOnShow(), Cursor(IDC_CROSS)) << "the cursor of the first begin";
}

TEST_F(WaitCursor, EndWithoutBeginAndBeginWithoutAViewChangeNothing) {
  OhmEndWaitCursor();
  zdDocManagerPtr()->closeDocument(std::exchange(mDocument, nullptr));
  EXPECT_FALSE(OhmBeginWaitCursor());
  EXPECT_EQ(win_testing::cursorOnShow(), Cursor(IDC_CROSS));
  EXPECT_FALSE(zd_testing::hasQueuedMessages());
  EXPECT_EQ(zd_testing::registeredFilterCount(), mFilters);
}

// During the wait each message is posted to the view and the cursor is set
// to the arrow; the filter swallows the message or not, and sets the wait
// cursor again when it swallows.
TEST_F(WaitCursor, FilterSwallowsOnlyMouseMovesWithAPosition) {
  const std::tuple<const char*, UINT, LPARAM, bool> cases[] = {
      {"mouse move at 0, 0 of the view", WM_MOUSEMOVE, 0, false},
      {"mouse move at 0, 1", WM_MOUSEMOVE, MAKELPARAM(0, 1), true},
      {"left button down", WM_LBUTTONDOWN, MAKELPARAM(5, 7), false},
  };
  ASSERT_TRUE(OhmBeginWaitCursor());
  ViewMouseMoves();
  for (const auto& [name, message, lParam, swallowed] : cases) {
    SCOPED_TRACE(name);
    SetCursor(Cursor(IDC_ARROW));
    ASSERT_TRUE(PostMessageW(mView, message, 0, lParam));
    zdHostPumpMessages();
    const std::vector<MSG> delivered = zd_testing::deliveredMessages(mView);
    EXPECT_EQ(delivered.size() == 1 ? delivered[0].lParam : -1, swallowed ? -1 : lParam) << delivered.size();
    EXPECT_EQ(win_testing::cursorOnShow(), Cursor(swallowed ? IDC_WAIT : IDC_ARROW));
    zd_testing::resetMessages();
  }
}

// At the end the view gets two moves at the pointer's place in its own
// coordinates, each cut to 16 bits, x low and y high.
TEST_F(WaitCursor, EndPostsThePointersViewPositionPackedTwice) {
  const std::tuple<const char*, POINT, LPARAM> cases[] = {
      {"left of and above the view", {90, 95}, 0xFFF6 | (0xFFFDL << 16)},
      {"far right, cut to 16 bits", {100 + 0x12345, 98 + 2}, 0x2345 | (2 << 16)},
  };
  for (const auto& [name, screen, packed] : cases) {
    SCOPED_TRACE(name);
    ASSERT_TRUE(OhmBeginWaitCursor());
    ViewMouseMoves();
    win_testing::movePointerTo(screen.x, screen.y);
    OhmEndWaitCursor();
    EXPECT_EQ(win_testing::cursorOnShow(), Cursor(IDC_CROSS));
    EXPECT_EQ(ViewMouseMoves(), (std::vector<LPARAM>{packed, packed}));
    SetCursor(Cursor(IDC_CROSS));
  }
}

TEST_F(WaitCursor, EndWithoutAViewRestoresAndUnhooksButPostsNothing) {
  ASSERT_TRUE(OhmBeginWaitCursor());
  ViewMouseMoves();
  zdDocManagerPtr()->closeDocument(std::exchange(mDocument, nullptr));
  OhmEndWaitCursor();
  EXPECT_EQ(win_testing::cursorOnShow(), Cursor(IDC_CROSS));
  EXPECT_EQ(zd_testing::registeredFilterCount(), mFilters);
  EXPECT_FALSE(zd_testing::hasQueuedMessages());
}

TEST_F(WaitCursor, RefusedFilterLeavesTheWaitCursorAndEndDoesNothing) {
  zd_testing::failNextRegisterFilter();
  EXPECT_TRUE(OhmBeginWaitCursor());
  EXPECT_EQ(win_testing::cursorOnShow(), Cursor(IDC_WAIT));
  EXPECT_EQ(zd_testing::registeredFilterCount(), mFilters);
  ViewMouseMoves();
  OhmEndWaitCursor();
  EXPECT_EQ(win_testing::cursorOnShow(), Cursor(IDC_WAIT));
  EXPECT_TRUE(ViewMouseMoves().empty());
  // The next begin starts anew.
  SetCursor(Cursor(IDC_CROSS));
  EXPECT_TRUE(OhmBeginWaitCursor());
  EXPECT_EQ(zd_testing::registeredFilterCount(), mFilters + 1);
}

}  // namespace
