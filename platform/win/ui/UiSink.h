// Where the user interface of the platform goes: message boxes, task dialogs
// and the shell's opening of addresses are handed to one sink per process.
// The default sink is a terminal session's: it prints each box to standard
// error and answers with the box's default button at once; it shows a task
// dialog on standard error and, only when standard input is a terminal, asks
// what to do in it; it opens an address with the desktop's opener
// (xdg-open). Tests put in a sink that captures and answers as scripted
// (UiSink_testing.h). Nothing ever waits for a person who isn't there.
//
// Ownership: the caller of SetUiSink keeps the sink alive while it is in
// place. Thread safety: set the sink before other threads show anything.
#pragma once

#include <string>
#include <vector>

#include "OhmPlatformExport.h"
#include "win/WinDef.h"

OHM_PLATFORM_API_BEGIN

// One message box as MessageBoxW was asked to show it.
struct UiMessageBox {
  HWND owner;
  std::u16string text;
  std::u16string caption;
  UINT type;  // MB_* buttons, icon and default button
};

// One button of a task dialog.
struct UiTaskDialogButton {
  int id;
  std::u16string caption;
};

// One hyperlink in a task dialog's text: what it shows and where it leads.
struct UiTaskDialogLink {
  std::u16string label;
  std::u16string target;
};

// A task dialog as it is shown, its placeholders filled in.
struct UiTaskDialog {
  HWND owner;
  std::u16string id;  // the id it was defined under
  std::u16string title;
  std::u16string mainInstruction;
  std::u16string content;  // link labels inline; the raw link markup when links are off
  std::u16string footer;
  std::vector<UiTaskDialogButton> buttons;  // custom ones first, then the common ones
  int defaultButton;                        // id of the button that Enter presses
  std::vector<UiTaskDialogLink> links;      // empty unless hyperlinks are enabled
};

// What the person in front of a task dialog does next.
struct UiTaskDialogAction {
  enum Kind { kClickButton, kClickLink, kClose };
  Kind kind;
  int buttonId = 0;       // for kClickButton
  std::u16string target;  // for kClickLink
};

// One ShellExecuteW request. `target` is what the desktop's opener is given:
// the address of a file protocol handler request, or the POSIX path of a
// file to open; empty when the request names nothing that can be opened.
struct UiShellExecute {
  HWND owner;
  std::u16string verb;
  std::u16string file;
  std::u16string parameters;
  std::u16string directory;
  int show;
  std::u16string target;
};

class UiSink {
 public:
  virtual ~UiSink() = default;
  // Shows a message box; the id of the button chosen (IDOK, IDCANCEL...).
  virtual int messageBox(const UiMessageBox& box) = 0;
  // The next action in a task dialog that is on show; `step` counts the
  // actions asked for in this dialog, 0 when it has just appeared. The
  // terminal shows the dialog at step 0 and asks on standard input when that
  // is a terminal (a button's number, "l" and a link's number, an empty line
  // for the default button); kClose at the end of the input and whenever
  // nobody is there.
  virtual UiTaskDialogAction taskDialogAction(const UiTaskDialog& dialog, int step);
  // Carries out a ShellExecuteW request; as ShellExecuteW's result, above 32
  // on success. The terminal hands the target to xdg-open without waiting for
  // it: SE_ERR_NOASSOC for an empty target, ERROR_FILE_NOT_FOUND when there
  // is no xdg-open to run.
  virtual INT_PTR shellExecute(const UiShellExecute& request);
};

// The id of the default button of a box of `type` (MB_DEFBUTTONn among its buttons).
int DefaultButtonOf(UINT type) noexcept;

// Puts `sink` in place and gives the one it replaces; null puts the terminal sink back.
UiSink* SetUiSink(UiSink* sink) noexcept;
// The sink in place; never null.
UiSink& CurrentUiSink() noexcept;

OHM_PLATFORM_API_END
