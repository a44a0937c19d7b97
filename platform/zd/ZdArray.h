// ZdArray: the host's growable array of values, in insertion order. The
// reallocator parameter names how elements move when the array grows;
// ZdArrayObjectCopyReallocator (copy each object) is the one for class
// types such as ZdString, and the only one this stand-in needs.
#pragma once

#include <vector>

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

template <class T>
class ZdArrayObjectCopyReallocator {};

template <class T, class R = ZdArrayObjectCopyReallocator<T>>
class ZdArray {
 public:
  ZdArray() = default;
  // Appends a copy; the new element's index.
  int append(const T& value) {
    mItems.push_back(value);
    return length() - 1;
  }
  int length() const noexcept { return static_cast<int>(mItems.size()); }
  int logicalLength() const noexcept { return length(); }
  bool isEmpty() const noexcept { return mItems.empty(); }
  // Drops every element.
  ZdArray& removeAll() {
    mItems.clear();
    return *this;
  }
  // REQUIRES: 0 <= index < length().
  const T& at(int index) const { return mItems.at(static_cast<std::size_t>(index)); }
  T& at(int index) { return mItems.at(static_cast<std::size_t>(index)); }
  const T& operator[](int index) const { return at(index); }
  T& operator[](int index) { return at(index); }
  // The index of the first element equal to `value`; -1 if none.
  int find(const T& value) const {
    for (int i = 0; i < length(); ++i)
      if (mItems[static_cast<std::size_t>(i)] == value) return i;
    return -1;
  }

 private:
  std::vector<T> mItems;
};

OHM_PLATFORM_API_END
