// CStringArray, CList and CStringList as the library uses them: order kept
// through growth, the head taken off, positions walked to the end.
#include <gtest/gtest.h>

#include <string>

#include "mfc/CList.h"
#include "mfc/CStringArray.h"
#include "mfc/CStringList.h"

namespace {

TEST(CStringArray, AddKeepsOrderAndElementsChangeInPlace) {
  CStringArray array;
  EXPECT_TRUE(array.IsEmpty());
  EXPECT_EQ(array.Add(u"a"), 0);
  EXPECT_EQ(array.Add(u"b"), 1);
  array[0] = u"z";
  EXPECT_EQ(array.GetSize(), 2);
  EXPECT_EQ(array.GetAt(0), u"z");
  EXPECT_EQ(array[1], u"b");
  array.RemoveAll();
  EXPECT_EQ(array.GetCount(), 0);
}

// The registry wrapper keeps its sub keys in a list of records taken by reference.
struct SubKey {
  CString name;
  int values = 0;
};

TEST(CList, RecordsWalkInOrderAndLeaveFromTheHead) {
  CList<SubKey, SubKey&> keys(4);
  for (int i = 0; i < 9; ++i) {
    SubKey key{CString(u"k") + CString(static_cast<char16_t>(u'0' + i)), i};
    keys.AddTail(key);
  }
  EXPECT_EQ(keys.GetCount(), 9);
  std::u16string names;
  for (POSITION pos = keys.GetHeadPosition(); pos;) names += keys.GetNext(pos).name.str();
  EXPECT_EQ(names, u"k0k1k2k3k4k5k6k7k8");
  EXPECT_EQ(keys.GetTail().values, 8);
  EXPECT_EQ(keys.RemoveHead().values, 0);
  EXPECT_EQ(keys.GetHead().values, 1);
  keys.RemoveAll();
  EXPECT_TRUE(keys.IsEmpty());
  EXPECT_EQ(keys.GetHeadPosition(), nullptr);
}

TEST(CStringList, TakesTextAndEmptiesFromTheHead) {
  CStringList list;
  list.AddTail(u"a");
  list.AddTail(CString(u"b"));
  EXPECT_EQ(list.RemoveHead(), u"a");
  EXPECT_EQ(list.RemoveHead(), u"b");
  EXPECT_TRUE(list.IsEmpty());
  list.AddTail(u"c");  // the list works again once emptied
  EXPECT_EQ(list.GetHead(), list.GetTail());
}

}  // namespace
