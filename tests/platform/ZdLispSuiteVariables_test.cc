#include <gtest/gtest.h>

#include "zd/GblPm.h"
#include "zd/ZdCodes.h"
#include "zd/ZdLisp.h"
#include "zd/ZdLisp_testing.h"
#include "zd/ZdValueNode.h"

namespace {

// Calls (ohm_get_var <argument>) and gives the status; `reply` is the caller's.
int callOhmGetVar(const char16_t* argument, ZdValueNode** reply) {
  ZdValueNode* request = argument ? zdutBuildList(RTSTR, u"ohm_get_var", RTSTR, argument, 0)
                                  : zdutBuildList(RTSTR, u"ohm_get_var", RTSHORT, 1, 0);
  const int status = zdedInvoke(request, reply);
  zdutRelRb(request);
  return status;
}

TEST(OhmGetVar, AnswersTheSuitesGlobalValueOrNil) {
  zd_testing::resetLisp();
  GblPm_SetGblValue(u"GBL_test_value", u"\\home\\me");
  ZdValueNode* reply = nullptr;
  ASSERT_EQ(callOhmGetVar(u"GBL_test_value", &reply), RTNORM);
  ASSERT_NE(reply, nullptr);
  EXPECT_EQ(reply->restype, RTSTR);
  EXPECT_EQ(std::u16string(reply->resval.rstring), u"\\home\\me");
  EXPECT_EQ(reply->rbnext, nullptr);
  zdutRelRb(reply);

  GblPm_SetGblValue(u"GBL_test_value", nullptr);
  ASSERT_EQ(callOhmGetVar(u"GBL_test_value", &reply), RTNORM);
  ASSERT_NE(reply, nullptr);
  EXPECT_EQ(reply->restype, RTNIL);
  zdutRelRb(reply);
}

TEST(OhmGetVar, WithoutANameIsALispError) {
  zd_testing::resetLisp();
  ZdValueNode* reply = nullptr;
  EXPECT_EQ(callOhmGetVar(nullptr, &reply), RTERROR);
  EXPECT_EQ(reply, nullptr);
}

}  // namespace
