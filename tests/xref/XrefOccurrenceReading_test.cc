// How the entities read occurrences, against the plain form of each rule on
// random inputs: property maps read through exact key lookups and CONTACT
// through an upper-case copy. (TERMCODE is read by the library's own
// conversion, whose cases its own tests take.)
#include <gtest/gtest.h>

#include <random>

#include "PlainText.h"
#include "ohmutils/xref/OhmDsPropertyKeys.h"
#include "ohmutils/xref/OhmUtXrefTableRows.h"
#include "support/u16.h"

namespace {

using Map = OhmDsOccurrence::PropertyMap;
using xref_test::RandomText;

// Each wanted key now and then, among names that differ from the keys in
// one unit or in length; up to twelve entries, so that maps both below and
// above the size at which lookups stop scanning occur.
Map RandomMap(std::mt19937& rng, std::initializer_list<const std::u16string*> wanted) {
  const std::u16string decoys[] = {u"SHEE",    u"SHEETS", u"sheet",   u"IEC_LOCX", u"IEC_PROJ ",   u"REF_",
                                   u"TERMCOD", u"TERMS",  u"CONTACt", u"TERMDESC", u"SHEETDWGNAMe"};
  Map map;
  for (const std::u16string* key : wanted)
    if (rng() % 4) map[*key] = RandomText(rng, u"12ab ", 5);
  for (std::size_t n = rng() % 10; n > 0; --n) map[decoys[rng() % std::size(decoys)]] = u"decoy";
  return map;
}

std::u16string Find(const Map& map, const std::u16string& key) {
  const auto it = map.find(key);
  return it == map.end() ? u"" : it->second;
}

// Every cell a plain contact gives, under a format of all eight tokens.
TEST(XrefOccurrenceReading, CellsAsThePlainLookups) {
  using namespace OhmDsKeys;
  std::mt19937 rng(8123);
  const std::u16string format = u"%S|%N|%I|%L|%P|%D|%A|%B";
  OhmNoRxUtilsSettingOverride settings({{OhmCfgSetting::WD_XREF_FORMAT, format},
                                        {OhmCfgSetting::WD_XREF_ALTFORMAT, format},
                                        {OhmCfgSetting::WD_XREF_TBLINDEX, u"1,3,5,6,7,9"}});
  for (int round = 0; round < 3000; ++round) {
    OhmUtXrefTableEntity entity(settings, u"");
    OhmDsComponentOcc occ;
    occ.mOccID.mDwgPath = u"Z:\\p\\b.dxf";
    occ.mProperties = RandomMap(rng, {&REF});
    occ.mSheetProperties = RandomMap(rng, {&SHEET, &SHEETDWGNAME, &IEC_INST, &IEC_LOC, &IEC_PROJ});
    occ.mXrefValueA = RandomText(rng, u"xy", 3);
    for (const int code : {1, 2}) {
      OhmDsComponentPinOcc pin;
      pin.mProperties = RandomMap(rng, {&TERM});
      pin.mProperties[TERMCODE] = std::u16string(1, static_cast<char16_t>(u'0' + code));
      occ.mPins.push_back(pin);
    }
    const Map& sheet = occ.mSheetProperties;
    const std::u16string reference = Find(sheet, SHEET) + u"|" + Find(occ.mProperties, REF) + u"|" +
                                     Find(sheet, IEC_INST) + u"|" + Find(sheet, IEC_LOC) + u"|" +
                                     Find(sheet, IEC_PROJ) + u"|" + Find(sheet, SHEETDWGNAME) + u"|" + occ.mXrefValueA +
                                     u"|";
    const std::vector<std::u16string> expected{Find(occ.mPins[0].mProperties, TERM),
                                               Find(occ.mPins[1].mProperties, TERM),
                                               reference,
                                               Find(sheet, SHEET),
                                               Find(sheet, SHEETDWGNAME),
                                               occ.mOccID.mDwgPath};
    ASSERT_EQ(OhmUtXrefTableRows::getRows(entity, occ), std::vector<std::vector<std::u16string>>{expected})
        << "sheet map of " << sheet.size() << ", REF " << U8(Find(occ.mProperties, REF));
  }
}

TEST(XrefOccurrenceReading, ContactKindsAsAnUpperCaseCopy) {
  std::mt19937 rng(77);
  for (int round = 0; round < 20000; ++round) {
    const std::u16string contact = RandomText(rng, u"NOCnocx ", 5);
    const std::u16string upper = xref_test::Upper(contact);
    ASSERT_EQ(OhmUtXrefEntity::isValidContactForRelayCoilNO(contact), upper == u"NO") << U8(contact);
    ASSERT_EQ(OhmUtXrefEntity::isValidContactForRelayCoilNC(contact), upper == u"NC") << U8(contact);
    ASSERT_EQ(OhmUtXrefEntity::isValidContactForRelayCoilFormC(contact), upper == u"NONC" || upper == u"NCNO");
  }
}

}  // namespace
