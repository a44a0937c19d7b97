// The module's probes: its folder, a resource library that can't be found,
// the main module's version, the system's version and the themed look.
#include <gtest/gtest.h>

#include <functional>
#include <tuple>

#include "ohmutils/host/OhmGetBuildVersion.h"
#include "ohmutils/host/OhmOSVersion.h"
#include "ohmutils/host/OhmResDll.h"
#include "support/TempFolder.h"
#include "support/u16.h"
#include "win/WinError.h"
#include "win/module/NetWksta_testing.h"
#include "win/ui/MessageBox.h"
#include "win/ui/UiSink_testing.h"
#include "zd/ZdCodes.h"
#include "zd/app/ZdEnv.h"
#include "zd/app/ZdEnv_testing.h"
#include "zd/ui/CZdUiVisualStyles_testing.h"

namespace {

namespace fs = std::filesystem;

const fs::path kLibraryDir = OHM_LIBRARY_DIR;

// --- module folder and resource libraries ----------------------------------------

TEST(GenerateProgramDir, LoadedModuleGivesItsFolderAndOtherNamesTheProgramsFolder) {
  CString folder(u"old");
  GenerateProgramDir(folder, u"OhmUtils.dll");
  EXPECT_EQ(folder.str(), Windows(kLibraryDir));
  GenerateProgramDir(folder, u"NotLoadedHere.dll");
  EXPECT_EQ(folder.str(), Windows(fs::read_symlink("/proc/self/exe").parent_path()));
}

// Neither beside the module nor on the search path: one stop box with the
// system's text.
TEST(LoadResDll, MissingLibraryShowsOneStopBoxAndGivesNull) {
  win_testing::RecordingUiSink ui;
  EXPECT_EQ(LoadResDll(u"OhmUtils.dll", u"NoSuchRes.dll"), nullptr);
  UnloadResDll(nullptr);  // nothing to give back
  ASSERT_EQ(ui.boxes().size(), 1u);
  const UiMessageBox& box = ui.boxes()[0];
  EXPECT_EQ(
      std::tie(box.caption, box.text, box.type, box.owner),
      std::make_tuple(u"Load Error", u"Error loading NoSuchRes.dll.\nThe specified module could not be found.\r\n",
                      MB_OK | MB_ICONSTOP, nullptr));
}

// --- the main module's version ---------------------------------------------------------

class BuildVersion : public ::testing::Test {
 protected:
  void TearDown() override { zd_testing::resetEnv(); }
  void SearchPath(const std::u16string& folders) { ASSERT_EQ(zdedSetEnv(u"ZEDA", folders.c_str()), RTNORM); }
  // What the probe gave and the version it left, starting from "kept".
  static std::pair<bool, std::u16string> Version() {
    CString version(u"kept");
    const bool result = OhmGetBuildVersion(version);
    return {result, version.str()};
  }
  TempFolder mEmpty, mFolder;
};

TEST_F(BuildVersion, FileVersionOfTheMainModuleOnTheSearchPath) {
  fs::copy_file(OHM_TEST_MAIN_MODULE, mFolder.posix("libohmmain.so"));
  SearchPath(mEmpty.windows() + u";" + mFolder.windows());
  EXPECT_EQ(Version(), std::pair(true, std::u16string(u"23.1.47.0")));
}

TEST_F(BuildVersion, NoVersionLeavesTheOutputAlone) {
  const std::pair<const char*, std::function<void(const fs::path&)>> cases[] = {
      {"not on the search path", [](const fs::path&) {}},
      {"not a module", [](const fs::path& file) { std::ofstream(file) << "MZ not really\n"; }},
  };
  SearchPath(mFolder.windows());
  for (const auto& [label, place] : cases) {
    SCOPED_TRACE(label);
    fs::remove(mFolder.posix("libohmmain.so"));
    place(mFolder.posix("libohmmain.so"));
    EXPECT_EQ(Version(), std::pair(false, std::u16string(u"kept")));
  }
}

// --- the system's version and the themed look ----------------------------------------------

class OSVersion : public ::testing::Test {
 protected:
  void TearDown() override {
    win_testing::clearWorkstationVersion();
    win_testing::failNetWkstaGetInfo(NERR_Success);
    zd_testing::setAppThemed(0);
  }
};

// Vista or later from the major version only; the probe's result is kept,
// copies carry it, and a failed probe gives zeros and is made again.
TEST_F(OSVersion, ProbesOnceFromTheMajorVersionAndRetriesAFailure) {
  unsigned major = 99, minor = 99;
  win_testing::setWorkstationVersion(6, 0);
  OhmOSVersion os;
  const long calls = win_testing::netWkstaGetInfoCalls();
  EXPECT_TRUE(os.IsVistaOrLater());
  os.GetStaticVersionInfo();
  win_testing::setWorkstationVersion(5, 0);  // the machine "changes"; the object doesn't
  OhmOSVersion copy;
  copy = os;
  copy.GetOsVersion(major, minor);
  EXPECT_EQ(major * 10 + minor, 60u);
  EXPECT_EQ(win_testing::netWkstaGetInfoCalls(), calls + 1);

  win_testing::failNetWkstaGetInfo(ERROR_ACCESS_DENIED);
  OhmOSVersion failing;
  failing.GetOsVersion(major, minor);
  EXPECT_EQ(major + minor, 0u);
  EXPECT_FALSE(failing.IsVistaOrLaterOS());
  win_testing::failNetWkstaGetInfo(NERR_Success);
  win_testing::setWorkstationVersion(10, 0);
  EXPECT_TRUE(failing.IsVistaOrLaterOS());
}

TEST_F(OSVersion, ThemedOnlyForExactlyOneAndNotAskedBeforeVista) {
  // Major version, the host's answer, IsThemed, IsVistaTheme, and how often IsVistaTheme asked.
  for (const auto& [major, themed, isThemed, vistaTheme, asked] :
       {std::tuple{10u, 1, true, true, 1L}, {10u, 2, false, false, 1L}, {5u, 1, true, false, 0L}}) {
    SCOPED_TRACE(std::to_string(major) + " themed " + std::to_string(themed));
    win_testing::setWorkstationVersion(major, 0);
    zd_testing::setAppThemed(themed);
    OhmOSVersion os;
    EXPECT_EQ(os.IsThemed(), isThemed);
    const long queries = zd_testing::appThemedQueries();
    EXPECT_EQ(os.IsVistaTheme(), vistaTheme);
    EXPECT_EQ(zd_testing::appThemedQueries() - queries, asked);
  }
}

}  // namespace
