// The two task dialogs: what they show, what their callbacks do with each
// click, their placeholder pairs, the caption without the audit library,
// their owner, and a definition that can't be found.
#include "ohmutils/host/OhmTaskDialogs.h"

#include <gtest/gtest.h>

#include <functional>
#include <tuple>

#include "support/TempFolder.h"
#include "support/u16.h"
#include "win/module/Module.h"
#include "win/ui/UiSink_testing.h"
#include "win/ui/Window.h"
#include "win/ui/Window_testing.h"
#include "zd/ui/ZdApplicationFrame.h"
#include "zd/ui/ZdApplicationFrame_testing.h"
#include "zd/ui/ZdTaskDialog.h"
#include "zd/ui/ZdTaskDialog_testing.h"

namespace {

namespace fs = std::filesystem;

const fs::path kLibraryDir = OHM_LIBRARY_DIR;
constexpr int kDetails = 100;

struct DialogCase {
  const char* name;
  std::function<void()> show;
  std::u16string id;
  std::u16string page;        // behind the details button
  std::u16string linkTarget;  // of the link in its text
};

const DialogCase kDialogs[] = {
    {"missing engine", [] { DisplayMissingDbEngineTaskDialog(); }, u"OhmMB.MissingDBEngine",
     u"http://knowledge.ohm-suite.example/article/Error-The-driver-OhmRedist-is-missing",
     u"http://www.ohm-suite.example/downloads/ohmredist"},
    {"version mismatch",
     [] { DisplayEMXVersionErrorTaskDlg(u"ElectricalVersion", u"2.1", u"MechanicalVersion", u"3.0"); },
     u"OhmMt.MechatronicsSyncFailedDueToVersionMismatch",
     u"http://www.ohm-suite.example/electromechanical-version-compatibility",
     u"http://www.ohm-suite.example/downloads"},
};

class TaskDialogs : public ::testing::Test {
 protected:
  void SetUp() override {
    zd_testing::resetTaskDialogs();
    ASSERT_TRUE(SetDllDirectoryW(Windows(kLibraryDir).c_str()));  // where the audit library is found
  }
  void TearDown() override {
    SetDllDirectoryW(nullptr);
    zd_testing::resetTaskDialogs();
  }
  // The notifications of the dialogs shown, as (notification, button, link, result).
  static std::vector<std::tuple<UINT, int, std::u16string, bool>> Notifications() {
    std::vector<std::tuple<UINT, int, std::u16string, bool>> result;
    for (const auto& n : zd_testing::taskDialogNotifications())
      result.emplace_back(n.notification, n.buttonId, n.hyperlink, n.result);
    return result;
  }

