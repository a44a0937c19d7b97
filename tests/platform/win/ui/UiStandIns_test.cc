// The user interface stand-ins: cursors, MFC's window objects, the shell's
// open request and the terminal's opener, the host's task dialog from its
// definition file; and the file and module services the host actions use
// (PathAppendW, GetTempPathW, _wfsopen, SetDllDirectoryW).
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <tuple>

#include "mfc/CWnd.h"
#include "support/ChildProcess.h"
#include "support/ScopedEnv.h"
#include "support/TempFolder.h"
#include "support/platwinLastError.h"
#include "support/u16.h"
#include "win/LastError.h"
#include "win/WinError.h"
#include "win/fs/CrtFile.h"
#include "win/fs/FileFunctions.h"
#include "win/fs/PathFunctions.h"
#include "win/module/Module.h"
#include "win/ui/Cursor.h"
#include "win/ui/Cursor_testing.h"
#include "win/ui/MessageBox.h"
#include "win/ui/ShellExecute.h"
#include "win/ui/UiSink_testing.h"
#include "win/ui/Window.h"
#include "win/ui/Window_testing.h"
#include "zd/ui/ZdTaskDialog.h"
#include "zd/ui/ZdTaskDialog_testing.h"

namespace {

// --- paths and the temporary folder -------------------------------------------

TEST(PathAppendW, JoinsBelowThePathOrLeavesItAlone) {
  const std::u16string longFolder = u"C:\\" + std::u16string(250, u'f');
  const std::tuple<const char16_t*, const char16_t*, BOOL, const char16_t*> cases[] = {
      {u"C:\\a", u"b.txt", TRUE, u"C:\\a\\b.txt"},
      {u"C:\\a\\", u"b.txt", TRUE, u"C:\\a\\b.txt"},
      {u"C:\\a", u"\\b.txt", TRUE, u"C:\\a\\b.txt"},  // a leading backslash stays below
      {u"C:\\a\\b", u"..\\c", TRUE, u"C:\\a\\c"},
      {u"", u"b", TRUE, u"b"},
      {longFolder.c_str(), u"name.txt", FALSE, longFolder.c_str()},  // 259 units and more don't fit
      {u"C:\\a", nullptr, FALSE, u"C:\\a"},
  };
  for (const auto& [path, more, result, expected] : cases) {
    SCOPED_TRACE(U8(path) + " + " + (more ? U8(more) : "null"));
    WCHAR buffer[MAX_PATH] = {};
    std::u16string(path).copy(buffer, MAX_PATH - 1);
    EXPECT_EQ(PathAppendW(buffer, more), result);
    EXPECT_EQ(std::u16string(buffer), expected);
  }
  EXPECT_FALSE(PathAppendW(nullptr, u"x"));
}

TEST(GetTempPathW, GivesTheFolderWithABackslashOrTheUnitsNeeded) {
  {
    ScopedEnv tmp("TMPDIR", "/var/tmp/ohm");
    const std::u16string expected = u"\\var\\tmp\\ohm\\";
    const auto exact = static_cast<DWORD>(expected.size() + 1);
    WCHAR small[MAX_PATH] = u"untouched";
    EXPECT_EQ(GetTempPathW(exact - 1, small), exact);  // the units needed, terminator included
    EXPECT_EQ(std::u16string(small), u"untouched");
    EXPECT_EQ(GetTempPathW(exact, small), expected.size());
    EXPECT_EQ(std::u16string(small), expected);
    EXPECT_EQ(GetTempPathW(0, nullptr), exact);
  }
  ScopedEnv tmp("TMPDIR", "");
  WCHAR buffer[MAX_PATH] = {};
  GetTempPathW(MAX_PATH, buffer);
  EXPECT_EQ(std::u16string(buffer), u"\\tmp\\");
}

TEST(WfsOpen, OpensThroughTheDriveTableAndFailsLikeTheRuntime) {
  TempFolder temp;
  FILE* file = _wfsopen(temp.windows("a.bin").c_str(), u"wtb", _SH_DENYNO);
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(std::fwrite("\n", 1, 1, file), 1u);
  std::fclose(file);
  EXPECT_EQ(temp.read("a.bin"), "\n");  // binary: no text translation
  errno = 0;
  EXPECT_EQ(_wfsopen(u"Q:\\nowhere\\a.bin", u"wb", _SH_DENYNO), nullptr);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(_wfsopen(nullptr, u"wb", _SH_DENYNO), nullptr);
  EXPECT_EQ(errno, EINVAL);
}

// Finding bare names there is what the host actions' tests rely on; here, the refusal.
TEST(SetDllDirectoryW, RefusesAFolderWithoutAPlace) {
  EXPECT_TRUE(FailsWith([] { return SetDllDirectoryW(u"Q:\\unmapped"); }, ERROR_FILE_NOT_FOUND));
}

// --- cursors and windows -----------------------------------------------------------

TEST(Cursors, SystemCursorsOnlyAndOneHandleEach) {
  EXPECT_EQ(LoadCursorW(nullptr, IDC_WAIT), LoadCursorW(nullptr, IDC_WAIT));
  EXPECT_NE(LoadCursorW(nullptr, IDC_WAIT), LoadCursorW(nullptr, IDC_ARROW));
  for (LPCWSTR id : {static_cast<LPCWSTR>(MAKEINTRESOURCEW(1)), static_cast<LPCWSTR>(MAKEINTRESOURCEW(32517)), u"WAIT"})
    EXPECT_TRUE(FailsWith([&] { return LoadCursorW(nullptr, id); }, ERROR_RESOURCE_NAME_NOT_FOUND));
  EXPECT_EQ(LoadCursorW(reinterpret_cast<HINSTANCE>(GetModuleHandleW(nullptr)), IDC_WAIT), nullptr);
  const HCURSOR shown = win_testing::cursorOnShow();
  int notACursor = 0;
  EXPECT_EQ(SetCursor(reinterpret_cast<HCURSOR>(&notACursor)), nullptr);
  EXPECT_EQ(win_testing::cursorOnShow(), shown);
  EXPECT_EQ(SetCursor(LoadCursorW(nullptr, IDC_HAND)), shown);
  EXPECT_EQ(SetCursor(shown), LoadCursorW(nullptr, IDC_HAND));
}

TEST(CWnd, FromHandleGivesThePermanentObjectElseOneTemporaryPerWindow) {
  const HWND window = win_testing::createWindow(WS_OVERLAPPED, 0, 0, 1, 1, nullptr);
  EXPECT_EQ(CWnd::FromHandle(nullptr), nullptr);
  CWnd* temporary = CWnd::FromHandle(window);
  ASSERT_NE(temporary, nullptr);
  EXPECT_EQ(CWnd::FromHandle(window), temporary);
  EXPECT_EQ(temporary->GetSafeHwnd(), window);
  {
    CWnd permanent;
    ASSERT_TRUE(permanent.Attach(window));
    EXPECT_FALSE(CWnd().Attach(window));
    EXPECT_EQ(CWnd::FromHandle(window), &permanent);
  }
  EXPECT_NE(CWnd::FromHandle(window), nullptr);  // a temporary again once the permanent one is gone
  win_testing::destroyWindow(window);
}

// --- the shell's requests ----------------------------------------------------------

// The shell's open request as the library makes it, its result as a number.
INT_PTR Shell(const char16_t* verb, const char16_t* file, const char16_t* parameters) {
  return reinterpret_cast<INT_PTR>(ShellExecuteW(nullptr, verb, file, parameters, nullptr, SW_SHOWNORMAL));
}

TEST(ShellExecuteW, NamesATargetOnlyForTheTwoFormsItKnows) {
  TempFolder temp;
  temp.makeFile("doc.pdf");
  const std::tuple<const char*, std::u16string, std::u16string, std::u16string, std::u16string> cases[] = {
      {"any case and folder", u"open", u"C:\\Windows\\System32\\RUNDLL32.EXE",
       u"URL.DLL,fileprotocolhandler mailto:a@b", u"mailto:a@b"},
      {"no address", u"open", u"rundll32.exe", u"url.dll,FileProtocolHandler", u""},
      {"another entry point", u"open", u"rundll32.exe", u"shell32.dll,Control_RunDLL", u""},
      {"open an existing file", u"open", temp.windows("doc.pdf"), u"", U16(temp.posix("doc.pdf"))},
      {"no verb is open", u"", temp.windows("doc.pdf"), u"", U16(temp.posix("doc.pdf"))},
      {"a file that isn't there", u"open", temp.windows("none.pdf"), u"", u""},
      {"another verb", u"print", temp.windows("doc.pdf"), u"", u""},
  };
  for (const auto& [name, verb, file, parameters, target] : cases) {
    SCOPED_TRACE(name);
    win_testing::RecordingUiSink ui;
    EXPECT_EQ(Shell(verb.empty() ? nullptr : verb.c_str(), file.c_str(), parameters.c_str()), 42);
    ASSERT_EQ(ui.shellRequests().size(), 1u);
    EXPECT_EQ(ui.shellRequests()[0].target, target);
    EXPECT_EQ(ui.shellRequests()[0].verb, verb);
  }
}

// The terminal's opener, with a stand-in xdg-open on PATH that writes down its argument.
TEST(TerminalUiSink, HandsTheTargetToXdgOpenOrSaysWhyNot) {
  TempFolder temp;
  temp.makeFile("bin/xdg-open", "#!/bin/sh\nprintf '%s' \"$1\" > \"" + temp.posix("opened.part") + "\"\nmv \"" +
                                    temp.posix("opened.part") + "\" \"" + temp.posix("opened") + "\"\n");
  std::filesystem::permissions(temp.posix("bin/xdg-open"), std::filesystem::perms::owner_exec,
                               std::filesystem::perm_options::add);
  {
    ScopedEnv path("PATH", temp.posix("bin") + ":/usr/bin:/bin");
    EXPECT_GT(Shell(u"open", u"rundll32.exe", u"url.dll,FileProtocolHandler http://x.example/\u00e9"), 32);
    EXPECT_TRUE(WaitForText(temp.posix("opened"), "http://x.example/\xc3\xa9"));
    EXPECT_EQ(temp.read("opened"), "http://x.example/\xc3\xa9");
    EXPECT_EQ(Shell(u"print", u"x.txt", nullptr), SE_ERR_NOASSOC);
  }
  ScopedEnv path("PATH", temp.posix("empty"));
  EXPECT_EQ(Shell(u"open", u"rundll32.exe", u"url.dll,FileProtocolHandler http://x"), ERROR_FILE_NOT_FOUND);
}

// --- the host's task dialog ------------------------------------------------------------

// A definition file of the test's own, with links, placeholders and a default button.
constexpr const char16_t* kDialogs = u"/Res;component/Dialogs.xaml";

class TaskDialog : public ::testing::Test {
 protected:
  void SetUp() override {
    zd_testing::resetTaskDialogs();
    mTemp.makeFile("Res/Dialogs.xaml", R"(<TaskDialogs>
      <TaskDialog Id="T.One" DefaultButton="2">
        <Title> Title {A} </Title>
        <MainInstruction>Main {B} {Unknown}</MainInstruction>
        <Content>
          Before <a href="http://x.example/{A}">link {A}</a> after.
        </Content>
        <CommonButton Id="1">OK</CommonButton>
        <CommonButton Id="2">Cancel</CommonButton>
      </TaskDialog>
      <TaskDialog Id="T.Bare"><Title>Bare</Title></TaskDialog>
    </TaskDialogs>)");
    mTemp.makeFile("Res/Broken.xaml", "<TaskDialogs><TaskDialog Id=\"T.One\">");
    zd_testing::setComponentFolder(mTemp.posix());
  }
  void TearDown() override { zd_testing::resetTaskDialogs(); }

