// AfxMessageBox: MFC's message box with the application's name as caption
// ("Zeda", the host's), shown through MessageBoxW and so through the UI sink.
#pragma once

#include "OhmPlatformExport.h"
#include "win/WinDef.h"
#include "win/ui/MessageBox.h"

OHM_PLATFORM_API_BEGIN

// The caption of every AfxMessageBox.
inline constexpr const WCHAR* kAfxApplicationName = u"Zeda";

// Shows `text` with the buttons and icon of `type`; the button id chosen.
// `helpId` is accepted as MFC does.
int AfxMessageBox(LPCWSTR text, UINT type = MB_OK, UINT helpId = 0);

// Shows string `promptId` of the resource chain (empty when it isn't there).
int AfxMessageBox(UINT promptId, UINT type = MB_OK, UINT helpId = UINT(-1));

OHM_PLATFORM_API_END
