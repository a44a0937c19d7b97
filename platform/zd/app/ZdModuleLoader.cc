#include "zd/app/ZdModuleLoader.h"

#include <algorithm>
#include <vector>

#include "win/LastError.h"
#include "win/WinError.h"
#include "win/module/Module.h"

namespace {

struct LoadedModule {
  HMODULE module;
  ModuleEntryFunction entry;
};

std::vector<LoadedModule>& loadedModules() {
  static std::vector<LoadedModule> modules;
  return modules;
}

ModuleEntryFunction entryOf(HMODULE module) {
  return reinterpret_cast<ModuleEntryFunction>(GetProcAddress(module, kModuleEntryName));
}

}  // namespace

HMODULE zdLoadModule(const char16_t* path) {
  const HMODULE module = LoadLibraryW(path);
  if (!module) return nullptr;
  const ModuleEntryFunction entry = entryOf(module);
  if (!entry) {
    FreeLibrary(module);
    SetLastError(ERROR_PROC_NOT_FOUND);
    return nullptr;
  }
  if (!entry(module, DLL_PROCESS_ATTACH, nullptr)) {
    entry(module, DLL_PROCESS_DETACH, nullptr);  // as the platform does: a refused attach is followed by detach
    FreeLibrary(module);
    SetLastError(ERROR_DLL_INIT_FAILED);
    return nullptr;
  }
  loadedModules().push_back({module, entry});
  return module;
}

bool zdUnloadModule(HMODULE module) {
  auto& modules = loadedModules();
  const auto it =
      std::find_if(modules.begin(), modules.end(), [module](const LoadedModule& m) { return m.module == module; });
  if (it == modules.end()) return false;
  const ModuleEntryFunction entry = it->entry;
  modules.erase(it);
  entry(module, DLL_PROCESS_DETACH, nullptr);
  FreeLibrary(module);
  return true;
}
