// The host's application object and its automation interface. The
// application object is MFC's, one per process, with automation on: its
// dispatch interface answers QueryInterface for IZedaApplication, the
// host's automation application interface. The host holds one reference of
// its own for the whole session; every other reference belongs to whoever
// received it and is given back with Release.
//
// Thread safety: the host's main thread only.
#pragma once

#include "OhmPlatformExport.h"
#include "com/IDispatch.h"
#include "mfc/CWinApp.h"

OHM_PLATFORM_API_BEGIN

inline constexpr IID IID_IZedaApplication{0x6F9A3C21, 0x4B7D, 0x4E0A, {0x9C, 0x15, 0x2D, 0x8B, 0x61, 0x0E, 0x3A, 0x77}};

// The host application as automation sees it.
struct IZedaApplication : IDispatch {
  static constexpr const IID& iid = IID_IZedaApplication;
  // Asks the host to end: its main loop ends when it comes to the request
  // (WM_QUIT is posted), after the messages already queued. S_OK.
  virtual HRESULT Quit() = 0;
};

// The host's application object; never null.
CWinApp* zdedGetZedaWinApp();

OHM_PLATFORM_API_END
