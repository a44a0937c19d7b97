#include "ohmutils/xref/OhmUtXrefEntity.h"

#include <gtest/gtest.h>

#include "ohmutils/xref/OhmUtXrefTextEntity.h"
#include "support/u16.h"
#include "zd/db/ZdDbDrawingBuilder.h"

namespace {

using Map = OhmNoRxUtilsSettingOverride::SettingMap;
using Entity = OhmUtXrefEntity;

TEST(OhmUtXrefEntity, EntityOverridesLayOverTheSettings) {
  ZdDbDatabase db;
  ZdDbDrawingBuilder build(db);
  ZdDbBlockReference* first = build.insertBlock(u"HCR1");
  ZdDbDrawingBuilder::setOptionXData(*first, u"KVA_WD_XREF_FORMAT", u"%N");
  ZdDbDrawingBuilder::setOptionXData(*first, u"KVA_WD_XREF_ALTFORMAT", u"");
  ZdDbDrawingBuilder::setOptionXData(*first, u"KVA_WD_XREF_STYLE", u"2");
  const Map base{{OhmCfgSetting::WD_XREF_FORMAT, u"%S.%N"}, {OhmCfgSetting::WD_XREF_ALTFORMAT, u"%D-%S.%N"}};
  OhmNoRxUtilsSettingOverride settings(base);
  OhmUtXrefTextEntity a(settings);

  a.applyEntityOverrides(first);
  EXPECT_EQ(settings.getSettingMap(),
            (Map{{OhmCfgSetting::WD_XREF_FORMAT, u"%N"}, {OhmCfgSetting::WD_XREF_ALTFORMAT, u"%D-%S.%N"}}));
  EXPECT_EQ(a.getStyle(), Entity::StyleText);  // the xdata style does not change the class
}

TEST(OhmUtXrefEntity, CopyKeepsHostPathAndSharesTheOptionSet) {
  OhmNoRxUtilsSettingOverride settings(
      Map{{OhmCfgSetting::WD_XREF_FORMAT, u"same"}, {OhmCfgSetting::WD_XREF_ALTFORMAT, u"other"}});
  OhmUtXrefTextEntity original(settings);
  original.setHostDwgPath(u"C:\\A.DWG");
  original.setXrefAttPrompt(u"Ref");
  const OhmUtXrefTextEntity copy(original);
  OhmDsComponentOcc occ;
  occ.mType = 4;
  occ.mOccID.mDwgPath = u"c:\\a.dwg";
  std::u16string text;
  copy.getXrefText(u"XREF", occ, text);
  EXPECT_EQ(text, u"same");
  std::u16string value = u"Ref 1";
  EXPECT_EQ(copy.removeLabelPrefixFromAttribute(u"XREF", value), 4u);
  settings.setSettingMap(Map{{OhmCfgSetting::WD_XREF_FORMAT, u"changed"}});
  copy.getXrefText(u"XREF", occ, text);
  EXPECT_EQ(text, u"changed");
}

}  // namespace
