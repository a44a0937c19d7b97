// ZdDbObject: an object of a drawing database, owned by its database from the
// moment it is added until the database goes. Callers reach it by id through
// zddbOpenObject (ZdDbDatabase.h) and end each access with close(); the host
// counts objects left open (ZdDbDatabase_testing.h).
//
// Open state: any number of readers, or one writer. An object may be erased;
// erased objects stay in the database and open only when asked to.
//
// Xdata: per application name, items in order, kept as a value chain whose
// first node is the application name (type 1001).
//
// ZdDbEntity is the base of every drawing entity; entities of classes this
// build knows only by name are plain ZdDbEntity objects with their own
// descriptor (ZdRxClass::forName), so classification still sees their class.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "OhmPlatformExport.h"
#include "zd/ZdErrorStatus.h"
#include "zd/ZdValueNode.h"
#include "zd/db/ZdDbObjectId.h"
#include "zd/db/ZdRxClass.h"

OHM_PLATFORM_API_BEGIN

class ZdDbDatabase;

class ZdDbObject {
 public:
  virtual ~ZdDbObject();
  ZdDbObject(const ZdDbObject&) = delete;
  ZdDbObject& operator=(const ZdDbObject&) = delete;

  static const ZdRxClass* desc();
  // The object's class: its own descriptor, or the one given at construction.
  const ZdRxClass* isA() const noexcept { return mClass; }
  bool isKindOf(const ZdRxClass* cls) const noexcept { return mClass->isDerivedFrom(cls); }

  ZdDbObjectId objectId() const noexcept { return mId; }
  ZdDbHandle objectHandle() const noexcept { return mHandle; }
  void getZdDbHandle(ZdDbHandle& handle) const noexcept { handle = mHandle; }
  ZdDbObjectId ownerId() const noexcept { return mOwner; }
  ZdDbDatabase* database() const noexcept { return mDatabase; }

  bool isErased() const noexcept { return mErased; }
  // Erases (or, with false, brings back) the object. REQUIRES: open for write.
  Zeda::ErrorStatus erase(bool erasing = true);
  bool isReadEnabled() const noexcept { return mReaders > 0 || mWriter; }
  bool isWriteEnabled() const noexcept { return mWriter; }
  // Ends one access (a read or the write). eNotOpenForRead when not open.
  Zeda::ErrorStatus close();

  // A new chain with the xdata of `appName` (null: of every application, in
  // the order they were set); the caller releases it. Null when there is none.
  ZdValueNode* xData(const char16_t* appName = nullptr) const;
  // Whether the object has xdata of `appName` (null: of any application),
  // which xData would give as a chain, without making one. False when xdata
  // read from a file can't be decoded.
  bool hasXData(const char16_t* appName) const;
  // Sets the xdata of the applications in `chain`: each 1001 node starts one
  // application's part, which replaces what that application had; a part of
  // the 1001 node alone removes it. The chain stays the caller's.
  Zeda::ErrorStatus setXData(const ZdValueNode* chain);
  // Sets the xdata as a drawing file holds it: `raw`, a view into the text
  // that the database keeps, is decoded by the database on first use
  // (ZdDbDatabase::setXDataDecoder). Unlike setXData, a part of the 1001
  // node alone stays, as that application's xdata without items.
  void setXDataAsRead(std::string_view raw) noexcept { mXDataText = raw; }

  // The groups of the drawing file's record that the database does not model
  // (geometry, styles, ...), raw, as a view into the text that the database
  // keeps (ZdDbDatabase::keepSourceText); empty for an object made in code.
  std::string_view keptDxfGroups() const noexcept { return mKeptDxfGroups; }
  void setKeptDxfGroups(std::string_view groups) noexcept { mKeptDxfGroups = groups; }

 protected:
  explicit ZdDbObject(const ZdRxClass* cls) : mClass(cls) {}

 private:
  friend class ZdDbDatabase;
  friend struct ZdDbObjectAccess;

  struct XDataPart {
    std::u16string app;
    std::shared_ptr<ZdValueNode> chain;  // the application's nodes, 1001 first
  };

  const ZdRxClass* mClass;
  ZdDbDatabase* mDatabase = nullptr;
  ZdDbObjectId mId;
  ZdDbHandle mHandle;
  ZdDbObjectId mOwner;
  bool mErased = false;
  int mReaders = 0;
  bool mWriter = false;
  // Decodes the xdata as read into mXData; false (nothing changed) when it can't.
  bool decodeXDataAsRead() const;

  mutable std::vector<XDataPart> mXData;
  mutable std::string_view mXDataText;  // xdata as read, not yet decoded
  std::string_view mKeptDxfGroups;
};

class ZdDbEntity : public ZdDbObject {
 public:
  static const ZdRxClass* desc();
  // An entity of class `cls` (a ZdDbEntity class known by name only).
  explicit ZdDbEntity(const ZdRxClass* cls = desc()) : ZdDbObject(cls) {}
  // The layer's name.
  const std::u16string& layer() const noexcept { return mLayer; }
  void setLayer(std::u16string layer) { mLayer = std::move(layer); }

 private:
  std::u16string mLayer = u"0";
};

OHM_PLATFORM_API_END
