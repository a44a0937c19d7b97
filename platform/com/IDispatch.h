// IDispatch: the automation interface through which an application's object
// model is reached. Only the IUnknown part is offered here: nothing in this
// build calls members by name, and an object's typed interfaces are reached
// with QueryInterface.
#pragma once

#include "OhmPlatformExport.h"
#include "com/IUnknown.h"

OHM_PLATFORM_API_BEGIN

inline constexpr IID IID_IDispatch{0x00020400, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

struct IDispatch : IUnknown {
  static constexpr const IID& iid = IID_IDispatch;
};
using LPDISPATCH = IDispatch*;

OHM_PLATFORM_API_END
