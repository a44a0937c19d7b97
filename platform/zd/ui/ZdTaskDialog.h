// ZdTaskDialog: the host's task dialog, defined in a dialog definition file
// and loaded by its id. A definition gives the title, the main instruction,
// the content (with hyperlinks), a footer, the common buttons and the
// default button; the caller adds its own buttons, flags and a callback, and
// shows it. Placeholders "{Key}" in the texts are replaced with the values
// of the key-value pairs given at load.
//
// The definition file is named by a component reference,
// "/<library>;component/<path>", which is the file <path> in the folder
// <library> beside the host's own libraries (build: the library folder;
// install: the library folder of the prefix), or by a Windows-form path.
//
// The dialog is shown through the UI sink (win/ui/UiSink.h). A click on a
// hyperlink (when TDF_ENABLE_HYPERLINKS is set) calls the callback with
// TDN_HYPERLINK_CLICKED and the link's target; the dialog stays. A click on a
// button calls it with TDN_BUTTON_CLICKED and the button's id; the dialog
// closes unless the callback gives true, which keeps it open. Closing the
// dialog otherwise (its close box, Esc, nobody there) tells the callback
// IDCANCEL and closes it whatever the callback gives.
//
// The dialog copies what it is given; the caller's arrays and texts need not
// outlive the calls. Thread safety: the host's main thread only.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "OhmPlatformExport.h"
#include "mfc/CWnd.h"
#include "win/WinDef.h"

OHM_PLATFORM_API_BEGIN

// A placeholder and its value: "{key}" in the texts becomes value.
struct TASKDIALOG_KEYVALUE {
  LPCWSTR key;
  LPCWSTR value;
};

// A button of the caller's.
struct TASKDIALOG_BUTTON {
  int nButtonID;
  LPCWSTR pszButtonText;
};

// Notifications a callback is given.
inline constexpr UINT TDN_BUTTON_CLICKED = 2;
inline constexpr UINT TDN_HYPERLINK_CLICKED = 3;
// Dialog flags: hyperlinks in the texts can be clicked (else their markup shows as text).
inline constexpr DWORD TDF_ENABLE_HYPERLINKS = 0x0001;
// Ids of the common buttons a definition may have.
inline constexpr int IDCLOSE = 8;

// What happened in the dialog.
struct ZdTaskDialogEventArgs {
  UINT notification;  // TDN_BUTTON_CLICKED or TDN_HYPERLINK_CLICKED
  int buttonId;       // for TDN_BUTTON_CLICKED
  LPCWSTR hyperlink;  // for TDN_HYPERLINK_CLICKED; valid during the call
};

// A dialog's callback; true keeps the dialog open after a button click.
using ZdTaskDialogCallback = bool (*)(ZdTaskDialogEventArgs* args);

class ZdTaskDialog {
 public:
  ZdTaskDialog();
  ~ZdTaskDialog();
  ZdTaskDialog(const ZdTaskDialog&) = delete;
  ZdTaskDialog& operator=(const ZdTaskDialog&) = delete;

  // Loads dialog `dialogId` of the definition file with `count` placeholder
  // pairs (a pair with a null key is skipped). Non-zero on success; 0, with
  // the earlier definition kept, when the file can't be found or read, isn't
  // a well-formed definition file, or has no dialog of that id.
  int LoadFromFile(LPCWSTR file, LPCWSTR dialogId, const TASKDIALOG_KEYVALUE* pairs, int count);
  // The caller's buttons, shown before the common ones; replaces earlier ones.
  void SetButtons(const TASKDIALOG_BUTTON* buttons, int count);
  // TDF_* flags; replaces earlier ones.
  void SetFlags(DWORD flags) noexcept { mFlags = flags; }
  // The callback; null for none (every button click then closes the dialog).
  void SetCallback(ZdTaskDialogCallback callback) noexcept { mCallback = callback; }
  // Shows the dialog, owned by `owner` (may be null), until it closes; the
  // id of the button that closed it (IDCANCEL when closed otherwise). 0, and
  // nothing shown, when no definition is loaded.
  int ShowDialog(CWnd* owner);

 private:
  struct Definition;
  bool notify(UINT notification, int buttonId, LPCWSTR hyperlink);

  std::unique_ptr<Definition> mDefinition;
  std::vector<std::pair<int, std::u16string>> mButtons;  // id, caption
  DWORD mFlags = 0;
  ZdTaskDialogCallback mCallback = nullptr;
};

OHM_PLATFORM_API_END
