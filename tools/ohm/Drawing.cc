#include "Drawing.h"

#include <filesystem>

#include "CommandError.h"
#include "win/fs/PathMapping.h"
#include "win/Utf8.h"
#include "zd/ZdString.h"

namespace {

std::string Describe(Zeda::ErrorStatus status) {
  switch (status) {
    case Zeda::eFileNotFound: return "no such file";
    case Zeda::eFileAccessErr: return "can't read the file";
    case Zeda::eBadDxfFile: return "not a readable DXF file";
    default: return "can't read the drawing (status " + std::to_string(static_cast<int>(status)) + ")";
  }
}

}  // namespace

std::u16string WindowsPathOf(const std::string& file) {
  return PosixPathToWindows(std::filesystem::absolute(file).lexically_normal().string());
}

std::unique_ptr<ZdDbDatabase> ReadDrawing(const std::string& file) {
  auto database = std::make_unique<ZdDbDatabase>();
  const Zeda::ErrorStatus status = database->readDwgFile(WindowsPathOf(file).c_str());
  if (status != Zeda::eOk) FailBadInput(file + ": " + Describe(status));
  return database;
}

OpenedObject::OpenedObject(ZdDbDatabase& database, std::uint64_t handle, const std::string& file) {
  const ZdDbObjectId id = database.getObjectId(ZdDbHandle(handle));
  if (id.isNull() || zddbOpenObject(mObject, id, ZdDb::kForRead) != Zeda::eOk) {
    FailBadInput(file + ": no object with handle " + Utf16ToUtf8(ZdString(ZdDbHandle(handle)).str()));
  }
}

OpenedObject::~OpenedObject() { mObject->close(); }

ZdDbEntity* OpenedObject::entity() const noexcept { return dynamic_cast<ZdDbEntity*>(mObject); }

std::string HandleText(const ZdDbObject& object) {
  ZdDbHandle handle;
  object.getZdDbHandle(handle);
  return Utf16ToUtf8(ZdString(handle).str());
}
