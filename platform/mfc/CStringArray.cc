#include "mfc/CStringArray.h"

#include <cassert>

namespace {

std::size_t Position(INT_PTR index) { return static_cast<std::size_t>(index); }

}  // namespace

void CStringArray::SetSize(INT_PTR newSize) {
  assert(newSize >= 0);
  mItems.resize(Position(newSize));
}

const CString& CStringArray::GetAt(INT_PTR index) const {
  assert(index >= 0 && index < GetSize());
  return mItems[Position(index)];
}

void CStringArray::SetAt(INT_PTR index, LPCWSTR text) { ElementAt(index) = text; }

CString& CStringArray::ElementAt(INT_PTR index) {
  assert(index >= 0 && index < GetSize());
  return mItems[Position(index)];
}

void CStringArray::SetAtGrow(INT_PTR index, LPCWSTR text) {
  assert(index >= 0);
  if (index >= GetSize()) SetSize(index + 1);
  mItems[Position(index)] = text;
}

INT_PTR CStringArray::Add(const CString& text) {
  mItems.push_back(text);
  return GetUpperBound();
}

INT_PTR CStringArray::Append(const CStringArray& other) {
  const INT_PTR first = GetSize();
  mItems.insert(mItems.end(), other.mItems.begin(), other.mItems.end());
  return first;
}

void CStringArray::InsertAt(INT_PTR index, LPCWSTR text, INT_PTR count) {
  assert(index >= 0 && index <= GetSize() && count >= 0);
  mItems.insert(mItems.begin() + index, Position(count), CString(text));
}

void CStringArray::RemoveAt(INT_PTR index, INT_PTR count) {
  assert(index >= 0 && count >= 0 && index + count <= GetSize());
  mItems.erase(mItems.begin() + index, mItems.begin() + index + count);
}
