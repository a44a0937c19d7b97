// Replacing a file's contents: the new bytes and the old mode, what earlier
// replacements left beside the file, and a failure that leaves nothing.
#include "win/fs/FileReplace.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <iterator>
#include <string>
#include <utility>

#include "support/ChildProcess.h"
#include "support/TempFolder.h"

namespace {

namespace fs = std::filesystem;

TEST(FileReplace, NewBytesTakeTheOldModeAndNothingIsLeftBeside) {
  TempFolder folder;
  folder.makeFile("d.dxf", "old");
  ASSERT_EQ(::chmod(folder.posix("d.dxf").c_str(), 0640), 0);
  const int reader = ::open(folder.posix("d.dxf").c_str(), O_RDONLY);
  ASSERT_GE(reader, 0);
  const std::string bytes("new\r\n\0bytes", 11);
  ASSERT_EQ(ReplaceFileContents(folder.posix("d.dxf"), bytes), 0);
  EXPECT_EQ(folder.read("d.dxf"), bytes);
  char old[8] = {};
  EXPECT_EQ(::read(reader, old, sizeof old - 1), 3) << "a reader of the old file sees it whole";
  EXPECT_STREQ(old, "old");
  ::close(reader);
  EXPECT_EQ(fs::status(folder.posix("d.dxf")).permissions(), fs::perms(0640));
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.posix()), fs::directory_iterator()), 1);
}

// Only copies named after the file and a process that is gone are removed.
TEST(FileReplace, RemovesWhatGoneProcessesLeftBesideTheFile) {
  TempFolder folder;
  const std::string dead = std::to_string(DeadProcess()), alive = std::to_string(::getppid());
  const std::pair<std::string, bool> entries[] = {
      {"d.dxf.~" + dead + ".0", false},    {"d.dxf.~" + dead + ".17", false},
      {"d.dxf.~" + alive + ".0", true},    {"d.dxf.~" + dead, true},
      {"d.dxf.~" + dead + ".x", true},     {"e.dxf.~" + dead + ".0", true},
      {"d.dxf.~" + dead + ".0.bak", true},
  };
  folder.makeFile("d.dxf", "old");
  for (const auto& [name, kept] : entries) folder.makeFile(name, "left");
  ASSERT_EQ(ReplaceFileContents(folder.posix("d.dxf"), "new"), 0);
  for (const auto& [name, kept] : entries) EXPECT_EQ(fs::exists(folder.posix(name)), kept) << name;
}

TEST(FileReplace, AFailureLeavesTheFileAndNoCopy) {
  TempFolder folder;
  EXPECT_EQ(ReplaceFileContents(folder.posix("none/d.dxf"), "new"), ENOENT);
  folder.makeFile("d/x.dxf", "old");  // renaming a file over a folder fails after the copy is written
  EXPECT_NE(ReplaceFileContents(folder.posix("d"), "new"), 0);
  EXPECT_EQ(folder.read("d/x.dxf"), "old");
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.posix()), fs::directory_iterator()), 1);
}

}  // namespace