  static bool Keep(ZdTaskDialogEventArgs* args) { return args->buttonId == 100; }

  TempFolder mTemp;
  win_testing::RecordingUiSink mUi;
};

TEST_F(TaskDialog, FillsPlaceholdersAndShowsLinksOnlyWhenEnabled) {
  const TASKDIALOG_KEYVALUE pairs[] = {{u"A", u"1"}, {nullptr, u"skipped"}, {u"B", u"2"}};
  for (DWORD flags : {TDF_ENABLE_HYPERLINKS, DWORD{0}}) {
    SCOPED_TRACE(flags);
    ZdTaskDialog dialog;
    ASSERT_TRUE(dialog.LoadFromFile(kDialogs, u"T.One", pairs, 3));
    dialog.SetFlags(flags);
    EXPECT_EQ(dialog.ShowDialog(nullptr), IDCANCEL);
    const UiTaskDialog& shown = mUi.taskDialogs().back();
    EXPECT_EQ(shown.title, u"Title 1");
    EXPECT_EQ(shown.mainInstruction, u"Main 2 {Unknown}");
    EXPECT_EQ(shown.content,
              flags ? u"Before link 1 after." : u"Before <a href=\"http://x.example/{A}\">link 1</a> after.");
    ASSERT_EQ(shown.links.size(), flags ? 1u : 0u);
    for (const auto& link : shown.links) EXPECT_EQ(link.target, u"http://x.example/{A}");  // targets aren't texts
  }
}

TEST_F(TaskDialog, ButtonsComeCallerFirstAndTheDefinitionChoosesTheDefault) {
  ZdTaskDialog dialog;
  ASSERT_TRUE(dialog.LoadFromFile(kDialogs, u"T.One", nullptr, 0));
  const TASKDIALOG_BUTTON mine[] = {{100, u"Mine"}, {101, u"Also"}};
  dialog.SetButtons(mine, 2);
  dialog.SetCallback(Keep);
  mUi.clickButton(100);                    // kept open by the callback
  mUi.clickButton(7);                      // not in the dialog: nothing happens
  mUi.clickLink(u"http://x.example/{A}");  // links are off: nothing happens
  mUi.clickButton(101);
  EXPECT_EQ(dialog.ShowDialog(nullptr), 101);
  const UiTaskDialog& shown = mUi.taskDialogs().back();
  std::vector<int> ids;
  for (const UiTaskDialogButton& button : shown.buttons) ids.push_back(button.id);
  EXPECT_EQ(ids, (std::vector<int>{100, 101, 1, 2}));
  EXPECT_EQ(shown.defaultButton, 2);
  ASSERT_EQ(zd_testing::taskDialogNotifications().size(), 2u);
  EXPECT_TRUE(zd_testing::taskDialogNotifications()[0].result);
  EXPECT_EQ(zd_testing::taskDialogNotifications()[1].buttonId, 101);

  ZdTaskDialog bare;  // no default in its definition: the first button
  ASSERT_TRUE(bare.LoadFromFile(kDialogs, u"T.Bare", nullptr, 0));
  bare.SetButtons(mine, 2);
  mUi.clickButton(100);  // without a callback every click closes
  EXPECT_EQ(bare.ShowDialog(nullptr), 100);
  EXPECT_EQ(mUi.taskDialogs().back().defaultButton, 100);
}

TEST_F(TaskDialog, LoadFailsForEveryMissingPieceAndShowsNothing) {
  const std::pair<std::u16string, std::u16string> failing[] = {
      {u"/Res;component/Dialogs.xaml", u"T.Missing"}, {u"/Res;component/Broken.xaml", u"T.One"},
      {u"/Res;component/None.xaml", u"T.One"},        {u"/Other;component/Dialogs.xaml", u"T.One"},
      {u"Q:\\unmapped\\Dialogs.xaml", u"T.One"},
  };
  for (const auto& [file, id] : failing) {
    SCOPED_TRACE(U8(file) + " " + U8(id));
    ZdTaskDialog dialog;
    EXPECT_FALSE(dialog.LoadFromFile(file.c_str(), id.c_str(), nullptr, 0));
    EXPECT_EQ(dialog.ShowDialog(nullptr), 0);
  }
  EXPECT_TRUE(mUi.taskDialogs().empty());
  ZdTaskDialog byPath;  // a Windows-form path works as well
  EXPECT_TRUE(byPath.LoadFromFile(mTemp.windows("Res/Dialogs.xaml").c_str(), u"T.Bare", nullptr, 0));
}

TEST_F(TaskDialog, TerminalClosesTheDialogAtOnceWhenNobodyIsThere) {
  SetUiSink(nullptr);  // the terminal's, with standard input at its end
  const int savedInput = ::dup(STDIN_FILENO);
  const int nothing = ::open("/dev/null", O_RDONLY);
  ::dup2(nothing, STDIN_FILENO);
  ZdTaskDialog dialog;
  ASSERT_TRUE(dialog.LoadFromFile(kDialogs, u"T.One", nullptr, 0));
  dialog.SetCallback(Keep);
  const int closedWith = dialog.ShowDialog(nullptr);
  ::dup2(savedInput, STDIN_FILENO);
  ::close(savedInput);
  ::close(nothing);
  SetUiSink(&mUi);
  EXPECT_EQ(closedWith, IDCANCEL);
  ASSERT_EQ(zd_testing::taskDialogNotifications().size(), 1u);
  EXPECT_EQ(zd_testing::taskDialogNotifications()[0].buttonId, IDCANCEL);
}

}  // namespace
