// ZdDbBlockReference: an insert of a block definition, with its attributes in
// drawing order. The attributes are objects of the same database, owned by it;
// the reference keeps their ids. ZdDbObjectIterator walks them: a new object,
// owned and deleted by the caller, counted by the host while it lives, and
// deleted before its reference goes. ZdDbMInsertBlock and ZdDbTable derive
// from the reference.
#pragma once

#include <string>
#include <vector>

#include "OhmPlatformExport.h"
#include "zd/db/ZdDbObject.h"

OHM_PLATFORM_API_BEGIN

class ZdDbObjectIterator {
 public:
  virtual ~ZdDbObjectIterator();
  ZdDbObjectIterator(const ZdDbObjectIterator&) = delete;
  ZdDbObjectIterator& operator=(const ZdDbObjectIterator&) = delete;
  // True past the last object.
  bool done() const noexcept { return mPosition >= mIds.size(); }
  // The id at the current position; null when done.
  ZdDbObjectId objectId() const noexcept { return done() ? ZdDbObjectId() : mIds[mPosition]; }
  // Moves on (backwards when asked), passing over erased objects when `skipErased`.
  void step(bool backwards = false, bool skipErased = true);
  // Back to the first object (or the last, when `atBeginning` is false).
  void start(bool atBeginning = true, bool skipErased = true);

 private:
  friend class ZdDbBlockReference;
  friend class ZdDbBlockTableRecord;
  // Walks `ids`, the owner's own list, by position: attributes appended
  // meanwhile are seen, and the list must outlive the iterator.
  ZdDbObjectIterator(const ZdDbDatabase* database, const std::vector<ZdDbObjectId>& ids, bool skipErased);
  bool skip(std::size_t position) const;
  const ZdDbDatabase* mDatabase;
  const std::vector<ZdDbObjectId>& mIds;
  std::size_t mPosition = 0;
};

class ZdDbBlockReference : public ZdDbEntity {
 public:
  static const ZdRxClass* desc();
  ZdDbBlockReference() : ZdDbEntity(desc()) {}
  // The block definition's record.
  ZdDbObjectId blockTableRecord() const noexcept { return mBlock; }
  void setBlockTableRecord(ZdDbObjectId block) noexcept { mBlock = block; }
  // The name of a block that the drawing refers to but never defines; the
  // record is then null, and opening the definition fails.
  const std::u16string& undefinedBlockName() const noexcept { return mUndefinedBlockName; }
  void setUndefinedBlockName(std::u16string name) { mUndefinedBlockName = std::move(name); }
  // A new iterator over the attributes, from the first, erased ones passed
  // over; owned by the caller. Null when the host can't make one.
  ZdDbObjectIterator* attributeIterator() const;
  // Appends an attribute (an object of this database) behind the others.
  void appendAttributeId(ZdDbObjectId attribute) { mAttributes.push_back(attribute); }
  const std::vector<ZdDbObjectId>& attributeIds() const noexcept { return mAttributes; }

 protected:
  explicit ZdDbBlockReference(const ZdRxClass* cls) : ZdDbEntity(cls) {}

 private:
  ZdDbObjectId mBlock;
  std::vector<ZdDbObjectId> mAttributes;
  std::u16string mUndefinedBlockName;
};

// A block reference repeated in rows and columns (a DXF INSERT with a row or
// column count above 1).
class ZdDbMInsertBlock : public ZdDbBlockReference {
 public:
  static const ZdRxClass* desc();
  ZdDbMInsertBlock(int columns, int rows) : ZdDbBlockReference(desc()), mColumns(columns), mRows(rows) {}
  int columns() const noexcept { return mColumns; }
  int rows() const noexcept { return mRows; }

 private:
  int mColumns;
  int mRows;
};

class ZdDbTable : public ZdDbBlockReference {
 public:
  static const ZdRxClass* desc();
  ZdDbTable() : ZdDbBlockReference(desc()) {}

 protected:
  explicit ZdDbTable(const ZdRxClass* cls) : ZdDbBlockReference(cls) {}
};

OHM_PLATFORM_API_END
