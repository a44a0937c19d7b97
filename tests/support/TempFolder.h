// A real temporary folder for tests that touch the file system: made under
// the system's temporary folder, removed with everything in it at the end of
// the test. Paths are offered in POSIX form and in the library's Windows form.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "win/fs/PathMapping.h"

// The library's Windows form of a POSIX path.
inline std::u16string Windows(const std::filesystem::path& path) { return PosixPathToWindows(path.string()); }

class TempFolder {
 public:
  TempFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "ohm-test-XXXXXX").string();
    mPosix = ::mkdtemp(pattern.data()) ? pattern : std::string();
  }
  ~TempFolder() {
    std::error_code ignored;
    if (!mPosix.empty()) std::filesystem::remove_all(mPosix, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  // POSIX path of `relative` (forward slashes) inside the folder.
  std::string posix(const std::string& relative = "") const {
    return relative.empty() ? mPosix : mPosix + "/" + relative;
  }
  // Windows form of the same path.
  std::u16string windows(const std::string& relative = "") const { return PosixPathToWindows(posix(relative)); }

  // Writes a file (folders on the way are made); read-only drops every write permission.
  void makeFile(const std::string& relative, const std::string& content = "x", bool readOnly = false) const {
    const std::filesystem::path path = posix(relative);
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path) << content;
    using std::filesystem::perms;
    if (readOnly)
      std::filesystem::permissions(path, perms::owner_write | perms::group_write | perms::others_write,
                                   std::filesystem::perm_options::remove);
  }
  void makeFolder(const std::string& relative) const { std::filesystem::create_directories(posix(relative)); }
  bool exists(const std::string& relative) const { return std::filesystem::exists(posix(relative)); }
  // The bytes of file `relative`; empty when it can't be read.
  std::string read(const std::string& relative) const {
    std::ifstream in(posix(relative), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  }

 private:
  std::string mPosix;
};
