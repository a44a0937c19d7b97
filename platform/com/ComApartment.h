// Starting COM on a thread and making objects by class id. COM is started
// per thread: CoInitializeEx counts, CoUninitialize counts down, and objects
// can be made only on a thread whose count is above zero, as on the platform.
//
// The one class this build can make is the XML DOM document DOMDocument60
// (CLSID_DOMDocument60 in com/XmlDom.h), an in-process object.
//
// Thread safety: all functions may be called from any thread; each acts on
// the calling thread's COM state.
#pragma once

#include "OhmPlatformExport.h"
#include "com/IUnknown.h"

OHM_PLATFORM_API_BEGIN

inline constexpr DWORD COINIT_MULTITHREADED = 0x0;
inline constexpr DWORD COINIT_APARTMENTTHREADED = 0x2;

inline constexpr DWORD CLSCTX_INPROC_SERVER = 0x1;
inline constexpr DWORD CLSCTX_INPROC_HANDLER = 0x2;
inline constexpr DWORD CLSCTX_LOCAL_SERVER = 0x4;
inline constexpr DWORD CLSCTX_REMOTE_SERVER = 0x10;
inline constexpr DWORD CLSCTX_ALL = 23;  // all four of the above

// Starts COM on the calling thread. S_OK the first time, S_FALSE when it was
// started already (each success needs its CoUninitialize); RPC_E_CHANGED_MODE
// when the thread started it with another concurrency model (not counted);
// E_INVALIDARG for a non-null `reserved`.
HRESULT CoInitializeEx(void* reserved, DWORD coInit);

// Ends one CoInitializeEx of the calling thread; nothing when COM isn't started.
void CoUninitialize();

// Makes an object of class `clsid` and asks it for `riid` into *object
// (null first). CO_E_NOTINITIALIZED on a thread without COM;
// CLASS_E_NOAGGREGATION for a non-null `outer`; REGDB_E_CLASSNOTREG for an
// unknown class or a context without CLSCTX_INPROC_SERVER; E_NOINTERFACE when
// the object lacks `riid`; E_POINTER for a null `object`.
HRESULT CoCreateInstance(REFCLSID clsid, IUnknown* outer, DWORD context, REFIID riid, void** object);

// Puts an object into its running state. S_OK (in-process objects run from
// the start); E_INVALIDARG for a null object.
HRESULT OleRun(IUnknown* object);

OHM_PLATFORM_API_END
