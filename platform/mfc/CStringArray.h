// CStringArray: MFC's growable array of CString, as the library uses it.
// Indices are `INT_PTR` and 0-based; growth and removal keep the order.
//
// Out-of-range indices: GetAt/SetAt/ElementAt/operator[] REQUIRE
// 0 <= index < GetSize() (MFC asserts there too); SetAtGrow grows the array.
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
  // Highest valid index; -1 when empty.
  INT_PTR GetUpperBound() const noexcept { return GetSize() - 1; }
  // Resizes; new elements are empty strings.
  void SetSize(INT_PTR newSize);

  const CString& GetAt(INT_PTR index) const;
  void SetAt(INT_PTR index, LPCWSTR text);
  CString& ElementAt(INT_PTR index);
  const CString& operator[](INT_PTR index) const { return GetAt(index); }
  CString& operator[](INT_PTR index) { return ElementAt(index); }
  // Sets element `index`, growing the array with empty strings as needed.
  void SetAtGrow(INT_PTR index, LPCWSTR text);

  // Appends; the new element's index.
  INT_PTR Add(const CString& text);
  // Appends every element of `other`; the index of the first appended.
  INT_PTR Append(const CStringArray& other);
  // Makes this a copy of `other`.
  void Copy(const CStringArray& other) { mItems = other.mItems; }
  // Inserts `count` copies of `text` before `index` (at the end when index == size).
  void InsertAt(INT_PTR index, LPCWSTR text, INT_PTR count = 1);
  // Removes `count` elements from `index`.
  void RemoveAt(INT_PTR index, INT_PTR count = 1);
  void RemoveAll() noexcept { mItems.clear(); }

 private:
  std::vector<CString> mItems;
};

OHM_PLATFORM_API_END