  win_testing::RecordingUiSink mUi;
};

// Each dialog shows its definition with the details button and live links.
// Details opens the dialog's page and keeps it open, a link opens its own
// target, close ends the dialog; only the details click is handled.
TEST_F(TaskDialogs, EachShowsItsDefinitionAndOpensThePageOnlyForDetailsAndALinkItsOwnTarget) {
  using N = std::tuple<UINT, int, std::u16string, bool>;
  for (const DialogCase& dialog : kDialogs) {
    SCOPED_TRACE(dialog.name);
    zd_testing::resetTaskDialogs();
    win_testing::RecordingUiSink ui;
    ui.clickButton(kDetails);
    ui.clickLink(dialog.linkTarget);
    ui.clickButton(IDCLOSE);
    ui.clickButton(kDetails);  // never reached: the dialog closed before
    dialog.show();
    ASSERT_EQ(ui.taskDialogs().size(), 1u);
    const UiTaskDialog& shown = ui.taskDialogs().back();
    EXPECT_EQ(shown.id, dialog.id);
    ASSERT_EQ(shown.buttons.size(), 2u);  // the details button, caption string 139 with its blanks trimmed
    EXPECT_EQ(std::tie(shown.buttons[0].id, shown.buttons[0].caption), std::tuple(kDetails, u"Show Details"));
    ASSERT_EQ(shown.links.size(), 1u);  // hyperlinks are enabled
    EXPECT_EQ(shown.links[0].target, dialog.linkTarget);
    EXPECT_EQ(ui.actionsLeft(), 1u);
    EXPECT_EQ(Notifications(), (std::vector<N>{N{TDN_BUTTON_CLICKED, kDetails, u"", true},
                                               N{TDN_HYPERLINK_CLICKED, 0, dialog.linkTarget, false},
                                               N{TDN_BUTTON_CLICKED, IDCLOSE, u"", false}}));
    ASSERT_EQ(ui.shellRequests().size(), 2u);
    EXPECT_EQ(ui.shellRequests()[0].target, dialog.page);
    EXPECT_EQ(ui.shellRequests()[1].target, dialog.linkTarget);
  }
}

TEST_F(TaskDialogs, VersionMismatchPassesItsArgumentsAsTwoPairsInOrder) {
  DisplayEMXVersionErrorTaskDlg(u"MechanicalVersion", u"3.0", u"ElectricalVersion", u"2.1");
  using Pairs = std::vector<std::pair<std::u16string, std::u16string>>;
  EXPECT_EQ(zd_testing::lastTaskDialogLoad().pairs,
            (Pairs{{u"MechanicalVersion", u"3.0"}, {u"ElectricalVersion", u"2.1"}}));
  ASSERT_EQ(mUi.taskDialogs().size(), 1u);
  const std::u16string& content = mUi.taskDialogs()[0].content;
  EXPECT_NE(content.find(u"electrical design is at version 2.1 "), std::u16string::npos) << U8(content);
  EXPECT_NE(content.find(u"mechanical design at version 3.0;"), std::u16string::npos) << U8(content);
}

TEST_F(TaskDialogs, CaptionIsDetailsWithoutTheAuditLibrary) {
  SetDllDirectoryW(nullptr);  // the audit library can't be found by its bare name
  DisplayMissingDbEngineTaskDialog();
  ASSERT_EQ(mUi.taskDialogs().size(), 1u);
  ASSERT_FALSE(mUi.taskDialogs()[0].buttons.empty());
  EXPECT_EQ(mUi.taskDialogs()[0].buttons[0].caption, u"Details");
}

TEST_F(TaskDialogs, MissingDefinitionShowsNothing) {
  TempFolder empty;
  zd_testing::setComponentFolder(empty.posix());
  DisplayMissingDbEngineTaskDialog();
  EXPECT_EQ(zd_testing::lastTaskDialogLoad().dialogId, u"OhmMB.MissingDBEngine");
  EXPECT_TRUE(mUi.taskDialogs().empty());
  EXPECT_TRUE(mUi.boxes().empty());
}

// The owner: the active window, else the host's frame, else none.
TEST_F(TaskDialogs, OwnerIsTheActiveWindowElseTheFrameElseNone) {
  const HWND frame = zdedGetZedaFrame()->GetSafeHwnd();
  const HWND palette = win_testing::createWindow(WS_OVERLAPPED, 0, 0, 10, 10, nullptr);
  const HWND active = GetActiveWindow();
  const std::tuple<const char*, std::function<void()>, HWND> cases[] = {
      {"a palette is active", [&] { win_testing::setActiveWindow(palette); }, palette},
      {"nothing is active", [] { win_testing::setActiveWindow(nullptr); }, frame},
      {"headless", [] { zd_testing::setHeadless(true); }, nullptr},
  };
  for (const auto& [name, arrange, owner] : cases) {
    SCOPED_TRACE(name);
    arrange();
    DisplayMissingDbEngineTaskDialog();
    ASSERT_FALSE(mUi.taskDialogs().empty());
    EXPECT_EQ(mUi.taskDialogs().back().owner, owner);
  }
  zd_testing::setHeadless(false);
  win_testing::destroyWindow(palette);
  win_testing::setActiveWindow(win_testing::isWindow(active) ? active : zdedGetZedaFrame()->GetSafeHwnd());
}

}  // namespace
