// A folder of its own for one test (or one test program), removed with
// everything in it when the object goes. Paths come in POSIX form (path())
// and in the Windows form the library takes (windowsPath(), with a trailing
// backslash).
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

#include "win/PathMapping.h"

class TempFolder {
 public:
  TempFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "ohm_test_XXXXXX").string();
    if (!::mkdtemp(pattern.data())) throw std::runtime_error("mkdtemp failed");
    mPath = pattern;
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::permissions(mPath, std::filesystem::perms::owner_all, ignored);
    std::filesystem::remove_all(mPath, ignored);
  }

  const std::filesystem::path& path() const { return mPath; }
  std::u16string windowsPath() const { return PosixPathToWindows(mPath.string()) + u"\\"; }

  // Writes `content` (bytes) to the file `name` in the folder.
  void write(const std::string& name, const std::string& content) const {
    std::ofstream(mPath / name, std::ios::binary) << content;
  }
  // The bytes of file `name`; empty when it can't be read.
  std::string read(const std::string& name) const {
    std::ifstream in(mPath / name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  }

 private:
  std::filesystem::path mPath;
};
