// CStringArray: MFC's growable array of CString, as the library uses it.
// Indices are `INT_PTR` and 0-based; growth and removal keep the order.
//
// Out-of-range indices: GetAt/operator[] REQUIRE 0 <= index < GetSize()
// (MFC asserts there too).
//
// Thread safety: a plain value, one object by one thread at a time.
#pragma once

#include <vector>

#include "OhmPlatformExport.h"
#include "mfc/CString.h"

OHM_PLATFORM_API_BEGIN

class CStringArray {
 public:
  CStringArray() = default;

  // Number of elements.
  INT_PTR GetSize() const noexcept { return static_cast<INT_PTR>(mItems.size()); }
  INT_PTR GetCount() const noexcept { return GetSize(); }
  bool IsEmpty() const noexcept { return mItems.empty(); }

  const CString& GetAt(INT_PTR index) const;
  const CString& operator[](INT_PTR index) const { return GetAt(index); }
  CString& operator[](INT_PTR index);

  // Appends; the new element's index.
  INT_PTR Add(const CString& text);
  void RemoveAll() noexcept { mItems.clear(); }

 private:
  std::vector<CString> mItems;
};

OHM_PLATFORM_API_END
