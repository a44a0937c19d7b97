#include "win/ui/UiSink.h"

#include <array>
#include <atomic>
#include <cstdio>

#include "win/Utf8.h"
#include "win/ui/MessageBox.h"
#include "win/ui/UiSink_testing.h"

namespace {

// Prints each box to standard error and takes its default button.
class TerminalUiSink : public UiSink {
 public:
  int messageBox(const UiMessageBox& box) override {
    std::fprintf(stderr, "[%s] %s\n", Utf16ToUtf8(box.caption).c_str(), Utf16ToUtf8(box.text).c_str());
    return DefaultButtonOf(box.type);
  }
};

TerminalUiSink gTerminal;
std::atomic<UiSink*> gSink{&gTerminal};

// The buttons of each MB_* button set, left to right.
constexpr std::array<std::array<int, 3>, 6> kButtons{{
    {IDOK, IDOK, IDOK},
    {IDOK, IDCANCEL, IDCANCEL},
    {IDABORT, IDRETRY, IDIGNORE},
    {IDYES, IDNO, IDCANCEL},
    {IDYES, IDNO, IDNO},
    {IDRETRY, IDCANCEL, IDCANCEL},
}};

}  // namespace

int DefaultButtonOf(UINT type) noexcept {
  const UINT set = type & 0xF;
  const UINT position = (type & 0xF00) >> 8;
  if (set >= kButtons.size() || position > 2) return IDOK;
  return kButtons[set][position];
}

UiSink* SetUiSink(UiSink* sink) noexcept { return gSink.exchange(sink ? sink : &gTerminal); }

UiSink& CurrentUiSink() noexcept { return *gSink.load(); }

int MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type) {
  return CurrentUiSink().messageBox(UiMessageBox{owner, text ? text : u"", caption ? caption : u"Error", type});
}

namespace win_testing {

RecordingUiSink::RecordingUiSink() : mPrevious(SetUiSink(this)) {}

RecordingUiSink::~RecordingUiSink() { SetUiSink(mPrevious); }

int RecordingUiSink::messageBox(const UiMessageBox& box) {
  mBoxes.push_back(box);
  if (mAnswers.empty()) return DefaultButtonOf(box.type);
  const int answer = mAnswers.front();
  mAnswers.pop_front();
  return answer;
}

}  // namespace win_testing

namespace win_testing {

UiTaskDialogAction RecordingUiSink::taskDialogAction(const UiTaskDialog& dialog, int step) {
  if (step == 0) mTaskDialogs.push_back(dialog);
  if (mActions.empty()) return UiTaskDialogAction{UiTaskDialogAction::kClose, 0, u""};
  UiTaskDialogAction action = mActions.front();
  mActions.pop_front();
  return action;
}

INT_PTR RecordingUiSink::shellExecute(const UiShellExecute& request) {
  mShellRequests.push_back(request);
  return mShellResult;
}

}  // namespace win_testing
