#include "ohmutils/xref/OhmUtXrefEntity.h"

#include <gtest/gtest.h>

#include "ohmutils/xref/OhmUtXrefTextEntity.h"

namespace {

using Map = OhmNoRxUtilsSettingOverride::SettingMap;

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
