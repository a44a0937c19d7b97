// CWinApp: MFC's application object, one per process, made by the
// application (the host); it keeps the application's main window.
#pragma once

#include "OhmPlatformExport.h"
#include "mfc/CCmdTarget.h"

OHM_PLATFORM_API_BEGIN

class CWnd;

class CWinApp : public CCmdTarget {
 public:
  // The application's main window; null before it exists.
  CWnd* m_pMainWnd = nullptr;
};

OHM_PLATFORM_API_END
