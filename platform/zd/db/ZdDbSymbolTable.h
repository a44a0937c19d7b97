// ZdDbSymbolTable: a table of named records of a drawing; ZdDbBlockTable is
// the one of block definitions (model space, paper space and the blocks).
// The table is an object of its database, opened and closed like any other
// (ZdDbDatabase::getSymbolTable); the records themselves stay the database's.
// Names compare without regard to case.
#pragma once

#include "OhmPlatformExport.h"
#include "zd/ZdString.h"
#include "zd/db/ZdDbObject.h"

OHM_PLATFORM_API_BEGIN

class ZdDbSymbolTable : public ZdDbObject {
 public:
  static const ZdRxClass* desc();
  // The id of the record of that name: eOk, or eKeyNotFound with a null id.
  // An erased record counts only when `getErasedRecord` is set.
  virtual Zeda::ErrorStatus getIdAt(const char16_t* name, ZdDbObjectId& id, bool getErasedRecord = false) const = 0;
  bool has(const char16_t* name) const;

 protected:
  explicit ZdDbSymbolTable(const ZdRxClass* cls) : ZdDbObject(cls) {}
};

class ZdDbBlockTable : public ZdDbSymbolTable {
 public:
  static const ZdRxClass* desc();
  ZdDbBlockTable() : ZdDbSymbolTable(desc()) {}
  Zeda::ErrorStatus getIdAt(const char16_t* name, ZdDbObjectId& id, bool getErasedRecord = false) const override;
};

OHM_PLATFORM_API_END
