// The whole road of a cross-reference, for the text and the table
// presentations: a coil block in a drawing carries its options in xdata; the
// factory makes the object for it; the host drawing is set; then the
// contacts of the coil, on several sheets of several drawings, give their
// texts or are matched to table rows.
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <vector>

#include "ohmutils/xref/OhmDsPropertyKeys.h"
#include "ohmutils/xref/OhmUtXrefEntityFactory.h"
#include "ohmutils/xref/OhmUtXrefTableEntity.h"
#include "ohmutils/xref/OhmUtXrefTableRows.h"
#include "support/u16.h"
#include "zd/db/ZdDbDrawingBuilder.h"

namespace {

using Map = OhmNoRxUtilsSettingOverride::SettingMap;

struct ContactSpec {
  std::u16string contact;
  std::vector<std::u16string> terms;  // TERMCODE 1, 2, ...
  std::u16string drawing, sheet, ref;
};

OhmDsComponentOcc Occurrence(const ContactSpec& spec) {
  OhmDsComponentOcc occ;
  occ.mType = 8;
  occ.mOccID.mDwgPath = u"C:\\PROJ\\" + spec.drawing + u".DWG";
  occ.mProperties[OhmDsKeys::CONTACT] = spec.contact;
  occ.mProperties[OhmDsKeys::REF] = spec.ref;
  occ.mSheetProperties[OhmDsKeys::SHEET] = spec.sheet;
  occ.mSheetProperties[OhmDsKeys::SHEETDWGNAME] = spec.drawing;
  for (std::size_t i = 0; i < spec.terms.size(); ++i) {
    OhmDsComponentPinOcc pin;
    pin.mProperties[OhmDsKeys::TERMCODE] = U16(std::to_string(i + 1));
    pin.mProperties[OhmDsKeys::TERM] = spec.terms[i];
    occ.mPins.push_back(pin);
  }
  return occ;
}

// The contacts of relay coil CR1, which stands on sheet 2 of SHT02.
const std::vector<OhmDsComponentOcc> kContacts = {
    Occurrence({u"NO", {u"13", u"14"}, u"SHT02", u"2", u"104"}),
    Occurrence({u"NC", {u"21", u"22"}, u"SHT03", u"3", u"105"}),
    Occurrence({u"NONC", {u"11", u"14", u"12"}, u"SHT03", u"4", u"201"}),
    Occurrence({u"NO", {u"31", u"34"}, u"SHT05", u"5", u"302"}),
    Occurrence({u"NC", {u"32", u"31"}, u"SHT05", u"5", u"303"}),
};

class XrefRoad : public ::testing::Test {
 protected:
  // The coil block with the options of one presentation.
  ZdDbBlockReference* coil(const std::u16string& style) {
    ZdDbBlockReference* block =
        mBuild.insertBlock(u"HCR1", {{u"TAG1", u"CR1"}, {u"XREFNO", u""}, {u"XREFNC", u""}, {u"XREF", u""}});
    ZdDbDrawingBuilder::setOptionXData(*block, u"KVA_WD_XREF_STYLE", style);
    ZdDbDrawingBuilder::setOptionXData(*block, u"KVA_WD_PINLIST", u"3,31,34,32");
    ZdDbDrawingBuilder::setOptionXData(*block, u"KVA_WD_XREF_ALTFORMAT", u" %D:%S.%N");
    return block;
  }
  // The factory's object for the coil, with its host drawing set.
  template <class Entity>
  std::unique_ptr<Entity> make(const std::u16string& style) {
    std::unique_ptr<OhmUtXrefEntity> object(OhmUtXrefEntityFactory::getXrefEntity(coil(style), mSettings));
    if (!object) return nullptr;
    object->setHostDwgPath(u"c:\\proj\\sht02.dwg");
    auto* typed = dynamic_cast<Entity*>(object.get());
    if (typed) object.release();
    return std::unique_ptr<Entity>(typed);
  }

