#include "ohmutils/util/OhmUtilsHostFolders.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <functional>
#include <tuple>

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
  ASSERT_EQ(zdedSetEnv(u"ZEDA", std::u16string(32767, u'a').c_str()), RTNORM);  // with its terminator, the whole buffer
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

// Without a document the suite's global is read; with one, the suite's Lisp is
// asked, and whatever goes wrong there leaves the folder as it was.
TEST_F(HostFoldersTest, UserDirectoryFromTheGlobalsOrThroughTheLisp) {
  const char16_t* const kWd = u"\\home\\me\\wd";
  const auto notAString = [] {
    zd_testing::defineLispFunction(u"ohm_get_var", [](const ZdValueNode*, ZdValueNode** reply) {
      *reply = zdutBuildList(RTSHORT, 7, 0);
      return RTNORM;
    });
  };
  // label, with a document, the global's value, a fault before the call, folder after, Lisp calls
  const std::tuple<const char*, bool, const char16_t*, std::function<void()>, const char16_t*, long> cases[] = {
      {"no document, no value: unchanged", false, nullptr, [] {}, u"before", 0},
      {"no document", false, kWd, [] {}, kWd, 0},
      {"document", true, kWd, [] {}, kWd, 1},
      {"the Lisp answers nil", true, nullptr, [] {}, u"before", 1},
      {"the Lisp call fails", true, kWd, [] { zd_testing::failNextInvoke(RTERROR); }, u"before", 0},
      {"the reply is not a string", true, kWd, notAString, u"before", 1},
      {"the request can't be built", true, kWd, [] { zd_testing::failValueAllocationAfter(0); }, u"before", 0},
  };
  for (const auto& [label, withDocument, value, fault, expected, lispCalls] : cases) {
    SCOPED_TRACE(label);
    reset();
    if (withDocument) zdDocManagerPtr()->addDocument(u"Z:\\p\\a.dxf", nullptr);
    GblPm_SetGblValue(u"GBL_wd_usr", value);
    CString folder(u"before");
    fault();
    EXPECT_TRUE(GetUserDirectory(folder));
    zd_testing::failValueAllocationAfter(-1);
    EXPECT_EQ(folder.str(), expected);
    EXPECT_EQ(zd_testing::lispCallCount(), lispCalls);
  }
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
