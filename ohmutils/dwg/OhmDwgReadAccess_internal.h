// Read access to one database object for the length of a scope, also when
// the object is open elsewhere: the access ends (write access given back,
// the object closed if this opened it) when the scope does.
#pragma once

#include "zd/db/ZdDbDatabase.h"

namespace ohm_internal {

class ReadAccess {
 public:
  // Read access to the object of class `cls` (or derived); erased objects aren't opened.
  ReadAccess(ZdDbObjectId id, const ZdRxClass* cls) {
    if (accessZdDbObjectForRead(mObject, id, cls, mWasOpened, mWasWritable) != Zeda::eOk) mObject = nullptr;
  }
  ~ReadAccess() {
    if (!mObject) return;
    revertZdDbObjectFromWrite(mObject, mWasWritable);
    if (mWasOpened) mObject->close();
  }
  ReadAccess(const ReadAccess&) = delete;
  ReadAccess& operator=(const ReadAccess&) = delete;

  // The object, null when it couldn't be had.
  template <class T>
  const T* get() const noexcept {
    return static_cast<const T*>(mObject);
  }
  explicit operator bool() const noexcept { return mObject != nullptr; }

 private:
  ZdDbObject* mObject = nullptr;
  bool mWasOpened = false;
  bool mWasWritable = false;
};

}  // namespace ohm_internal
