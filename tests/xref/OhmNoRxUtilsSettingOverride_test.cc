#include "ohmutils/xref/OhmNoRxUtilsSettingOverride.h"

#include <gtest/gtest.h>

#include "support/u16.h"

namespace {

using Map = OhmNoRxUtilsSettingOverride::SettingMap;
constexpr auto kFormat = OhmCfgSetting::WD_XREF_FORMAT;
constexpr auto kAltFormat = OhmCfgSetting::WD_XREF_ALTFORMAT;
constexpr auto kStyle = OhmCfgSetting::WD_XREF_STYLE;
constexpr auto kBetween = OhmCfgSetting::WD_XREF_TXTBTWN;

const Map kSettings{{kFormat, u"%S.%N"}, {kAltFormat, u"%D-%S.%N"}, {kStyle, u"0"}};

TEST(OhmNoRxUtilsSettingOverride, LayeringOfOneEntity) {
  OhmNoRxUtilsSettingOverride set(kSettings);
  set.applyOverride({{kFormat, u"%N"}, {kAltFormat, u""}, {kBetween, u";"}});
  EXPECT_EQ(set.getSettingMap(), (Map{{kFormat, u"%N"}, {kAltFormat, u"%D-%S.%N"}, {kStyle, u"0"}}));
  std::u16string between = u"preset";
  EXPECT_FALSE(set.getSettingValue(kBetween, between));
  EXPECT_EQ(between, u"preset");  // the caller's default survives
  OhmNoRxUtilsSettingOverride empty(Map{{kBetween, u""}});
  EXPECT_TRUE(empty.getSettingValue(kBetween, between)) << "a value that is there but empty";
  EXPECT_EQ(between, u"");
}

TEST(OhmNoRxUtilsSettingOverride, OverridesDoNotAddUp) {
  OhmNoRxUtilsSettingOverride set(kSettings);
  set.applyOverride({{kFormat, u"%N"}});
  set.applyOverride({{kStyle, u"1"}});
  EXPECT_EQ(set.getSettingMap(), (Map{{kFormat, u"%S.%N"}, {kAltFormat, u"%D-%S.%N"}, {kStyle, u"1"}}));
  set.applyOverride({});
  EXPECT_EQ(set.getSettingMap(), kSettings);
}

TEST(OhmNoRxUtilsSettingOverride, SetSettingMapDropsOrAdoptsOverrides) {
  OhmNoRxUtilsSettingOverride set(kSettings);
  set.applyOverride({{kFormat, u"%N"}});
  set.setSettingMap(set.getSettingMap());  // the overrides become the settings
  set.clearOverride();
  std::u16string value;
  ASSERT_TRUE(set.getSettingValue(kFormat, value));
  EXPECT_EQ(value, u"%N");

  set.applyOverride({{kStyle, u"2"}});
  set.setSettingMap(kSettings);
  EXPECT_EQ(set.getSettingMap(), kSettings);
}

TEST(OhmNoRxUtilsSettingOverride, CopyKeepsOverridesAndClearsToSettings) {
  OhmNoRxUtilsSettingOverride set(kSettings);
  set.applyOverride({{kFormat, u"%N"}});
  OhmNoRxUtilsSettingOverride copy(set);
  OhmNoRxUtilsSettingOverride assigned;
  assigned = set;
  assigned = assigned;
  for (OhmNoRxUtilsSettingOverride* s : {&copy, &assigned}) {
    std::u16string value;
    ASSERT_TRUE(s->getSettingValue(kFormat, value));
    EXPECT_EQ(value, u"%N");
    s->clearOverride();
    EXPECT_EQ(s->getSettingMap(), kSettings);
  }
}

}  // namespace
