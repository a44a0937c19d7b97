// The graphic and table entities on a relay coil with eight contacts of mixed
// classes (two NO, two NC, two full Form C, a partial Form C pair), each beside
// a floor:
// - graphic texts for all contacts, against a floor that reads each
//   contact's pins once and joins the same pieces by hand;
// - isCompOccMatchingRow of 10 visible columns over a 1,000-row table,
//   against a floor that compares the rows with cell values worked out once.
// The entities read an occurrence afresh at every call, once per call; the
// ratio shows what that costs against values worked out once.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "ohmutils/xref/OhmDsPropertyKeys.h"
#include "ohmutils/xref/OhmUtXrefGraphicEntity.h"
#include "ohmutils/xref/OhmUtXrefTableEntity.h"

namespace {

using Map = OhmNoRxUtilsSettingOverride::SettingMap;

OhmDsComponentOcc Contact(const std::u16string& contact, std::vector<std::u16string> terms,
                          const std::u16string& drawing, const std::u16string& sheet, const std::u16string& ref) {
  OhmDsComponentOcc occ;
  occ.mType = 8;
  occ.mOccID.mDwgPath = u"C:\\Projects\\Plant-4711\\Electrical\\" + drawing + u".dwg";
  occ.mProperties[OhmDsKeys::CONTACT] = contact;
  occ.mProperties[OhmDsKeys::REF] = ref;
  occ.mSheetProperties[OhmDsKeys::SHEET] = sheet;
  occ.mSheetProperties[OhmDsKeys::SHEETDWGNAME] = drawing;
  for (std::size_t i = 0; i < terms.size(); ++i) {
    OhmDsComponentPinOcc pin;
    pin.mProperties[OhmDsKeys::TERMCODE] = std::u16string(1, static_cast<char16_t>(u'1' + i));
    pin.mProperties[OhmDsKeys::TERM] = terms[i];
    occ.mPins.push_back(std::move(pin));
  }
  return occ;
}

const std::u16string kHost = u"C:\\Projects\\Plant-4711\\Electrical\\SHT02.dwg";
const std::u16string kPinList = u"3,31,34,32;3,41,44,42";

std::vector<OhmDsComponentOcc> Contacts() {
  return {Contact(u"NO", {u"13", u"14"}, u"SHT02", u"2", u"104"),
          Contact(u"NO", {u"23", u"24"}, u"SHT03", u"3", u"105"),
          Contact(u"NC", {u"21", u"22"}, u"SHT03", u"3", u"106"),
          Contact(u"NC", {u"51", u"52"}, u"SHT04", u"4", u"110"),
          Contact(u"NONC", {u"11", u"14", u"12"}, u"SHT04", u"4", u"201"),
          Contact(u"NONC", {u"61", u"64", u"62"}, u"SHT05", u"5", u"202"),
          Contact(u"NO", {u"31", u"34"}, u"SHT05", u"5", u"302"),
          Contact(u"NC", {u"32", u"31"}, u"SHT05", u"5", u"303")};
}

Map Settings() {
  return {{OhmCfgSetting::WD_XREF_FORMAT, u" %S.%N"},
          {OhmCfgSetting::WD_XREF_ALTFORMAT, u" %D:%S.%N"},
          {OhmCfgSetting::WD_XREF_GRAPHIC, u"0"},
          {OhmCfgSetting::WD_XREF_GRAPHICSTYLE, u"0"},
          {OhmCfgSetting::WD_XREF_TBLINDEX, u"0,1,2,3,4,5,6,7,8,9"}};
}

void BM_GraphicTextsOfACoil(benchmark::State& state) {
  const std::vector<OhmDsComponentOcc> contacts = Contacts();
  OhmNoRxUtilsSettingOverride settings(Settings());
  OhmUtXrefGraphicEntity entity(settings, kPinList);
  entity.setHostDwgPath(kHost);
  std::u16string text, ncText;
  for (auto _ : state) {
    for (const OhmDsComponentOcc& contact : contacts) {
      if (entity.isFullFormCContact(contact)) {
        entity.getUnformattedXrefTextForFullFormCContact(contact, text, ncText);
      } else if (entity.isPartialFormCContact(contact)) {
        entity.getUnformattedXrefTextForPartialFormCContact(contact, text);
      } else {
        entity.getUnformattedXrefText(contact, text);
      }
      benchmark::DoNotOptimize(text.data());
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(contacts.size()));
}
BENCHMARK(BM_GraphicTextsOfACoil);

// The same lines, with the classes and the reference already known: one pass
// over the pins and a join, which is all a text needs at the least.
void BM_GraphicTextsFloor(benchmark::State& state) {
  const std::vector<OhmDsComponentOcc> contacts = Contacts();
  const char16_t* symbols[] = {u"-o-", u"-o-", u"-x-", u"-x-", u"-n-", u"-n-", u"-n-", u"-w-"};
  std::u16string text, terms[3];
  text.reserve(64);
  for (auto _ : state) {
    for (std::size_t c = 0; c < contacts.size(); ++c) {
      const OhmDsComponentOcc& contact = contacts[c];
      for (std::size_t p = 0; p < contact.mPins.size(); ++p) terms[p] = contact.mPins[p].getProperty(OhmDsKeys::TERM);
      text.assign(terms[0]).append(symbols[c]).append(terms[1]).append(u" ");
      text.append(contact.mSheetProperties.at(OhmDsKeys::SHEETDWGNAME)).append(u":");
      text.append(contact.mSheetProperties.at(OhmDsKeys::SHEET))
          .append(u".")
          .append(contact.getProperty(OhmDsKeys::REF));
      benchmark::DoNotOptimize(text.data());
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(contacts.size()));
}
BENCHMARK(BM_GraphicTextsFloor);

// 1,000 rows of a coil table, the row of the full Form C contact last. Most
// rows differ in their first terminal; one in ten differs only in its
// reference, so the matching goes through most columns for those.
std::vector<std::vector<std::u16string>> Rows() {
  std::vector<std::vector<std::u16string>> rows;
  const std::u16string path = u"C:\\Projects\\Plant-4711\\Electrical\\SHT04.dwg";
  for (int r = 0; r < 999; ++r) {
    const bool nearMiss = r % 10 == 0;
    const std::u16string term1 = nearMiss ? u"14" : u"T" + std::u16string(1, static_cast<char16_t>(u'A' + r % 26));
    rows.push_back({u"", term1, u"-n-", u"11", u"",
                    u" SHT04:4.9" + std::u16string(1, static_cast<char16_t>(u'0' + r % 10)), u"4", u"SHT04", u"SHT04",
                    path});
  }
  rows.push_back({u"", u"12", u"-w-", u"11", u"", u" SHT04:4.201", u"4", u"SHT04", u"SHT04", path});
  return rows;
}

void BM_MatchRowsOfATable(benchmark::State& state) {
  const OhmDsComponentOcc formC = Contacts()[4];
  const auto rows = Rows();
  OhmNoRxUtilsSettingOverride settings(Settings());
  OhmUtXrefTableEntity entity(settings, kPinList);
  entity.setHostDwgPath(kHost);
  std::size_t matches = 0;
  for (auto _ : state) {
    for (const auto& row : rows) matches += entity.isCompOccMatchingRow(formC, row);
  }
  if (matches != static_cast<std::size_t>(state.iterations())) state.SkipWithError("expected one match per pass");
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(rows.size()));
}
BENCHMARK(BM_MatchRowsOfATable);

// The rows compared with the two sets of values of the contact, worked out
// once: exact unit comparison, first difference ends a row.
void BM_MatchRowsFloor(benchmark::State& state) {
  const auto rows = Rows();
  const std::vector<std::u16string>& nc = rows.back();
  std::vector<std::u16string> no = nc;
  no[1] = u"14";
  no[2] = u"-n-";
  std::size_t matches = 0;
  for (auto _ : state) {
    for (const auto& row : rows) {
      bool same = row.size() == no.size();
      for (std::size_t i = 1; same && i < row.size(); ++i) same = row[i] == no[i] || row[i] == nc[i];
      matches += same;
    }
  }
  if (matches != static_cast<std::size_t>(state.iterations())) state.SkipWithError("expected one match per pass");
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(rows.size()));
}
BENCHMARK(BM_MatchRowsFloor);

}  // namespace

BENCHMARK_MAIN();
