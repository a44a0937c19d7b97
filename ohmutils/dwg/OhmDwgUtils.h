// OhmDwgUtils: read-only access to drawing objects, all static. Every fact
// the suite keeps on a drawing entity stands in its xdata or in the
// attributes of a block reference; these are the lookups through which all
// of it is read, the classification of block references into the suite's
// kinds, and the questions asked of drawings (open or not, layouts, blocks).
// Each operation opens what it reads itself and ends every access, deletes
// every iterator and releases every value chain before it returns; nothing
// is cached between calls.
//
// Thread safety: the lookups and the classification keep no state of their
// own; calls on distinct drawings may run on several threads at once. The
// host's documents (isDrawingOpen, getOpenedDwgDatabase and what takes a file
// name) belong to its main thread.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "ohmutils/OhmUtilsExport.h"
#include "zd/ZdArray.h"
#include "zd/ZdString.h"
#include "zd/app/ZdDocManager.h"
#include "zd/db/ZdDbBlockReference.h"
#include "zd/db/ZdDbObject.h"

class OHMUTILS_EXPORT OhmDwgUtils {
 public:
  // The suite's kinds of drawing objects; the numbers are part of the boundary.
  enum EntityType : std::int32_t {
    EntityUnknown = 0,
    EntityFP = 1,
    EntityTag1 = 2,
    EntityTag2 = 3,
    EntityHaSWireNo = 4,
    EntityHaDWireNo = 5,
    EntityHaS = 6,
    EntityHaD = 7,
    EntityPlcIo = 8,
    EntityWdWn = 9,
    EntityWdMlr = 10,
    EntityWdWc = 11,
    EntityFPT = 12,
    EntityNP = 13,
    EntityTagStrip = 14,
    EntityAX = 15,
    EntityTable = 16,
    EntityOneDash = 17,
    EntityOneDashStrip = 18,
  };
  // Objects found by getBlocks: id -> address at the time of the scan (closed).
  using BlockMap = std::map<ZdDbObjectId, ZdDbEntity*>;
  using LayoutList = ZdArray<ZdString, ZdArrayObjectCopyReallocator<ZdString>>;

  // The class has no data; assignment does nothing and gives this object.
  OhmDwgUtils& operator=(const OhmDwgUtils& other);

  // The value of the option record `appName` on `entity`: an xdata record of
  // application name (1001), control string (1002) and text (1000), in that
  // order; further items are ignored. True and the text in `value` (its old
  // content replaced); false with `value` untouched for a null entity, no
  // such xdata, or a record of another shape.
  static bool getOhmEntityXData(const ZdDbEntity* entity, const std::u16string& appName, std::u16string& value);

  // The text of the first attribute, in drawing order, whose tag matches the
  // wildcard `tagPattern` ignoring case (alternatives allowed). A borrowed
  // pointer into the attribute, valid while the drawing is loaded and the
  // attribute unchanged; an empty text is non-null. Null for a null argument,
  // no attribute iterator, or no match; attributes that can't be opened or
  // have no tag are passed over.
  static const char16_t* getAttributeValue(const ZdDbBlockReference* blockReference, const char16_t* tagPattern);

  // The kind of an entity from its exact class, block name, attributes and
  // xdata; the first test that hits decides. EntityUnknown for null, other
  // classes, a block definition that can't be opened, or no hit.
  static EntityType getOhmObjectType(const ZdDbEntity* entity);

  // Whether a document of the host has that file name (case ignored, "/"
  // read as "\"); the document in `document` when it isn't null. False for
  // a null name or no document iterator, `document` untouched.
  static bool isDrawingOpen(const char16_t* fileName, ZdApDocument** document = nullptr);
  // The database of the open document of that name (owned by the document).
  // False for a null out-argument; false with null when not open or the
  // document has no database.
  static bool getOpenedDwgDatabase(const ZdString& fileName, ZdDbDatabase** database);
  // The paper layouts of a drawing in tab order ("Model" left out), from the
  // open document or else read from disk. False when none is listed; when
  // the file can't be read, false with `layouts` as it was.
  static bool getAllLayoutNames(const ZdString& fileName, LayoutList& layouts);
  // The same for a database; `layouts` emptied first. False for null.
  static bool getAllLayoutNames(ZdDbDatabase* database, LayoutList& layouts);
  // The block references of kind `type` in paper space and model space of an
  // open drawing, into `blocks` (emptied first). eOk; eDrawingNotOpen (364)
  // when the drawing isn't open; a space's failing status, with what was
  // found so far. `unused` is not read.
  static Zeda::ErrorStatus getBlocks(const char16_t* fileName, BlockMap& blocks, EntityType type,
                                     char16_t* unused = nullptr);
  // "h=" and the handle's digits; empty for the null handle.
  static ZdString getOhmHandleString(const ZdDbHandle& handle);
};
