// Host actions: the request that opens a web page, quitting the host through
// its automation object, and the canned database written to the temporary
// folder in every state of that folder and of its library.
#include "ohmutils/host/OhmHostActions.h"

#include <gtest/gtest.h>

#include <iterator>
#include <tuple>

#include "support/ScopedEnv.h"
#include "support/TempFolder.h"
#include "support/u16.h"
#include "win/module/Module.h"
#include "win/module/Resource.h"
#include "win/module/ResourceTable.h"
#include "win/ui/ShellExecute.h"
#include "win/ui/UiSink_testing.h"
#include "zd/ui/ZdAutomation_testing.h"
#include "zd/ui/ZdWinMsgFilter.h"
#include "zd/ui/ZdWinMsgFilter_testing.h"

namespace {

namespace fs = std::filesystem;

const fs::path kLibraryDir = OHM_LIBRARY_DIR;
constexpr const char* kCannedFile = "~ohm_ohm_test_~.mdb";

TEST(OpenURL, AsksTheFileProtocolHandlerToOpenTheAddress) {
  win_testing::RecordingUiSink ui;
  const std::u16string address = u"http://www.ohm-suite.example/a?b=c d";
  OpenURL(address.c_str());
  ASSERT_EQ(ui.shellRequests().size(), 1u);
  const UiShellExecute& r = ui.shellRequests()[0];
  EXPECT_EQ(std::tie(r.owner, r.verb, r.file, r.parameters, r.directory, r.show),
            std::make_tuple(nullptr, u"open", u"rundll32.exe", u"url.dll,FileProtocolHandler " + address, u"",
                            SW_SHOWNORMAL));
}

TEST(QuitZeda, AsksTheHostToQuitAfterWhatIsQueuedUnlessItHasNoAutomationApplication) {
  zd_testing::resetMessages();
  const long quits = zd_testing::quitRequests();
  zd_testing::failNextApplicationQuery();
  QuitZeda();
  EXPECT_EQ(zd_testing::quitRequests(), quits);
  EXPECT_TRUE(zdHostPumpMessages());
  QuitZeda();
  EXPECT_EQ(zd_testing::quitRequests(), quits + 1);
  EXPECT_FALSE(zdHostPumpMessages()) << "the host's loop ends";
  zd_testing::resetMessages();
}

// The canned database: the temporary folder is a folder of the test's
// making (TMPDIR), and the library is found by its bare name in the folder
// that SetDllDirectoryW names.
class CannedDatabase : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(SetDllDirectoryW(Windows(kLibraryDir).c_str())); }
  void TearDown() override { SetDllDirectoryW(nullptr); }
  fs::path CannedPath() const { return mTemp.posix(kCannedFile); }
  // What the dump gave and the path it left, starting from the given one.
  static std::pair<bool, std::u16string> Dump(const char16_t* before = u"old") {
    CString path(before);
    const bool result = dumpCannedDatabase(path);
    return {result, path.str()};
  }
  // The resource's bytes, read through the platform's resource functions.
  static std::string ResourceBytes() {
    const HMODULE library = LoadLibraryW(Windows(kLibraryDir / "OHM_MBRES.dll").c_str());
    const HRSRC resource = FindResourceW(library, MAKEINTRESOURCEW(234), RT_RCDATA);
    const auto* data = static_cast<const char*>(LockResource(LoadResource(library, resource)));
    std::string bytes(data ? data : "", data ? SizeofResource(library, resource) : 0);
    FreeLibrary(library);
    return bytes;
  }
  TempFolder mTemp;
  ScopedEnv mTmpdir{"TMPDIR", mTemp.posix()};
};

TEST_F(CannedDatabase, WrittenInTheTemporaryFolderAlone) {
  const std::string resource = ResourceBytes();
  ASSERT_FALSE(resource.empty());
  EXPECT_EQ(Dump(), std::pair(true, Windows(CannedPath())));
  EXPECT_EQ(mTemp.read(kCannedFile), resource);
  EXPECT_EQ(std::distance(fs::directory_iterator(mTemp.posix()), fs::directory_iterator()), 1);
}

TEST_F(CannedDatabase, MissingLibraryRemovesTheOlderFileAndStillGivesTrue) {
  mTemp.makeFile(kCannedFile, "older");
  SetDllDirectoryW(nullptr);  // OHM_MBRES.dll can't be found by its bare name
  EXPECT_EQ(Dump(), std::pair(true, Windows(CannedPath())));
  EXPECT_FALSE(fs::exists(CannedPath()));
}

TEST_F(CannedDatabase, LibraryWithoutTheDataLeavesAnEmptyFileAndGivesFalse) {
  // A library of that name that carries other resources only.
  TempFolder libraries;
  fs::copy_file(kLibraryDir / "libOhmAuditRes.so", libraries.posix("libOHM_MBRES.so"));
  ASSERT_TRUE(SetDllDirectoryW(libraries.windows().c_str()));
  mTemp.makeFile(kCannedFile, "older");
  EXPECT_EQ(Dump(), std::pair(false, Windows(CannedPath())));
  ASSERT_TRUE(fs::exists(CannedPath()));
  EXPECT_EQ(fs::file_size(CannedPath()), 0u);
}

// The temporary folder's length in units, its ending backslash included:
// it and the joined path must each fit 260 units with their terminator.
TEST_F(CannedDatabase, TooLongATemporaryFolderGivesFalseAndLeavesThePath) {
  const std::string base = mTemp.posix() + "/";
  const std::size_t fileUnits = std::string(kCannedFile).size();
  const std::pair<std::size_t, bool> cases[] = {
      {259 - fileUnits, true},   // joined path of 259 units
      {260 - fileUnits, false},  // joined path of 260 units
      {260, false},              // the folder doesn't fit
  };
  for (const auto& [units, fits] : cases) {
    SCOPED_TRACE(units);
    const std::string folder = base + std::string(units - base.size() - 1, 'd');
    ScopedEnv tmpdir("TMPDIR", folder);
    // A folder that isn't there: nothing is written, and true.
    EXPECT_EQ(Dump(u"kept"), std::pair(fits, fits ? Windows(folder + "/" + kCannedFile) : u"kept"));
  }
}

}  // namespace
