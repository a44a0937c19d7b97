// MessageBoxW: a modal message box, handed to the UI sink (UiSink.h), which
// decides how it is shown and which button answers it.
#pragma once

#include "OhmPlatformExport.h"
#include "win/WinDef.h"

OHM_PLATFORM_API_BEGIN

// Buttons, icons and default button of the box type.
inline constexpr UINT MB_OK = 0x0;
inline constexpr UINT MB_OKCANCEL = 0x1;
inline constexpr UINT MB_ABORTRETRYIGNORE = 0x2;
inline constexpr UINT MB_YESNOCANCEL = 0x3;
inline constexpr UINT MB_YESNO = 0x4;
inline constexpr UINT MB_RETRYCANCEL = 0x5;
inline constexpr UINT MB_ICONSTOP = 0x10;
inline constexpr UINT MB_ICONERROR = MB_ICONSTOP;
inline constexpr UINT MB_ICONQUESTION = 0x20;
inline constexpr UINT MB_ICONWARNING = 0x30;
inline constexpr UINT MB_ICONINFORMATION = 0x40;
inline constexpr UINT MB_DEFBUTTON2 = 0x100;
inline constexpr UINT MB_DEFBUTTON3 = 0x200;
// Button ids a box answers with.
inline constexpr int IDOK = 1;
inline constexpr int IDCANCEL = 2;
inline constexpr int IDABORT = 3;
inline constexpr int IDRETRY = 4;
inline constexpr int IDIGNORE = 5;
inline constexpr int IDYES = 6;
inline constexpr int IDNO = 7;

// Shows `text` under `caption` ("Error" for null) with the buttons of
// `type`; the id of the button the sink chose. A null text shows as empty.
int MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type);

OHM_PLATFORM_API_END
