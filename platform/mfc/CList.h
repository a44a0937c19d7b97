// CList<TYPE, ARG_TYPE>: MFC's doubly linked list, walked with POSITION
// values. A POSITION names one element; it stays valid until that element is
// removed. A null POSITION is "none": the end of a walk, or a failed search.
//
// Preconditions as in MFC: GetHead/GetTail/RemoveHead/RemoveTail REQUIRE a
// list that isn't empty; GetNext/GetPrev/GetAt/SetAt/RemoveAt REQUIRE a
// valid, non-null POSITION of this list.
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

  // Adds an element; its position.
  POSITION AddHead(ARG_TYPE value) { return InsertBefore(GetHeadPosition(), value); }
  POSITION AddTail(ARG_TYPE value) { return InsertAfter(GetTailPosition(), value); }
  // Appends copies of every element of `other`.
  void AddTail(const CList* other) {
    for (POSITION pos = other->GetHeadPosition(); pos;) AddTail(other->GetNext(pos));
  }
  // Removes the first / last element and gives it.
  TYPE RemoveHead() { return take(checked(mHead)); }
  TYPE RemoveTail() { return take(checked(mTail)); }
  void RemoveAll() noexcept {
    while (mHead) delete unlink(mHead);
  }

  // Positions of the ends; null when empty.
  POSITION GetHeadPosition() const noexcept { return toPosition(mHead); }
  POSITION GetTailPosition() const noexcept { return toPosition(mTail); }
  // The element at `pos`; moves `pos` on (null past the end) / back.
  TYPE& GetNext(POSITION& pos) { return step(pos, &Node::next); }
  const TYPE& GetNext(POSITION& pos) const { return const_cast<CList*>(this)->GetNext(pos); }
  TYPE& GetPrev(POSITION& pos) { return step(pos, &Node::prev); }
  const TYPE& GetPrev(POSITION& pos) const { return const_cast<CList*>(this)->GetPrev(pos); }
  TYPE& GetAt(POSITION pos) { return checked(toNode(pos))->data; }
  const TYPE& GetAt(POSITION pos) const { return checked(toNode(pos))->data; }
  void SetAt(POSITION pos, ARG_TYPE value) { checked(toNode(pos))->data = value; }
  void RemoveAt(POSITION pos) { delete unlink(checked(toNode(pos))); }

  // Inserts before / after `pos`; a null pos inserts at the head / tail. The new position.
  POSITION InsertBefore(POSITION pos, ARG_TYPE value) {
    Node* after = toNode(pos) ? toNode(pos) : mHead;
    return link(new Node{after ? after->prev : nullptr, after, value});
  }
  POSITION InsertAfter(POSITION pos, ARG_TYPE value) {
    Node* before = toNode(pos) ? toNode(pos) : mTail;
    return link(new Node{before, before ? before->next : nullptr, value});
  }

  // The first element equal to `value` behind `startAfter` (from the head for null); null if none.
  POSITION Find(ARG_TYPE value, POSITION startAfter = nullptr) const {
    Node* node = startAfter ? toNode(startAfter)->next : mHead;
    while (node && !(node->data == value)) node = node->next;
    return toPosition(node);
  }
  // The position of the element at 0-based `index`; null when out of range.
  POSITION FindIndex(INT_PTR index) const {
    if (index < 0 || index >= mCount) return nullptr;
    Node* node = mHead;
    while (index-- > 0) node = node->next;
    return toPosition(node);
  }

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
  TYPE& step(POSITION& pos, Node* Node::*direction) {
    Node* node = checked(toNode(pos));
    pos = toPosition(node->*direction);
    return node->data;
  }

  Node* mHead = nullptr;
  Node* mTail = nullptr;
  INT_PTR mCount = 0;
  INT_PTR mBlockSize;
};

OHM_PLATFORM_API_END
