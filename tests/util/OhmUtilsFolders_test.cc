#include "ohmutils/util/OhmUtilsFolders.h"

#include <gtest/gtest.h>

#include "support/TempFolder.h"
#include "support/u16.h"
#include "win/WinError.h"
#include "win/fs/FileFunctions_testing.h"
#include "win/fs/ShellFileOperation_testing.h"

namespace {

class FoldersTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_FALSE(mTemp.posix().empty()); }
  // The Windows form of a folder in the temporary folder, with its ending backslash.
  ZdString folder(const std::string& relative) const { return ZdString(mTemp.windows(relative) + u"\\"); }
  TempFolder mTemp;
};

TEST_F(FoldersTest, DeleteFolderRemovesFilesReadOnlyOnesIncludedAndTheFolder) {
  mTemp.makeFile("t/a.txt");
  mTemp.makeFile("t/b.dwg", "x", true);
  EXPECT_TRUE(OhmUtilsDeleteFolder(folder("t")));
  EXPECT_FALSE(mTemp.exists("t"));
}

TEST_F(FoldersTest, DeleteFolderWithASubfolderRemovesOnlyTheFiles) {
  mTemp.makeFile("t/a.txt", "x", true);
  mTemp.makeFile("t/sub/c.txt");
  EXPECT_FALSE(OhmUtilsDeleteFolder(folder("t")));
  EXPECT_FALSE(mTemp.exists("t/a.txt"));
  EXPECT_TRUE(mTemp.exists("t/sub/c.txt"));
}

TEST_F(FoldersTest, DeleteFolderRefusesWhatItCannotList) {
  mTemp.makeFile("t/a.txt");
  const std::u16string withoutBackslash = mTemp.windows("t");  // the pattern becomes "...t*"
  struct Case {
    const char* what;
    ZdString folder;
  } cases[] = {
      {"empty text", ZdString(u"")},
      {"259 units", ZdString(u"\\" + std::u16string(257, u'x') + u"\\")},
      {"missing folder", folder("gone")},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_FALSE(OhmUtilsDeleteFolder(c.folder));
  }
  EXPECT_FALSE(OhmUtilsDeleteFolder(ZdString(withoutBackslash)));  // lists the parent's "t" entry, a folder
  EXPECT_TRUE(mTemp.exists("t/a.txt"));
}

TEST_F(FoldersTest, DeleteFolderStopsWhenTheListingEndsInAnError) {
  mTemp.makeFile("t/a.txt");
  mTemp.makeFile("t/b.txt");
  win_testing::failNextFindNextFile(ERROR_ACCESS_DENIED);
  EXPECT_FALSE(OhmUtilsDeleteFolder(folder("t")));
  EXPECT_TRUE(mTemp.exists("t"));
}

TEST_F(FoldersTest, CreateDirectoryRecursivelyMakesTheMissingFoldersOutermostFirst) {
  mTemp.makeFolder("x");
  const CString path(mTemp.windows("x/y/z") + u"\\");
  EXPECT_TRUE(CreateDirectoryRecursively(path));
  EXPECT_TRUE(mTemp.exists("x/y/z"));
  EXPECT_TRUE(CreateDirectoryRecursively(path));  // exists: nothing to do
  EXPECT_TRUE(CreateDirectoryRecursively(CString(mTemp.windows("x"))));
}

TEST_F(FoldersTest, CreateDirectoryRecursivelyStopsAtTheFirstFailureAndKeepsWhatItMade) {
  mTemp.makeFile("file");
  EXPECT_FALSE(CreateDirectoryRecursively(CString(mTemp.windows("file/y"))));
  win_testing::failNextCreateDirectory(ERROR_ALREADY_EXISTS);  // somebody else was quicker
  EXPECT_FALSE(CreateDirectoryRecursively(CString(mTemp.windows("a/b"))));
  EXPECT_FALSE(mTemp.exists("a"));
  EXPECT_TRUE(CreateDirectoryRecursively(CString(mTemp.windows("a/b"))));
}

TEST_F(FoldersTest, CreateDirectoryRecursivelyGivesUpWhenNoAncestorExists) {
  struct Case {
    const char* what;
    CString path;
  } cases[] = {
      {"unmapped drive", CString(u"Q:\\x\\y")},
      {"relative without parent", CString(u"ohm-no-such-folder\\y")},
      {"empty", CString(u"")},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_FALSE(CreateDirectoryRecursively(c.path));
  }
}

TEST_F(FoldersTest, RemoveDirectoryRecursivelyRemovesTheTree) {
  mTemp.makeFile("t/sub/a.txt", "x", true);
  EXPECT_EQ(RemoveDirectoryRecursively(CString(mTemp.windows("t"))), 0);
  EXPECT_FALSE(mTemp.exists("t"));
  EXPECT_EQ(RemoveDirectoryRecursively(CString(mTemp.windows("t"))), 1);  // missing: 1, not 0
  EXPECT_EQ(RemoveDirectoryRecursively(CString(u"Q:\\t")), 1);
}

TEST_F(FoldersTest, RemoveDirectoryRecursivelyGivesTheShellsStatus) {
  mTemp.makeFolder("t");
  win_testing::failNextFileOperation(0x78);
  EXPECT_EQ(RemoveDirectoryRecursively(CString(mTemp.windows("t"))), 0x78);
  EXPECT_TRUE(mTemp.exists("t"));
}

}  // namespace
