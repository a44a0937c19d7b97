// Host actions: the request that opens a web page, quitting the host through
// its automation object, and the canned database written to the temporary
// folder in every state of that folder and of its library.
#include "ohmutils/host/OhmHostActions.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cstdlib>
#include <optional>
#include <set>

#include "HostTestSupport.h"
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

using host_test::Windows;
namespace fs = std::filesystem;

const fs::path kLibraryDir = OHM_LIBRARY_DIR;
constexpr const char* kCannedFile = "~ohm_ohm_test_~.mdb";

TEST(OpenURL, AsksTheFileProtocolHandlerToOpenTheAddress) {
  const std::u16string addresses[] = {u"http://www.ohm-suite.example/a?b=c d", u""};
  for (const std::u16string& address : addresses) {
    SCOPED_TRACE(U8(address));
    win_testing::RecordingUiSink ui;
    OpenURL(address.c_str());
    ASSERT_EQ(ui.shellRequests().size(), 1u);
    const UiShellExecute& request = ui.shellRequests()[0];
    EXPECT_EQ(request.owner, nullptr);
    EXPECT_EQ(request.verb, u"open");
    EXPECT_EQ(request.file, u"rundll32.exe");
    EXPECT_EQ(request.parameters, u"url.dll,FileProtocolHandler " + address);
    EXPECT_EQ(request.directory, u"");
    EXPECT_EQ(request.show, SW_SHOWNORMAL);
    EXPECT_EQ(request.target, address);
  }
}

class QuitZedaTest : public ::testing::Test {
 protected:
  void SetUp() override { zd_testing::resetMessages(); }
  void TearDown() override { zd_testing::resetMessages(); }
};

TEST_F(QuitZedaTest, AsksTheHostToQuitAfterWhatIsQueued) {
  const long quits = zd_testing::quitRequests();
  QuitZeda();
  EXPECT_EQ(zd_testing::quitRequests(), quits + 1);
  EXPECT_FALSE(zdHostPumpMessages());  // the host's loop ends
}

TEST_F(QuitZedaTest, StopsWhenTheHostHasNoAutomationApplication) {
  const long quits = zd_testing::quitRequests();
  zd_testing::failNextApplicationQuery();
  QuitZeda();
  EXPECT_EQ(zd_testing::quitRequests(), quits);
  EXPECT_TRUE(zdHostPumpMessages());
}

// The canned database: the temporary folder is a folder of the test's
// making (TMPDIR), and the library is found by its bare name in the folder
// that SetDllDirectoryW names.
class CannedDatabase : public ::testing::Test {
 protected:
  void SetUp() override {
    if (const char* old = std::getenv("TMPDIR")) mOldTmpdir = old;
    ::setenv("TMPDIR", mTemp.posix().c_str(), 1);
    ASSERT_TRUE(SetDllDirectoryW(Windows(kLibraryDir).c_str()));
  }
  void TearDown() override {
    SetDllDirectoryW(nullptr);
    if (mOldTmpdir)
      ::setenv("TMPDIR", mOldTmpdir->c_str(), 1);
    else
      ::unsetenv("TMPDIR");
  }
  fs::path CannedPath() const { return mTemp.posix(kCannedFile); }
  // The resource's bytes, read through the platform's resource functions.
  static std::string ResourceBytes() {
    const HMODULE library = LoadLibraryW(Windows(kLibraryDir / "OHM_MBRES.dll").c_str());
    const HRSRC resource = FindResourceW(library, MAKEINTRESOURCEW(234), RT_RCDATA);
    const auto* data = static_cast<const char*>(LockResource(LoadResource(library, resource)));
    std::string bytes(data ? data : "", data ? SizeofResource(library, resource) : 0);
    FreeLibrary(library);
    return bytes;
  }
  // The tables of the SQLite database at `path`; empty when it can't be read.
  static std::set<std::string> Tables(const fs::path& path) {
    sqlite3* db = nullptr;
    std::set<std::string> tables;
    if (sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK) {
      sqlite3_stmt* query = nullptr;
      sqlite3_prepare_v2(db, "SELECT name FROM sqlite_master WHERE type = 'table'", -1, &query, nullptr);
      while (query && sqlite3_step(query) == SQLITE_ROW)
        tables.insert(reinterpret_cast<const char*>(sqlite3_column_text(query, 0)));
      sqlite3_finalize(query);
    }
    sqlite3_close(db);
    return tables;
  }

  TempFolder mTemp;
  std::optional<std::string> mOldTmpdir;
};

TEST_F(CannedDatabase, WrittenTwiceLeavesOneReadableDatabase) {
  const std::string resource = ResourceBytes();
  ASSERT_FALSE(resource.empty());
  for (int round = 1; round <= 2; ++round) {
    SCOPED_TRACE(round);
    CString path(u"old");
    EXPECT_TRUE(dumpCannedDatabase(path));
    EXPECT_EQ(path.str(), Windows(CannedPath()));
    EXPECT_EQ(mTemp.read(kCannedFile), resource);
  }
  EXPECT_EQ(std::distance(fs::directory_iterator(mTemp.posix()), fs::directory_iterator()), 1);
  EXPECT_EQ(Tables(CannedPath()), (std::set<std::string>{"project", "component", "wire"}));
}

TEST_F(CannedDatabase, MissingLibraryRemovesTheOlderFileAndStillGivesTrue) {
  mTemp.makeFile(kCannedFile, "older");
  SetDllDirectoryW(nullptr);  // OHM_MBRES.dll can't be found by its bare name
  CString path;
  EXPECT_TRUE(dumpCannedDatabase(path));
  EXPECT_EQ(path.str(), Windows(CannedPath()));
  EXPECT_FALSE(fs::exists(CannedPath()));
}

TEST_F(CannedDatabase, LibraryWithoutTheDataLeavesAnEmptyFileAndGivesFalse) {
  // A library of that name that carries other resources only.
  TempFolder libraries;
  fs::copy_file(kLibraryDir / "libOhmAuditRes.so", libraries.posix("libOHM_MBRES.so"));
  ASSERT_TRUE(SetDllDirectoryW(libraries.windows().c_str()));
  mTemp.makeFile(kCannedFile, "older");
  CString path;
  EXPECT_FALSE(dumpCannedDatabase(path));
  EXPECT_EQ(path.str(), Windows(CannedPath()));
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
    ::setenv("TMPDIR", folder.c_str(), 1);
    CString path(u"kept");
    EXPECT_EQ(dumpCannedDatabase(path), fits);  // a folder that isn't there: nothing is written, and true
    EXPECT_EQ(path.str(), fits ? Windows(folder + "/" + kCannedFile) : u"kept");
  }
}

}  // namespace
