#include "ohmutils/dwg/OhmDwgUtils.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <tuple>

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
  // The shape, how it is set, and the text found (nullopt: none).
  const std::tuple<const char*, std::function<void(ZdDbObject&)>, std::optional<std::u16string>> cases[] = {
      {"name, control, text", [](ZdDbObject& o) { SetXData(o, XD_CONTROL, u"{", XD_STRING, u"%S.%N"); }, u"%S.%N"},
      {"empty text", [](ZdDbObject& o) { SetXData(o, XD_CONTROL, u"{", XD_STRING, u""); }, u""},
      {"control string's content not read", [](ZdDbObject& o) { SetXData(o, XD_CONTROL, u"}", XD_STRING, u"x"); },
       u"x"},
      {"text instead of control", [](ZdDbObject& o) { SetXData(o, XD_STRING, u"{", XD_STRING, u"x"); }, std::nullopt},
      {"too short", [](ZdDbObject& o) { SetXData(o, XD_CONTROL, u"{"); }, std::nullopt},
      {"number for text", [](ZdDbObject& o) { SetXData(o, XD_CONTROL, u"{", XD_SHORT, 1); }, std::nullopt},
      {"no xdata", [](ZdDbObject&) {}, std::nullopt},
  };
  for (const auto& [shape, set, found] : cases) {
    SCOPED_TRACE(shape);
    ZdDbEntity* entity = build.addEntity(u"ZdDbLine");
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
  ZdDbBlockReference* coil =
      build.insertBlock(u"HCR1", {{u"DESC1", u"d"}, {u"TAG1F", u"K1"}, {u"TAG1", u"K2"}, {u"EMPTY", u""}});
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
