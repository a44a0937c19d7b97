#include "zd/db/ZdDbDatabase.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <mutex>
#include <set>
#include <unordered_map>

#include "win/CrtChar.h"
#include "zd/db/ZdDbBlockReference.h"
#include "zd/db/ZdDbDatabase_testing.h"

namespace {

constexpr unsigned kSlabBits = 12;
constexpr std::uint64_t kSlabSize = std::uint64_t(1) << kSlabBits;

std::uint64_t slabIndexOf(ZdDbObjectId id) { return (id.value() - 1) >> kSlabBits; }
std::size_t slotOf(ZdDbObjectId id) { return static_cast<std::size_t>((id.value() - 1) & (kSlabSize - 1)); }

}  // namespace

// A run of kSlabSize ids, the first `used` of them given to objects.
struct ZdDbDatabase::Slab {
  std::uint64_t index = 0;
  std::size_t used = 0;
  std::array<std::unique_ptr<ZdDbObject>, kSlabSize> objects;
};

namespace {

// Every slab of every database, by index: ids are unique in the process.
struct ObjectRegistry {
  std::mutex mutex;
  std::unordered_map<std::uint64_t, const std::array<std::unique_ptr<ZdDbObject>, kSlabSize>*> slabs;
  std::uint64_t nextSlab = 0;
  std::set<ZdDbObjectId> failingOpens;
};

ObjectRegistry& registry() {
  static ObjectRegistry r;
  return r;
}

std::atomic<long> gOpenAccesses{0};
std::atomic<long> gLiveIterators{0};
std::atomic<int> gFailingIterators{0};

// Takes one planned iterator failure, if any is left.
bool iteratorFails() {
  int left = gFailingIterators.load();
  while (left > 0 && !gFailingIterators.compare_exchange_weak(left, left - 1)) {
  }
  return left > 0;
}

ZdDbObject* lookUp(ZdDbObjectId id) {
  if (id.isNull()) return nullptr;
  ObjectRegistry& r = registry();
  std::lock_guard lock(r.mutex);
  const auto it = r.slabs.find(slabIndexOf(id));
  return it == r.slabs.end() ? nullptr : (*it->second)[slotOf(id)].get();
}

std::atomic<bool> gAnyFailingOpen{false};

bool openFails(ZdDbObjectId id) {
  if (!gAnyFailingOpen.load(std::memory_order_relaxed)) return false;
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

ZdDbObjectIterator::ZdDbObjectIterator(const ZdDbDatabase* database, const std::vector<ZdDbObjectId>& ids,
                                       bool skipErased)
    : mDatabase(database), mIds(ids) {
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
  if (iteratorFails()) return nullptr;
  return new ZdDbObjectIterator(database(), mAttributes, true);
}

// --- block records and their iterator -------------------------------------------

ZdDbBlockTableRecordIterator::ZdDbBlockTableRecordIterator(const ZdDbDatabase* database,
                                                           const std::vector<ZdDbObjectId>& ids)
    : mDatabase(database), mIds(ids) {
  ++gLiveIterators;
}

ZdDbBlockTableRecordIterator::~ZdDbBlockTableRecordIterator() { --gLiveIterators; }

bool ZdDbBlockTableRecordIterator::isErasedAt(std::size_t position) const {
  const ZdDbObject* object = mDatabase->objectAt(mIds[position]);
  return !object || object->isErased();
}

void ZdDbBlockTableRecordIterator::start(bool atBeginning, bool skipDeleted) noexcept {
  mPosition = atBeginning ? 0 : (mIds.empty() ? 0 : mIds.size() - 1);
  if (skipDeleted && !done() && isErasedAt(mPosition)) step(atBeginning, true);
}

void ZdDbBlockTableRecordIterator::step(bool forward, bool skipDeleted) noexcept {
  do {
    mPosition = forward ? mPosition + 1 : (mPosition == 0 ? mIds.size() : mPosition - 1);
  } while (skipDeleted && !done() && isErasedAt(mPosition));
}

Zeda::ErrorStatus ZdDbBlockTableRecordIterator::getEntity(ZdDbEntity*& entity, ZdDb::OpenMode mode,
                                                          bool openErasedEntity) const {
  entity = nullptr;
  if (done()) return Zeda::eIteratorDone;
  ZdDbObject* object = nullptr;
  const Zeda::ErrorStatus status = zddbOpenObject(object, mIds[mPosition], mode, openErasedEntity);
  if (status != Zeda::eOk) return status;
  entity = dynamic_cast<ZdDbEntity*>(object);
  if (entity) return Zeda::eOk;
  object->close();
  return Zeda::eWrongObjectType;
}

Zeda::ErrorStatus ZdDbBlockTableRecordIterator::getEntityId(ZdDbObjectId& id) const {
  id = done() ? ZdDbObjectId() : mIds[mPosition];
  return done() ? Zeda::eIteratorDone : Zeda::eOk;
}

Zeda::ErrorStatus ZdDbBlockTableRecord::newIterator(ZdDbBlockTableRecordIterator*& iterator, bool atBeginning,
                                                    bool skipDeleted) const {
  iterator = nullptr;
  if (iteratorFails()) return Zeda::eOutOfMemory;
  iterator = new ZdDbBlockTableRecordIterator(database(), mEntities);
  iterator->start(atBeginning, skipDeleted);
  return Zeda::eOk;
}

// --- symbol tables and dictionaries -----------------------------------------------

bool ZdDbSymbolTable::has(const char16_t* name) const {
  ZdDbObjectId id;
  return getIdAt(name, id) == Zeda::eOk;
}

Zeda::ErrorStatus ZdDbBlockTable::getIdAt(const char16_t* name, ZdDbObjectId& id, bool getErasedRecord) const {
  id = name ? database()->blockTableRecordId(name) : ZdDbObjectId();
  const ZdDbObject* record = database()->objectAt(id);
  if (record && record->isErased() && !getErasedRecord) id = ZdDbObjectId();
  return id.isNull() ? Zeda::eKeyNotFound : Zeda::eOk;
}

ZdDbDictionaryIterator::ZdDbDictionaryIterator(std::vector<Entry> entries) : mEntries(std::move(entries)) {
  ++gLiveIterators;
}

ZdDbDictionaryIterator::~ZdDbDictionaryIterator() { --gLiveIterators; }

bool ZdDbDictionaryIterator::next() noexcept {
  if (!done()) ++mPosition;
  return !done();
}

const char16_t* ZdDbDictionaryIterator::name() const noexcept {
  return done() ? u"" : mEntries[mPosition].first.c_str();
}

ZdDbObjectId ZdDbDictionaryIterator::objectId() const noexcept {
  return done() ? ZdDbObjectId() : mEntries[mPosition].second;
}

void ZdDbDictionary::setAt(const std::u16string& name, ZdDbObjectId id) {
  for (auto& [entryName, entryId] : mEntries) {
    if (!CrtEqualNoCase(entryName, name)) continue;
    entryId = id;
    return;
  }
  mEntries.emplace_back(name, id);
}

Zeda::ErrorStatus ZdDbDictionary::getAt(const char16_t* name, ZdDbObjectId& id) const {
  id = ZdDbObjectId();
  for (const auto& [entryName, entryId] : mEntries) {
    if (name && CrtEqualNoCase(entryName, name)) {
      id = entryId;
      return Zeda::eOk;
    }
  }
  return Zeda::eKeyNotFound;
}

Zeda::ErrorStatus ZdDbDictionary::remove(const char16_t* name) {
  const auto found = std::find_if(mEntries.begin(), mEntries.end(),
                                  [&](const auto& entry) { return name && CrtEqualNoCase(entry.first, name); });
  if (found == mEntries.end()) return Zeda::eKeyNotFound;
  mEntries.erase(found);
  return Zeda::eOk;
}

ZdDbDictionaryIterator* ZdDbDictionary::newIterator() const {
  if (iteratorFails()) return nullptr;
  return new ZdDbDictionaryIterator(mEntries);
}

Zeda::ErrorStatus ZdDbLayout::getLayoutName(ZdString& name) const {
  name.assign(mName.c_str());
  return Zeda::eOk;
}

Zeda::ErrorStatus ZdDbBlockTableRecord::getName(ZdString& name) const {
  name.assign(mName.c_str());
  return Zeda::eOk;
}

// --- the database ------------------------------------------------------------------

ZdDbDatabase::ZdDbDatabase(bool buildDefaultDrawing, bool) {
  mBlockTable = addObject(std::make_unique<ZdDbBlockTable>());
  mLayoutDictionary = addObject(std::make_unique<ZdDbDictionary>());
  mModelSpace = blockTableRecordId(u"*Model_Space", true);
  mPaperSpace = blockTableRecordId(u"*Paper_Space", true);
  if (!buildDefaultDrawing) return;
  addLayout(u"Model", 0, mModelSpace);
  addLayout(u"Layout1", 1, mPaperSpace);
}

Zeda::ErrorStatus ZdDbDatabase::getSymbolTable(ZdDbBlockTable*& table, ZdDb::OpenMode mode) const {
  ZdDbObject* object = nullptr;
  const Zeda::ErrorStatus status = zddbOpenObject(object, mBlockTable, mode);
  table = static_cast<ZdDbBlockTable*>(object);
  return status;
}

Zeda::ErrorStatus ZdDbDatabase::getLayoutDictionary(ZdDbDictionary*& dictionary, ZdDb::OpenMode mode) const {
  ZdDbObject* object = nullptr;
  const Zeda::ErrorStatus status = zddbOpenObject(object, mLayoutDictionary, mode);
  dictionary = static_cast<ZdDbDictionary*>(object);
  return status;
}

ZdDbObjectId ZdDbDatabase::addLayout(const std::u16string& name, std::int32_t tabOrder, ZdDbObjectId block) {
  auto layout = std::make_unique<ZdDbLayout>();
  layout->setLayoutName(name);
  layout->setTabOrder(tabOrder);
  layout->setBlockTableRecordId(block);
  const ZdDbObjectId id = addObject(std::move(layout), mLayoutDictionary);
  static_cast<ZdDbDictionary*>(objectAt(mLayoutDictionary))->setAt(name, id);
  return id;
}

ZdDbDatabase::~ZdDbDatabase() {
  {
    ObjectRegistry& r = registry();
    std::lock_guard lock(r.mutex);
    for (const auto& slab : mSlabs) r.slabs.erase(slab->index);
  }
  // Slab by slab, in the order the objects were made.
  for (auto& slab : mSlabs) slab.reset();
}

ZdDbDatabase::Slab& ZdDbDatabase::slabWithRoom() {
  if (!mSlabs.empty() && mSlabs.back()->used < kSlabSize) return *mSlabs.back();
  auto slab = std::make_unique<Slab>();
  ObjectRegistry& r = registry();
  {
    std::lock_guard lock(r.mutex);
    slab->index = r.nextSlab++;
    r.slabs[slab->index] = &slab->objects;
  }
  mSlabByIndex[slab->index] = slab.get();
  mSlabs.push_back(std::move(slab));
  return *mSlabs.back();
}

ZdDbObjectId ZdDbDatabase::addObject(std::unique_ptr<ZdDbObject> object, ZdDbObjectId owner, ZdDbHandle handle) {
  Slab& slab = slabWithRoom();
  if (handle.isNull() || mHandles->ids.count(handle)) handle = ZdDbHandle(mNextHandle);
  mNextHandle = std::max(mNextHandle, handle.value() + 1);
  const ZdDbObjectId id((slab.index << kSlabBits) + slab.used + 1);
  object->mDatabase = this;
  object->mId = id;
  object->mHandle = handle;
  object->mOwner = owner;
  mHandles->ids.emplace(handle, id);
  slab.objects[slab.used++] = std::move(object);
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
  mBlocks.push_back(addObject(std::make_unique<ZdDbBlockTableRecord>(name), mBlockTable));
  return mBlocks.back();
}

void ZdDbDatabase::raiseHandseed(ZdDbHandle seed) noexcept { mNextHandle = std::max(mNextHandle, seed.value()); }

bool ZdDbDatabase::setObjectHandle(ZdDbObjectId id, ZdDbHandle handle) {
  ZdDbObject* object = objectAt(id);
  if (!object || handle.isNull()) return false;
  if (object->mHandle == handle) return true;
  mHandles->ids.erase(object->mHandle);
  mNextHandle = std::max(mNextHandle, handle.value() + 1);
  const auto holder = mHandles->ids.find(handle);
  if (holder != mHandles->ids.end()) {
    ZdDbObject* other = objectAt(holder->second);
    other->mHandle = ZdDbHandle(mNextHandle++);
    mHandles->ids[other->mHandle] = other->mId;
  }
  object->mHandle = handle;
  mHandles->ids[handle] = id;
  return true;
}

void ZdDbDatabase::swapContents(ZdDbDatabase& other) noexcept {
  std::swap(mSlabs, other.mSlabs);
  std::swap(mSlabByIndex, other.mSlabByIndex);
  mHandles.swap(other.mHandles);
  std::swap(mBlocks, other.mBlocks);
  std::swap(mModelSpace, other.mModelSpace);
  std::swap(mPaperSpace, other.mPaperSpace);
  std::swap(mBlockTable, other.mBlockTable);
  std::swap(mLayoutDictionary, other.mLayoutDictionary);
  std::swap(mNextHandle, other.mNextHandle);
  std::swap(mVersion, other.mVersion);
  std::swap(mCodePage, other.mCodePage);
  std::swap(mSourceText, other.mSourceText);
  std::swap(mXDataDecoder, other.mXDataDecoder);
  std::swap(mOwnClasses, other.mOwnClasses);
  std::swap(mKeptDxfParts, other.mKeptDxfParts);
  for (ZdDbDatabase* database : {this, &other})
    for (const auto& slab : database->mSlabs)
      for (std::size_t slot = 0; slot < slab->used; ++slot) slab->objects[slot]->mDatabase = database;
}

const ZdRxClass* ZdDbDatabase::classNamed(const std::u16string& name, const ZdRxClass* parent) {
  std::unique_ptr<ZdRxClass>& cls = mOwnClasses[name];
  if (!cls) cls = std::make_unique<ZdRxClass>(name, parent);
  return cls.get();
}

const std::string& ZdDbDatabase::keepSourceText(std::string text) {
  *mSourceText = std::move(text);
  return *mSourceText;
}

ZdDbObjectId ZdDbDatabase::getObjectId(ZdDbHandle handle) const {
  const auto it = mHandles->ids.find(handle);
  return it == mHandles->ids.end() ? ZdDbObjectId() : it->second;
}

ZdDbObject* ZdDbDatabase::objectAt(ZdDbObjectId id) const {
  if (id.isNull()) return nullptr;
  const auto it = mSlabByIndex.find(slabIndexOf(id));
  return it == mSlabByIndex.end() ? nullptr : it->second->objects[slotOf(id)].get();
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

Zeda::ErrorStatus accessZdDbObjectForRead(ZdDbObject*& object, ZdDbObjectId id, const ZdRxClass* cls, bool& wasOpened,
                                          bool& wasWritable, bool openErased) {
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

const ZdDbObject* readableZdDbObject(ZdDbObjectId id, const ZdRxClass* cls, const ZdDbDatabase* holder,
                                     bool openErased) {
  const ZdDbObject* found = holder ? holder->objectAt(id) : nullptr;
  if (!found) found = lookUp(id);
  if (!found || openFails(id) || (found->isErased() && !openErased)) return nullptr;
  return !cls || found->isKindOf(cls) ? found : nullptr;
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
  gAnyFailingOpen = true;
}

void failNextObjectIterator() noexcept { gFailingIterators = 1; }

void failNextObjectIterators(int count) noexcept { gFailingIterators = count; }

void clearDatabaseFaults() {
  ObjectRegistry& r = registry();
  std::lock_guard lock(r.mutex);
  r.failingOpens.clear();
  gAnyFailingOpen = false;
  gFailingIterators = 0;
}

}  // namespace zd_testing
