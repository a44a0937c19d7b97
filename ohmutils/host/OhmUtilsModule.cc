#include "ohmutils/host/OhmUtilsModule.h"

#include <new>

#include "mfc/AfxExtensionModule.h"
#include "ohmutils/host/OhmLispBridge_internal.h"
#include "ohmutils/host/OhmResDll.h"
#include "ohmutils/host/OhmUtilsModule_internal.h"
#include "win/module/Module.h"

namespace {

AFX_EXTENSION_MODULE gExtensionModule{};
HINSTANCE gResourceLibrary = nullptr;  // written at attach and detach only

BOOL Attach(HINSTANCE module) {
  gResourceLibrary = LoadResDll(ohm_internal::kModuleFileName, ohm_internal::kLanguageResourceLibrary);
  if (!gResourceLibrary) return FALSE;
  if (!AfxInitExtensionModule(gExtensionModule, module)) return FALSE;
  new (std::nothrow) CDynLinkLibrary(gExtensionModule, FALSE);  // MFC owns it from here
  ohm_internal::LispRegisterFunctions();
  return TRUE;
}

void Detach() {
  AfxTermExtensionModule(gExtensionModule, FALSE);
  if (gResourceLibrary) UnloadResDll(gResourceLibrary);
  gResourceLibrary = nullptr;
}

}  // namespace

extern "C" BOOL DllMain(HINSTANCE module, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) return Attach(module);
  if (reason == DLL_PROCESS_DETACH) Detach();
  return TRUE;
}

namespace ohm_internal {

HINSTANCE ResourceLibrary() noexcept { return gResourceLibrary; }

}  // namespace ohm_internal
