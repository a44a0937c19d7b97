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

#include <functional>
#include <map>
#include <memory>
#include <memory_resource>
#include <string>
#include <unordered_map>
#include <vector>

#include "OhmPlatformExport.h"
#include "zd/db/ZdDbBlockTableRecord.h"
#include "zd/db/ZdDbDictionary.h"
#include "zd/db/ZdDbObject.h"
#include "zd/db/ZdDbSymbolTable.h"

OHM_PLATFORM_API_BEGIN

class ZdDbDatabase {
 public:
  // An empty database with model and paper space; with `buildDefaultDrawing`
  // also the layouts "Model" (tab 0) and "Layout1" (tab 1). `noDocument` is
  // the host's and not used.
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
  // Raises the next handle to at least `seed` (a drawing file's $HANDSEED).
  void raiseHandseed(ZdDbHandle seed) noexcept;
  // Gives the object `handle`, as a drawing file names it; an object that
  // held it moves to the next free handle. False (nothing changed) for an
  // unknown id or a null handle.
  bool setObjectHandle(ZdDbObjectId id, ZdDbHandle handle);
  // Exchanges every object and drawing value with `other`; ids stay with
  // their objects. How a drawing read in full replaces what a database held.
  void swapContents(ZdDbDatabase& other) noexcept;
  // Keeps the text of the drawing file that the objects' kept groups view
  // (ZdDbObject::keptDxfGroups); it lives as long as the database holds them.
  const std::string& keepSourceText(std::string text);
  // How the xdata of objects read from a file (ZdDbObject::setXDataAsRead)
  // becomes a value chain: the reader of the file sets it. The chain is the
  // caller's; null when it can't be made.
  using XDataDecoder = std::function<ZdValueNode*(std::string_view raw)>;
  void setXDataDecoder(XDataDecoder decoder) { mXDataDecoder = std::move(decoder); }
  ZdValueNode* decodeXData(std::string_view raw) const { return mXDataDecoder ? mXDataDecoder(raw) : nullptr; }
  // The descriptor of a class known by name only that this database's
  // objects use, made once per database under `parent` and freed with it,
  // so that the classes a file invents do not outlive its drawing.
  const ZdRxClass* classNamed(const std::u16string& name, const ZdRxClass* parent);
  // The parts of the drawing file that no object of the database stands for,
  // as views into the kept text, for a writer of the same version to write
  // back: the header's groups, the CLASSES section's records, each table
  // whole from TABLE to ENDTAB in file order (the view empty for a table the
  // writer makes: the block records and the applications), the named object
  // dictionary's record, and the records of the other objects.
  struct KeptDxfParts {
    std::string_view header;
    std::string_view classes;
    std::vector<std::pair<std::string, std::string_view>> tables;
    std::string_view rootDictionary;
    std::vector<std::string_view> objects;
  };
  KeptDxfParts& keptDxfParts() noexcept { return mKeptDxfParts; }
  const KeptDxfParts& keptDxfParts() const noexcept { return mKeptDxfParts; }
  // Makes room for `count` objects in all, so that adding them does not rehash.
  void reserveObjects(std::size_t count) { mHandles->ids.reserve(count); }

  // The block table, opened in `mode`: the status of zddbOpenObject.
  Zeda::ErrorStatus getSymbolTable(ZdDbBlockTable*& table, ZdDb::OpenMode mode) const;
  Zeda::ErrorStatus getBlockTable(ZdDbBlockTable*& table, ZdDb::OpenMode mode) const {
    return getSymbolTable(table, mode);
  }
  // The layout dictionary, opened in `mode`: the status of zddbOpenObject.
  Zeda::ErrorStatus getLayoutDictionary(ZdDbDictionary*& dictionary, ZdDb::OpenMode mode) const;
  ZdDbObjectId blockTableId() const noexcept { return mBlockTable; }
  ZdDbObjectId layoutDictionaryId() const noexcept { return mLayoutDictionary; }
  // Adds a layout of that name and tab order, with the block record that
  // holds its entities; its id.
  ZdDbObjectId addLayout(const std::u16string& name, std::int32_t tabOrder, ZdDbObjectId block);

  // The drawing file's version ("AC1032", ...) and code page ("ANSI_1252",
  // ...); those of the file last read, or of a new drawing.
  const std::u16string& dwgVersion() const noexcept { return mVersion; }
  void setDwgVersion(std::u16string version) { mVersion = std::move(version); }
  const std::u16string& codePage() const noexcept { return mCodePage; }
  void setCodePage(std::u16string codePage) { mCodePage = std::move(codePage); }

