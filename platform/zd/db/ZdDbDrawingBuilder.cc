#include "zd/db/ZdDbDrawingBuilder.h"

#include "zd/ZdCodes.h"

ZdDbObjectId ZdDbDrawingBuilder::defineBlock(const std::u16string& name) {
  return mDatabase.blockTableRecordId(name, true);
}

ZdDbBlockReference* ZdDbDrawingBuilder::insertBlock(const std::u16string& blockName, const Attributes& attributes,
                                                    ZdDbObjectId space) {
  auto owned = std::make_unique<ZdDbBlockReference>();
  ZdDbBlockReference* reference = owned.get();
  reference->setBlockTableRecord(defineBlock(blockName));
  mDatabase.appendEntity(spaceOr(space), std::move(owned));
  for (const auto& [tag, text] : attributes) appendAttribute(*reference, tag, text);
  return reference;
}

namespace {

// Objects of classes derived from the host's, known by descriptor only.
class DerivedBlockReference : public ZdDbBlockReference {
 public:
  explicit DerivedBlockReference(const ZdRxClass* cls) : ZdDbBlockReference(cls) {}
};
class DerivedTable : public ZdDbTable {
 public:
  explicit DerivedTable(const ZdRxClass* cls) : ZdDbTable(cls) {}
};

}  // namespace

ZdDbBlockReference* ZdDbDrawingBuilder::insertDerived(const std::u16string& className, const ZdRxClass* base,
                                                      const std::u16string& blockName, ZdDbObjectId space) {
  const ZdRxClass* cls = ZdRxClass::forName(className, base);
  std::unique_ptr<ZdDbBlockReference> owned;
  if (base == ZdDbTable::desc()) {
    owned = std::make_unique<DerivedTable>(cls);
  } else {
    owned = std::make_unique<DerivedBlockReference>(cls);
  }
  ZdDbBlockReference* reference = owned.get();
  reference->setBlockTableRecord(defineBlock(blockName));
  mDatabase.appendEntity(spaceOr(space), std::move(owned));
  return reference;
}

ZdDbTable* ZdDbDrawingBuilder::addTable(ZdDbObjectId space) {
  auto owned = std::make_unique<ZdDbTable>();
  ZdDbTable* table = owned.get();
  mDatabase.appendEntity(spaceOr(space), std::move(owned));
  return table;
}

ZdDbEntity* ZdDbDrawingBuilder::addEntity(const std::u16string& className, ZdDbObjectId space) {
  auto owned = std::make_unique<ZdDbEntity>(ZdRxClass::forName(className, ZdDbEntity::desc()));
  ZdDbEntity* entity = owned.get();
  mDatabase.appendEntity(spaceOr(space), std::move(owned));
  return entity;
}

ZdDbAttribute* ZdDbDrawingBuilder::appendAttribute(ZdDbBlockReference& reference, const std::u16string& tag,
                                                   const std::u16string& text) {
  auto owned = std::make_unique<ZdDbAttribute>();
  ZdDbAttribute* attribute = owned.get();
  attribute->setTag(tag);
  attribute->setTextString(text);
  reference.appendAttributeId(mDatabase.addObject(std::move(owned), reference.objectId()));
  return attribute;
}

void ZdDbDrawingBuilder::setOptionXData(ZdDbObject& object, const std::u16string& appName,
                                        const std::u16string& value) {
  ZdValueNode* record =
      zdutBuildList(XD_APPNAME, appName.c_str(), XD_CONTROL, u"{", XD_STRING, value.c_str(), XD_CONTROL, u"}", 0);
  object.setXData(record);
  zdutRelRb(record);
}
