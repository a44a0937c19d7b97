// The drawings a subcommand works on: DXF files read into databases of the
// host, and the objects in them found by handle. Errors end the subcommand
// with exit status 2 and a message that names the file.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "zd/db/ZdDbDatabase.h"
#include "zd/db/ZdDbObject.h"

// The full Windows-form name of `file` (a POSIX path, relative or absolute),
// as the host names drawings and documents.
std::u16string WindowsPathOf(const std::string& file);

// The drawing in `file` (a POSIX path). A refusal ends the subcommand with
// "FILE:LINE: what was expected"; a block referred to but never defined, and
// each repair in recover mode, are told on standard error.
std::unique_ptr<ZdDbDatabase> ReadDrawing(const std::string& file);
// Whether ReadDrawing repairs damaged drawings (--recover); off at start.
void SetRecoverDrawings(bool recover);

// The object of `handle` in `database`, open for read while this lives.
class OpenedObject {
 public:
  OpenedObject(ZdDbDatabase& database, std::uint64_t handle, const std::string& file);
  ~OpenedObject();
  OpenedObject(const OpenedObject&) = delete;
  OpenedObject& operator=(const OpenedObject&) = delete;

  ZdDbObject& object() const noexcept { return *mObject; }
  // The object as an entity; null when it is another kind of object.
  ZdDbEntity* entity() const noexcept;

 private:
  ZdDbObject* mObject = nullptr;
};

// A handle as the tool prints it: upper-case hexadecimal digits.
std::string HandleText(const ZdDbObject& object);
