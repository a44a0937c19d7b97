// Run-time class descriptors of the host's database classes. Each class has
// one descriptor for the life of the process, so descriptors compare by
// identity; isDerivedFrom walks the parent chain. A class made at run time
// (a drawing may hold entities of classes this build knows only by name)
// gets its descriptor from ZdRxClass::forName, under a parent class.
#pragma once

#include <string>

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

class ZdRxClass {
 public:
  ZdRxClass(std::u16string name, const ZdRxClass* parent) : mName(std::move(name)), mParent(parent) {}
  ZdRxClass(const ZdRxClass&) = delete;
  ZdRxClass& operator=(const ZdRxClass&) = delete;

  // The class name, e.g. "ZdDbBlockReference".
  const char16_t* name() const noexcept { return mName.c_str(); }
  const ZdRxClass* myParent() const noexcept { return mParent; }
  // True when this is `other` or derives from it; false for null.
  bool isDerivedFrom(const ZdRxClass* other) const noexcept;

  // The descriptor of a class known by name only, made once under `parent`
  // (later calls give the first one, whatever parent they name).
  static const ZdRxClass* forName(const std::u16string& name, const ZdRxClass* parent);

 private:
  std::u16string mName;
  const ZdRxClass* mParent;
};

OHM_PLATFORM_API_END
