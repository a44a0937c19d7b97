// ZdDbBlockTableRecord: a block definition (or model or paper space) with its
// entities in drawing order. Owned by its database; it keeps the ids of the
// entities it owns.
//
// ZdDbBlockTableRecordIterator walks those entities: a new object, owned and
// deleted by the caller before the record goes, counted by the host while it
// lives; entities opened through it are closed by the caller.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "OhmPlatformExport.h"
#include "zd/ZdString.h"
#include "zd/db/ZdDbObject.h"

OHM_PLATFORM_API_BEGIN

class ZdDbBlockTableRecordIterator {
 public:
  virtual ~ZdDbBlockTableRecordIterator();
  ZdDbBlockTableRecordIterator(const ZdDbBlockTableRecordIterator&) = delete;
  ZdDbBlockTableRecordIterator& operator=(const ZdDbBlockTableRecordIterator&) = delete;
  // Back to the first entity (or the last), passing over erased ones when asked.
  void start(bool atBeginning = true, bool skipDeleted = true) noexcept;
  // Moves on (forward or back), passing over erased entities when asked.
  void step(bool forward = true, bool skipDeleted = true) noexcept;
  bool done() const noexcept { return mPosition >= mIds.size(); }
  // Opens the current entity: the status of zddbOpenObject; eIteratorDone past the end.
  Zeda::ErrorStatus getEntity(ZdDbEntity*& entity, ZdDb::OpenMode mode, bool openErasedEntity = false) const;
  // The current entity's id; eIteratorDone past the end.
  Zeda::ErrorStatus getEntityId(ZdDbObjectId& id) const;

 private:
  friend class ZdDbBlockTableRecord;
  // Walks the record's own list by position; it must outlive the iterator.
  ZdDbBlockTableRecordIterator(const ZdDbDatabase* database, const std::vector<ZdDbObjectId>& ids);
  bool isErasedAt(std::size_t position) const;
  const ZdDbDatabase* mDatabase;
  const std::vector<ZdDbObjectId>& mIds;
  std::size_t mPosition = 0;
};

class ZdDbBlockTableRecord : public ZdDbObject {
 public:
  static const ZdRxClass* desc();
  explicit ZdDbBlockTableRecord(std::u16string name) : ZdDbObject(desc()), mName(std::move(name)) {}
  // The block's name; eOk.
  Zeda::ErrorStatus getName(ZdString& name) const;
  const std::u16string& name() const noexcept { return mName; }
  // A new iterator over the entities: eOk, or eOutOfMemory with null when
  // the host can't make one.
  Zeda::ErrorStatus newIterator(ZdDbBlockTableRecordIterator*& iterator, bool atBeginning = true,
                                bool skipDeleted = true) const;
  void appendEntityId(ZdDbObjectId entity) { mEntities.push_back(entity); }
  // The groups of the block's BLOCK record in the drawing file (base point,
  // flags, ...) beside those of its BLOCK_RECORD (keptDxfGroups), a view
  // into the text the database keeps; empty when not read from a file.
  std::string_view keptDxfBlockGroups() const noexcept { return mKeptBlockGroups; }
  void setKeptDxfBlockGroups(std::string_view groups) noexcept { mKeptBlockGroups = groups; }
  const std::vector<ZdDbObjectId>& entityIds() const noexcept { return mEntities; }

 private:
  std::u16string mName;
  std::vector<ZdDbObjectId> mEntities;
  std::string_view mKeptBlockGroups;
};

OHM_PLATFORM_API_END
