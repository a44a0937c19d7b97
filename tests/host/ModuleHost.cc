// A host that loads one module through the host's module loader, for the
// test that needs a module in a folder of its own making and a library
// search path of its choice.
//
// Usage: ohm_module_host <module file, POSIX path>
// Exit 0 when the module loads (it is unloaded again). When the load fails,
// prints "load failed <error>" and exits 3. Message boxes go to stderr.
#include <cstdio>

#include "win/LastError.h"
#include "win/fs/PathMapping.h"
#include "zd/app/ZdModuleLoader.h"

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  const HMODULE module = zdLoadModule(PosixPathToWindows(argv[1]).c_str());
  if (!module) {
    std::printf("load failed %u\n", GetLastError());
    return 3;
  }
  zdUnloadModule(module);
  return 0;
}
