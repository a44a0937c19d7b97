#include "mfc/CStringArray.h"

#include <cassert>

namespace {

std::size_t Position(INT_PTR index) { return static_cast<std::size_t>(index); }

}  // namespace

const CString& CStringArray::GetAt(INT_PTR index) const {
  assert(index >= 0 && index < GetSize());
  return mItems[Position(index)];
}

CString& CStringArray::operator[](INT_PTR index) {
  assert(index >= 0 && index < GetSize());
  return mItems[Position(index)];
}

INT_PTR CStringArray::Add(const CString& text) {
  mItems.push_back(text);
  return GetSize() - 1;
}
