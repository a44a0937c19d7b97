// ZdDbDatabase: one drawing's objects, owned by the database from the moment
// they are added until it is deleted. Ids are unique in the process, handles
// within the drawing. Every database has the block records "*Model_Space"
// and "*Paper_Space".
//
// Access: zddbOpenObject opens by id for read or write and the caller ends
// the access with ZdDbObject::close; accessZdDbObjectForRead gives read access
// also to an object open elsewhere, and revertZdDbObjectFromWrite plus (when
// it opened it) close end that access, leaving the object as it was.
//
// Thread safety: a database belongs to the host's main thread.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "zd/ZdDbBlockTableRecord.h"
#include "zd/ZdDbObject.h"

class ZdDbDatabase {
 public:
  // An empty database with model and paper space. The arguments are the
  // host's (build a default drawing, no document) and are not used.
  explicit ZdDbDatabase(bool buildDefaultDrawing = true, bool noDocument = false);
  virtual ~ZdDbDatabase();
  ZdDbDatabase(const ZdDbDatabase&) = delete;
  ZdDbDatabase& operator=(const ZdDbDatabase&) = delete;

  // Adds an object owned by `owner` (null: the database itself) with the
  // next handle, or with `handle` when it is given and free; its id.
  ZdDbObjectId addObject(std::unique_ptr<ZdDbObject> object, ZdDbObjectId owner = {}, ZdDbHandle handle = {});
  // Adds an entity to the end of a block record's entities.
  ZdDbObjectId appendEntity(ZdDbObjectId block, std::unique_ptr<ZdDbEntity> entity, ZdDbHandle handle = {});
  // The id of the block record of that name (case ignored), null if none;
  // adds one when `create` is set.
  ZdDbObjectId blockTableRecordId(const std::u16string& name, bool create = false);
  ZdDbObjectId modelSpaceId() const noexcept { return mModelSpace; }
  ZdDbObjectId paperSpaceId() const noexcept { return mPaperSpace; }
  // Block record ids in the order they were made.
  const std::vector<ZdDbObjectId>& blockTableRecordIds() const noexcept { return mBlocks; }
  // The id of the object with that handle; null if none.
  ZdDbObjectId getObjectId(ZdDbHandle handle) const;
  // The object itself, without opening it (for the host's own walks and for builders).
  ZdDbObject* objectAt(ZdDbObjectId id) const;
  // The next handle that addObject gives.
  ZdDbHandle handseed() const noexcept { return ZdDbHandle(mNextHandle); }

 private:
  std::map<ZdDbObjectId, std::unique_ptr<ZdDbObject>> mObjects;
  std::map<ZdDbHandle, ZdDbObjectId> mHandles;
  std::vector<ZdDbObjectId> mBlocks;
  ZdDbObjectId mModelSpace;
  ZdDbObjectId mPaperSpace;
  std::uint64_t mNextHandle = 0x20;
};

// Opens the object for read or write. eOk and the object; eNullObjectId,
// eUnknownHandle (no such object), eWasErased (erased and not asked for),
// eWasOpenForWrite / eWasOpenForRead (conflicting access) with null.
Zeda::ErrorStatus zddbOpenObject(ZdDbObject*& object, ZdDbObjectId id, ZdDb::OpenMode mode,
                                 bool openErased = false);

// Read access to the object of class `cls` (or derived), also when it is open
// elsewhere: `wasOpened` says this call opened it (close it at the end),
// `wasWritable` that it was open for write (give that back with
// revertZdDbObjectFromWrite). eOk, or the failure of zddbOpenObject, or
// eWrongObjectType, with null and the object as it was.
Zeda::ErrorStatus accessZdDbObjectForRead(ZdDbObject*& object, ZdDbObjectId id, const ZdRxClass* cls,
                                          bool& wasOpened, bool& wasWritable, bool openErased = false);

// Gives write access back to an object that accessZdDbObjectForRead found
// open for write; nothing otherwise. eOk.
Zeda::ErrorStatus revertZdDbObjectFromWrite(ZdDbObject* object, bool wasWritable);
