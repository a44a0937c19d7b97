// Where the user interface of the platform goes: message boxes (and, as the
// host grows them, other prompts) are handed to one sink per process. The
// default sink is a terminal session's: it prints each box to standard error
// and answers with the box's default button at once. Tests put in a sink
// that captures and answers as scripted (UiSink_testing.h). Nothing ever
// waits for a person who isn't there.
//
// Ownership: the caller of SetUiSink keeps the sink alive while it is in
// place. Thread safety: set the sink before other threads show anything.
#pragma once

#include <string>

#include "win/WinDef.h"

// One message box as MessageBoxW was asked to show it.
struct UiMessageBox {
  HWND owner;
  std::u16string text;
  std::u16string caption;
  UINT type;  // MB_* buttons, icon and default button
};

class UiSink {
 public:
  virtual ~UiSink() = default;
  // Shows a message box; the id of the button chosen (IDOK, IDCANCEL...).
  virtual int messageBox(const UiMessageBox& box) = 0;
};

// The id of the default button of a box of `type` (MB_DEFBUTTONn among its buttons).
int DefaultButtonOf(UINT type) noexcept;

// Puts `sink` in place and gives the one it replaces; null puts the terminal sink back.
UiSink* SetUiSink(UiSink* sink) noexcept;
// The sink in place; never null.
UiSink& CurrentUiSink() noexcept;
