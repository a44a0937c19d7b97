#include <gtest/gtest.h>

#include "ohmutils/dwg/OhmDwgUtils.h"
#include "zd/db/ZdDbDatabase_testing.h"
#include "zd/db/ZdDbDrawingBuilder.h"
#include "zd/db/ZdDbText.h"

namespace {

// The kinds and the order of the tests are checked against the plain rules on
// random references; here what the classification does with objects that are
// not plain references or can't be read.
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
