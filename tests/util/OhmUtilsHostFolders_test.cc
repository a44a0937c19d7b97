#include "ohmutils/util/OhmUtilsHostFolders.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include "support/u16.h"
#include "zd/ZdCodes.h"
#include "zd/ZdValueNode_testing.h"
#include "zd/app/GblPm.h"
#include "zd/app/ZdDocManager.h"
#include "zd/app/ZdEnv.h"
#include "zd/app/ZdEnv_testing.h"
#include "zd/app/ZdHostApplicationServices_testing.h"
#include "zd/app/ZdSysVars_testing.h"
#include "zd/lisp/ZdLisp_testing.h"

namespace {

class HostFoldersTest : public ::testing::Test {
 protected:
  void SetUp() override { reset(); }
  void TearDown() override { reset(); }
  static void reset() {
    zd_testing::resetEnv();
    zd_testing::resetSysVars();
    zd_testing::resetLisp();
    zd_testing::setRoamableRootFolder(u"");
    zd_testing::failRoamableRootFolder(0);
    zdDocManagerPtr()->closeAll();
    GblPm_SetGblValue(u"GBL_wd_usr", nullptr);
  }
};

TEST_F(HostFoldersTest, GetZedaPathAppendsTheNonEmptyPiecesOfAReadableSetting) {
  using Folders = std::vector<std::u16string>;
  ASSERT_EQ(zdedSetEnv(u"ZEDA", u"a;;b;"), RTNORM);
  Folders folders{u"old"};
  EXPECT_TRUE(GetZedaPath(folders));
  EXPECT_EQ(folders, (Folders{u"old", u"a", u"b"}));
  const std::u16string longest(32767, u'a');  // with its terminator, the whole buffer
  ASSERT_EQ(zdedSetEnv(u"ZEDA", longest.c_str()), RTNORM);
  folders = {u"old"};
  zd_testing::failNextGetEnv(RTERROR);
  EXPECT_TRUE(GetZedaPath(folders));
  EXPECT_EQ(folders, Folders{u"old"});
  EXPECT_TRUE(GetZedaPath(folders));  // the longest value that fits
  EXPECT_EQ(folders.size(), 2u);
}

TEST_F(HostFoldersTest, TemplateFolderFailsOnlyOnAnError) {
  ASSERT_EQ(zdedSetEnv(u"TemplatePath", u"Z:\\templates"), RTNORM);
  CString folder(u"old text that is longer");
  EXPECT_TRUE(OhmGetZedaTemplateFolder(folder));
  EXPECT_EQ(folder, u"Z:\\templates");
  zd_testing::failNextGetEnv(RTERROR);
  EXPECT_FALSE(OhmGetZedaTemplateFolder(folder));
  ASSERT_EQ(zdedSetEnv(u"TemplatePath", std::u16string(1024, u't').c_str()), RTNORM);
  EXPECT_TRUE(OhmGetZedaTemplateFolder(folder));  // too long to hand over: not an error
  EXPECT_EQ(folder, u"Z:\\templates");            // nothing written, the text stays
}

TEST_F(HostFoldersTest, RoamableRootFolderIsCopiedWhenItFits) {
  zd_testing::setRoamableRootFolder(u"\\home\\me\\roam");  // 13 units
  char16_t buffer[16] = u"untouched";
  EXPECT_FALSE(GetRoamableRootFolder(buffer, 13));
  EXPECT_EQ(std::u16string(buffer), u"untouched");
  EXPECT_TRUE(GetRoamableRootFolder(buffer, 14));
  EXPECT_EQ(std::u16string(buffer), u"\\home\\me\\roam");
  zd_testing::failRoamableRootFolder(3);
  char16_t other[16] = u"untouched";
  EXPECT_FALSE(GetRoamableRootFolder(other, 16));
  EXPECT_EQ(std::u16string(other), u"untouched");
}

TEST_F(HostFoldersTest, UserDirectoryFromTheSuitesGlobalsWithoutADocument) {
  CString folder(u"before");
  EXPECT_TRUE(GetUserDirectory(folder));
  EXPECT_EQ(folder, u"before");  // no value: unchanged
  GblPm_SetGblValue(u"GBL_wd_usr", u"\\home\\me\\wd");
  EXPECT_TRUE(GetUserDirectory(folder));
  EXPECT_EQ(folder, u"\\home\\me\\wd");
  EXPECT_EQ(zd_testing::lispCallCount(), 0);
}

TEST_F(HostFoldersTest, UserDirectoryThroughTheSuitesLispWithADocument) {
  zdDocManagerPtr()->addDocument(u"Z:\\p\\a.dxf", nullptr);
  GblPm_SetGblValue(u"GBL_wd_usr", u"\\home\\me\\wd");
  CString folder(u"before");
  EXPECT_TRUE(GetUserDirectory(folder));
  EXPECT_EQ(folder, u"\\home\\me\\wd");
  EXPECT_EQ(zd_testing::lispCallCount(), 1);

  GblPm_SetGblValue(u"GBL_wd_usr", nullptr);  // the Lisp answers nil
  folder = u"before";
  EXPECT_TRUE(GetUserDirectory(folder));
  EXPECT_EQ(folder, u"before");
}

TEST_F(HostFoldersTest, UserDirectoryKeepsItsValueWhenTheLispCallFails) {
  zdDocManagerPtr()->addDocument(u"Z:\\p\\a.dxf", nullptr);
  GblPm_SetGblValue(u"GBL_wd_usr", u"\\home\\me\\wd");
  CString folder(u"before");
  zd_testing::failNextInvoke(RTERROR);
  EXPECT_TRUE(GetUserDirectory(folder));
  EXPECT_EQ(folder, u"before");
  zd_testing::defineLispFunction(u"ohm_get_var", [](const ZdValueNode*, ZdValueNode** reply) {
    *reply = zdutBuildList(RTSHORT, 7, 0);  // not a string
    return RTNORM;
  });
  EXPECT_TRUE(GetUserDirectory(folder));
  EXPECT_EQ(folder, u"before");
  zd_testing::failValueAllocationAfter(0);  // the request list can't be built
  EXPECT_TRUE(GetUserDirectory(folder));
  zd_testing::failValueAllocationAfter(-1);
  EXPECT_EQ(folder, u"before");
}

TEST_F(HostFoldersTest, DwgTitledReadsTheShortValue) {
  EXPECT_EQ(GetDWGTITLEDValue(), 0);
  zd_testing::defineSysVar(u"DWGTITLED", short{-2}, true);
  EXPECT_EQ(GetDWGTITLEDValue(), -2);  // sign-extended
  zd_testing::failNextGetVar();
  EXPECT_EQ(GetDWGTITLEDValue(), 0);
  zd_testing::defineSysVar(u"DWGTITLED", std::u16string(u"1"));  // a string now: not the expected type
  EXPECT_EQ(GetDWGTITLEDValue(), 0);
  zd_testing::defineSysVar(u"DWGTITLED", short{1}, true);
  zd_testing::failValueAllocationAfter(0);  // no node to read into
  EXPECT_EQ(GetDWGTITLEDValue(), 0);
  zd_testing::failValueAllocationAfter(-1);
}

}  // namespace
