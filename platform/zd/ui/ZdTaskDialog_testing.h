// Test seam of the host's task dialogs: not host API.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "OhmPlatformExport.h"
#include "win/WinDef.h"

OHM_PLATFORM_API_BEGIN

namespace zd_testing {

// The arguments of the last ZdTaskDialog::LoadFromFile call, successful or not.
struct TaskDialogLoad {
  std::u16string file;
  std::u16string dialogId;
  std::vector<std::pair<std::u16string, std::u16string>> pairs;  // key, value, in the order given
};
const TaskDialogLoad& lastTaskDialogLoad();

// One call of a dialog's callback and what it gave.
struct TaskDialogNotification {
  UINT notification;
  int buttonId;
  std::u16string hyperlink;
  bool result;
};
// The callback calls of the dialogs shown since the last resetTaskDialogs.
const std::vector<TaskDialogNotification>& taskDialogNotifications();

// Component references resolve in `folder` (POSIX) instead of beside the
// host's libraries; empty goes back to that.
void setComponentFolder(const std::string& folder);
// Forgets the last load and the callback calls; the component folder goes back.
void resetTaskDialogs();

}  // namespace zd_testing

OHM_PLATFORM_API_END
