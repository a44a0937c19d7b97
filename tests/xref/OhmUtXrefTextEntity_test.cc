#include "ohmutils/xref/OhmUtXrefTextEntity.h"

#include <gtest/gtest.h>

#include "ohmutils/xref/OhmDsPropertyKeys.h"
#include "support/u16.h"

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
      {u"xref", 64, u"nonc", true, plain},  // Form C under XREF: not underlined
      {u"XREF", 12, u"NO", false, u""},     // types are values, not bits
      {u"XREF", 4, u"", true, plain},       // no CONTACT needed for XREF
      {u"XREFNO", 0, u"no", true, plain},   // type not looked at
      {u"XREFNO", 4, u"", false, u""},
      {u"XREFNC", 4, u"", false, u""},
      {u"XrefNc", 99, u"nc", true, underlined},
      {u"XREF1", 8, u"NO", false, u""},
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

TEST_F(OhmUtXrefTextEntityTest, LabelPrefix) {
  entity.setXrefAttPrompt(u"Ref");
  struct Case {
    std::u16string tag, value;
    std::uint64_t removed;
    std::u16string after;
  } cases[] = {
      {u"XREF", u"Ref 3.105", 4, u"3.105"},
      {u"XREF", u"REF 3.105", 0, u"REF 3.105"},
      {u"XREF", u"Ref3.105", 0, u"Ref3.105"},
      {u"XREF", u" Ref 3.105", 0, u" Ref 3.105"},
      {u"XREF", u"Ref ", 4, u""},
      {u"XREF", u"Ref", 0, u"Ref"},
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

}  // namespace
