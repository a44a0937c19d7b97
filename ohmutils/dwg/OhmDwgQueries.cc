// The drawing questions of OhmDwgUtils: open or not, which database, which
// layouts, which classified blocks, how a handle reads. Each opens what it
// reads and ends that access itself; callers get back only documents and
// databases the host owns, names, and addresses of closed objects.
#include <map>
#include <memory>
#include <new>

#include "mfc/CString.h"
#include "ohmutils/dwg/OhmDwgReadAccess_internal.h"
#include "ohmutils/dwg/OhmDwgUtils.h"
#include "zd/db/ZdDbDatabase.h"

namespace {

// Closes an object opened with zddbOpenObject when the scope ends.
struct CloseOnExit {
  ZdDbObject* object;
  ~CloseOnExit() {
    if (object) object->close();
  }
};

// Layout names by tab order, a later layout of one tab order replacing the
// earlier. Layouts that can't be read are passed over.
std::map<std::int32_t, ZdString> layoutsByTabOrder(const ZdDbDatabase& database) {
  std::map<std::int32_t, ZdString> byTabOrder;
  ZdDbDictionary* dictionary = nullptr;
  if (database.getLayoutDictionary(dictionary, ZdDb::kForRead) != Zeda::eOk || !dictionary) return byTabOrder;
  const CloseOnExit closeDictionary{dictionary};
  const std::unique_ptr<ZdDbDictionaryIterator> iterator(dictionary->newIterator());
  if (!iterator) return byTabOrder;
  for (; !iterator->done(); iterator->next()) {
    const ZdString name(iterator->name());
    if (name.isEmpty() || name.compareNoCase(u"Model") == 0) continue;
    const ohm_internal::ReadAccess layout(iterator->objectId(), ZdDbLayout::desc());
    if (layout) byTabOrder[layout.get<ZdDbLayout>()->getTabOrder()] = name;
  }
  return byTabOrder;
}

// Adds the block references of `type` among the entities of one space record.
Zeda::ErrorStatus scanSpace(const ZdDbBlockTable& table, const char16_t* spaceName, OhmDwgUtils::EntityType type,
                            OhmDwgUtils::BlockMap& blocks) {
  ZdDbObjectId recordId;
  Zeda::ErrorStatus status = table.getIdAt(spaceName, recordId, false);
  if (status != Zeda::eOk) return status;
  ZdDbObject* object = nullptr;
  status = zddbOpenObject(object, recordId, ZdDb::kForRead, false);
  if (status != Zeda::eOk) return status;
  const CloseOnExit closeRecord{object};
  if (!object->isKindOf(ZdDbBlockTableRecord::desc())) return Zeda::eWrongObjectType;
  ZdDbBlockTableRecordIterator* rawIterator = nullptr;
  status = static_cast<ZdDbBlockTableRecord*>(object)->newIterator(rawIterator, true, true);
  if (status != Zeda::eOk) return status;
  const std::unique_ptr<ZdDbBlockTableRecordIterator> iterator(rawIterator);
  for (; !iterator->done(); iterator->step(true, true)) {
    ZdDbEntity* entity = nullptr;
    if (iterator->getEntity(entity, ZdDb::kForRead, false) != Zeda::eOk) continue;
    const CloseOnExit closeEntity{entity};
    ZdDbObjectId id;
    if (entity->isErased() || iterator->getEntityId(id) != Zeda::eOk) continue;
    if (entity->isKindOf(ZdDbBlockReference::desc()) && OhmDwgUtils::getOhmObjectType(entity) == type) {
      blocks[id] = entity;
    }
  }
  return Zeda::eOk;
}

}  // namespace

bool OhmDwgUtils::isDrawingOpen(const char16_t* fileName, ZdApDocument** document) {
  if (!fileName) return false;
  CString name(fileName);
  name.Replace(u"/", u"\\");
  const std::unique_ptr<ZdApDocumentIterator> iterator(zdDocManagerPtr()->newZdApDocumentIterator());
  if (!iterator) return false;
  for (; !iterator->done(); iterator->step()) {
    ZdApDocument* candidate = iterator->document();
    if (!candidate || name.CollateNoCase(candidate->fileName()) != 0) continue;
    if (document) *document = candidate;
    return true;
  }
  return false;
}

bool OhmDwgUtils::getOpenedDwgDatabase(const ZdString& fileName, ZdDbDatabase** database) {
  if (!database) return false;
  *database = nullptr;
  ZdApDocument* document = nullptr;
  if (isDrawingOpen(fileName.kwszPtr(), &document)) *database = document->database();
  return *database != nullptr;
}

bool OhmDwgUtils::getAllLayoutNames(ZdDbDatabase* database, LayoutList& layouts) {
  layouts.removeAll();
  if (!database) return false;
  for (const auto& [tabOrder, name] : layoutsByTabOrder(*database)) layouts.append(name);
  return !layouts.isEmpty();
}

// A drawing open in the host is read from memory, unsaved layouts included;
// only a drawing that isn't open is read from disk.
bool OhmDwgUtils::getAllLayoutNames(const ZdString& fileName, LayoutList& layouts) {
  ZdDbDatabase* database = nullptr;
  std::unique_ptr<ZdDbDatabase> temporary;
  if (!getOpenedDwgDatabase(fileName, &database)) {
    temporary.reset(new (std::nothrow) ZdDbDatabase(false, true));
    if (temporary && temporary->readDwgFile(fileName.kwszPtr(), 1, false, nullptr) != Zeda::eOk) return false;
    database = temporary.get();
  }
  return getAllLayoutNames(database, layouts);
}

// Only the two spaces are scanned; blocks nested in other block definitions
// are not listed. The map keeps what the first space gave if the second fails.
Zeda::ErrorStatus OhmDwgUtils::getBlocks(const char16_t* fileName, BlockMap& blocks, EntityType type, char16_t*) {
  blocks.clear();
  ZdDbDatabase* database = nullptr;
  if (!getOpenedDwgDatabase(ZdString(fileName), &database)) return Zeda::eDrawingNotOpen;
  ZdDbBlockTable* table = nullptr;
  if (database->getSymbolTable(table, ZdDb::kForRead) != Zeda::eOk || !table) return Zeda::eOk;
  const CloseOnExit closeTable{table};
  for (const char16_t* space : {u"*Paper_Space", u"*Model_Space"}) {
    const Zeda::ErrorStatus status = scanSpace(*table, space, type, blocks);
    if (status != Zeda::eOk) return status;
  }
  return Zeda::eOk;
}

ZdString OhmDwgUtils::getOhmHandleString(const ZdDbHandle& handle) {
  if (handle.isNull()) return ZdString();
  return ZdString(u"h=").concat(ZdString(handle));
}
