#include "mfc/AfxMessageBox.h"

#include "mfc/CString.h"

int AfxMessageBox(LPCWSTR text, UINT type, UINT) { return MessageBoxW(nullptr, text, kAfxApplicationName, type); }

int AfxMessageBox(UINT promptId, UINT type, UINT helpId) {
  CString prompt;
  prompt.LoadString(promptId);
  return AfxMessageBox(prompt, type, helpId);
}
