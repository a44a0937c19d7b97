#include "zd/app/ZdHostApplicationServices.h"

#include <unistd.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "win/Utf8.h"
#include "win/fs/PathMapping.h"
#include "win/module/Module.h"
#include "zd/ZdCodes.h"
#include "zd/app/ZdEnv.h"
#include "zd/app/ZdHostApplicationServices_testing.h"

namespace {

constexpr int kFileNotFound = 56;  // the host's "file not found" status
constexpr int kSearchPathUnits = 32768;

std::u16string gRoamableOverride;
int gRoamableFault = 0;

// $XDG_CONFIG_HOME/ohm/zeda, or ~/.config/ohm/zeda, in Windows form.
std::u16string defaultRoamableFolder() {
  const char* config = std::getenv("XDG_CONFIG_HOME");
  const char* home = std::getenv("HOME");
  std::string folder = config && *config ? config : std::string(home ? home : "/tmp") + "/.config";
  return PosixPathToWindows(folder + "/ohm/zeda");
}

bool hasFolder(std::u16string_view name) { return name.find_first_of(u"\\/:") != std::u16string_view::npos; }

bool fileExists(const std::u16string& windowsPath) {
  const auto posix = WindowsPathToPosix(windowsPath);
  return posix && ::access(posix->c_str(), F_OK) == 0;
}

// The folders of the host's search path, in order.
std::vector<std::u16string> searchFolders() {
  std::u16string buffer(kSearchPathUnits, u'\0');
  if (zdedGetEnv(u"ZEDA", buffer.data(), buffer.size()) != RTNORM) return {};
  buffer.resize(std::char_traits<char16_t>::length(buffer.c_str()));
  std::vector<std::u16string> folders;
  for (std::size_t pos = 0; pos <= buffer.size();) {
    const std::size_t end = std::min(buffer.find(u';', pos), buffer.size());
    if (end > pos) folders.push_back(buffer.substr(pos, end - pos));
    pos = end + 1;
  }
  return folders;
}

}  // namespace

int ZdDbHostApplicationServices::findFile(ZdString& found, const char16_t* fileName, ZdDbDatabase*, int) {
  if (!fileName || !*fileName) return kFileNotFound;
  // A module is looked for under its file's name here, as the loader does.
  const std::u16string name = ModuleNameToFileName(fileName);
  if (hasFolder(name)) {
    if (!fileExists(name)) return kFileNotFound;
    found.assign(name.c_str());
    return 0;
  }
  for (std::u16string folder : searchFolders()) {
    if (folder.back() != u'\\' && folder.back() != u'/') folder += u'\\';
    if (fileExists(folder + name)) {
      found.assign((folder + name).c_str());
      return 0;
    }
  }
  return kFileNotFound;
}

int ZdDbHostApplicationServices::getRoamableRootFolder(const char16_t*& folder) {
  if (gRoamableFault != 0) return gRoamableFault;
  static std::u16string kept;
  kept = gRoamableOverride.empty() ? defaultRoamableFolder() : gRoamableOverride;
  folder = kept.c_str();
  return 0;
}

const char16_t* ZdDbHostApplicationServices::getUserRegistryProductRootKey() const noexcept {
  return u"Software\\Ohm\\Zeda\\R1";
}

ZdDbHostApplicationServices* zddbHostApplicationServices() {
  static ZdDbHostApplicationServices services;
  return &services;
}

namespace zd_testing {

void setRoamableRootFolder(const std::u16string& folder) { gRoamableOverride = folder; }
void failRoamableRootFolder(int status) { gRoamableFault = status; }

}  // namespace zd_testing
