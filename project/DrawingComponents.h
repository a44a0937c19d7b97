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
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "project/ProjectConventions.h"
#include "zd/ZdValueNode.h"

class ZdDbDatabase;

// A text of a drawing's records: where it lies in the text pool of the
// DrawingComponents that holds the record, and how long it is. A place, not
// a view, so that it stays good while the pool grows and when the
// DrawingComponents is moved; read it through DrawingComponents::text.
struct PooledText {
  std::uint32_t offset = 0;
  std::uint32_t length = 0;

  bool empty() const { return length == 0; }
};

// A run of a drawing's attributes or pins: the first one's index and how many.
struct PooledRun {
  std::uint32_t first = 0;
  std::uint32_t count = 0;
};

struct PooledAttribute {
  PooledText tag;
  PooledText value;
};

struct PooledPin {
  PooledText code;  // TERMCODE: the pin's number, without leading zeros
  PooledText term;  // TERM
};

// Where a symbol stands: the sheet within its drawing and its line reference,
// given by an attribute, or by its line on the grid (its sheet goes first).
struct SymbolPlace {
  int sheetInDrawing = 0;
  PooledText reference;       // from the symbol's attribute; empty when it has none
  std::int32_t gridLine = 0;  // else this line of the grid
};

struct CoilSymbol {
  std::uint64_t handle = 0;
  PooledText tag;
  PooledText blockName;
  SymbolPlace place;
  PooledRun attributes;                // all of them, in drawing order
  std::shared_ptr<ZdValueNode> xdata;  // the entity's xdata, copied; null when it has none
};

struct ContactSymbol {
  std::uint64_t handle = 0;
  PooledText coilTag;
  PooledText blockName;
  PooledText kind;                  // the CONTACT value: "NO", "NC", "NONC"; empty when unknown
  std::int32_t occurrenceType = 0;  // the record's mType, from the conventions
  SymbolPlace place;
  PooledRun pins;   // by number
  PooledText xref;  // the value of its XREF attribute, when hasXref
  bool hasXref = false;
};

struct DrawingProblem {
  std::uint64_t handle = 0;  // the entity concerned; 0 when the problem is the drawing's
  int line = 0;              // the line of the file, for a drawing that can't be read
  std::string message;
};

// The records hold no strings of their own: their texts lie end to end in
// `texts`, their attributes and pins in the vectors below, all owned here and
// never changed once the drawing is read, so a project's tens of thousands of
// records cost a few allocations per drawing, not several each.
struct DrawingComponents {
  std::string file;     // POSIX path, as the project gave it
  std::u16string path;  // the drawing's full Windows-form path
  std::u16string name;  // its name without folder and extension (SHEETDWGNAME)
  bool readable = false;
  int sheets = 0;  // layouts that hold entities
  std::vector<CoilSymbol> coils;
  std::vector<ContactSymbol> contacts;
  std::vector<DrawingProblem> problems;
  std::u16string texts;                     // the pool of the records' texts
  std::vector<PooledAttribute> attributes;  // the coils' attributes, each coil's a run
  std::vector<PooledPin> pins;              // the contacts' pins, each contact's a run

  // A view of a text of this drawing's records; good until the pool next grows.
  std::u16string_view text(PooledText pooled) const { return {texts.data() + pooled.offset, pooled.length}; }
  // `text` added to the pool.
  PooledText keep(std::u16string_view text);

  std::span<const PooledAttribute> attributesOf(const CoilSymbol& coil) const {
    return {attributes.data() + coil.attributes.first, coil.attributes.count};
  }
  std::span<const PooledPin> pinsOf(const ContactSymbol& contact) const {
    return {pins.data() + contact.pins.first, contact.pins.count};
  }
};

// The coils and contacts of the drawing in `file`, read with `conventions`.
// A drawing that can't be read gives readable == false and its problem.
DrawingComponents ReadDrawingComponents(const std::string& file, const ProjectConventions& conventions, bool recover);

// The same from a database already read; `components` has file, path and name set.
void CollectComponents(const ZdDbDatabase& database, const ProjectConventions& conventions,
                       DrawingComponents& components);
