// Test seam of the UI sink: not platform API. A sink that records every
// message box and answers with scripted button ids, then with the default.
#pragma once

#include <deque>
#include <vector>

#include "win/UiSink.h"

namespace win_testing {

class RecordingUiSink : public UiSink {
 public:
  // Puts itself in place; the sink it replaced comes back on destruction.
  RecordingUiSink();
  ~RecordingUiSink() override;
  RecordingUiSink(const RecordingUiSink&) = delete;
  RecordingUiSink& operator=(const RecordingUiSink&) = delete;

  int messageBox(const UiMessageBox& box) override;

  // The boxes shown so far, in order.
  const std::vector<UiMessageBox>& boxes() const noexcept { return mBoxes; }
  // The next box is answered with `button` (queued in order).
  void answerNext(int button) { mAnswers.push_back(button); }

 private:
  UiSink* mPrevious;
  std::vector<UiMessageBox> mBoxes;
  std::deque<int> mAnswers;
};

}  // namespace win_testing
