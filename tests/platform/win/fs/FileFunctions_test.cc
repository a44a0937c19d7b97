#include "win/fs/FileFunctions.h"

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <tuple>
#include <vector>

#include "support/TempFolder.h"
#include "support/platwinLastError.h"
#include "support/u16.h"
#include "win/LastError.h"
#include "win/WinError.h"
#include "win/fs/ShellFileOperation.h"

namespace {

// Names and attributes of every entry a search for `pattern` gives, and the
// last error it ends with.
struct Listing {
  std::vector<std::u16string> names;
  std::vector<DWORD> attributes;
  DWORD endError = 0;
};

Listing list(const std::u16string& pattern) {
  Listing listing;
  WIN32_FIND_DATAW entry;
  const HANDLE search = FindFirstFileW(pattern.c_str(), &entry);
  for (bool found = search != INVALID_HANDLE_VALUE; found; found = FindNextFileW(search, &entry)) {
    listing.names.emplace_back(entry.cFileName);
    listing.attributes.push_back(entry.dwFileAttributes);
  }
  listing.endError = GetLastError();
  EXPECT_TRUE(search == INVALID_HANDLE_VALUE || FindClose(search));
  return listing;
}

class FileFunctionsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_FALSE(mTemp.posix().empty());
    mTemp.makeFile("b.txt");
    mTemp.makeFile("A.dwg", "x", true);
    mTemp.makeFile("noext");
    mTemp.makeFolder("sub");
  }
  std::u16string path(const std::string& relative = "") const { return mTemp.windows(relative); }
  TempFolder mTemp;
};

TEST_F(FileFunctionsTest, SearchPatternsMatchLikeThePlatform) {
  const std::tuple<std::u16string, std::vector<std::u16string>, DWORD> cases[] = {
      {u"\\*", {u".", u"..", u"A.dwg", u"b.txt", u"noext", u"sub"}, ERROR_NO_MORE_FILES},  // dot entries, then sorted
      {u"\\*.TXT", {u"b.txt"}, ERROR_NO_MORE_FILES},
      {u"\\?.*", {u".", u"..", u"A.dwg", u"b.txt"}, ERROR_NO_MORE_FILES},
      {u"\\no*.*", {u"noext"}, ERROR_NO_MORE_FILES},  // ".*" also takes a name without dot
      {u"/sub", {u"sub"}, ERROR_NO_MORE_FILES},       // no wildcard: the entry itself
      {u"\\*.pdf", {}, ERROR_FILE_NOT_FOUND},
      {u"\\", {}, ERROR_FILE_NOT_FOUND},  // an empty name matches nothing
      {u"\\missing\\*", {}, ERROR_PATH_NOT_FOUND},
      {u"\\b.txt\\*", {}, ERROR_PATH_NOT_FOUND},
  };
  EXPECT_EQ(list(u"Q:\\nowhere\\*").endError, static_cast<DWORD>(ERROR_PATH_NOT_FOUND));
  for (const auto& [pattern, names, endError] : cases) {
    SCOPED_TRACE(U8(pattern));
    const Listing listing = list(path() + pattern);
    EXPECT_EQ(listing.names, names);
    EXPECT_EQ(listing.endError, endError);
  }
  EXPECT_EQ(list(path() + u"\\*").attributes,
            (std::vector<DWORD>{FILE_ATTRIBUTE_DIRECTORY, FILE_ATTRIBUTE_DIRECTORY, FILE_ATTRIBUTE_READONLY,
                                FILE_ATTRIBUTE_NORMAL, FILE_ATTRIBUTE_NORMAL, FILE_ATTRIBUTE_DIRECTORY}));
}

TEST_F(FileFunctionsTest, HandlesThatAreNotSearchesAreRefused) {
  int notASearch = 0;
  EXPECT_TRUE(FailsWith([&] { return FindNextFileW(&notASearch, nullptr); }, ERROR_INVALID_HANDLE));
  WIN32_FIND_DATAW entry;
  const HANDLE search = FindFirstFileW((path() + u"\\*").c_str(), &entry);
  EXPECT_TRUE(FindClose(search));
  EXPECT_FALSE(FindClose(search));  // closed twice
}

