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

// Each override lays over the settings alone: empty values and options the
// settings lack are passed over, and the next override or new settings start
// from the settings again.
TEST(OhmNoRxUtilsSettingOverride, EachOverrideLaysOverTheSettingsAlone) {
  OhmNoRxUtilsSettingOverride set(kSettings);
  set.applyOverride({{kFormat, u"%N"}, {kAltFormat, u""}, {kBetween, u";"}});
  EXPECT_EQ(set.getSettingMap(), (Map{{kFormat, u"%N"}, {kAltFormat, u"%D-%S.%N"}, {kStyle, u"0"}}));
  set.applyOverride({{kStyle, u"1"}});
  EXPECT_EQ(set.getSettingMap(), (Map{{kFormat, u"%S.%N"}, {kAltFormat, u"%D-%S.%N"}, {kStyle, u"1"}}));
  set.setSettingMap(set.getSettingMap());  // the override becomes the settings
  set.clearOverride();
  std::u16string value = u"preset";
  EXPECT_FALSE(set.getSettingValue(kBetween, value));
  EXPECT_EQ(value, u"preset");  // the caller's default survives
  ASSERT_TRUE(set.getSettingValue(kStyle, value));
  EXPECT_EQ(value, u"1");
  set.applyOverride({{kFormat, u"%N"}});
  set.setSettingMap(kSettings);
  EXPECT_EQ(set.getSettingMap(), kSettings);
  OhmNoRxUtilsSettingOverride empty(Map{{kBetween, u""}});
  EXPECT_TRUE(empty.getSettingValue(kBetween, value)) << "a value that is there but empty";
  EXPECT_EQ(value, u"");
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
