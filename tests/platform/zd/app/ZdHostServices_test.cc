// The host's session services: variables, settings, Lisp, documents.
#include <gtest/gtest.h>

#include "support/ScopedEnv.h"
#include "zd/ZdCodes.h"
#include "zd/app/ZdDocManager.h"
#include "zd/app/ZdDocManager_testing.h"
#include "zd/app/ZdEnv.h"
#include "zd/app/ZdEnv_testing.h"
#include "zd/app/ZdSysVars.h"
#include "zd/app/ZdSysVars_testing.h"
#include "zd/lisp/ZdLisp.h"
#include "zd/lisp/ZdLisp_testing.h"

namespace {

TEST(ZdSysVars, TypedReadAndWrite) {
  zd_testing::resetSysVars();
  ZdValueNode node{};
  ASSERT_EQ(zdedGetVar(u"cmdecho", &node), RTNORM);  // names ignore case
  EXPECT_EQ(node.restype, RTSHORT);
  EXPECT_EQ(node.resval.rint, 1);

  ZdValueNode* value = zdutBuildList(RTSHORT, -7, 0);
  EXPECT_EQ(zdedSetVar(u"CMDECHO", value), RTNORM);
  EXPECT_EQ(zdedSetVar(u"DWGTITLED", value), RTREJ);  // read-only
  EXPECT_EQ(zdedSetVar(u"NOSUCHVAR", value), RTREJ);
  zdutRelRb(value);
  value = zdutBuildList(RTREAL, 1.5, 0);
  EXPECT_EQ(zdedSetVar(u"CMDECHO", value), RTREJ);  // a 16-bit variable takes RTSHORT only
  zdutRelRb(value);
  ASSERT_EQ(zdedGetVar(u"CMDECHO", &node), RTNORM);
  EXPECT_EQ(node.resval.rint, -7);

  zd_testing::failNextGetVar();
  node.resval.rint = 99;
  EXPECT_EQ(zdedGetVar(u"CMDECHO", &node), RTERROR);
  EXPECT_EQ(node.resval.rint, 99);
  zd_testing::resetSysVars();
}

TEST(ZdEnv, SettingsSeededFromTheEnvironment) {
  zd_testing::resetEnv();
  const ScopedEnv templates("OHM_ENV_TEMPLATEPATH", "Z:\\tmp\\templates");
  char16_t buffer[32];
  ASSERT_EQ(zdedGetEnv(u"TemplatePath", buffer, 32), RTNORM);
  EXPECT_EQ(std::u16string(buffer), u"Z:\\tmp\\templates");
  EXPECT_EQ(zdedGetEnv(u"TemplatePath", buffer, 16), RTREJ);  // 16 units: no room for the terminator
  EXPECT_EQ(zdedGetEnv(u"NoSuchSetting", buffer, 32), RTERROR);
  zd_testing::resetEnv();
}

TEST(ZdLisp, InvokeByNameWithLeadingBlanksAndAnyCase) {
  zd_testing::resetLisp();
  zd_testing::defineLispFunction(u"echo_first", [](const ZdValueNode* args, ZdValueNode** reply) {
    *reply = zdutBuildList(RTSTR, args && args->restype == RTSTR ? args->resval.rstring : u"none", 0);
    return RTNORM;
  });
  ZdValueNode* request = zdutBuildList(RTSTR, u"  ECHO_FIRST", RTSTR, u"arg", 0);
  ZdValueNode* reply = nullptr;
  EXPECT_EQ(zdedInvoke(request, &reply), RTNORM);
  ASSERT_NE(reply, nullptr);
  EXPECT_EQ(std::u16string(reply->resval.rstring), u"arg");
  zdutRelRb(reply);
  zdutRelRb(request);
  ZdValueNode* unknown = zdutBuildList(RTSTR, u"no_such_fn", 0);
  reply = unknown;  // must be reset to null
  EXPECT_EQ(zdedInvoke(unknown, &reply), RTERROR);
  EXPECT_EQ(reply, nullptr);
  zd_testing::failNextInvoke(RTCAN);
  EXPECT_EQ(zdedInvoke(unknown, &reply), RTCAN);
  zdutRelRb(unknown);
  EXPECT_EQ(zd_testing::lispCallCount(), 1);
  zd_testing::resetLisp();
}

TEST(ZdDocManager, DocumentsAndTheCurrentOne) {
  ZdApDocManager* manager = zdDocManagerPtr();
  manager->closeAll();
  manager->addDocument(u"Z:\\p\\a.dxf", nullptr);
  ZdApDocument* b = manager->addDocument(u"Z:\\p\\b.dxf", nullptr);
  EXPECT_EQ(manager->curDocument(), b);
  std::u16string names;
  ZdApDocumentIterator* it = manager->newZdApDocumentIterator();
  for (; !it->done(); it->step()) names += it->document()->fileName() + std::u16string(u";");
  EXPECT_EQ(it->document(), nullptr);
  delete it;
  EXPECT_EQ(names, u"Z:\\p\\a.dxf;Z:\\p\\b.dxf;");
  EXPECT_TRUE(manager->closeDocument(b));
  EXPECT_EQ(manager->curDocument(), nullptr);
  EXPECT_FALSE(manager->closeDocument(b));
  zd_testing::failNextDocumentIterator();
  EXPECT_EQ(manager->newZdApDocumentIterator(), nullptr);
  manager->closeAll();
}

}  // namespace
