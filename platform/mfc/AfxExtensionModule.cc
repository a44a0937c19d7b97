#include "mfc/AfxExtensionModule.h"

#include <algorithm>
#include <iterator>
#include <mutex>
#include <utility>

#include "mfc/AfxExtensionModule_testing.h"
#include "win/module/Module.h"

namespace {

struct ModuleState {
  std::mutex mutex;
  std::vector<CDynLinkLibrary*> libraries;  // the chain, oldest first
  bool failNextInit = false;
};

ModuleState& state() {
  static ModuleState s;
  return s;
}

bool takeInitFault() {
  std::lock_guard lock(state().mutex);
  return std::exchange(state().failNextInit, false);
}

std::vector<CDynLinkLibrary*> librariesOf(HMODULE module) {
  std::lock_guard lock(state().mutex);
  std::vector<CDynLinkLibrary*> found;
  std::copy_if(state().libraries.begin(), state().libraries.end(), std::back_inserter(found),
               [module](const CDynLinkLibrary* library) { return library->m_hModule == module; });
  return found;
}

}  // namespace

BOOL AfxInitExtensionModule(AFX_EXTENSION_MODULE& moduleState, HMODULE module) {
  if (takeInitFault() || !module) return FALSE;
  if (moduleState.bInitialized) return TRUE;
  moduleState = AFX_EXTENSION_MODULE{TRUE, module, module};
  return TRUE;
}

void AfxTermExtensionModule(AFX_EXTENSION_MODULE& moduleState, BOOL) {
  if (!moduleState.bInitialized) return;
  for (CDynLinkLibrary* library : librariesOf(moduleState.hModule)) delete library;
  moduleState = AFX_EXTENSION_MODULE{FALSE, nullptr, nullptr};
}

CDynLinkLibrary::CDynLinkLibrary(AFX_EXTENSION_MODULE& moduleState, BOOL system)
    : m_hModule(moduleState.hModule), m_hResource(moduleState.hResource), m_bSystem(system) {
  std::lock_guard lock(state().mutex);
  state().libraries.push_back(this);
}

CDynLinkLibrary::~CDynLinkLibrary() {
  std::lock_guard lock(state().mutex);
  std::erase(state().libraries, this);
}

std::vector<HMODULE> AfxResourceChain() {
  std::vector<HMODULE> chain{AfxGetResourceHandle()};
  std::lock_guard lock(state().mutex);
  for (const CDynLinkLibrary* library : state().libraries) chain.push_back(library->m_hResource);
  return chain;
}

HINSTANCE AfxGetResourceHandle() { return GetModuleHandleW(nullptr); }

namespace mfc_testing {

void failNextInitExtensionModule() noexcept {
  std::lock_guard lock(state().mutex);
  state().failNextInit = true;
}

long liveDynLinkLibraries() noexcept {
  std::lock_guard lock(state().mutex);
  return static_cast<long>(state().libraries.size());
}

}  // namespace mfc_testing
