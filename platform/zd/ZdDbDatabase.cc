#include "zd/ZdDbDatabase.h"

#include <atomic>
#include <mutex>
#include <set>
#include <unordered_map>

#include "win/CrtChar.h"
#include "zd/ZdDbDatabase_testing.h"

namespace {

// Every object of every database, by id: ids are unique in the process.
struct ObjectRegistry {
  std::mutex mutex;
  std::unordered_map<std::uint64_t, ZdDbObject*> objects;
  std::uint64_t nextId = 1;
  std::set<ZdDbObjectId> failingOpens;
};

ObjectRegistry& registry() {
  static ObjectRegistry r;
  return r;
}

std::atomic<long> gOpenAccesses{0};
std::atomic<long> gLiveIterators{0};
std::atomic<bool> gFailNextIterator{false};

ZdDbObject* lookUp(ZdDbObjectId id) {
  ObjectRegistry& r = registry();
  std::lock_guard lock(r.mutex);
  const auto it = r.objects.find(id.value());
  return it == r.objects.end() ? nullptr : it->second;
}

bool openFails(ZdDbObjectId id) {
  ObjectRegistry& r = registry();
  std::lock_guard lock(r.mutex);
  return r.failingOpens.count(id) > 0;
}

}  // namespace

// Opening and closing go through here, so the counts stay right.
struct ZdDbObjectAccess {
  static Zeda::ErrorStatus open(ZdDbObject* object, ZdDb::OpenMode mode) {
    if (object->mWriter) return Zeda::eWasOpenForWrite;
    if (mode == ZdDb::kForWrite) {
      if (object->mReaders > 0) return Zeda::eWasOpenForRead;
      object->mWriter = true;
    } else {
      ++object->mReaders;
    }
    ++gOpenAccesses;
    return Zeda::eOk;
  }
  static void downgrade(ZdDbObject* object, bool toRead) {
    object->mWriter = !toRead;
    object->mReaders += toRead ? 1 : -1;
  }
};

Zeda::ErrorStatus ZdDbObject::close() {
  if (mWriter) {
    mWriter = false;
  } else if (mReaders > 0) {
    --mReaders;
  } else {
    return Zeda::eNotOpenForRead;
  }
  --gOpenAccesses;
  return Zeda::eOk;
}

ZdDbObjectIterator::ZdDbObjectIterator(const ZdDbDatabase* database, std::vector<ZdDbObjectId> ids, bool skipErased)
    : mDatabase(database), mIds(std::move(ids)) {
  ++gLiveIterators;
  start(true, skipErased);
}

ZdDbObjectIterator::~ZdDbObjectIterator() { --gLiveIterators; }

bool ZdDbObjectIterator::skip(std::size_t position) const {
  const ZdDbObject* object = mDatabase->objectAt(mIds[position]);
  return !object || object->isErased();
}

void ZdDbObjectIterator::step(bool backwards, bool skipErased) {
  do {
    mPosition = backwards ? (mPosition == 0 ? mIds.size() : mPosition - 1) : mPosition + 1;
  } while (skipErased && !done() && skip(mPosition));
}

void ZdDbObjectIterator::start(bool atBeginning, bool skipErased) {
  mPosition = atBeginning ? 0 : (mIds.empty() ? 0 : mIds.size() - 1);
  if (skipErased && !done() && skip(mPosition)) step(!atBeginning, true);
}

ZdDbObjectIterator* ZdDbBlockReference::attributeIterator() const {
  if (gFailNextIterator.exchange(false)) return nullptr;
  return new ZdDbObjectIterator(database(), mAttributes, true);
}

ZdDbObjectIterator* ZdDbBlockTableRecord::newEntityIterator(bool atBeginning, bool skipErased) const {
  if (gFailNextIterator.exchange(false)) return nullptr;
  auto* iterator = new ZdDbObjectIterator(database(), mEntities, skipErased);
  iterator->start(atBeginning, skipErased);
  return iterator;
}

Zeda::ErrorStatus ZdDbBlockTableRecord::getName(ZdString& name) const {
  name.assign(mName.c_str());
  return Zeda::eOk;
}

ZdDbDatabase::ZdDbDatabase(bool, bool) {
  mModelSpace = blockTableRecordId(u"*Model_Space", true);
  mPaperSpace = blockTableRecordId(u"*Paper_Space", true);
}

ZdDbDatabase::~ZdDbDatabase() {
  ObjectRegistry& r = registry();
  std::lock_guard lock(r.mutex);
  for (const auto& [id, object] : mObjects) r.objects.erase(id.value());
}

