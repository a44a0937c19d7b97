#include "zd/db/ZdDbDatabase.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "zd/ZdCodes.h"
#include "zd/ZdString.h"
#include "zd/db/ZdDbDatabase_testing.h"
#include "zd/db/ZdDbDrawingBuilder.h"

namespace {

class ZdDbDatabaseTest : public ::testing::Test {
 protected:
  void TearDown() override { zd_testing::clearDatabaseFaults(); }
  ZdDbDatabase db;
  ZdDbDrawingBuilder build{db};
};

// Ids find their objects across slabs and databases, follow them when
// contents are swapped, and find nothing once their database is gone.
TEST_F(ZdDbDatabaseTest, IdsFindTheirObjectsUntilTheDatabaseGoes) {
  std::vector<ZdDbObjectId> ids;
  auto other = std::make_unique<ZdDbDatabase>();
  ZdDbDrawingBuilder otherBuild(*other);
  for (int i = 0; i < 5000; ++i) {  // more than one slab each, made in turns
    ids.push_back(build.addEntity(u"ZdDbLine")->objectId());
    otherBuild.addEntity(u"ZdDbCircle");
  }
  const ZdDbObjectId otherId = otherBuild.addEntity(u"ZdDbCircle")->objectId();
  for (const ZdDbObjectId id : {ids.front(), ids[4095], ids[4096], ids.back()}) {
    ZdDbObject* object = nullptr;
    ASSERT_EQ(zddbOpenObject(object, id, ZdDb::kForRead), Zeda::eOk);
    EXPECT_EQ(object, db.objectAt(id));
    EXPECT_EQ(std::u16string(object->isA()->name()), u"ZdDbLine");
    object->close();
    EXPECT_EQ(other->objectAt(id), nullptr);
  }
  db.swapContents(*other);
  EXPECT_EQ(db.objectAt(otherId)->database(), &db);
  EXPECT_EQ(other->objectAt(ids.back())->database(), other.get());
  other.reset();
  ZdDbObject* gone = nullptr;
  EXPECT_EQ(zddbOpenObject(gone, ids.back(), ZdDb::kForRead), Zeda::eUnknownHandle);
  ASSERT_EQ(zddbOpenObject(gone, otherId, ZdDb::kForRead), Zeda::eOk);
  gone->close();
}

TEST_F(ZdDbDatabaseTest, OpenModesExcludeEachOther) {
  const ZdDbObjectId id = build.insertBlock(u"COIL")->objectId();
  ZdDbObject *reader = nullptr, *second = nullptr, *writer = nullptr;
  ASSERT_EQ(zddbOpenObject(reader, id, ZdDb::kForRead), Zeda::eOk);
  ASSERT_EQ(zddbOpenObject(second, id, ZdDb::kForRead), Zeda::eOk);
  EXPECT_EQ(zddbOpenObject(writer, id, ZdDb::kForWrite), Zeda::eWasOpenForRead);
  EXPECT_EQ(writer, nullptr);
  EXPECT_EQ(zd_testing::openObjectCount(), 2);
  reader->close();
  second->close();
  ASSERT_EQ(zddbOpenObject(writer, id, ZdDb::kForWrite), Zeda::eOk);
  EXPECT_EQ(zddbOpenObject(reader, id, ZdDb::kForRead), Zeda::eWasOpenForWrite);
  EXPECT_EQ(writer->erase(), Zeda::eOk);
  writer->close();
  EXPECT_EQ(zddbOpenObject(reader, id, ZdDb::kForRead), Zeda::eWasErased);
  ASSERT_EQ(zddbOpenObject(reader, id, ZdDb::kForRead, true), Zeda::eOk);
  reader->close();
  EXPECT_EQ(reader->close(), Zeda::eNotOpenForRead);
  EXPECT_EQ(zddbOpenObject(reader, ZdDbObjectId(), ZdDb::kForRead), Zeda::eNullObjectId);
}

TEST_F(ZdDbDatabaseTest, AccessForReadLeavesTheOpenStateAsItWas) {
  const ZdDbObjectId id = build.insertBlock(u"COIL")->objectId();
  for (const int before : {-1, int{ZdDb::kForRead}, int{ZdDb::kForWrite}}) {
    SCOPED_TRACE(before);
    ZdDbObject* held = nullptr;
    if (before >= 0) {
      ASSERT_EQ(zddbOpenObject(held, id, static_cast<ZdDb::OpenMode>(before)), Zeda::eOk);
    }
    ZdDbObject* object = nullptr;
    bool wasOpened = false, wasWritable = false;
    ASSERT_EQ(accessZdDbObjectForRead(object, id, ZdDbBlockReference::desc(), wasOpened, wasWritable), Zeda::eOk);
    EXPECT_EQ(wasOpened, before < 0);
    EXPECT_EQ(wasWritable, before == ZdDb::kForWrite);
    EXPECT_FALSE(object->isWriteEnabled());
    revertZdDbObjectFromWrite(object, wasWritable);
    if (wasOpened) object->close();
    EXPECT_EQ(object->isWriteEnabled(), before == ZdDb::kForWrite);
    EXPECT_EQ(object->isReadEnabled(), before >= 0);
    if (held) held->close();
  }
  ZdDbObject* object = nullptr;
  bool wasOpened = false, wasWritable = false;
  EXPECT_EQ(accessZdDbObjectForRead(object, id, ZdDbAttribute::desc(), wasOpened, wasWritable), Zeda::eWrongObjectType);
  zd_testing::failOpenOf(id);
  EXPECT_NE(accessZdDbObjectForRead(object, id, nullptr, wasOpened, wasWritable), Zeda::eOk);
  EXPECT_EQ(object, nullptr);
}

TEST_F(ZdDbDatabaseTest, XDataIsKeptPerApplicationInOrder) {
  ZdDbEntity* entity = build.addEntity(u"ZdDbLine");
  ZdDbDrawingBuilder::setOptionXData(*entity, u"APP_A", u"first");
  ZdValueNode* two = zdutBuildList(XD_APPNAME, u"APP_B", XD_SHORT, 7, XD_APPNAME, u"APP_A", XD_STRING, u"again", 0);
  ASSERT_EQ(entity->setXData(two), Zeda::eOk);
  zdutRelRb(two);
  ZdValueNode* a = entity->xData(u"APP_A");
  ASSERT_NE(a, nullptr);
  EXPECT_EQ(zdutLength(a), 2);  // replaced, not appended
  EXPECT_EQ(std::u16string(a->rbnext->resval.rstring), u"again");
  zdutRelRb(a);
  ZdValueNode* all = entity->xData();
  EXPECT_EQ(zdutLength(all), 4);
  EXPECT_EQ(std::u16string(all->resval.rstring), u"APP_B");
  zdutRelRb(all);
  ZdValueNode* remove = zdutBuildList(XD_APPNAME, u"APP_B", 0);
  entity->setXData(remove);
  zdutRelRb(remove);
  EXPECT_EQ(entity->xData(u"APP_B"), nullptr);
  EXPECT_EQ(entity->xData(u"NONE"), nullptr);
}

TEST_F(ZdDbDatabaseTest, IteratorsPassOverErasedObjects) {
  ZdDbBlockReference* coil = build.insertBlock(u"COIL", {{u"A", u"1"}, {u"B", u"2"}, {u"C", u"3"}});
  ZdDbObject* b = nullptr;
  ASSERT_EQ(zddbOpenObject(b, coil->attributeIds()[1], ZdDb::kForWrite), Zeda::eOk);
  b->erase();
  b->close();
  std::u16string tags;
  ZdDbObjectIterator* it = coil->attributeIterator();
  for (; !it->done(); it->step()) tags += static_cast<ZdDbAttribute*>(db.objectAt(it->objectId()))->tagConst();
  delete it;
  EXPECT_EQ(tags, u"AC");
  zd_testing::failNextObjectIterator();
  EXPECT_EQ(coil->attributeIterator(), nullptr);
  ZdString name;
  static_cast<ZdDbBlockTableRecord*>(db.objectAt(coil->blockTableRecord()))->getName(name);
  EXPECT_EQ(name.str(), u"COIL");
  EXPECT_EQ(db.getObjectId(coil->objectHandle()), coil->objectId());
}

}  // namespace
