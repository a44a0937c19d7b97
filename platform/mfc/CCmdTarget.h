// CCmdTarget: MFC's base of objects that take commands, and the holder of an
// object's automation interface. Automation is off until the derived object
// enables it with the interface it implements; that interface belongs to the
// derived object, which outlives every reference handed out.
#pragma once

#include "OhmPlatformExport.h"
#include "com/IDispatch.h"
#include "win/WinDef.h"

OHM_PLATFORM_API_BEGIN

class CCmdTarget {
 public:
  CCmdTarget() = default;
  virtual ~CCmdTarget() = default;
  CCmdTarget(const CCmdTarget&) = delete;
  CCmdTarget& operator=(const CCmdTarget&) = delete;

  // The object's automation interface, with a reference added when `addRef`
  // is TRUE (the caller then releases it); null while automation is off.
  LPDISPATCH GetIDispatch(BOOL addRef);

 protected:
  // Turns automation on with `dispatch` (null turns it off).
  void EnableAutomation(IDispatch* dispatch) noexcept { m_dispatch = dispatch; }

 private:
  IDispatch* m_dispatch = nullptr;
};

OHM_PLATFORM_API_END