ZdDbObjectId ZdDbDatabase::addObject(std::unique_ptr<ZdDbObject> object, ZdDbObjectId owner, ZdDbHandle handle) {
  ObjectRegistry& r = registry();
  std::lock_guard lock(r.mutex);
  if (handle.isNull() || mHandles.count(handle)) handle = ZdDbHandle(mNextHandle);
  mNextHandle = std::max(mNextHandle, handle.value() + 1);
  const ZdDbObjectId id(r.nextId++);
  object->mDatabase = this;
  object->mId = id;
  object->mHandle = handle;
  object->mOwner = owner;
  r.objects[id.value()] = object.get();
  mHandles[handle] = id;
  mObjects[id] = std::move(object);
  return id;
}

ZdDbObjectId ZdDbDatabase::appendEntity(ZdDbObjectId block, std::unique_ptr<ZdDbEntity> entity, ZdDbHandle handle) {
  auto* record = dynamic_cast<ZdDbBlockTableRecord*>(objectAt(block));
  if (!record) return {};
  const ZdDbObjectId id = addObject(std::move(entity), block, handle);
  record->appendEntityId(id);
  return id;
}

ZdDbObjectId ZdDbDatabase::blockTableRecordId(const std::u16string& name, bool create) {
  for (const ZdDbObjectId id : mBlocks)
    if (CrtEqualNoCase(static_cast<ZdDbBlockTableRecord*>(objectAt(id))->name(), name)) return id;
  if (!create) return {};
  mBlocks.push_back(addObject(std::make_unique<ZdDbBlockTableRecord>(name)));
  return mBlocks.back();
}

ZdDbObjectId ZdDbDatabase::getObjectId(ZdDbHandle handle) const {
  const auto it = mHandles.find(handle);
  return it == mHandles.end() ? ZdDbObjectId() : it->second;
}

ZdDbObject* ZdDbDatabase::objectAt(ZdDbObjectId id) const {
  const auto it = mObjects.find(id);
  return it == mObjects.end() ? nullptr : it->second.get();
}

Zeda::ErrorStatus zddbOpenObject(ZdDbObject*& object, ZdDbObjectId id, ZdDb::OpenMode mode, bool openErased) {
  object = nullptr;
  if (id.isNull()) return Zeda::eNullObjectId;
  ZdDbObject* found = lookUp(id);
  if (!found) return Zeda::eUnknownHandle;
  if (openFails(id)) return Zeda::eWasOpenForWrite;
  if (found->isErased() && !openErased) return Zeda::eWasErased;
  const Zeda::ErrorStatus status = ZdDbObjectAccess::open(found, mode);
  if (status == Zeda::eOk) object = found;
  return status;
}

Zeda::ErrorStatus accessZdDbObjectForRead(ZdDbObject*& object, ZdDbObjectId id, const ZdRxClass* cls,
                                          bool& wasOpened, bool& wasWritable, bool openErased) {
  object = nullptr;
  wasOpened = wasWritable = false;
  if (id.isNull()) return Zeda::eNullObjectId;
  ZdDbObject* found = lookUp(id);
  if (!found) return Zeda::eUnknownHandle;
  if (openFails(id)) return Zeda::eWasOpenForWrite;
  if (found->isErased() && !openErased) return Zeda::eWasErased;
  if (cls && !found->isKindOf(cls)) return Zeda::eWrongObjectType;
  if (found->isWriteEnabled()) {
    ZdDbObjectAccess::downgrade(found, true);
    wasWritable = true;
  } else if (!found->isReadEnabled()) {
    ZdDbObjectAccess::open(found, ZdDb::kForRead);
    wasOpened = true;
  }
  object = found;
  return Zeda::eOk;
}

Zeda::ErrorStatus revertZdDbObjectFromWrite(ZdDbObject* object, bool wasWritable) {
  if (object && wasWritable) ZdDbObjectAccess::downgrade(object, false);
  return Zeda::eOk;
}

namespace zd_testing {

long openObjectCount() noexcept { return gOpenAccesses.load(); }
long liveObjectIterators() noexcept { return gLiveIterators.load(); }

void failOpenOf(ZdDbObjectId id) {
  ObjectRegistry& r = registry();
  std::lock_guard lock(r.mutex);
  r.failingOpens.insert(id);
}

void failNextObjectIterator() noexcept { gFailNextIterator = true; }

void clearDatabaseFaults() {
  ObjectRegistry& r = registry();
  std::lock_guard lock(r.mutex);
  r.failingOpens.clear();
  gFailNextIterator = false;
}

}  // namespace zd_testing
