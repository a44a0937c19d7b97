#include "Drawing.h"

#include <filesystem>
#include <iostream>

#include "CommandError.h"
#include "win/Utf8.h"
#include "win/fs/PathMapping.h"
#include "zd/ZdString.h"
#include "zd/dxf/DxfDrawingReader.h"

namespace {

bool gRecover = false;

std::string Describe(Zeda::ErrorStatus status, const DxfReadReport& report) {
  if (!report.problem.empty())
    return report.line > 0 ? std::to_string(report.line) + ": " + report.problem : report.problem;
  switch (status) {
    case Zeda::eFileNotFound:
      return "no such file";
    case Zeda::eFileAccessErr:
      return "can't read the file";
    case Zeda::eBadDxfFile:
      return "not a readable DXF file";
    default:
      return "can't read the drawing (status " + std::to_string(static_cast<int>(status)) + ")";
  }
}

}  // namespace

std::u16string WindowsPathOf(const std::string& file) {
  return PosixPathToWindows(std::filesystem::absolute(file).lexically_normal().string());
}

void SetRecoverDrawings(bool recover) { gRecover = recover; }

std::unique_ptr<ZdDbDatabase> ReadDrawing(const std::string& file) {
  auto database = std::make_unique<ZdDbDatabase>();
  DxfReadReport report;
  const Zeda::ErrorStatus status = readDxfDrawingFile(file, *database, {gRecover}, &report);
  if (status != Zeda::eOk) FailBadInput(file + (report.line > 0 ? ":" : ": ") + Describe(status, report));
  for (const std::string& repair : report.repairs) std::cerr << "ohm: " << file << ":" << repair << " (repaired)\n";
  for (const std::string& block : report.undefinedBlocks)
    std::cerr << "ohm: " << file << ": warning: block \"" << block << "\" is referred to but never defined\n";
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