TEST_F(FileFunctionsTest, ReadOnlyFileIsDeletedOnlyAfterItsAttributesAreNormal) {
  const std::u16string file = path("A.dwg");
  EXPECT_TRUE(FailsWith([&] { return DeleteFileW(file.c_str()); }, ERROR_ACCESS_DENIED));
  EXPECT_TRUE(SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_NORMAL));
  EXPECT_TRUE(DeleteFileW(file.c_str()));
  EXPECT_FALSE(mTemp.exists("A.dwg"));
  EXPECT_TRUE(SetFileAttributesW(path("b.txt").c_str(), FILE_ATTRIBUTE_READONLY));
  EXPECT_FALSE(DeleteFileW(path("b.txt").c_str()));
}

TEST_F(FileFunctionsTest, FailuresSetThePlatformsErrorCodes) {
  const std::u16string missing = path("gone.txt"), inMissing = path("gone\\x"), sub = path("sub"), file = path("b.txt");
  const std::tuple<const char*, std::function<BOOL()>, DWORD> cases[] = {
      {"delete missing file", [&] { return DeleteFileW(missing.c_str()); }, ERROR_FILE_NOT_FOUND},
      {"delete in missing folder", [&] { return DeleteFileW(inMissing.c_str()); }, ERROR_PATH_NOT_FOUND},
      {"delete a folder", [&] { return DeleteFileW(sub.c_str()); }, ERROR_ACCESS_DENIED},
      {"attributes of missing file", [&] { return SetFileAttributesW(missing.c_str(), 0x80); }, ERROR_FILE_NOT_FOUND},
      {"make existing folder", [&] { return CreateDirectoryW(sub.c_str(), nullptr); }, ERROR_ALREADY_EXISTS},
      {"make under missing parent", [&] { return CreateDirectoryW(inMissing.c_str(), nullptr); }, ERROR_PATH_NOT_FOUND},
      {"make on unmapped drive", [&] { return CreateDirectoryW(u"Q:\\x", nullptr); }, ERROR_PATH_NOT_FOUND},
      {"remove non-empty folder", [&] { return RemoveDirectoryW(path().c_str()); }, ERROR_DIR_NOT_EMPTY},
      {"remove a file", [&] { return RemoveDirectoryW(file.c_str()); }, ERROR_DIRECTORY},
      {"remove missing folder", [&] { return RemoveDirectoryW(missing.c_str()); }, ERROR_FILE_NOT_FOUND},
  };
  for (const auto& [what, call, error] : cases) EXPECT_TRUE(FailsWith(call, error)) << what;
}

TEST_F(FileFunctionsTest, SuccessLeavesTheLastErrorAlone) {
  SetLastError(ERROR_NO_MORE_FILES);
  WIN32_FIND_DATAW entry;
  EXPECT_TRUE(FindClose(FindFirstFileW((path() + u"\\*").c_str(), &entry)));
  EXPECT_TRUE(CreateDirectoryW(path("new").c_str(), nullptr));
  EXPECT_TRUE(RemoveDirectoryW((path("new") + u"\\").c_str()));  // a trailing backslash is fine
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_NO_MORE_FILES));
}

// The shell's operation on `names`, given as its list: each terminated, the list ended by one more terminator.
int shellOperation(std::initializer_list<std::u16string> names, UINT function = FO_DELETE) {
  std::u16string list;
  for (const std::u16string& name : names) list.append(name).push_back(u'\0');
  list.push_back(u'\0');
  // No owner, no target, no progress title: a delete needs none.
  SHFILEOPSTRUCTW operation{nullptr, function, list.c_str(), nullptr, FOF_SILENT | FOF_NOCONFIRMATION,
                            FALSE,   nullptr,  nullptr};
  return SHFileOperationW(&operation);
}

TEST_F(FileFunctionsTest, ShellDeleteStatuses) {
  EXPECT_EQ(shellOperation({path("noext"), path("gone")}), ERROR_FILE_NOT_FOUND);
  EXPECT_FALSE(mTemp.exists("noext"));  // the names before the missing one are gone
  EXPECT_EQ(shellOperation({}), DE_INVALIDFILES);
  EXPECT_EQ(shellOperation({path("b.txt")}, FO_COPY), ERROR_INVALID_PARAMETER);
  EXPECT_TRUE(mTemp.exists("b.txt"));
}

}  // namespace
