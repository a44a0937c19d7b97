// What the entities keep between calls is invisible: a change of the option
// set or of an occurrence shows at the next call, as if nothing were kept.
#include <gtest/gtest.h>

#include <functional>
#include <tuple>

#include "ContactOcc.h"
#include "ohmutils/xref/OhmUtXrefTableEntity.h"

namespace {

using Map = OhmNoRxUtilsSettingOverride::SettingMap;
using xref_test::Contact;
using xref_test::k13_14;

Map Settings(const std::u16string& graphic, const std::u16string& family) {
  return {{OhmCfgSetting::WD_XREF_ALTFORMAT, u"[%S-%N]"},
          {OhmCfgSetting::WD_XREF_GRAPHIC, graphic},
          {OhmCfgSetting::WD_XREF_GRAPHICSTYLE, family},
          {OhmCfgSetting::WD_XREF_CONTACTMAP, u"A,B,C"},
          {OhmCfgSetting::WD_XREF_TBLINDEX, u"1,2,3"}};
}

struct SettingChange {
  const char* name;
  std::function<void(OhmNoRxUtilsSettingOverride&)> change;
  std::u16string text;  // of the NO contact 13/14 afterwards
  bool rowMatches;      // whether the row 13, "-o-", 14 matches it afterwards
};

// One entity through a series of changes of its option set; each changes the
// style from what the call before took.
TEST(XrefCaches, StyleFollowsEveryChangeOfTheOptionSet) {
  using Set = OhmNoRxUtilsSettingOverride;
  const SettingChange changes[] = {
      {"none", [](Set&) {}, u"13-o-14[3-12]", true},
      {"new settings", [](Set& s) { s.setSettingMap(Settings(u"0", u"1")); }, u"13-O-14[3-12]", false},
      {"override",
       [](Set& s) {
         s.applyOverride({{OhmCfgSetting::WD_XREF_GRAPHIC, u"1"}});
       },
       u"13A14[3-12]", false},
      {"override cleared", [](Set& s) { s.clearOverride(); }, u"13-O-14[3-12]", false},
      {"other override",
       [](Set& s) {
         s.applyOverride({{OhmCfgSetting::WD_XREF_GRAPHICSTYLE, u"0"}});
       },
       u"13-o-14[3-12]", true},
      {"assigned", [](Set& s) { s = Set(Settings(u"2", u"1")); }, u"1314[3-12]", true},
  };
  const OhmDsComponentOcc occ = Contact(u"NO", k13_14);
  OhmNoRxUtilsSettingOverride settings(Settings(u"0", u"0"));
  OhmUtXrefTableEntity entity(settings, u"");
  for (const SettingChange& c : changes) {
    SCOPED_TRACE(c.name);
    c.change(settings);
    std::u16string text;
    ASSERT_TRUE(entity.getUnformattedXrefText(occ, text));
    EXPECT_EQ(text, c.text);
    EXPECT_EQ(entity.isCompOccMatchingRow(occ, {u"13", u"-o-", u"14"}), c.rowMatches);
  }
}

// One occurrence object, changed in place between calls on one entity.
TEST(XrefCaches, AChangedOccurrenceIsReadAsItIsNow) {
  // noText: the plain text, or of a full Form C contact its NO side; rowMatches: whether the row 13, "-o-", 14 matches
  // it afterwards
  const std::tuple<const char*, std::function<void(OhmDsComponentOcc&)>, bool, std::u16string, bool> changes[] = {
      {"terminal text", [](auto& o) { o.mPins[1].mProperties[OhmDsKeys::TERM] = u"24"; }, false, u"13-o-24[3-12]",
       false},
      {"terminal number", [](auto& o) { o.mPins[1].mProperties[OhmDsKeys::TERMCODE] = u"1"; }, false, u"", false},
      {"contact kind", [](auto& o) { o.mProperties[OhmDsKeys::CONTACT] = u"nc"; }, false, u"13-x-14[3-12]", false},
      {"a third pin",
       [](auto& o) {
         o.mProperties[OhmDsKeys::CONTACT] = u"NONC";
         o.mPins.push_back(o.mPins[0]);
         o.mPins.back().mProperties[OhmDsKeys::TERMCODE] = u"3";
       },
       true, u"14-n-13[3-12]", false},
      {"sheet and reference",
       [](auto& o) {
         o.mSheetProperties[OhmDsKeys::SHEET] = u"4";
         o.mProperties.erase(OhmDsKeys::REF);
       },
       false, u"13-o-14[4-]", true},
  };
  OhmNoRxUtilsSettingOverride settings(Settings(u"0", u"0"));
  OhmUtXrefTableEntity entity(settings, u"");
  for (const auto& [name, change, full, noText, rowMatches] : changes) {
    SCOPED_TRACE(name);
    OhmDsComponentOcc occ = Contact(u"NO", k13_14);
    std::u16string text, ncText;
    ASSERT_TRUE(entity.getUnformattedXrefText(occ, text));
    ASSERT_TRUE(entity.isCompOccMatchingRow(occ, {u"13", u"-o-", u"14"}));
    change(occ);
    EXPECT_EQ(entity.isFullFormCContact(occ), full);
    if (full) {
      ASSERT_TRUE(entity.getUnformattedXrefTextForFullFormCContact(occ, text, ncText));
    } else {
      EXPECT_EQ(entity.getUnformattedXrefText(occ, text), !noText.empty());
    }
    EXPECT_EQ(text, noText);
    EXPECT_EQ(entity.isCompOccMatchingRow(occ, {u"13", u"-o-", u"14"}), rowMatches);
  }
}

}  // namespace
