#include <gtest/gtest.h>

#include <memory>

#include "ohmutils/dwg/OhmDwgUtils.h"
#include "support/u16.h"
#include "win/fs/PathMapping.h"
#include "zd/app/ZdDocManager_testing.h"
#include "zd/db/ZdDbDatabase_testing.h"
#include "zd/db/ZdDbDrawingBuilder.h"

namespace {

// Drawings open in the host; every test ends with none open.
class DrawingQueries : public ::testing::Test {
 protected:
  void TearDown() override {
    zdDocManagerPtr()->closeAll();
    zd_testing::clearDatabaseFaults();
  }
  std::shared_ptr<ZdDbDatabase> open(const std::u16string& fileName) {
    auto database = std::make_shared<ZdDbDatabase>();
    zdDocManagerPtr()->addDocument(fileName, database);
    return database;
  }
  static std::vector<std::u16string> names(const OhmDwgUtils::LayoutList& list) {
    std::vector<std::u16string> out;
    for (int i = 0; i < list.length(); ++i) out.push_back(list[i].str());
    return out;
  }
};

TEST_F(DrawingQueries, IsDrawingOpenComparesPathsWithoutCase) {
  open(u"C:\\Proj\\SHT01.dxf");
  zdDocManagerPtr()->addDocument(u"C:/Proj/odd.dxf", nullptr);
  const std::pair<const char16_t*, bool> cases[] = {{u"C:\\Proj\\SHT01.dxf", true},
                                                    {u"c:\\proj\\sht01.DXF", true},
                                                    {u"C:/Proj/SHT01.dxf", true},
                                                    {u"C:\\Proj\\odd.dxf", false},
                                                    {u"C:/Proj/odd.dxf", false},
                                                    {u"", false},
                                                    {nullptr, false}};
  ZdApDocument* const marker = reinterpret_cast<ZdApDocument*>(std::uintptr_t{0x10});  // must stay unless found
  for (const auto& [name, isOpen] : cases) {
    SCOPED_TRACE(name ? U8(name) : "null");
    ZdApDocument* document = marker;
    EXPECT_EQ(OhmDwgUtils::isDrawingOpen(name, &document), isOpen);
    EXPECT_EQ(isOpen               ? U8(document->fileName())
              : document == marker ? "marker"
                                   : "changed",
              isOpen ? "C:\\Proj\\SHT01.dxf" : "marker");
  }
  EXPECT_TRUE(OhmDwgUtils::isDrawingOpen(u"C:\\PROJ\\SHT01.DXF", nullptr));
  zd_testing::failNextDocumentIterator();
  EXPECT_FALSE(OhmDwgUtils::isDrawingOpen(u"C:\\Proj\\SHT01.dxf", nullptr));
}

TEST_F(DrawingQueries, OpenedDatabaseBelongsToItsDocument) {
  const auto database = open(u"C:\\Proj\\SHT01.dxf");
  zdDocManagerPtr()->addDocument(u"C:\\Proj\\NoDb.dxf", nullptr);
  ZdDbDatabase* found = reinterpret_cast<ZdDbDatabase*>(1);
  EXPECT_TRUE(OhmDwgUtils::getOpenedDwgDatabase(ZdString(u"c:/proj/sht01.dxf"), &found));
  EXPECT_EQ(found, database.get());
  EXPECT_FALSE(OhmDwgUtils::getOpenedDwgDatabase(ZdString(u"C:\\Proj\\NoDb.dxf"), &found));
  EXPECT_EQ(found, nullptr);
  EXPECT_FALSE(OhmDwgUtils::getOpenedDwgDatabase(ZdString(u"C:\\Proj\\SHT01.dxf"), nullptr));
}

TEST_F(DrawingQueries, LayoutsInTabOrderWithoutModel) {
  // Layouts in dictionary order, after a fresh database's none, and what is listed.
  using Layouts = std::vector<std::pair<std::u16string, std::int32_t>>;
  const std::pair<Layouts, std::vector<std::u16string>> cases[] = {
      {{{u"Model", 0}, {u"Layout2", 2}, {u"Layout1", 1}}, {u"Layout1", u"Layout2"}},
      {{{u"MODEL", 3}, {u"model", 4}, {u"Sheet", 5}}, {u"Sheet"}},
      {{{u"A", 1}, {u"B", 1}}, {u"B"}},
      {{{u"Model", 0}}, {}},
  };
  for (const auto& [layouts, listed] : cases) {
    ZdDbDatabase db(false, true);
    for (const auto& [name, tabOrder] : layouts) db.addLayout(name, tabOrder, db.paperSpaceId());
    OhmDwgUtils::LayoutList list;
    list.append(ZdString(u"stale"));
    EXPECT_EQ(OhmDwgUtils::getAllLayoutNames(&db, list), !listed.empty());
    EXPECT_EQ(names(list), listed);
  }
  OhmDwgUtils::LayoutList list;
  list.append(ZdString(u"stale"));
  EXPECT_FALSE(OhmDwgUtils::getAllLayoutNames(static_cast<ZdDbDatabase*>(nullptr), list));
  EXPECT_TRUE(names(list).empty());
}

TEST_F(DrawingQueries, LayoutFailuresLeaveTheRestListed) {
  ZdDbDatabase db(false, true);
  const ZdDbObjectId broken = db.addLayout(u"Broken", 1, db.paperSpaceId());
  db.addLayout(u"Fine", 2, db.paperSpaceId());
  OhmDwgUtils::LayoutList list;
  zd_testing::failOpenOf(broken);
  EXPECT_TRUE(OhmDwgUtils::getAllLayoutNames(&db, list));
  EXPECT_EQ(names(list), std::vector<std::u16string>{u"Fine"});
  zd_testing::failNextObjectIterator();
  EXPECT_FALSE(OhmDwgUtils::getAllLayoutNames(&db, list));
  zd_testing::failOpenOf(db.layoutDictionaryId());
  EXPECT_FALSE(OhmDwgUtils::getAllLayoutNames(&db, list));
  EXPECT_TRUE(names(list).empty());
}

TEST_F(DrawingQueries, LayoutsOfAnOpenDrawingComeFromMemory) {
  const auto database = open(u"C:\\Proj\\SHT01.dxf");
  database->addLayout(u"Unsaved", 7, database->paperSpaceId());
  OhmDwgUtils::LayoutList list;
  EXPECT_TRUE(OhmDwgUtils::getAllLayoutNames(ZdString(u"c:\\proj\\sht01.dxf"), list));
  EXPECT_EQ(names(list), (std::vector<std::u16string>{u"Layout1", u"Unsaved"}));
  // A drawing that is neither open nor readable leaves the list as it was.
  EXPECT_FALSE(OhmDwgUtils::getAllLayoutNames(ZdString(u"Z:\\no\\such\\drawing.dxf"), list));
  EXPECT_EQ(names(list), (std::vector<std::u16string>{u"Layout1", u"Unsaved"}));
  // One that isn't open is read from its file, in tab order whatever the dictionary's order.
  const std::u16string onDisk = PosixPathToWindows(OHM_FIXTURES_DIR "/dxf/layouts_crlf.dxf");
  EXPECT_TRUE(OhmDwgUtils::getAllLayoutNames(ZdString(onDisk), list));
  EXPECT_EQ(names(list), (std::vector<std::u16string>{u"Layout1", u"Layout2"}));
  EXPECT_EQ(zdDocManagerPtr()->documentCount(), 1) << "read, not opened";
}

TEST_F(DrawingQueries, BlocksOfOneKindInBothSpaces) {
  const auto database = open(u"C:\\Proj\\SHT01.dxf");
  ZdDbDrawingBuilder build(*database);
  ZdDbBlockReference* inModel = build.insertBlock(u"X", {{u"TAG1", u"CR1"}});
  ZdDbBlockReference* inPaper = build.insertBlock(u"Y", {{u"TAG1", u"CR2"}}, database->paperSpaceId());
  build.insertBlock(u"Z", {{u"TAG2", u"S1"}});
  // Nested in another block's definition: never listed.
  build.insertBlock(u"N", {{u"TAG1", u"CR9"}}, build.defineBlock(u"OUTER"));
  ZdDbBlockReference* erased = build.insertBlock(u"X", {{u"TAG1", u"CR3"}});
  ZdDbObject* writable = nullptr;
  ASSERT_EQ(zddbOpenObject(writable, erased->objectId(), ZdDb::kForWrite), Zeda::eOk);
  writable->erase();
  writable->close();
  ZdDbBlockReference* derived = build.insertDerived(u"ThirdPartyInsert", ZdDbBlockReference::desc(), u"PLCIO1");
  ZdDbBlockReference* plain = build.insertBlock(u"PLAIN");
  ZdDbTable* table = build.addTable();
  build.addEntity(u"ZdDbLine");  // not a reference: never listed

  OhmDwgUtils::BlockMap blocks{{ZdDbObjectId(999999), nullptr}};
  ASSERT_EQ(OhmDwgUtils::getBlocks(u"C:/PROJ/sht01.dxf", blocks, OhmDwgUtils::EntityTag1), Zeda::eOk);
  EXPECT_EQ(blocks, (OhmDwgUtils::BlockMap{{inModel->objectId(), inModel}, {inPaper->objectId(), inPaper}}));
  EXPECT_FALSE(inModel->isReadEnabled());
  // Kind 0 gathers unclaimed references, derived classes (a table too) included.
  ASSERT_EQ(OhmDwgUtils::getBlocks(u"C:\\Proj\\SHT01.dxf", blocks, OhmDwgUtils::EntityUnknown), Zeda::eOk);
  EXPECT_EQ(blocks, (OhmDwgUtils::BlockMap{
                        {derived->objectId(), derived}, {plain->objectId(), plain}, {table->objectId(), table}}));
}

TEST_F(DrawingQueries, BlocksFailures) {
  OhmDwgUtils::BlockMap blocks{{ZdDbObjectId(999999), nullptr}};
  EXPECT_EQ(OhmDwgUtils::getBlocks(u"C:\\Proj\\Closed.dxf", blocks, OhmDwgUtils::EntityTag1), Zeda::eDrawingNotOpen);
  EXPECT_TRUE(blocks.empty());

  const auto database = open(u"C:\\Proj\\SHT01.dxf");
  ZdDbDrawingBuilder build(*database);
  ZdDbBlockReference* inPaper = build.insertBlock(u"Y", {{u"TAG1", u"CR2"}}, database->paperSpaceId());
  ZdDbBlockReference* unopenable = build.insertBlock(u"X", {{u"TAG1", u"CR1"}}, database->paperSpaceId());
  build.insertBlock(u"X", {{u"TAG1", u"CR1"}});

  zd_testing::failOpenOf(database->blockTableId());
  EXPECT_EQ(OhmDwgUtils::getBlocks(u"C:\\Proj\\SHT01.dxf", blocks, OhmDwgUtils::EntityTag1), Zeda::eOk);
  EXPECT_TRUE(blocks.empty());
  zd_testing::clearDatabaseFaults();

  zd_testing::failOpenOf(unopenable->objectId());
  zd_testing::failOpenOf(database->modelSpaceId());
  EXPECT_EQ(OhmDwgUtils::getBlocks(u"C:\\Proj\\SHT01.dxf", blocks, OhmDwgUtils::EntityTag1), Zeda::eWasOpenForWrite);
  EXPECT_EQ(blocks, (OhmDwgUtils::BlockMap{{inPaper->objectId(), inPaper}}));
  zd_testing::clearDatabaseFaults();

  zd_testing::failNextObjectIterator();
  EXPECT_EQ(OhmDwgUtils::getBlocks(u"C:\\Proj\\SHT01.dxf", blocks, OhmDwgUtils::EntityTag1), Zeda::eOutOfMemory);
  EXPECT_TRUE(blocks.empty());
}

TEST(OhmDwgUtils, HandleStrings) {
  for (const auto& [value, text] : {std::pair{0ull, u""}, {0xABCDEF0123456789ull, u"h=ABCDEF0123456789"}})
    EXPECT_EQ(OhmDwgUtils::getOhmHandleString(ZdDbHandle(value)).str(), std::u16string(text)) << value;
}

}  // namespace
