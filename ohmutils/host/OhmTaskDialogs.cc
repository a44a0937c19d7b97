#include "ohmutils/host/OhmTaskDialogs.h"

#include "ohmutils/host/OhmHostActions.h"
#include "ohmutils/host/OhmUtilsModule_internal.h"
#include "win/module/Module.h"
#include "win/module/Resource.h"
#include "win/ui/Window.h"
#include "zd/ui/ZdApplicationFrame.h"
#include "zd/ui/ZdTaskDialog.h"

namespace {

constexpr const char16_t* kDialogDefinitionFile = u"/OhmTaskDialogsRes;component/TaskDialogs.xaml";
constexpr const char16_t* kMissingDbEngineDialog = u"OhmMB.MissingDBEngine";
constexpr const char16_t* kVersionMismatchDialog = u"OhmMt.MechatronicsSyncFailedDueToVersionMismatch";
constexpr const char16_t* kMissingDbEnginePage =
    u"http://knowledge.ohm-suite.example/article/Error-The-driver-OhmRedist-is-missing";
constexpr const char16_t* kVersionMismatchPage =
    u"http://www.ohm-suite.example/electromechanical-version-compatibility";
constexpr int kDetailsButtonId = 100;
constexpr UINT kDetailsCaptionId = 139;
constexpr int kCaptionUnits = 260;

// Notification 3 opens the clicked link's own target; notification 2 from
// the details button opens `page` and is the one case reported handled.
bool HandleDialogEvent(const ZdTaskDialogEventArgs* args, LPCWSTR page) {
  if (args->notification == TDN_HYPERLINK_CLICKED) {
    OpenURL(args->hyperlink);
    return false;
  }
  if (args->notification != TDN_BUTTON_CLICKED || args->buttonId != kDetailsButtonId) return false;
  OpenURL(page);
  return true;
}

bool MissingDbEngineCallback(ZdTaskDialogEventArgs* args) { return HandleDialogEvent(args, kMissingDbEnginePage); }

bool VersionMismatchCallback(ZdTaskDialogEventArgs* args) { return HandleDialogEvent(args, kVersionMismatchPage); }

// The details button's caption from the audit library, else "Details".
CString DetailsCaption() {
  CString caption(u"Details");
  HMODULE audit = LoadLibraryW(ohm_internal::kAuditResourceLibrary);
  if (!audit) return caption;
  WCHAR text[kCaptionUnits] = u"";
  if (LoadStringW(audit, kDetailsCaptionId, text, kCaptionUnits) > 0) caption = text;
  caption.Trim();
  FreeLibrary(audit);
  return caption;
}

// The active window's object, else the host's main frame, else none.
CWnd* DialogOwner() {
  if (CWnd* active = CWnd::FromHandle(GetActiveWindow())) return active;
  return zdedGetZedaFrame();
}

void ShowTaskDialog(LPCWSTR dialogId, const TASKDIALOG_KEYVALUE* pairs, int pairCount, ZdTaskDialogCallback callback) {
  ZdTaskDialog dialog;
  if (!dialog.LoadFromFile(kDialogDefinitionFile, dialogId, pairs, pairCount)) return;
  const CString caption = DetailsCaption();
  const TASKDIALOG_BUTTON details{kDetailsButtonId, caption};
  dialog.SetButtons(&details, 1);
  dialog.SetFlags(TDF_ENABLE_HYPERLINKS);
  dialog.SetCallback(callback);
  dialog.ShowDialog(DialogOwner());
}

}  // namespace

void DisplayMissingDbEngineTaskDialog() { ShowTaskDialog(kMissingDbEngineDialog, nullptr, 0, MissingDbEngineCallback); }

void DisplayEMXVersionErrorTaskDlg(const CString& firstKey, const CString& firstValue, const CString& secondKey,
                                   const CString& secondValue) {
  const TASKDIALOG_KEYVALUE pairs[] = {{firstKey, firstValue}, {secondKey, secondValue}};
  ShowTaskDialog(kVersionMismatchDialog, pairs, 2, VersionMismatchCallback);
}
