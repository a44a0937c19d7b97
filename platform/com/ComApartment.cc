#include "com/ComApartment.h"

#include <atomic>

#include "com/ComApartment_testing.h"
#include "com/XmlDom.h"
#include "com/XmlDom_internal.h"

namespace {

// The calling thread's COM state: how many starts are open, and in which model.
struct ThreadApartment {
  int starts = 0;
  DWORD model = COINIT_MULTITHREADED;
};
thread_local ThreadApartment tApartment;

std::atomic<HRESULT> gFailCreate{S_OK};
std::atomic<HRESULT> gFailRun{S_OK};

DWORD modelOf(DWORD coInit) { return coInit & COINIT_APARTMENTTHREADED; }

}  // namespace

HRESULT CoInitializeEx(void* reserved, DWORD coInit) {
  if (reserved) return E_INVALIDARG;
  if (tApartment.starts > 0 && tApartment.model != modelOf(coInit)) return RPC_E_CHANGED_MODE;
  tApartment.model = modelOf(coInit);
  return tApartment.starts++ == 0 ? S_OK : S_FALSE;
}

void CoUninitialize() {
  if (tApartment.starts > 0) --tApartment.starts;
}

HRESULT CoCreateInstance(REFCLSID clsid, IUnknown* outer, DWORD context, REFIID riid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  if (tApartment.starts == 0) return CO_E_NOTINITIALIZED;
  if (HRESULT hr = gFailCreate.exchange(S_OK); FAILED(hr)) return hr;
  if (!(clsid == CLSID_DOMDocument60) || !(context & CLSCTX_INPROC_SERVER)) return REGDB_E_CLASSNOTREG;
  if (outer) return CLASS_E_NOAGGREGATION;
  return com_internal::CreateDomDocument(riid, object);
}

HRESULT OleRun(IUnknown* object) {
  if (!object) return E_INVALIDARG;
  return gFailRun.exchange(S_OK);
}

void com_testing::failNextCreateInstance(HRESULT hr) { gFailCreate = hr; }
void com_testing::failNextOleRun(HRESULT hr) { gFailRun = hr; }
