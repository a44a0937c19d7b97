// IUnknown: the base of every COM interface. An object lives while its
// reference count is above zero; whoever receives an interface pointer from a
// call (an out-argument) owns one reference and gives it back with Release.
// QueryInterface asks the object for another of its interfaces by id.
//
// Each interface names its id as the static member `iid`, which _com_ptr_t
// uses in place of the platform's __uuidof.
#pragma once

#include "OhmPlatformExport.h"
#include "com/Guid.h"
#include "com/HResult.h"

OHM_PLATFORM_API_BEGIN

inline constexpr IID IID_IUnknown{0x00000000, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

struct IUnknown {
  static constexpr const IID& iid = IID_IUnknown;

  // S_OK and a counted pointer in *object; E_NOINTERFACE and null when the
  // object has no interface of that id; E_POINTER for a null `object`.
  virtual HRESULT QueryInterface(REFIID riid, void** object) = 0;
  // The new reference count.
  virtual ULONG AddRef() = 0;
  // The new reference count; the object is gone when it reaches 0.
  virtual ULONG Release() = 0;

 protected:
  virtual ~IUnknown() = default;
};

OHM_PLATFORM_API_END
