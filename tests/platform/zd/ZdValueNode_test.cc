#include "zd/ZdValueNode.h"

#include <gtest/gtest.h>

#include "zd/ZdCodes.h"
#include "zd/ZdValueNode_testing.h"

namespace {

class ZdValueNodeTest : public ::testing::Test {
 protected:
  void TearDown() override { zd_testing::failValueAllocationAfter(-1); }
};

TEST_F(ZdValueNodeTest, BuildListTakesValuesByKind) {
  const double point[3] = {1, 2, 3};
  ZdValueNode* list = zdutBuildList(RTSTR, u"fn", RTLB, RTSHORT, 7, XD_REAL, 2.5, RT3DPOINT, point, RTLE, RTT, 0);
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(zdutLength(list), 7);
  EXPECT_EQ(std::u16string(list->resval.rstring), u"fn");
  const ZdValueNode* shortNode = list->rbnext->rbnext;
  EXPECT_EQ(shortNode->restype, RTSHORT);
  EXPECT_EQ(shortNode->resval.rint, 7);
  EXPECT_EQ(shortNode->rbnext->resval.rreal, 2.5);
  EXPECT_EQ(shortNode->rbnext->rbnext->resval.rpoint[2], 3.0);
  zdutRelRb(list);
}

TEST_F(ZdValueNodeTest, FailuresLeaveNothingAllocated) {
  EXPECT_EQ(zdutBuildList(0), nullptr);
  EXPECT_EQ(zdutBuildList(RTSTR, u"a", 4242, 0), nullptr);  // unknown type code
  for (long ok = 0; ok < 4; ++ok) {
    SCOPED_TRACE(ok);
    zd_testing::failValueAllocationAfter(ok);
    EXPECT_EQ(zdutBuildList(RTSTR, u"a", RTSTR, u"b", 0), nullptr);
  }
  zd_testing::failValueAllocationAfter(0);
  EXPECT_EQ(zdutNewRb(RTSHORT), nullptr);
  EXPECT_EQ(zdutNewString(u"x"), nullptr);
}

}  // namespace
