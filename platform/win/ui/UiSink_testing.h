// Test seam of the UI sink: not platform API. A sink that records every
// message box, task dialog and shell request, and answers as scripted: boxes
// with scripted button ids, then with the default; task dialogs with the
// scripted actions in order, then by closing; shell requests with the
// scripted result (42, a success, unless told).
#pragma once

#include <deque>
#include <vector>

#include "OhmPlatformExport.h"
#include "win/ui/UiSink.h"

OHM_PLATFORM_API_BEGIN

namespace win_testing {

class RecordingUiSink : public UiSink {
 public:
  // Puts itself in place; the sink it replaced comes back on destruction.
  RecordingUiSink();
  ~RecordingUiSink() override;
  RecordingUiSink(const RecordingUiSink&) = delete;
  RecordingUiSink& operator=(const RecordingUiSink&) = delete;

  int messageBox(const UiMessageBox& box) override;
  UiTaskDialogAction taskDialogAction(const UiTaskDialog& dialog, int step) override;
  INT_PTR shellExecute(const UiShellExecute& request) override;

  // The boxes shown so far, in order.
  const std::vector<UiMessageBox>& boxes() const noexcept { return mBoxes; }
  // The next box is answered with `button` (queued in order).
  void answerNext(int button) { mAnswers.push_back(button); }

  // The task dialogs shown so far, in order (each once, as it appeared).
  const std::vector<UiTaskDialog>& taskDialogs() const noexcept { return mTaskDialogs; }
  // Queues a click on button `id` of the task dialog on show.
  void clickButton(int id) { mActions.push_back({UiTaskDialogAction::kClickButton, id, u""}); }
  // Queues a click on the link to `target` of the task dialog on show.
  void clickLink(std::u16string target) { mActions.push_back({UiTaskDialogAction::kClickLink, 0, std::move(target)}); }
  // Queues closing the task dialog on show.
  void closeDialog() { mActions.push_back({UiTaskDialogAction::kClose, 0, u""}); }
  // Actions queued and not yet taken.
  std::size_t actionsLeft() const noexcept { return mActions.size(); }

  // The shell requests so far, in order.
  const std::vector<UiShellExecute>& shellRequests() const noexcept { return mShellRequests; }
  // Shell requests are answered with `result` from now on.
  void answerShellWith(INT_PTR result) noexcept { mShellResult = result; }

 private:
  UiSink* mPrevious;
  std::vector<UiMessageBox> mBoxes;
  std::deque<int> mAnswers;
  std::vector<UiTaskDialog> mTaskDialogs;
  std::deque<UiTaskDialogAction> mActions;
  std::vector<UiShellExecute> mShellRequests;
  INT_PTR mShellResult = 42;
};

}  // namespace win_testing

OHM_PLATFORM_API_END
