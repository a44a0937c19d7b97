// CList<TYPE, ARG_TYPE>: MFC's doubly linked list, walked with POSITION
// values. A POSITION names one element; it stays valid until that element is
// removed. A null POSITION is "none": the end of a walk, or a failed search.
//
// Preconditions as in MFC: GetHead/GetTail/RemoveHead REQUIRE a list that
// isn't empty; GetNext REQUIRES a valid, non-null POSITION of this list.
//
// The block size is MFC's allocation grain; it is kept and has no effect on
// behaviour here. Elements belong to the list; lists don't copy.
//
// Thread safety: one object by one thread at a time.
#pragma once

#include <cassert>
#include <utility>

#include "OhmPlatformExport.h"
#include "win/WinDef.h"

OHM_PLATFORM_API_BEGIN

struct MfcListPosition;
using POSITION = MfcListPosition*;

template <class TYPE, class ARG_TYPE = const TYPE&>
class CList {
 public:
  explicit CList(INT_PTR blockSize = 10) : mBlockSize(blockSize) {}
  virtual ~CList() { RemoveAll(); }
  CList(const CList&) = delete;
  CList& operator=(const CList&) = delete;

  INT_PTR GetCount() const noexcept { return mCount; }
  INT_PTR GetSize() const noexcept { return mCount; }
  bool IsEmpty() const noexcept { return mCount == 0; }

  TYPE& GetHead() { return checked(mHead)->data; }
  const TYPE& GetHead() const { return checked(mHead)->data; }
  TYPE& GetTail() { return checked(mTail)->data; }
  const TYPE& GetTail() const { return checked(mTail)->data; }

  // Appends an element; its position.
  POSITION AddTail(ARG_TYPE value) { return link(new Node{mTail, nullptr, value}); }
  // Removes the first element and gives it.
  TYPE RemoveHead() { return take(checked(mHead)); }
  void RemoveAll() noexcept {
    while (mHead) delete unlink(mHead);
  }

  // Position of the head; null when empty.
  POSITION GetHeadPosition() const noexcept { return toPosition(mHead); }
  // The element at `pos`; moves `pos` on (null past the end).
  TYPE& GetNext(POSITION& pos) {
    Node* node = checked(toNode(pos));
    pos = toPosition(node->next);
    return node->data;
  }
  const TYPE& GetNext(POSITION& pos) const { return const_cast<CList*>(this)->GetNext(pos); }

 private:
  struct Node {
    Node* prev;
    Node* next;
    TYPE data;
  };

  static POSITION toPosition(Node* node) noexcept { return reinterpret_cast<POSITION>(node); }
  static Node* toNode(POSITION pos) noexcept { return reinterpret_cast<Node*>(pos); }
  static Node* checked(Node* node) {
    assert(node && "CList: empty list or null POSITION");
    return node;
  }

  POSITION link(Node* node) {
    (node->prev ? node->prev->next : mHead) = node;
    (node->next ? node->next->prev : mTail) = node;
    ++mCount;
    return toPosition(node);
  }
  Node* unlink(Node* node) noexcept {
    (node->prev ? node->prev->next : mHead) = node->next;
    (node->next ? node->next->prev : mTail) = node->prev;
    --mCount;
    return node;
  }
  TYPE take(Node* node) {
    TYPE value = std::move(node->data);
    delete unlink(node);
    return value;
  }

  Node* mHead = nullptr;
  Node* mTail = nullptr;
  INT_PTR mCount = 0;
  INT_PTR mBlockSize;
};

OHM_PLATFORM_API_END
