#include "ohmutils/xref/OhmUtXrefGraphicEntity.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <tuple>

#include "ContactOcc.h"
#include "ohmutils/xref/OhmDsPropertyKeys.h"
#include "support/StoiFailure.h"
#include "support/u16.h"

namespace {

using Map = OhmNoRxUtilsSettingOverride::SettingMap;
using xref_test::Contact;
using xref_test::k13_14;
using xref_test::Pins;

// The reference of every contact is [3-12].
Map Settings(const std::u16string& graphic, const std::u16string& family, const std::u16string& contactMap = u"A,B,C") {
  return {{OhmCfgSetting::WD_XREF_ALTFORMAT, u"[%S-%N]"},
          {OhmCfgSetting::WD_XREF_GRAPHIC, graphic},
          {OhmCfgSetting::WD_XREF_GRAPHICSTYLE, family},
          {OhmCfgSetting::WD_XREF_CONTACTMAP, contactMap}};
}

// The texts of every kind of contact are checked against their plain rules on
// random coils; here the two rules those coils don't reach.
TEST(OhmUtXrefGraphicEntity, LastTripleWithTheCommonTerminalDecidesAndOption66ComparesExactly) {
  OhmNoRxUtilsSettingOverride settings(Settings(u"0", u"0"));
  OhmUtXrefGraphicEntity entity(settings, u"3,11,14,12;3,11,24,22");
  std::u16string text = u"old";
  ASSERT_TRUE(
      entity.getUnformattedXrefTextForPartialFormCContact(Contact(u"NO", {{u"1", u"11"}, {u"2", u"14"}}), text));
  EXPECT_EQ(text, u"-n-11[3-12]") << "even without a side";
  OhmNoRxUtilsSettingOverride spaced(Settings(u" 1", u""));
  OhmUtXrefGraphicEntity plain(spaced, u"");
  ASSERT_TRUE(plain.getUnformattedXrefText(Contact(u"NO", k13_14), text));
  EXPECT_EQ(text, u"13-o-14[3-12]");
}

// The term map handed to derived classes; the library's own classification
// reads the pins by the same rules (checked on random coils).
TEST(OhmUtXrefGraphicEntity, TermMapRules) {
  struct Probe : OhmUtXrefGraphicEntity {
    using OhmUtXrefGraphicEntity::getCompOccTermMap;
    using OhmUtXrefGraphicEntity::OhmUtXrefGraphicEntity;
  };
  OhmNoRxUtilsSettingOverride settings;
  Probe entity(settings, u"");
  OhmUtXrefGraphicEntity::TermMap map;
  entity.getCompOccTermMap(
      Contact(u"", {{u"0", u"a"}, {u"-1", u"b"}, {u"2A", u" x "}, {u" 3", u"c"}, {u"2", u"y"}, {u"4", u""}}), map,
      false);
  EXPECT_EQ(map, (OhmUtXrefGraphicEntity::TermMap{{2, u"y"}, {3, u"c"}, {4, u""}}));
  entity.getCompOccTermMap(Contact(u"", {{u"2", u" 13 "}}), map, true);
  EXPECT_EQ(map, (OhmUtXrefGraphicEntity::TermMap{{2, u"13"}}));
}

TEST(OhmUtXrefGraphicEntity, BadTerminalNumbersThrowThroughEveryOperation) {
  OhmNoRxUtilsSettingOverride settings(Settings(u"0", u"0"));
  OhmUtXrefGraphicEntity entity(settings, u"3,11,14,12");
  const OhmDsComponentOcc noNumber = Contact(u"NO", {{u"1", u"11"}, {u"x", u"14"}});
  const OhmDsComponentOcc tooLarge = Contact(u"NO", {{u"1", u"11"}, {u"99999999999", u"14"}});
  std::u16string text = u"old", nc = u"old";
  EXPECT_THROW(entity.getUnformattedXrefText(noNumber, text), std::invalid_argument);
  EXPECT_EQ(text, u"");
  EXPECT_THROW(entity.getUnformattedXrefTextForFullFormCContact(tooLarge, text, nc), std::out_of_range);
  EXPECT_EQ(nc, u"");
  EXPECT_EQ(StoiFailure([&] { entity.isPartialFormCContact(Contact(u"NO", {{u"", u"11"}})); }), "invalid");
}

TEST(OhmUtXrefGraphicEntity, ClassificationAndPinList) {
  OhmNoRxUtilsSettingOverride settings(Settings(u"0", u"0"));
  OhmUtXrefGraphicEntity entity(settings,
                                u"3,11,14,12;;2,13,14;3,11,14;3,11,14,12,99;4,21,24,22; 3,31,34,32;3,41,,42;");
  const std::tuple<std::u16string, Pins, bool, bool> cases[] = {
      {u"NC", {{u"1", u"11"}, {u"2", u"12"}}, false, true},
      {u"NO", {{u"1", u"21"}, {u"2", u"24"}}, false, false},  // entry with first field 4
      {u"NO", {{u"1", u"31"}, {u"2", u"34"}}, false, false},  // " 3" is not "3"
      {u"NC", {{u"1", u"41"}, {u"2", u"42"}}, false, true},   // empty NO field still counts
  };
  for (const auto& [contact, pins, full, partial] : cases) {
    SCOPED_TRACE(U8(contact));
    const OhmDsComponentOcc occ = Contact(contact, pins);
    EXPECT_EQ(entity.isFullFormCContact(occ), full);
    EXPECT_EQ(entity.isPartialFormCContact(occ), partial);
  }
}

TEST(OhmUtXrefGraphicEntity, ContactMapIsFixedAtFirstUse) {
  OhmNoRxUtilsSettingOverride settings(Settings(u"1", u""));
  OhmUtXrefGraphicEntity entity(settings, u"");
  const OhmDsComponentOcc occ = Contact(u"NC", {{u"1", u"21"}, {u"2", u"22"}});
  std::u16string text;
  ASSERT_TRUE(entity.getUnformattedXrefText(occ, text));
  EXPECT_EQ(text, u"21B22[3-12]");
  settings.setSettingMap(Settings(u"1", u"", u"X,Y,Z"));
  ASSERT_TRUE(entity.getUnformattedXrefText(occ, text));
  EXPECT_EQ(text, u"21B22[3-12]");  // the map was taken at first use

  OhmNoRxUtilsSettingOverride shortMap(Settings(u"1", u""));
  shortMap.setSettingMap(Settings(u"1", u"", u"A,B"));
  OhmUtXrefGraphicEntity unusable(shortMap, u"");
  EXPECT_FALSE(unusable.getUnformattedXrefText(Contact(u"", {{u"1", u"5"}, {u"2", u"6"}}), text));
  EXPECT_EQ(text, u"");
}

}  // namespace
