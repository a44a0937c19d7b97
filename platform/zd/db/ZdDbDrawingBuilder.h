// ZdDbDrawingBuilder: makes drawings in code, for tests, examples and tools.
// It adds objects to a database directly (no open or close) and gives
// borrowed pointers to them, owned by the database.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "OhmPlatformExport.h"
#include "zd/db/ZdDbBlockReference.h"
#include "zd/db/ZdDbDatabase.h"
#include "zd/db/ZdDbText.h"

OHM_PLATFORM_API_BEGIN

class ZdDbDrawingBuilder {
 public:
  using Attributes = std::vector<std::pair<std::u16string, std::u16string>>;  // tag, text; in drawing order

  explicit ZdDbDrawingBuilder(ZdDbDatabase& database) : mDatabase(database) {}

  // The record of a block definition of that name, made if missing.
  ZdDbObjectId defineBlock(const std::u16string& name);
  // A reference to block `blockName` in `space` (null: model space), with attributes.
  ZdDbBlockReference* insertBlock(const std::u16string& blockName, const Attributes& attributes = {},
                                  ZdDbObjectId space = {});
  // A reference of a class derived from the block reference or table class
  // (`className` made under `base`, which is ZdDbBlockReference::desc() or
  // ZdDbTable::desc()), as a third-party application's objects are.
  ZdDbBlockReference* insertDerived(const std::u16string& className, const ZdRxClass* base,
                                    const std::u16string& blockName, ZdDbObjectId space = {});
  // A table in `space` (null: model space).
  ZdDbTable* addTable(ZdDbObjectId space = {});
  // An entity of a class known by name only (e.g. "ZdDbLine"), in `space`.
  ZdDbEntity* addEntity(const std::u16string& className, ZdDbObjectId space = {});
  // An attribute with that tag and text appended to `reference`.
  ZdDbAttribute* appendAttribute(ZdDbBlockReference& reference, const std::u16string& tag, const std::u16string& text);

  // The option record the suite keeps: 1001 app, 1002 "{", 1000 value, 1002 "}".
  static void setOptionXData(ZdDbObject& object, const std::u16string& appName, const std::u16string& value);

 private:
  ZdDbObjectId spaceOr(ZdDbObjectId space) const { return space.isNull() ? mDatabase.modelSpaceId() : space; }
  ZdDbDatabase& mDatabase;
};

OHM_PLATFORM_API_END
