#include "zd/ui/ZdAutomation.h"

#include <utility>

#include "win/ui/Messages.h"
#include "win/ui/Messages_internal.h"
#include "zd/ui/ZdAutomation_testing.h"

namespace {

class AutomationApplication : public IZedaApplication {
 public:
  HRESULT QueryInterface(REFIID riid, void** object) override {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (riid == IID_IZedaApplication && std::exchange(mFailNextQuery, false)) return E_NOINTERFACE;
    if (riid != IID_IUnknown && riid != IID_IDispatch && riid != IID_IZedaApplication) return E_NOINTERFACE;
    *object = static_cast<IZedaApplication*>(this);
    AddRef();
    return S_OK;
  }
  ULONG AddRef() override { return ++mReferences; }
  ULONG Release() override { return --mReferences; }  // the host's own reference keeps it above 0
  HRESULT Quit() override {
    ++mQuitRequests;
    PostQuitMessage(0);
    return S_OK;
  }

  ULONG mReferences = 1;  // the host's own
  long mQuitRequests = 0;
  bool mFailNextQuery = false;
};

class ZedaApp : public CWinApp {
 public:
  ZedaApp() { EnableAutomation(&mAutomation); }
  AutomationApplication mAutomation;
};

// Never destroyed: references may be given back at the process's end.
ZedaApp& app() {
  static ZedaApp* const state = new ZedaApp;
  return *state;
}

}  // namespace

CWinApp* zdedGetZedaWinApp() { return &app(); }

namespace zd_testing {

long automationReferences() noexcept { return static_cast<long>(app().mAutomation.mReferences) - 1; }
long quitRequests() noexcept { return app().mAutomation.mQuitRequests; }
void failNextApplicationQuery() noexcept { app().mAutomation.mFailNextQuery = true; }

}  // namespace zd_testing
