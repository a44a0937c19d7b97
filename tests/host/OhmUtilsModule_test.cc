// The module entry through the host's module loader: what attach takes and
// registers, what detach gives back, and where the resource library is found.
#include "ohmutils/host/OhmUtilsModule.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "mfc/AfxExtensionModule_testing.h"
#include "ohmutils/host/OhmResDll.h"
#include "support/ChildProcess.h"
#include "support/u16.h"
#include "win/LastError.h"
#include "win/WinError.h"
#include "win/module/Module.h"
#include "win/module/Module_testing.h"
#include "zd/ZdCodes.h"
#include "zd/app/ZdDocManager.h"
#include "zd/app/ZdModuleLoader.h"
#include "zd/lisp/ZdLisp.h"
#include "zd/lisp/ZdLispEval.h"
#include "zd/lisp/ZdLisp_testing.h"

namespace {

namespace fs = std::filesystem;

const fs::path kLibraryDir = OHM_LIBRARY_DIR;

class ModuleLoad : public ::testing::Test {
 protected:
  void SetUp() override {
    zd_testing::resetLisp();
    mDocument = zdDocManagerPtr()->addDocument(u"\\tmp\\module.dwg", nullptr);
  }
  void TearDown() override {
    if (mDocument) zdDocManagerPtr()->closeDocument(mDocument);
    zd_testing::resetLisp();
  }
  // Records the expressions given to "veval-str+" and answers T.
  void RecordEvaluations() {
    zd_testing::defineLispFunction(u"veval-str+", [this](const ZdValueNode* args, ZdValueNode** reply) {
      mExpressions.push_back(args && args->restype == RTSTR ? args->resval.rstring : u"?");
      *reply = zdutNewRb(RTT);
      return RTNORM;
    });
  }
  static HMODULE Load() { return zdLoadModule(Windows(kLibraryDir / "OhmUtils.dll").c_str()); }

  ZdApDocument* mDocument = nullptr;
  std::vector<std::u16string> mExpressions;
};

// With the host's own evaluator the names reach its Lisp; with a recording
// one, the expressions sent are seen.
TEST_F(ModuleLoad, AttachTakesTheResourceLibraryAndRegistersTheLispNames) {
  HMODULE module = Load();
  ASSERT_NE(module, nullptr);
  EXPECT_THAT(zdLispDefunNames(),
              ::testing::IsSupersetOf(std::vector<std::u16string>{
                  u"wdupda_chkdwglockstatus_internal", u"c:ohm_upd_unlock_dwgs", u"wd_mdb2_WFRM2ALL_verify"}));
  zdUnloadModule(module);
  RecordEvaluations();
  module = Load();
  ASSERT_NE(module, nullptr);
  EXPECT_EQ(mExpressions, (std::vector<std::u16string>{u"(vl-zeda-defun ' wdupda_chkdwglockstatus_internal)",
                                                       u"(vl-zeda-defun 'c:ohm_upd_unlock_dwgs)",
                                                       u"(vl-zeda-defun 'wd_mdb2_WFRM2ALL_verify)"}));
  EXPECT_THAT(win_testing::loadedLibraryPaths(), ::testing::Contains((kLibraryDir / "libOhmUtilsRes.so").string()));
  EXPECT_EQ(mfc_testing::liveDynLinkLibraries(), 1) << "the resource library joins the chain";
  EXPECT_TRUE(zdUnloadModule(module));
  EXPECT_FALSE(zdUnloadModule(module));
}

TEST_F(ModuleLoad, WithoutCurrentDocumentAttachSucceedsAndRegistersNothing) {
  zdDocManagerPtr()->closeDocument(std::exchange(mDocument, nullptr));
  RecordEvaluations();
  const HMODULE module = Load();
  ASSERT_NE(module, nullptr);
  EXPECT_TRUE(mExpressions.empty());
  EXPECT_EQ(zd_testing::lispCallCount(), 0);
  zdUnloadModule(module);
}

TEST_F(ModuleLoad, FailedExtensionSetUpFailsTheLoadAndReleasesTheResourceLibrary) {
  RecordEvaluations();
  mfc_testing::failNextInitExtensionModule();
  EXPECT_EQ(Load(), nullptr);
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_DLL_INIT_FAILED));
  EXPECT_TRUE(mExpressions.empty());
  // The listener checks that the resource library went with the module.
}

TEST_F(ModuleLoad, ThreadNotificationsChangeNothing) {
  const HMODULE self = GetModuleHandleW(u"OhmUtils.dll");
  ASSERT_NE(self, nullptr);
  EXPECT_TRUE(DllMain(self, DLL_THREAD_ATTACH, nullptr));
  EXPECT_TRUE(DllMain(self, DLL_THREAD_DETACH, nullptr));
  EXPECT_EQ(zd_testing::lispCallCount(), 0);
}

// --- where the resource library comes from -------------------------------------------

// Beside the module first, then the search path: the copy on the search
// path is taken only for a module (not loaded) whose folder lacks it.
TEST(ResourcePlacement, BesideTheModuleBeforeTheSearchPath) {
  TempFolder searchFolder;
  fs::copy_file(kLibraryDir / "libOhmAuditRes.so", searchFolder.posix("libOhmAuditRes.so"));
  ASSERT_TRUE(SetDllDirectoryW(searchFolder.windows().c_str()));
  for (const auto& [module, folder] :
       {std::pair{u"OhmUtils.dll", kLibraryDir.string()}, std::pair{u"NotLoadedHere.dll", searchFolder.posix()}}) {
    SCOPED_TRACE(folder);
    const HINSTANCE library = LoadResDll(module, u"OhmAuditRes.dll");
    ASSERT_NE(library, nullptr);
    EXPECT_EQ(win_testing::loadedLibraryPaths().back(), folder + "/libOhmAuditRes.so");
    UnloadResDll(library);
  }
  SetDllDirectoryW(nullptr);
}

// In a host of its own, a module whose resource library is neither beside
// it nor on the search path fails to load after one stop box.
TEST(ResourcePlacement, NowhereFailsTheLoadAfterOneStopBox) {
  TempFolder moduleFolder;
  fs::copy_file(kLibraryDir / "libOhmUtils.so", moduleFolder.posix("libOhmUtils.so"));
  Child host(OHM_MODULE_HOST, {moduleFolder.posix("libOhmUtils.so")}, {"LD_LIBRARY_PATH=" + moduleFolder.posix()});
  ASSERT_TRUE(host.started());
  const std::string all = host.readAll();
  EXPECT_EQ(host.wait(), 3) << all;
  EXPECT_NE(all.find("[Load Error] Error loading OhmUtilsRes.dll.\nThe specified module could not be found."),
            std::string::npos)
      << all;
  EXPECT_NE(all.find("load failed " + std::to_string(ERROR_DLL_INIT_FAILED)), std::string::npos) << all;
}

}  // namespace
