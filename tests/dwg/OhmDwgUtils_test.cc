#include "ohmutils/dwg/OhmDwgUtils.h"

#include <gtest/gtest.h>

#include <functional>

#include "support/u16.h"
#include "zd/ZdCodes.h"
#include "zd/ZdValueNode_testing.h"
#include "zd/db/ZdDbDatabase_testing.h"
#include "zd/db/ZdDbDrawingBuilder.h"

namespace {

// Sets the object's xdata of "APP" to a chain built from the arguments.
template <typename... Items>
void SetXData(ZdDbObject& object, Items... items) {
  ZdValueNode* chain = zdutBuildList(XD_APPNAME, u"APP", items..., 0);
  EXPECT_EQ(object.setXData(chain), Zeda::eOk);
  zdutRelRb(chain);
}

class OhmDwgUtilsTest : public ::testing::Test {
 protected:
  void TearDown() override { zd_testing::clearDatabaseFaults(); }
  ZdDbDatabase db;
  ZdDbDrawingBuilder build{db};
};

TEST_F(OhmDwgUtilsTest, XDataRecordsOfEveryShape) {
  struct Case {
    const char* shape;
    std::function<void(ZdDbObject&)> set;
    bool found;
    std::u16string value;
  } cases[] = {
      {"name, control, text", [](ZdDbObject& o) { SetXData(o, XD_CONTROL, u"{", XD_STRING, u"%S.%N"); }, true,
       u"%S.%N"},
      {"further items",
       [](ZdDbObject& o) { SetXData(o, XD_CONTROL, u"{", XD_STRING, u"v", XD_SHORT, 3, XD_CONTROL, u"}"); }, true,
       u"v"},
      {"empty text", [](ZdDbObject& o) { SetXData(o, XD_CONTROL, u"{", XD_STRING, u""); }, true, u""},
      {"control string's content not read", [](ZdDbObject& o) { SetXData(o, XD_CONTROL, u"}", XD_STRING, u"x"); }, true,
       u"x"},
      {"text instead of control", [](ZdDbObject& o) { SetXData(o, XD_STRING, u"{", XD_STRING, u"x"); }, false, u""},
      {"too short", [](ZdDbObject& o) { SetXData(o, XD_CONTROL, u"{"); }, false, u""},
      {"number for text", [](ZdDbObject& o) { SetXData(o, XD_CONTROL, u"{", XD_SHORT, 1); }, false, u""},
      {"no xdata", [](ZdDbObject&) {}, false, u""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.shape);
    ZdDbEntity* entity = build.addEntity(u"ZdDbLine");
    c.set(*entity);
    std::u16string value = u"preset";
    EXPECT_EQ(OhmDwgUtils::getOhmEntityXData(entity, u"APP", value), c.found);
    EXPECT_EQ(value, c.found ? c.value : u"preset");
  }
  std::u16string value = u"preset";
  EXPECT_FALSE(OhmDwgUtils::getOhmEntityXData(nullptr, u"APP", value));
  EXPECT_EQ(value, u"preset");
}

TEST_F(OhmDwgUtilsTest, XDataValueAllocationFailureReadsAsAbsent) {
  ZdDbEntity* entity = build.addEntity(u"ZdDbLine");
  ZdDbDrawingBuilder::setOptionXData(*entity, u"APP", u"v");
  zd_testing::failValueAllocationAfter(0);
  std::u16string value = u"preset";
  EXPECT_FALSE(OhmDwgUtils::getOhmEntityXData(entity, u"APP", value));
  zd_testing::failValueAllocationAfter(-1);
  EXPECT_EQ(value, u"preset");
}

TEST_F(OhmDwgUtilsTest, AttributeLookupFollowsDrawingOrder) {
  ZdDbBlockReference* coil =
      build.insertBlock(u"HCR1", {{u"DESC1", u"d"}, {u"TAG1F", u"K1"}, {u"TAG1", u"K2"}, {u"EMPTY", u""}});
  struct Case {
    const char16_t* pattern;
    const char16_t* text;
  } cases[] = {
      {u"TAG1,TAG1F", u"K1"}, {u"tag1", u"K2"}, {u"TAG*", u"K1"}, {u"EMPTY", u""}, {u"NONE", nullptr},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(U8(c.pattern));
    const char16_t* text = OhmDwgUtils::getAttributeValue(coil, c.pattern);
    if (!c.text) {
      EXPECT_EQ(text, nullptr);
    } else {
      ASSERT_NE(text, nullptr);
      EXPECT_EQ(std::u16string(text), c.text);
    }
  }
  EXPECT_EQ(OhmDwgUtils::getAttributeValue(nullptr, u"*"), nullptr);
  EXPECT_EQ(OhmDwgUtils::getAttributeValue(coil, nullptr), nullptr);
}

TEST_F(OhmDwgUtilsTest, AttributesThatCannotBeReadAreSkipped) {
  ZdDbBlockReference* coil =
      build.insertBlock(u"HCR1", {{u"TAG1", u"first"}, {u"TAG1", u"second"}, {u"TAG1", u"third"}});
  zd_testing::failOpenOf(coil->attributeIds()[0]);
  static_cast<ZdDbAttribute*>(db.objectAt(coil->attributeIds()[1]))->setTag(std::nullopt);
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

}  // namespace