  // Reads a DXF file (Windows-form or POSIX name) in place of what the
  // database held. eOk; eFileNotFound, eFileAccessErr, eBadDxfFile (the
  // database as it was) otherwise. `shareMode`, `allowCPConversion` and
  // `password` are the host's and not used.
  Zeda::ErrorStatus readDwgFile(const char16_t* fileName, int shareMode = 1, bool allowCPConversion = false,
                                const char16_t* password = nullptr);
  // Writes the database as an ASCII DXF file of `version` (an $ACADVER value,
  // empty: dwgVersion()): AC1009 (R12) and AC1012 to AC1032. It is written
  // beside the file and renamed over it. eOk; eFileAccessErr when it can't be
  // written, eInvalidInput for a version the writer doesn't know or a null
  // name, eOutOfMemory when the layout dictionary can't be walked.
  Zeda::ErrorStatus dxfOut(const char16_t* fileName, const std::u16string& version = u"") const;

 private:
  // Objects live in slabs of consecutive ids that the database owns, so an
  // id finds its object by arithmetic and freeing walks arrays.
  struct Slab;
  struct HandleHash {
    std::size_t operator()(ZdDbHandle handle) const noexcept { return std::hash<std::uint64_t>()(handle.value()); }
  };
  Slab& slabWithRoom();
  std::vector<std::unique_ptr<Slab>> mSlabs;
  std::unordered_map<std::uint64_t, Slab*> mSlabByIndex;
  // Each handle to its object's id. The nodes come from a pool of the
  // table's own, so a drawing's table goes in a few large frees, not one
  // free per object; on the heap, so that swapping contents swaps the pool too.
  struct HandleTable {
    std::pmr::unsynchronized_pool_resource pool;
    std::pmr::unordered_map<ZdDbHandle, ZdDbObjectId, HandleHash> ids{&pool};
  };
  std::unique_ptr<HandleTable> mHandles = std::make_unique<HandleTable>();
  std::vector<ZdDbObjectId> mBlocks;
  ZdDbObjectId mModelSpace;
  ZdDbObjectId mPaperSpace;
  ZdDbObjectId mBlockTable;
  ZdDbObjectId mLayoutDictionary;
  std::uint64_t mNextHandle = 0x20;
  std::u16string mVersion = u"AC1032";
  std::u16string mCodePage = u"ANSI_1252";
  // On the heap, so views into it stay valid when the contents are swapped.
  std::unique_ptr<std::string> mSourceText = std::make_unique<std::string>();
  XDataDecoder mXDataDecoder;
  std::map<std::u16string, std::unique_ptr<ZdRxClass>> mOwnClasses;
  KeptDxfParts mKeptDxfParts;
};

// Opens the object for read or write. eOk and the object; eNullObjectId,
// eUnknownHandle (no such object), eWasErased (erased and not asked for),
// eWasOpenForWrite / eWasOpenForRead (conflicting access) with null.
Zeda::ErrorStatus zddbOpenObject(ZdDbObject*& object, ZdDbObjectId id, ZdDb::OpenMode mode, bool openErased = false);

// Read access to the object of class `cls` (or derived), also when it is open
// elsewhere: `wasOpened` says this call opened it (close it at the end),
// `wasWritable` that it was open for write (give that back with
// revertZdDbObjectFromWrite). eOk, or the failure of zddbOpenObject, or
// eWrongObjectType, with null and the object as it was.
Zeda::ErrorStatus accessZdDbObjectForRead(ZdDbObject*& object, ZdDbObjectId id, const ZdRxClass* cls, bool& wasOpened,
                                          bool& wasWritable, bool openErased = false);

// The object that accessZdDbObjectForRead(id, cls) would give, found without
// opening it or counting an access: null exactly where that access fails. The
// object is searched in `holder` first, without a lock, and in every other
// database of the process after it. For reading a few fields on the
// database's thread while nothing opens, changes or erases the object;
// nothing may be written through it.
const ZdDbObject* readableZdDbObject(ZdDbObjectId id, const ZdRxClass* cls, const ZdDbDatabase* holder = nullptr,
                                     bool openErased = false);

// Gives write access back to an object that accessZdDbObjectForRead found
// open for write; nothing otherwise. eOk.
Zeda::ErrorStatus revertZdDbObjectFromWrite(ZdDbObject* object, bool wasWritable);

OHM_PLATFORM_API_END
