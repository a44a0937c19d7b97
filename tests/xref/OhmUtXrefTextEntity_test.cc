#include "ohmutils/xref/OhmUtXrefTextEntity.h"

#include <gtest/gtest.h>

#include <tuple>

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

TEST_F(OhmUtXrefTextEntityTest, Outcomes) {
  const std::u16string plain = u"SHT03/3.105", underlined = u"%%uSHT03/3.105%%u";
  // Tag, occurrence type and contact, and the text given ("": false). The
  // worked example's six rows first; Form C under XREF is not underlined,
  // types are values, not bits, XREFNO doesn't look at the type.
  const std::tuple<std::u16string, std::int32_t, std::u16string, std::u16string> cases[] = {
      {u"XREF", 8, u"NO", plain},        {u"XREF", 8, u"NC", underlined}, {u"XREFNO", 8, u"NC", u""},
      {u"XREFNC", 8, u"NC", underlined}, {u"XREFNO", 8, u"NCNO", plain},  {u"XREFNC", 8, u"NCNO", underlined},
      {u"xref", 64, u"nonc", plain},     {u"XREF", 12, u"NO", u""},       {u"XREFNO", 0, u"no", plain},
      {u"XREFNC", 4, u"", u""},          {u"XREF1", 8, u"NO", u""}};
  for (const auto& [tag, type, contact, expected] : cases) {
    SCOPED_TRACE(U8(tag) + " " + std::to_string(type) + " " + U8(contact));
    std::u16string text = u"old";
    EXPECT_EQ(entity.getXrefText(tag, Occurrence(type, contact), text), !expected.empty());
    EXPECT_EQ(text, expected);
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
  EXPECT_EQ(bare.getSeparator(), u",") << "without option 65";
}

TEST_F(OhmUtXrefTextEntityTest, LabelPrefix) {
  // Prompt, tag and value, and the units removed from its front.
  const std::tuple<std::u16string, std::u16string, std::u16string, std::uint64_t> cases[] = {
      {u"Ref", u"XREF", u"Ref 3.105", 4}, {u"Ref", u"XREF", u"REF 3.105", 0},   {u"Ref", u"XREF", u"Ref ", 4},
      {u"Ref", u"XREF", u"Ref", 0},       {u"Ref", u"XREFNO", u"Ref 3.105", 0}, {u"", u"XREF", u" 3.105", 0},
  };
  for (const auto& [prompt, tag, before, removed] : cases) {
    SCOPED_TRACE(U8(prompt) + " " + U8(tag) + " " + U8(before));
    entity.setXrefAttPrompt(prompt);
    std::u16string value = before;
    EXPECT_EQ(entity.removeLabelPrefixFromAttribute(tag, value), removed);
    EXPECT_EQ(value, before.substr(removed));
  }
}

}  // namespace
