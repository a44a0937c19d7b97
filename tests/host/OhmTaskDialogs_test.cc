// The two task dialogs: what they show, what their callbacks do with each
// click, their placeholder pairs, the caption without the audit library,
// their owner, and a definition that can't be found.
#include "ohmutils/host/OhmTaskDialogs.h"

#include <gtest/gtest.h>

#include <functional>
#include <tuple>

#include "HostTestSupport.h"
#include "support/u16.h"
#include "win/module/Module.h"
#include "win/ui/MessageBox.h"
#include "win/ui/UiSink_testing.h"
#include "win/ui/Window.h"
#include "win/ui/Window_testing.h"
#include "zd/ui/ZdApplicationFrame.h"
#include "zd/ui/ZdApplicationFrame_testing.h"
#include "zd/ui/ZdTaskDialog.h"
#include "zd/ui/ZdTaskDialog_testing.h"

namespace {

using host_test::Windows;
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

TEST_F(TaskDialogs, EachShowsItsDefinitionWithTheDetailsButtonAndLiveLinks) {
  for (const DialogCase& dialog : kDialogs) {
    SCOPED_TRACE(dialog.name);
    const std::size_t before = mUi.taskDialogs().size();
    dialog.show();
    ASSERT_EQ(mUi.taskDialogs().size(), before + 1);
    const UiTaskDialog& shown = mUi.taskDialogs().back();
    EXPECT_EQ(shown.id, dialog.id);
    EXPECT_EQ(zd_testing::lastTaskDialogLoad().file, u"/OhmTaskDialogsRes;component/TaskDialogs.xaml");
    ASSERT_EQ(shown.buttons.size(), 2u);
    EXPECT_EQ(shown.buttons[0].id, kDetails);
    EXPECT_EQ(shown.buttons[0].caption, u"Show Details");  // string 139, its blanks trimmed
    ASSERT_EQ(shown.links.size(), 1u);                     // hyperlinks are enabled
    EXPECT_EQ(shown.links[0].target, dialog.linkTarget);
    EXPECT_EQ(shown.content.find(u"<a "), std::u16string::npos);
  }
}

// One click in a dialog, then the dialog is closed; what the callback was
// told and gave, and which page was opened.
struct ClickCase {
  const char* name;
  std::function<void(win_testing::RecordingUiSink&, const DialogCase&)> click;
  bool opensPage;  // the dialog's page
  bool opensLink;  // the link's own target
  bool handled;    // the callback's result
};

TEST_F(TaskDialogs, CallbacksOpenThePageOnlyForDetailsAndALinkItsOwnTarget) {
  const ClickCase clicks[] = {
      {"details button", [](auto& ui, auto&) { ui.clickButton(kDetails); }, true, false, true},
      {"link in the text", [](auto& ui, const DialogCase& d) { ui.clickLink(d.linkTarget); }, false, true, false},
      {"close button", [](auto& ui, auto&) { ui.clickButton(IDCLOSE); }, false, false, false},
      {"dialog closed (IDCANCEL)", [](auto& ui, auto&) { ui.closeDialog(); }, false, false, false},
  };
  for (const DialogCase& dialog : kDialogs) {
    for (const ClickCase& click : clicks) {
      SCOPED_TRACE(std::string(dialog.name) + ", " + click.name);
      zd_testing::resetTaskDialogs();
      win_testing::RecordingUiSink ui;
      click.click(ui, dialog);
      dialog.show();
      ASSERT_FALSE(zd_testing::taskDialogNotifications().empty());
      const auto& first = zd_testing::taskDialogNotifications().front();
      EXPECT_EQ(first.result, click.handled);
      std::vector<std::u16string> opened;
      for (const UiShellExecute& request : ui.shellRequests()) opened.push_back(request.target);
      std::vector<std::u16string> expected;
      if (click.opensPage) expected.push_back(dialog.page);
      if (click.opensLink) expected.push_back(dialog.linkTarget);
      EXPECT_EQ(opened, expected);
    }
  }
}

TEST_F(TaskDialogs, DetailsKeepsTheDialogOpenAndCloseEndsIt) {
  mUi.clickButton(kDetails);
  mUi.clickLink(kDialogs[0].linkTarget);
  mUi.clickButton(IDCLOSE);
  mUi.clickButton(kDetails);  // never reached: the dialog closed before
  DisplayMissingDbEngineTaskDialog();
  EXPECT_EQ(mUi.actionsLeft(), 1u);
  using N = std::tuple<UINT, int, std::u16string, bool>;
  EXPECT_EQ(Notifications(), (std::vector<N>{N{TDN_BUTTON_CLICKED, kDetails, u"", true},
                                             N{TDN_HYPERLINK_CLICKED, 0, kDialogs[0].linkTarget, false},
                                             N{TDN_BUTTON_CLICKED, IDCLOSE, u"", false}}));
  EXPECT_EQ(mUi.shellRequests().size(), 2u);
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
  for (const DialogCase& dialog : kDialogs) {
    SCOPED_TRACE(dialog.name);
    dialog.show();
    ASSERT_FALSE(mUi.taskDialogs().empty());
    ASSERT_FALSE(mUi.taskDialogs().back().buttons.empty());
    EXPECT_EQ(mUi.taskDialogs().back().buttons[0].caption, u"Details");
  }
}

TEST_F(TaskDialogs, MissingDefinitionShowsNothing) {
  TempFolder empty;
  zd_testing::setComponentFolder(empty.posix());
  for (const DialogCase& dialog : kDialogs) {
    SCOPED_TRACE(dialog.name);
    dialog.show();
    EXPECT_EQ(zd_testing::lastTaskDialogLoad().dialogId, dialog.id);
  }
  EXPECT_TRUE(mUi.taskDialogs().empty());
  EXPECT_TRUE(mUi.boxes().empty());
}

// The owner: the active window, else the host's frame, else none.
TEST_F(TaskDialogs, OwnerIsTheActiveWindowElseTheFrameElseNone) {
  const HWND frame = zdedGetZedaFrame()->GetSafeHwnd();
  const HWND palette = win_testing::createWindow(WS_OVERLAPPED, 0, 0, 10, 10, nullptr);
  const HWND active = GetActiveWindow();
  struct OwnerCase {
    const char* name;
    std::function<void()> arrange;
    HWND owner;
  } cases[] = {
      {"a palette is active", [&] { win_testing::setActiveWindow(palette); }, palette},
      {"nothing is active", [] { win_testing::setActiveWindow(nullptr); }, frame},
      {"headless", [] { zd_testing::setHeadless(true); }, nullptr},
  };
  for (const OwnerCase& c : cases) {
    SCOPED_TRACE(c.name);
    c.arrange();
    DisplayMissingDbEngineTaskDialog();
    ASSERT_FALSE(mUi.taskDialogs().empty());
    EXPECT_EQ(mUi.taskDialogs().back().owner, c.owner);
  }
  zd_testing::setHeadless(false);
  win_testing::destroyWindow(palette);
  win_testing::setActiveWindow(win_testing::isWindow(active) ? active : zdedGetZedaFrame()->GetSafeHwnd());
}

}  // namespace
