#include "ohmutils/xref/OhmUtXrefTextEntity.h"

#include <gtest/gtest.h>

#include "ohmutils/xref/OhmDsPropertyKeys.h"
#include "support/u16.h"
#include "zd/ZdDbDrawingBuilder.h"

namespace {

using Map = OhmNoRxUtilsSettingOverride::SettingMap;

OhmDsComponentOcc Occurrence(std::int32_t type, const std::u16string& contact) {
  OhmDsComponentOcc occ;
  occ.mType = type;
  occ.mOccID.mDwgPath = u"C:\\PROJ\\SHT03.DWG";
  occ.mProperties[OhmDsKeys::REF] = u"105";
  if (!contact.empty()) occ.mProperties[OhmDsKeys::CONTACT] = contact;
  occ.mSheetProperties[OhmDsKeys::SHEET] = u"3";
  occ.mSheetProperties[OhmDsKeys::SHEETDWGNAME] = u"SHT03";
  return occ;
}

class OhmUtXrefTextEntityTest : public ::testing::Test {
 protected:
  OhmNoRxUtilsSettingOverride settings{
      Map{{OhmCfgSetting::WD_XREF_FORMAT, u"%S.%N"}, {OhmCfgSetting::WD_XREF_ALTFORMAT, u"%D/%S.%N"}}};
  OhmUtXrefTextEntity entity{settings};
  void SetUp() override { entity.setHostDwgPath(u"C:\\PROJ\\SHT02.DWG"); }
};

struct OutcomeCase {
  std::u16string tag;
  std::int32_t type;
  std::u16string contact;
  bool result;
  std::u16string text;
};

TEST_F(OhmUtXrefTextEntityTest, Outcomes) {
  const std::u16string plain = u"SHT03/3.105", underlined = u"%%uSHT03/3.105%%u";
  const OutcomeCase cases[] = {
      // the worked example
      {u"XREF", 8, u"NO", true, plain},
      {u"XREF", 8, u"NC", true, underlined},
      {u"XREFNO", 8, u"NC", false, u""},
      {u"XREFNC", 8, u"NC", true, underlined},
      {u"XREFNO", 8, u"NCNO", true, plain},
      {u"XREFNC", 8, u"NCNO", true, underlined},
      // the rest of the table
      {u"xref", 64, u"nonc", true, plain},      // Form C under XREF: not underlined
      {u"XREF", 12, u"NO", false, u""},         // types are values, not bits
      {u"XREF", 0, u"", false, u""},
      {u"XREF", 4, u"", true, plain},           // no CONTACT needed for XREF
      {u"XREFNO", 0, u"no", true, plain},       // type not looked at
      {u"XREFNO", 4, u"", false, u""},
      {u"XREFNC", 4, u"", false, u""},
      {u"XrefNc", 99, u"nc", true, underlined},
      {u"XREF1", 8, u"NO", false, u""},
      {u"XREF ", 8, u"NO", false, u""},
      {u"XREFNO", 8, u"NC/NO", false, u""},
  };
  for (const OutcomeCase& c : cases) {
    SCOPED_TRACE(U8(c.tag) + " " + std::to_string(c.type) + " " + U8(c.contact));
    std::u16string text = u"old";
    EXPECT_EQ(entity.getXrefText(c.tag, Occurrence(c.type, c.contact), text), c.result);
    EXPECT_EQ(text, c.text);
  }
}

TEST_F(OhmUtXrefTextEntityTest, TrueWithEmptyTextWhenTheFormatIsEmpty) {
  OhmNoRxUtilsSettingOverride empty;
  OhmUtXrefTextEntity bare(empty);
  std::u16string text = u"old";
  EXPECT_TRUE(bare.getXrefText(u"XREFNC", Occurrence(8, u"NC"), text));
  EXPECT_EQ(text, u"%%u%%u");
  EXPECT_TRUE(bare.getXrefText(u"XREF", Occurrence(8, u"NO"), text));
  EXPECT_EQ(text, u"");
}

TEST_F(OhmUtXrefTextEntityTest, TagTests) {
  EXPECT_TRUE(OhmUtXrefTextEntity::isXrefTag(u"Xref"));
  EXPECT_FALSE(OhmUtXrefTextEntity::isXrefTag(u"XREFNC"));
  EXPECT_TRUE(OhmUtXrefTextEntity::isXrefTagForRelayCoilNC(u"xrefnc"));
  EXPECT_FALSE(OhmUtXrefTextEntity::isXrefTagForRelayCoil(u"XREF"));
  EXPECT_TRUE(OhmUtXrefTextEntity::isXrefTagForRelayCoil(u"xrefNO"));
}

TEST_F(OhmUtXrefTextEntityTest, LabelPrefix) {
  entity.setXrefAttPrompt(u"Ref");
  struct Case { std::u16string tag, value; std::uint64_t removed; std::u16string after; } cases[] = {
      {u"XREF", u"Ref 3.105", 4, u"3.105"}, {u"XREF", u"REF 3.105", 0, u"REF 3.105"},
      {u"XREF", u"Ref3.105", 0, u"Ref3.105"}, {u"XREF", u" Ref 3.105", 0, u" Ref 3.105"},
      {u"XREF", u"Ref ", 4, u""},           {u"XREF", u"Ref", 0, u"Ref"},
      {u"XREFNO", u"Ref 3.105", 0, u"Ref 3.105"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(U8(c.tag) + " " + U8(c.value));
    std::u16string value = c.value;
    EXPECT_EQ(entity.removeLabelPrefixFromAttribute(c.tag, value), c.removed);
    EXPECT_EQ(value, c.after);
  }
  entity.setXrefAttPrompt(u"");
  std::u16string value = u" 3.105";
  EXPECT_EQ(entity.removeLabelPrefixFromAttribute(u"XREF", value), 0u);
}

// The road of one text cross-reference: a coil block in a drawing with its
// own options in xdata, the factory's override step, then the texts of its
// three attributes joined with the separator.
TEST(TextCrossReferenceRoad, FromDrawingEntityToAttributeTexts) {
  ZdDbDatabase db;
  ZdDbDrawingBuilder build(db);
  ZdDbBlockReference* coil = build.insertBlock(u"HCR1", {{u"TAG1", u"CR1"}, {u"XREFNO", u""}, {u"XREFNC", u""}, {u"XREF", u""}});
  ZdDbDrawingBuilder::setOptionXData(*coil, u"KVA_WD_XREF_STYLE", u"0");
  ZdDbDrawingBuilder::setOptionXData(*coil, u"KVA_WD_XREF_ALTFORMAT", u"%D:%S.%N");
  ZdDbDrawingBuilder::setOptionXData(*coil, u"KVA_WD_XREF_TXTBTWN", u"; ");
  OhmNoRxUtilsSettingOverride settings(Map{{OhmCfgSetting::WD_XREF_FORMAT, u"%S.%N"},
                                           {OhmCfgSetting::WD_XREF_ALTFORMAT, u"%D-%S.%N"},
                                           {OhmCfgSetting::WD_XREF_STYLE, u"1"},
                                           {OhmCfgSetting::WD_XREF_TXTBTWN, u","}});
  OhmUtXrefTextEntity entity(settings);
  entity.applyEntityOverrides(coil);
  entity.setHostDwgPath(u"C:\\PROJ\\SHT02.DWG");
  std::u16string style;
  ASSERT_TRUE(settings.getSettingValue(OhmCfgSetting::WD_XREF_STYLE, style));
  EXPECT_EQ(style, u"0");
  EXPECT_EQ(entity.getStyle(), OhmUtXrefEntity::StyleText);

  std::vector<OhmDsComponentOcc> contacts{Occurrence(8, u"NO"), Occurrence(8, u"NC"), Occurrence(8, u"NONC")};
  contacts[0].mOccID.mDwgPath = u"c:\\proj\\sht02.dwg";  // same drawing, other case
  contacts[0].mSheetProperties[OhmDsKeys::SHEET] = u"2";
  contacts[0].mProperties[OhmDsKeys::REF] = u"104";
  std::map<std::u16string, std::u16string> joined;
  for (const char16_t* tag : {u"XREFNO", u"XREFNC", u"XREF"}) {
    for (const OhmDsComponentOcc& contact : contacts) {
      std::u16string text;
      if (!entity.getXrefText(tag, contact, text)) continue;
      std::u16string& attribute = joined[tag];
      if (!attribute.empty()) attribute += entity.getSeparator();
      attribute += text;
    }
  }
  EXPECT_EQ(joined[u"XREFNO"], u"2.104; SHT03:3.105");
  EXPECT_EQ(joined[u"XREFNC"], u"%%uSHT03:3.105%%u; %%uSHT03:3.105%%u");
  EXPECT_EQ(joined[u"XREF"], u"2.104; %%uSHT03:3.105%%u; SHT03:3.105");

  // A null drawing entity clears the overrides again.
  entity.applyEntityOverrides(nullptr);
  EXPECT_EQ(entity.getSeparator(), u",");
}

}  // namespace
