#include "zd/dxf/DxfDocument.h"

#include <filesystem>
#include <memory>
#include <system_error>

#include "win/fs/PathMapping.h"
#include "zd/app/ZdDocManager.h"
#include "zd/db/ZdDbDatabase.h"

namespace {

// The full name of a file in Windows form; empty when it has no POSIX place.
std::u16string fullWindowsName(const char16_t* fileName) {
  const std::optional<std::string> path = WindowsPathToPosix(fileName);
  if (!path) return {};
  std::error_code error;
  const std::filesystem::path full = std::filesystem::absolute(*path, error);
  return error ? std::u16string() : PosixPathToWindows(full.lexically_normal().string());
}

}  // namespace

Zeda::ErrorStatus openDxfDocument(const char16_t* fileName, bool makeCurrent, ZdApDocument*& document) {
  document = nullptr;
  if (!fileName) return Zeda::eInvalidInput;
  const std::u16string name = fullWindowsName(fileName);
  if (name.empty()) return Zeda::eFileNotFound;
  auto database = std::make_shared<ZdDbDatabase>(false);
  if (const Zeda::ErrorStatus status = database->readDwgFile(name.c_str()); status != Zeda::eOk) return status;
  ZdApDocManager* manager = zdDocManagerPtr();
  ZdApDocument* const current = manager->curDocument();
  document = manager->addDocument(name, std::move(database));
  if (!makeCurrent) manager->setCurDocument(current);
  return Zeda::eOk;
}
