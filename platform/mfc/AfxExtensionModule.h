// MFC's extension modules: a module that shares its classes and resources
// with the application sets itself up with AfxInitExtensionModule at attach,
// puts a CDynLinkLibrary for itself into the application's resource chain,
// and ends with AfxTermExtensionModule at detach.
//
// Ownership: MFC owns the CDynLinkLibrary objects once made (on the heap);
// AfxTermExtensionModule deletes those of its module. The test seam counts
// the live ones.
//
// Thread safety: attach and detach run once, under the loader's lock; the
// resource chain is guarded for the readers on other threads.
#pragma once

#include <vector>

#include "OhmPlatformExport.h"
#include "win/WinDef.h"

OHM_PLATFORM_API_BEGIN

struct AFX_EXTENSION_MODULE {
  BOOL bInitialized;  // set by AfxInitExtensionModule, cleared by AfxTermExtensionModule
  HMODULE hModule;    // the module
  HMODULE hResource;  // where its resources are found: the module itself
};

// Sets up `state` for `module`; TRUE, also when already set up. FALSE for a
// null module, or when MFC can't set up the module's data.
BOOL AfxInitExtensionModule(AFX_EXTENSION_MODULE& state, HMODULE module);

// Deletes the CDynLinkLibrary objects of the module and clears the state;
// nothing for a state that isn't set up. `all` is accepted as MFC does.
void AfxTermExtensionModule(AFX_EXTENSION_MODULE& state, BOOL all = FALSE);

// One module in the application's resource chain, from construction until
// deletion (by AfxTermExtensionModule).
class CDynLinkLibrary {
 public:
  CDynLinkLibrary(AFX_EXTENSION_MODULE& state, BOOL system = FALSE);
  virtual ~CDynLinkLibrary();
  CDynLinkLibrary(const CDynLinkLibrary&) = delete;
  CDynLinkLibrary& operator=(const CDynLinkLibrary&) = delete;

  HMODULE m_hModule;
  HMODULE m_hResource;
  BOOL m_bSystem;
};

// The resource modules of the chain, in order: the application's resource
// handle first, then each CDynLinkLibrary's from the oldest.
std::vector<HMODULE> AfxResourceChain();

// The application's default resource module: the program.
HINSTANCE AfxGetResourceHandle();

OHM_PLATFORM_API_END
