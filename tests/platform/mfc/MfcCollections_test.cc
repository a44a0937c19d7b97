// CStringArray, CList and CStringList: order kept through growth, insertion
// and removal; positions walked both ways.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "mfc/CList.h"
#include "mfc/CStringArray.h"
#include "mfc/CStringList.h"
#include "support/u16.h"

namespace {

std::u16string Joined(const CStringArray& array) {
  std::u16string text;
  for (INT_PTR i = 0; i < array.GetSize(); ++i) text += array[i].str() + u"|";
  return text;
}

template <class List>
std::u16string Forward(const List& list) {
  std::u16string text;
  for (POSITION pos = list.GetHeadPosition(); pos;) text += list.GetNext(pos).str() + u"|";
  return text;
}

template <class List>
std::u16string Backward(const List& list) {
  std::u16string text;
  for (POSITION pos = list.GetTailPosition(); pos;) text += list.GetPrev(pos).str() + u"|";
  return text;
}

TEST(CStringArray, EditsKeepOrder) {
  CStringArray array;
  EXPECT_EQ(array.GetUpperBound(), -1);
  EXPECT_EQ(array.Add(u"a"), 0);
  EXPECT_EQ(array.Add(u"d"), 1);
  array.InsertAt(1, u"b", 2);
  EXPECT_EQ(Joined(array), u"a|b|b|d|");
  array.SetAt(2, u"c");
  array.RemoveAt(0);
  EXPECT_EQ(Joined(array), u"b|c|d|");
  array.SetAtGrow(5, u"f");
  EXPECT_EQ(Joined(array), u"b|c|d|||f|");
  array.ElementAt(3) = u"e";
  array.RemoveAt(4, 2);
  EXPECT_EQ(Joined(array), u"b|c|d|e|");
  CStringArray other;
  other.Add(u"x");
  EXPECT_EQ(other.Append(array), 1);
  EXPECT_EQ(Joined(other), u"x|b|c|d|e|");
  other.Copy(array);
  EXPECT_EQ(Joined(other), Joined(array));
  array.SetSize(1);
  EXPECT_EQ(Joined(array), u"b|");
  array.RemoveAll();
  EXPECT_TRUE(array.IsEmpty());
}

TEST(CStringList, InsertRemoveAndFindAtEveryPlace) {
  CStringList list;
  EXPECT_EQ(list.GetHeadPosition(), nullptr);
  list.AddTail(u"c");
  list.AddHead(u"a");
  const POSITION c = list.GetTailPosition();
  list.InsertBefore(c, u"a");
  list.InsertAfter(c, u"d");
  list.InsertBefore(nullptr, u"head");
  list.InsertAfter(nullptr, u"tail");
  EXPECT_EQ(Forward(list), u"head|a|a|c|d|tail|");
  EXPECT_EQ(Backward(list), u"tail|d|c|a|a|head|");
  EXPECT_EQ(list.GetCount(), 6);
  const POSITION first = list.Find(u"a");
  EXPECT_EQ(first, list.FindIndex(1));
  EXPECT_EQ(list.Find(u"a", first), list.FindIndex(2));
  EXPECT_EQ(list.Find(u"a", list.FindIndex(2)), nullptr);
  EXPECT_EQ(list.Find(u"A"), nullptr);  // exact comparison
  EXPECT_EQ(list.FindIndex(6), nullptr);
  EXPECT_EQ(list.FindIndex(-1), nullptr);

  EXPECT_EQ(list.RemoveHead(), u"head");
  EXPECT_EQ(list.RemoveTail(), u"tail");
  list.RemoveAt(c);
  EXPECT_EQ(Forward(list), u"a|a|d|");
  EXPECT_EQ(Backward(list), u"d|a|a|");
  list.SetAt(list.FindIndex(1), u"B");
  EXPECT_EQ(list.GetAt(list.FindIndex(1)), u"B");
  CStringList copy;
  copy.AddTail(u"w");
  copy.AddTail(&list);
  EXPECT_EQ(Forward(copy), u"w|a|B|d|");
  list.RemoveAt(list.GetHeadPosition());
  list.RemoveAt(list.GetTailPosition());
  EXPECT_EQ(list.GetHead(), list.GetTail());
  list.RemoveAt(list.GetHeadPosition());
  EXPECT_TRUE(list.IsEmpty());
  EXPECT_EQ(list.GetTailPosition(), nullptr);
}

// The registry wrapper keeps its sub keys in a list of records taken by reference.
struct SubKey {
  CString name;
  int values = 0;
  bool operator==(const SubKey& other) const { return name == other.name && values == other.values; }
};

TEST(CList, RecordsByReferenceWithABlockSize) {
  CList<SubKey, SubKey&> keys(4);
  for (int i = 0; i < 9; ++i) {
    SubKey key{CString(u"k") + CString(static_cast<char16_t>(u'0' + i)), i};
    keys.AddTail(key);
  }
  EXPECT_EQ(keys.GetCount(), 9);
  int sum = 0;
  for (POSITION pos = keys.GetHeadPosition(); pos;) sum += keys.GetNext(pos).values;
  EXPECT_EQ(sum, 36);
  SubKey wanted{u"k5", 5};
  const POSITION found = keys.Find(wanted);
  ASSERT_NE(found, nullptr);
  keys.GetAt(found).values = 50;
  EXPECT_EQ(keys.GetAt(keys.FindIndex(5)).values, 50);
  keys.RemoveAll();
  EXPECT_TRUE(keys.IsEmpty());
}

}  // namespace
