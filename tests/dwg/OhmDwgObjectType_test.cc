#include <gtest/gtest.h>

#include <optional>

#include "ohmutils/dwg/OhmDwgUtils.h"
#include "support/u16.h"
#include "zd/db/ZdDbDatabase_testing.h"
#include "zd/db/ZdDbDrawingBuilder.h"
#include "zd/db/ZdDbText.h"

namespace {

using Kind = OhmDwgUtils::EntityType;
using Attributes = ZdDbDrawingBuilder::Attributes;

struct KindCase {
  std::u16string block;
  Attributes attributes;
  std::vector<std::u16string> xdataApps;
  Kind kind;
};

void PrintTo(const KindCase& c, std::ostream* os) {
  *os << "block " << U8(c.block) << ", " << c.attributes.size() << " attributes, " << c.xdataApps.size()
      << " xdata apps";
}

class ObjectType : public ::testing::TestWithParam<KindCase> {};

TEST_P(ObjectType, FirstTestThatHitsDecides) {
  const KindCase& c = GetParam();
  ZdDbDatabase db;
  ZdDbDrawingBuilder build(db);
  ZdDbBlockReference* reference = build.insertBlock(c.block, c.attributes);
  for (const std::u16string& app : c.xdataApps) ZdDbDrawingBuilder::setOptionXData(*reference, app, u"1");
  EXPECT_EQ(OhmDwgUtils::getOhmObjectType(reference), c.kind);
}

// A row for each kind and each alternative of the patterns, then the order of
// the tests where it matters most; random references cover the rest of it.
INSTANTIATE_TEST_SUITE_P(
    EachKind, ObjectType,
    ::testing::Values(
        KindCase{u"X", {{u"FP", u""}}, {}, OhmDwgUtils::EntityFP},
        KindCase{u"X", {}, {u"KVA_WD_FP"}, OhmDwgUtils::EntityFP},
        KindCase{u"X", {{u"TAG1XPART1", u"CR1"}}, {}, OhmDwgUtils::EntityTag1},
        KindCase{u"X", {{u"TAG", u"CR1"}}, {u"CFD1"}, OhmDwgUtils::EntityTag1},
        KindCase{u"X", {{u"TAG_X", u"a"}}, {}, OhmDwgUtils::EntityTag2},
        KindCase{u"HA1S2", {{u"WIRENO1", u"a"}}, {}, OhmDwgUtils::EntityHaSWireNo},
        KindCase{u"HA1D", {{u"WIRENO", u"a"}}, {}, OhmDwgUtils::EntityHaDWireNo},
        KindCase{u"HA1S2", {}, {}, OhmDwgUtils::EntityHaS}, KindCase{u"ha2d7", {}, {}, OhmDwgUtils::EntityHaD},
        KindCase{u"PLCIO1", {}, {}, OhmDwgUtils::EntityPlcIo}, KindCase{u"WD_WN1", {}, {}, OhmDwgUtils::EntityWdWn},
        KindCase{u"WD_MLR2", {}, {}, OhmDwgUtils::EntityWdMlr}, KindCase{u"WD_WC3", {}, {}, OhmDwgUtils::EntityWdWc},
        KindCase{u"X", {}, {u"KVA_WD_FPT"}, OhmDwgUtils::EntityFPT},
        KindCase{u"X", {{u"P_TAGSTRIP", u""}}, {}, OhmDwgUtils::EntityFPT},
        KindCase{u"X", {{u"NP", u""}}, {}, OhmDwgUtils::EntityNP},
        KindCase{u"AT0", {{u"TAGSTRIP", u"X1"}}, {}, OhmDwgUtils::EntityTagStrip},
        KindCase{u"HA1X", {}, {}, OhmDwgUtils::EntityAX},
        KindCase{u"X", {{u"WDTYPE", u"1-"}}, {}, OhmDwgUtils::EntityOneDash},
        KindCase{u"X", {{u"WDTYPE", u"1-"}, {u"TAGSTRIP", u""}}, {}, OhmDwgUtils::EntityOneDashStrip},
        KindCase{u"X", {{u"OTHER", u""}}, {}, OhmDwgUtils::EntityUnknown}));

INSTANTIATE_TEST_SUITE_P(OrderOfTests, ObjectType,
                         ::testing::Values(KindCase{u"PLCIO1", {{u"WDTYPE", u"1-"}}, {}, OhmDwgUtils::EntityOneDash},
                                           KindCase{u"PLCIO1", {{u"WDTYPE", u"1-X"}}, {}, OhmDwgUtils::EntityPlcIo},
                                           KindCase{u"X", {{u"TAG1", u"CR1"}}, {u"KVA_WD_FP"}, OhmDwgUtils::EntityFP},
                                           KindCase{u"X", {}, {u"KVA_WD_FP", u"KVA_WD_FPT"}, OhmDwgUtils::EntityFPT},
                                           KindCase{u"X", {{u"NP", u""}, {u"FP", u""}}, {}, OhmDwgUtils::EntityFP},
                                           KindCase{u"X", {{u"p_tag1_part2", u""}}, {}, OhmDwgUtils::EntityFP},
                                           KindCase{u"X", {{u"TAG", u"CR1"}}, {}, OhmDwgUtils::EntityUnknown},
                                           KindCase{u"HA1S2", {{u"FP", u""}}, {}, OhmDwgUtils::EntityHaS}));

class ObjectTypeFaults : public ::testing::Test {
 protected:
  void TearDown() override { zd_testing::clearDatabaseFaults(); }
  ZdDbDatabase mDb;
  ZdDbDrawingBuilder mBuild{mDb};
};

TEST_F(ObjectTypeFaults, ClassesOtherThanExactlyBlockReferenceOrTable) {
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

TEST_F(ObjectTypeFaults, BlockDefinitionThatCantBeOpenedGivesUnknown) {
  ZdDbBlockReference* reference = mBuild.insertBlock(u"PLCIO1", {{u"WDTYPE", u"1-"}, {u"TAG1", u""}});
  ZdDbDrawingBuilder::setOptionXData(*reference, u"KVA_WD_FP", u"1");
  zd_testing::failOpenOf(reference->blockTableRecord());
  EXPECT_EQ(OhmDwgUtils::getOhmObjectType(reference), OhmDwgUtils::EntityUnknown);
}

TEST_F(ObjectTypeFaults, BlockDefinitionOpenForWriteElsewhereStaysSo) {
  ZdDbBlockReference* reference = mBuild.insertBlock(u"WD_WN1");
  ZdDbObject* record = nullptr;
  ASSERT_EQ(zddbOpenObject(record, reference->blockTableRecord(), ZdDb::kForWrite), Zeda::eOk);
  EXPECT_EQ(OhmDwgUtils::getOhmObjectType(reference), OhmDwgUtils::EntityWdWn);
  EXPECT_TRUE(record->isWriteEnabled());
  record->close();
}

TEST_F(ObjectTypeFaults, NoAttributeIteratorMeansNoAttributes) {
  ZdDbBlockReference* strip = mBuild.insertBlock(u"AT0", {{u"TAGSTRIP", u""}, {u"TAG1", u""}});
  zd_testing::failNextObjectIterators(100);
  EXPECT_EQ(OhmDwgUtils::getOhmObjectType(strip), OhmDwgUtils::EntityUnknown);
  zd_testing::clearDatabaseFaults();
  ZdDbBlockReference* haWithWire = mBuild.insertBlock(u"HA1S1", {{u"WIRENO", u""}});
  zd_testing::failNextObjectIterators(100);
  EXPECT_EQ(OhmDwgUtils::getOhmObjectType(haWithWire), OhmDwgUtils::EntityHaS);
}

}  // namespace
