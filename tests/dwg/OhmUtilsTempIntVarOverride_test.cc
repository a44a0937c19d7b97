#include "ohmutils/dwg/OhmUtilsTempIntVarOverride.h"

#include <gtest/gtest.h>

#include "zd/ZdCodes.h"

#include "zd/ZdValueNode.h"
#include "zd/app/ZdSysVars.h"
#include "zd/app/ZdSysVars_testing.h"

namespace {

// The variable's value as the host holds it, or nullopt when it isn't a short.
std::optional<short> ShortVar(const char16_t* name) {
  ZdValueNode* node = zdutNewRb(RTSHORT);
  const bool isShort = zdedGetVar(name, node) == RTNORM && node->restype == RTSHORT;
  const short value = node->resval.rint;
  zdutRelRb(node);
  return isShort ? std::optional<short>(value) : std::nullopt;
}

class TempIntVarOverride : public ::testing::Test {
 protected:
  void TearDown() override { zd_testing::resetSysVars(); }
};

TEST_F(TempIntVarOverride, CopiesRestoreToo) {
  zd_testing::defineSysVar(u"OSMODE", short{4});
  {
    OhmUtilsTempIntVarOverride first(ZdString(u"OSMODE"), 1);
    OhmUtilsTempIntVarOverride copy(first);
    zd_testing::defineSysVar(u"FILEDIA", short{0});
    OhmUtilsTempIntVarOverride assigned(ZdString(u"FILEDIA"), 1);
    assigned = first;
    EXPECT_EQ(ShortVar(u"OSMODE"), 1);  // copying touched nothing
    EXPECT_EQ(ShortVar(u"FILEDIA"), 1);
  }
  EXPECT_EQ(ShortVar(u"OSMODE"), 4);
  EXPECT_EQ(ShortVar(u"FILEDIA"), 1);  // `assigned` took first's name and restored OSMODE instead
}

TEST_F(TempIntVarOverride, UnreadableVariableIsSetButNotRestored) {
  zd_testing::defineSysVar(u"LUPREC", 2.5);
  { OhmUtilsTempIntVarOverride scope(ZdString(u"LUPREC"), 3); }
  EXPECT_EQ(ShortVar(u"LUPREC"), std::nullopt);

  zd_testing::defineSysVar(u"CMDECHO", short{1});
  zd_testing::failNextGetVar();
  {
    OhmUtilsTempIntVarOverride scope(ZdString(u"CMDECHO"), 0);
    EXPECT_EQ(ShortVar(u"CMDECHO"), 0);
  }
  EXPECT_EQ(ShortVar(u"CMDECHO"), 0);  // nothing to give back
}

TEST_F(TempIntVarOverride, FailedSetStillRestores) {
  zd_testing::defineSysVar(u"CMDECHO", short{1});
  zd_testing::failNextSetVar();
  {
    OhmUtilsTempIntVarOverride scope(ZdString(u"CMDECHO"), 0);
    EXPECT_EQ(ShortVar(u"CMDECHO"), 1);
    EXPECT_EQ(zdedSetVar(u"CMDECHO", nullptr), RTREJ);  // a set without a value is refused, not a fault
  }
  EXPECT_EQ(ShortVar(u"CMDECHO"), 1);
}

}  // namespace
