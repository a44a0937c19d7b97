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

// Read-only files go too; a subfolder stays, with what is in it, and the
// result is false.
TEST_F(FoldersTest, DeleteFolderRemovesTheFilesAndTheFolderIfItIsThenEmpty) {
  mTemp.makeFile("t/a.txt");
  mTemp.makeFile("t/b.dwg", "x", true);
  EXPECT_TRUE(OhmUtilsDeleteFolder(folder("t")));
  EXPECT_FALSE(mTemp.exists("t"));
  mTemp.makeFile("t/a.txt", "x", true);
  mTemp.makeFile("t/sub/c.txt");
  EXPECT_FALSE(OhmUtilsDeleteFolder(folder("t")));
  EXPECT_FALSE(mTemp.exists("t/a.txt"));
  EXPECT_TRUE(mTemp.exists("t/sub/c.txt"));
}

TEST_F(FoldersTest, DeleteFolderRefusesWhatItCannotListToTheEnd) {
  mTemp.makeFile("t/a.txt");
  // A folder without its backslash lists the parent's "t" entry, a folder.
  for (const ZdString& path : {ZdString(u""), ZdString(u"\\" + std::u16string(257, u'x') + u"\\"), folder("gone"),
                               ZdString(mTemp.windows("t"))})
    EXPECT_FALSE(OhmUtilsDeleteFolder(path)) << U8(path.str());
  EXPECT_TRUE(mTemp.exists("t/a.txt"));
  mTemp.makeFile("t/b.txt");
  win_testing::failNextFindNextFile(ERROR_ACCESS_DENIED);  // a listing that ends in an error
  EXPECT_FALSE(OhmUtilsDeleteFolder(folder("t")));
  EXPECT_TRUE(mTemp.exists("t"));
}

TEST_F(FoldersTest, CreateDirectoryRecursivelyMakesTheMissingFoldersOutermostFirst) {
  mTemp.makeFolder("x");
  const CString path(mTemp.windows("x/y/z") + u"\\");
  EXPECT_TRUE(CreateDirectoryRecursively(path));
  EXPECT_TRUE(mTemp.exists("x/y/z"));
  EXPECT_TRUE(CreateDirectoryRecursively(path));  // exists: nothing to do
}

// A failure stops the walk and keeps what was made; no existing ancestor: nothing to start from.
TEST_F(FoldersTest, CreateDirectoryRecursivelyStopsAtTheFirstFailureAndKeepsWhatItMade) {
  mTemp.makeFile("file");
  for (const std::u16string& path : {mTemp.windows("file/y"), std::u16string(u"Q:\\x\\y"), std::u16string()})
    EXPECT_FALSE(CreateDirectoryRecursively(CString(path))) << U8(path);
  win_testing::failNextCreateDirectory(ERROR_ALREADY_EXISTS);  // somebody else was quicker
  EXPECT_FALSE(CreateDirectoryRecursively(CString(mTemp.windows("a/b"))));
  EXPECT_FALSE(mTemp.exists("a"));
  EXPECT_TRUE(CreateDirectoryRecursively(CString(mTemp.windows("a/b"))));
}

TEST_F(FoldersTest, RemoveDirectoryRecursivelyRemovesTheTreeOrGivesTheShellsStatus) {
  const CString tree(mTemp.windows("t"));
  mTemp.makeFile("t/sub/a.txt", "x", true);
  win_testing::failNextFileOperation(0x78);
  EXPECT_EQ(RemoveDirectoryRecursively(tree), 0x78);
  EXPECT_TRUE(mTemp.exists("t/sub/a.txt"));
  EXPECT_EQ(RemoveDirectoryRecursively(tree), 0);
  EXPECT_FALSE(mTemp.exists("t"));
  EXPECT_EQ(RemoveDirectoryRecursively(tree), 1);  // missing: 1, not 0
}

}  // namespace
