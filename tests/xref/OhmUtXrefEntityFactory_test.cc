#include "ohmutils/xref/OhmUtXrefEntityFactory.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <tuple>

#include "ohmutils/xref/OhmUtXrefGraphicEntity.h"
#include "ohmutils/xref/OhmUtXrefTableEntity.h"
#include "support/u16.h"
#include "zd/db/ZdDbDrawingBuilder.h"

namespace {

using Map = OhmNoRxUtilsSettingOverride::SettingMap;

class OhmUtXrefEntityFactoryTest : public ::testing::Test {
 protected:
  // A coil block with the given style record (nullopt: none).
  ZdDbBlockReference* coil(std::optional<std::u16string> style) {
    ZdDbBlockReference* reference = mBuild.insertBlock(u"HCR1");
    if (style) ZdDbDrawingBuilder::setOptionXData(*reference, u"KVA_WD_XREF_STYLE", *style);
    return reference;
  }
  std::u16string option60(const OhmNoRxUtilsSettingOverride& settings) {
    std::u16string value = u"(absent)";
    settings.getSettingValue(OhmCfgSetting::WD_XREF_STYLE, value);
    return value;
  }

  ZdDbDatabase mDb;
  ZdDbDrawingBuilder mBuild{mDb};
};

TEST_F(OhmUtXrefEntityFactoryTest, StyleFromXDataThenOption60) {
  // The coil's style record, option 60, and the style of the object made (nullopt: none).
  const std::tuple<std::optional<std::u16string>, std::optional<std::u16string>, std::optional<OhmUtXrefEntity::Style>>
      cases[] = {
          {u"1", u"2", OhmUtXrefEntity::StyleGraphic},
          {u"0", u"1", OhmUtXrefEntity::StyleText},
          {u"", u"2", OhmUtXrefEntity::StyleTable},
          {u"7", u"0", std::nullopt},  // a non-empty value stands, option 60 is not asked
          {std::nullopt, u"", std::nullopt},
      };
  for (const auto& [xdata, setting, style] : cases) {
    SCOPED_TRACE(xdata ? U8(*xdata) : "no xdata");
    Map map;
    if (setting) map[OhmCfgSetting::WD_XREF_STYLE] = *setting;
    OhmNoRxUtilsSettingOverride settings(map);
    std::unique_ptr<OhmUtXrefEntity> made(OhmUtXrefEntityFactory::getXrefEntity(coil(xdata), settings));
    ASSERT_EQ(made != nullptr, style.has_value());
    if (!made) continue;
    EXPECT_EQ(made->getStyle(), *style);
    const bool rightClass =
        (*style == OhmUtXrefEntity::StyleText && dynamic_cast<OhmUtXrefTextEntity*>(made.get())) ||
        (*style == OhmUtXrefEntity::StyleTable && dynamic_cast<OhmUtXrefTableEntity*>(made.get())) ||
        (*style == OhmUtXrefEntity::StyleGraphic && dynamic_cast<OhmUtXrefGraphicEntity*>(made.get()) &&
         !dynamic_cast<OhmUtXrefTableEntity*>(made.get()));
    EXPECT_TRUE(rightClass);
  }
}

TEST_F(OhmUtXrefEntityFactoryTest, NullEntityMakesNothingAndLeavesTheOverrides) {
  OhmNoRxUtilsSettingOverride settings(Map{{OhmCfgSetting::WD_XREF_STYLE, u"0"}});
  delete OhmUtXrefEntityFactory::getXrefEntity(coil(u"2"), settings);
  EXPECT_EQ(option60(settings), u"2");
  EXPECT_EQ(OhmUtXrefEntityFactory::getXrefEntity(nullptr, settings), nullptr);
  EXPECT_EQ(OhmUtXrefEntityFactory::getXrefTextEntity(nullptr, settings), nullptr);
  EXPECT_EQ(OhmUtXrefEntityFactory::getXrefEntity(coil(u"9"), settings), nullptr);
  EXPECT_EQ(option60(settings), u"2");
}

TEST_F(OhmUtXrefEntityFactoryTest, StyleIsDecidedBeforeTheEntityOverridesApply) {
  OhmNoRxUtilsSettingOverride settings(Map{{OhmCfgSetting::WD_XREF_STYLE, u"0"}});
  std::unique_ptr<OhmUtXrefEntity> first(OhmUtXrefEntityFactory::getXrefEntity(coil(u"2"), settings));
  // The second entity has no style of its own and sees the first's override.
  std::unique_ptr<OhmUtXrefEntity> second(OhmUtXrefEntityFactory::getXrefEntity(coil(std::nullopt), settings));
  ASSERT_TRUE(first && second);
  EXPECT_EQ(second->getStyle(), OhmUtXrefEntity::StyleTable);
  EXPECT_EQ(option60(settings), u"0");  // and its own overrides replaced the first's
  settings.clearOverride();
  std::unique_ptr<OhmUtXrefEntity> third(OhmUtXrefEntityFactory::getXrefEntity(coil(std::nullopt), settings));
  EXPECT_EQ(third->getStyle(), OhmUtXrefEntity::StyleText);
}

// The text entity's options come from the coil's xdata; an empty one leaves the setting.
TEST_F(OhmUtXrefEntityFactoryTest, TextEntityWhateverTheStyleSays) {
  OhmNoRxUtilsSettingOverride settings(Map{{OhmCfgSetting::WD_XREF_STYLE, u"0"},
                                           {OhmCfgSetting::WD_XREF_TXTBTWN, u","},
                                           {OhmCfgSetting::WD_XREF_FORMAT, u"%S.%N"},
                                           {OhmCfgSetting::WD_XREF_ALTFORMAT, u"%D-%S.%N"}});
  ZdDbBlockReference* block = coil(u"2");
  ZdDbDrawingBuilder::setOptionXData(*block, u"KVA_WD_XREF_TXTBTWN", u";");
  ZdDbDrawingBuilder::setOptionXData(*block, u"KVA_WD_XREF_FORMAT", u"%N");
  ZdDbDrawingBuilder::setOptionXData(*block, u"KVA_WD_XREF_ALTFORMAT", u"");
  std::unique_ptr<OhmUtXrefTextEntity> text(OhmUtXrefEntityFactory::getXrefTextEntity(block, settings));
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(text->getStyle(), OhmUtXrefEntity::StyleText);
  EXPECT_EQ(settings.getSettingMap(), (Map{{OhmCfgSetting::WD_XREF_STYLE, u"2"},
                                           {OhmCfgSetting::WD_XREF_TXTBTWN, u";"},
                                           {OhmCfgSetting::WD_XREF_FORMAT, u"%N"},
                                           {OhmCfgSetting::WD_XREF_ALTFORMAT, u"%D-%S.%N"}}));
  EXPECT_EQ(text->getSeparator(), u";");
}

}  // namespace
