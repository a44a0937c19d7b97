#include "ohmutils/dwg/OhmDwgUtils.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <tuple>

#include "support/u16.h"
#include "win/fs/PathMapping.h"
#include "zd/ZdCodes.h"
#include "zd/ZdValueNode_testing.h"
#include "zd/app/ZdDocManager_testing.h"
#include "zd/db/ZdDbDatabase_testing.h"
#include "zd/db/ZdDbDrawingBuilder.h"
#include "zd/db/ZdDbText.h"

namespace {

// Sets the object's xdata of "APP" to a chain built from the arguments.
template <typename... Items>
void SetXData(ZdDbObject& object, Items... items) {
  ZdValueNode* chain = zdutBuildList(XD_APPNAME, u"APP", items..., 0);
  EXPECT_EQ(object.setXData(chain), Zeda::eOk);
  zdutRelRb(chain);
}

// Entities of a database of the test's own, and drawings open in the host;
// every test ends with none open and without the faults it injected.
class OhmDwgUtilsTest : public ::testing::Test {
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
  ZdDbDatabase mDb;
  ZdDbDrawingBuilder mBuild{mDb};
};

TEST_F(OhmDwgUtilsTest, XDataRecordsOfEveryShape) {
  // The shape, how it is set, and the text found (nullopt: none).
  const std::tuple<const char*, std::function<void(ZdDbObject&)>, std::optional<std::u16string>> cases[] = {
      {"name, control, text", [](ZdDbObject& o) { SetXData(o, XD_CONTROL, u"{", XD_STRING, u"%S.%N"); }, u"%S.%N"},
      {"empty text", [](ZdDbObject& o) { SetXData(o, XD_CONTROL, u"{", XD_STRING, u""); }, u""},
      {"control not read", [](ZdDbObject& o) { SetXData(o, XD_CONTROL, u"}", XD_STRING, u"x"); }, u"x"},
      {"text instead of control", [](ZdDbObject& o) { SetXData(o, XD_STRING, u"{", XD_STRING, u"x"); }, std::nullopt},
      {"too short", [](ZdDbObject& o) { SetXData(o, XD_CONTROL, u"{"); }, std::nullopt},
      {"number for text", [](ZdDbObject& o) { SetXData(o, XD_CONTROL, u"{", XD_SHORT, 1); }, std::nullopt},
      {"no xdata", [](ZdDbObject&) {}, std::nullopt},
  };
  for (const auto& [shape, set, found] : cases) {
    SCOPED_TRACE(shape);
    ZdDbEntity* entity = mBuild.addEntity(u"ZdDbLine");
    set(*entity);
    std::u16string value = u"preset";
    EXPECT_EQ(OhmDwgUtils::getOhmEntityXData(entity, u"APP", value), found.has_value());
    EXPECT_EQ(value, found.value_or(u"preset"));
  }
  std::u16string value = u"preset";
  EXPECT_FALSE(OhmDwgUtils::getOhmEntityXData(nullptr, u"APP", value));
  EXPECT_EQ(value, u"preset");
}

TEST_F(OhmDwgUtilsTest, AttributeLookupFollowsDrawingOrder) {
  auto* coil = mBuild.insertBlock(u"HCR1", {{u"DESC1", u"d"}, {u"TAG1F", u"K1"}, {u"TAG1", u"K2"}, {u"EMPTY", u""}});
  // The pattern and the text found ("<none>": a null pointer).
  for (const auto& [pattern, expected] :
       {std::pair{u"TAG1,TAG1F", u"K1"}, {u"tag1", u"K2"}, {u"TAG*", u"K1"}, {u"EMPTY", u""}, {u"NONE", u"<none>"}}) {
    const char16_t* text = OhmDwgUtils::getAttributeValue(coil, pattern);
    EXPECT_EQ(std::u16string(text ? text : u"<none>"), expected) << U8(pattern);
  }
  EXPECT_EQ(OhmDwgUtils::getAttributeValue(nullptr, u"*"), nullptr);
  EXPECT_EQ(OhmDwgUtils::getAttributeValue(coil, nullptr), nullptr);
}

TEST_F(OhmDwgUtilsTest, AttributesThatCannotBeReadAreSkipped) {
  auto* coil = mBuild.insertBlock(u"HCR1", {{u"TAG1", u"first"}, {u"TAG1", u"second"}, {u"TAG1", u"third"}});
  zd_testing::failOpenOf(coil->attributeIds()[0]);
  static_cast<ZdDbAttribute*>(mDb.objectAt(coil->attributeIds()[1]))->setTag(std::nullopt);
  EXPECT_EQ(std::u16string(OhmDwgUtils::getAttributeValue(coil, u"TAG1")), u"third");

  // An attribute open for write elsewhere is read and given back open for write.
  ZdDbObject* held = nullptr;
  ASSERT_EQ(zddbOpenObject(held, coil->attributeIds()[2], ZdDb::kForWrite), Zeda::eOk);
  EXPECT_EQ(std::u16string(OhmDwgUtils::getAttributeValue(coil, u"TAG1")), u"third");
  EXPECT_TRUE(held->isWriteEnabled());
  held->close();

  zd_testing::failNextObjectIterator();
  EXPECT_EQ(OhmDwgUtils::getAttributeValue(coil, u"TAG1"), nullptr);
}

// The kinds and the order of the tests are checked against the plain rules on
// random references; here what the classification does with objects that are
// not plain references or can't be read.
TEST_F(OhmDwgUtilsTest, ClassesOtherThanExactlyBlockReferenceOrTableAreUnknown) {
  ZdDbTable* table = mBuild.addTable();
  EXPECT_EQ(OhmDwgUtils::getOhmObjectType(table), OhmDwgUtils::EntityUnknown);
  ZdDbDrawingBuilder::setOptionXData(*table, u"OHM_TABLE_TYPE", u"XREF");
  EXPECT_EQ(OhmDwgUtils::getOhmObjectType(table), OhmDwgUtils::EntityTable);
  for (const ZdRxClass* base : {ZdDbBlockReference::desc(), ZdDbTable::desc()}) {
    ZdDbBlockReference* derived = mBuild.insertDerived(u"ThirdPartyInsert", base, u"PLCIO1");
    ZdDbDrawingBuilder::setOptionXData(*derived, u"OHM_TABLE_TYPE", u"XREF");
    EXPECT_EQ(OhmDwgUtils::getOhmObjectType(derived), OhmDwgUtils::EntityUnknown);
  }
  ZdDbEntity* line = mBuild.addEntity(u"ZdDbLine");
  ZdDbDrawingBuilder::setOptionXData(*line, u"KVA_WD_FP", u"1");
  EXPECT_EQ(OhmDwgUtils::getOhmObjectType(line), OhmDwgUtils::EntityUnknown);
  EXPECT_EQ(OhmDwgUtils::getOhmObjectType(nullptr), OhmDwgUtils::EntityUnknown);
}

// A block definition that can't be opened gives unknown; no attribute iterator means no attributes.
TEST_F(OhmDwgUtilsTest, UnreadableDefinitionOrAttributesInTheClassification) {
  ZdDbBlockReference* reference = mBuild.insertBlock(u"PLCIO1", {{u"WDTYPE", u"1-"}, {u"TAG1", u""}});
  ZdDbDrawingBuilder::setOptionXData(*reference, u"KVA_WD_FP", u"1");
  zd_testing::failOpenOf(reference->blockTableRecord());
  EXPECT_EQ(OhmDwgUtils::getOhmObjectType(reference), OhmDwgUtils::EntityUnknown);
  for (const auto& [block, tag, kind] :
       {std::tuple{u"AT0", u"TAGSTRIP", OhmDwgUtils::EntityUnknown}, {u"HA1S1", u"WIRENO", OhmDwgUtils::EntityHaS}}) {
    ZdDbBlockReference* withAttributes = mBuild.insertBlock(block, {{tag, u""}, {u"TAG1", u""}});
    zd_testing::failNextObjectIterators(100);
    EXPECT_EQ(OhmDwgUtils::getOhmObjectType(withAttributes), kind) << U8(block);
    zd_testing::clearDatabaseFaults();
  }
}

// An open drawing and its database are found by path without case and with
// either slash; a document without a database counts as not open.
TEST_F(OhmDwgUtilsTest, OpenDrawingsAndTheirDatabasesAreFoundWithoutCase) {
  const auto database = open(u"C:\\Proj\\SHT01.dxf");
  zdDocManagerPtr()->addDocument(u"C:/Proj/odd.dxf", nullptr);
  const std::pair<const char16_t*, bool> cases[] = {
      {u"C:\\Proj\\SHT01.dxf", true},
      {u"c:\\proj\\sht01.DXF", true},
      {u"C:/Proj/SHT01.dxf", true},
      {u"c:/proj/sht01.dxf", true},
      {u"C:\\Proj\\odd.dxf", false},
      {u"C:/Proj/odd.dxf", false},
      {u"", false},
      {nullptr, false},
  };
  ZdApDocument* const marker = reinterpret_cast<ZdApDocument*>(std::uintptr_t{0x10});  // must stay unless found
  for (const auto& [name, isOpen] : cases) {
    SCOPED_TRACE(name ? U8(name) : "null");
    ZdApDocument* document = marker;
    EXPECT_EQ(OhmDwgUtils::isDrawingOpen(name, &document), isOpen);
    const std::string shown = document == marker ? "marker" : document ? U8(document->fileName()) : "null";
    EXPECT_EQ(shown, isOpen ? "C:\\Proj\\SHT01.dxf" : "marker");
    ZdDbDatabase* found = reinterpret_cast<ZdDbDatabase*>(1);
    EXPECT_EQ(OhmDwgUtils::getOpenedDwgDatabase(ZdString(name), &found), isOpen);
    EXPECT_EQ(found, isOpen ? database.get() : nullptr);
  }
  EXPECT_TRUE(OhmDwgUtils::isDrawingOpen(u"C:\\PROJ\\SHT01.DXF", nullptr));
  EXPECT_FALSE(OhmDwgUtils::getOpenedDwgDatabase(ZdString(u"C:\\Proj\\SHT01.dxf"), nullptr));
  zd_testing::failNextDocumentIterator();
  EXPECT_FALSE(OhmDwgUtils::isDrawingOpen(u"C:\\Proj\\SHT01.dxf", nullptr));
}

TEST_F(OhmDwgUtilsTest, LayoutsInTabOrderWithoutModel) {
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

TEST_F(OhmDwgUtilsTest, LayoutFailuresLeaveTheRestListed) {
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

TEST_F(OhmDwgUtilsTest, LayoutsOfAnOpenDrawingComeFromMemory) {
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

TEST_F(OhmDwgUtilsTest, BlocksOfOneKindInBothSpaces) {
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

TEST_F(OhmDwgUtilsTest, BlocksFailures) {
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
