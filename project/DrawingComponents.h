// What one drawing of a project holds for the cross-references: its coils and
// contacts, each with what the engine and the update need of it, and the
// problems found on the way. Reading a drawing gives these records and drops
// the drawing's database, so a project's memory grows with its components,
// not with its drawings.
//
// Sheets are numbered for the whole project, so a record knows only its
// place within its drawing (the how-manieth layout that holds entities); the
// project numbers the sheets once every drawing is read (ProjectUpdate.h).
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "project/ProjectConventions.h"
#include "zd/ZdValueNode.h"

class ZdDbDatabase;

using AttributeList = std::vector<std::pair<std::u16string, std::u16string>>;  // tag, value; in drawing order

// Where a symbol stands: the sheet within its drawing and its line reference,
// given by an attribute, or by its line on the grid (its sheet goes first).
struct SymbolPlace {
  int sheetInDrawing = 0;
  std::u16string reference;   // from the symbol's attribute; empty when it has none
  std::int32_t gridLine = 0;  // else this line of the grid
};

struct CoilSymbol {
  std::uint64_t handle = 0;
  std::u16string tag;
  std::u16string blockName;
  SymbolPlace place;
  AttributeList attributes;
  std::shared_ptr<ZdValueNode> xdata;  // the entity's xdata, copied; null when it has none
};

struct ContactSymbol {
  std::uint64_t handle = 0;
  std::u16string coilTag;
  std::u16string blockName;
  std::u16string kind;              // the CONTACT value: "NO", "NC", "NONC"; empty when unknown
  std::int32_t occurrenceType = 0;  // the record's mType, from the conventions
  SymbolPlace place;
  std::vector<std::pair<std::u16string, std::u16string>> pins;  // TERMCODE, TERM
  std::optional<std::u16string> xref;                           // the value of its XREF attribute, when it has one
};

struct DrawingProblem {
  std::uint64_t handle = 0;  // the entity concerned; 0 when the problem is the drawing's
  int line = 0;              // the line of the file, for a drawing that can't be read
  std::string message;
};

struct DrawingComponents {
  std::string file;     // POSIX path, as the project gave it
  std::u16string path;  // the drawing's full Windows-form path
  std::u16string name;  // its name without folder and extension (SHEETDWGNAME)
  bool readable = false;
  int sheets = 0;  // layouts that hold entities
  std::vector<CoilSymbol> coils;
  std::vector<ContactSymbol> contacts;
  std::vector<DrawingProblem> problems;
};

// The coils and contacts of the drawing in `file`, read with `conventions`.
// A drawing that can't be read gives readable == false and its problem.
DrawingComponents ReadDrawingComponents(const std::string& file, const ProjectConventions& conventions, bool recover);

// The same from a database already read; `components` has file, path and name set.
void CollectComponents(const ZdDbDatabase& database, const ProjectConventions& conventions,
                       DrawingComponents& components);