  ZdDbDatabase mDb;
  ZdDbDrawingBuilder mBuild{mDb};
  OhmNoRxUtilsSettingOverride mSettings{Map{{OhmCfgSetting::WD_XREF_FORMAT, u" %S.%N"},
                                            {OhmCfgSetting::WD_XREF_ALTFORMAT, u" %D-%S.%N"},
                                            {OhmCfgSetting::WD_XREF_STYLE, u"0"},
                                            {OhmCfgSetting::WD_XREF_TXTBTWN, u","},
                                            {OhmCfgSetting::WD_XREF_GRAPHIC, u"0"},
                                            {OhmCfgSetting::WD_XREF_GRAPHICSTYLE, u"0"},
                                            {OhmCfgSetting::WD_XREF_TBLINDEX, u"1,2,3,5,6"}}};
};

TEST_F(XrefRoad, TextPresentationFillsTheCoilsAttributes) {
  ZdDbBlockReference* block = coil(u"0");
  ZdDbDrawingBuilder::setOptionXData(*block, u"KVA_WD_XREF_TXTBTWN", u";");
  std::unique_ptr<OhmUtXrefTextEntity> entity(OhmUtXrefEntityFactory::getXrefTextEntity(block, mSettings));
  ASSERT_NE(entity, nullptr);
  entity->setHostDwgPath(u"C:\\PROJ\\SHT02.DWG");
  std::map<std::u16string, std::u16string> attributes;
  for (const char16_t* tag : {u"XREFNO", u"XREFNC", u"XREF"}) {
    for (const OhmDsComponentOcc& contact : kContacts) {
      std::u16string text;
      if (!entity->getXrefText(tag, contact, text)) continue;
      std::u16string& attribute = attributes[tag];
      if (!attribute.empty()) attribute += entity->getSeparator();
      attribute += text;
    }
  }
  EXPECT_EQ(attributes[u"XREFNO"], u" 2.104; SHT03:4.201; SHT05:5.302");
  EXPECT_EQ(attributes[u"XREFNC"], u"%%u SHT03:3.105%%u;%%u SHT03:4.201%%u;%%u SHT05:5.303%%u");
  EXPECT_EQ(attributes[u"XREF"], u" 2.104;%%u SHT03:3.105%%u; SHT03:4.201; SHT05:5.302;%%u SHT05:5.303%%u");
}

// The rows a caller fills for the contacts are the rows that match them back:
// one per plain and partial Form C contact, two for a full Form C contact.
TEST_F(XrefRoad, TableRowsFilledForContactsMatchThemBack) {
  mSettings.setSettingMap({{OhmCfgSetting::WD_XREF_FORMAT, u" %S.%N"},
                           {OhmCfgSetting::WD_XREF_ALTFORMAT, u" %D-%S.%N"},
                           {OhmCfgSetting::WD_XREF_TBLINDEX, u"1,2,3,5,6,0"},
                           {OhmCfgSetting::WD_XREF_TBLFLDNAMS, u"Aux,From,Symbol,To"}});
  std::unique_ptr<OhmUtXrefTableEntity> entity = make<OhmUtXrefTableEntity>(u"2");
  ASSERT_NE(entity, nullptr);
  using Row = OhmUtXrefTableRows::Row;
  EXPECT_EQ(OhmUtXrefTableRows::getTitles(*entity), (Row{u"From", u"Symbol", u"To", u"", u"", u"Aux"}));
  const std::vector<std::vector<Row>> expected = {
      {{u"13", u"-o-", u"14", u" 2.104", u"2", u""}},
      {{u"21", u"-x-", u"22", u" SHT03:3.105", u"3", u""}},
      {{u"14", u"-n-", u"11", u" SHT03:4.201", u"4", u""}, {u"12", u"-w-", u"11", u" SHT03:4.201", u"4", u""}},
      {{u"34", u"-n-", u"31", u" SHT05:5.302", u"5", u""}},
      {{u"32", u"-w-", u"31", u" SHT05:5.303", u"5", u""}},
  };
  for (std::size_t c = 0; c < kContacts.size(); ++c) {
    SCOPED_TRACE(c);
    const std::vector<Row> rows = OhmUtXrefTableRows::getRows(*entity, kContacts[c]);
    EXPECT_EQ(rows, expected[c]);
    for (const Row& row : rows) EXPECT_TRUE(entity->isCompOccMatchingRow(kContacts[c], row));
  }
}

TEST_F(XrefRoad, TableWithoutVisibleColumnsHasNoRows) {
  mSettings.setSettingMap({{OhmCfgSetting::WD_XREF_TBLINDEX, u""}});
  std::unique_ptr<OhmUtXrefTableEntity> entity = make<OhmUtXrefTableEntity>(u"2");
  ASSERT_NE(entity, nullptr);
  EXPECT_TRUE(OhmUtXrefTableRows::getRows(*entity, kContacts[0]).empty());
  EXPECT_TRUE(OhmUtXrefTableRows::getTitles(*entity).empty());
}

}  // namespace
