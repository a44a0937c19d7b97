// A host that loads one module through the host's module loader and reports
// what happened, for the tests that need a module in a folder of their own
// making and a library search path of their choice.
//
// Usage: ohm_module_host <module file, POSIX path>
// Prints "loaded <path>" for every library held while the module is
// attached, then "unloaded <count of libraries still held>"; exit 0. When the
// load fails, "load failed <error>", exit 3. Message boxes go to stderr.
#include <cstdio>

#include "win/LastError.h"
#include "win/fs/PathMapping.h"
#include "win/module/Module_testing.h"
#include "zd/app/ZdModuleLoader.h"

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  const HMODULE module = zdLoadModule(PosixPathToWindows(argv[1]).c_str());
  if (!module) {
    std::printf("load failed %u\n", GetLastError());
    return 3;
  }
  for (const std::string& path : win_testing::loadedLibraryPaths()) std::printf("loaded %s\n", path.c_str());
  zdUnloadModule(module);
  std::printf("unloaded %ld\n", win_testing::loadedLibraryCount());
  return 0;
}
