// The fast paths of the cross-reference engine against the plain form of
// their algorithms, on random inputs.
#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <random>

#include "ContactOcc.h"
#include "PlainText.h"
#include "ohmutils/xref/OhmNoRxUtilsXrefTextFormat.h"
#include "ohmutils/xref/OhmUtXrefTableEntity.h"
#include "support/u16.h"

namespace {

using Format = OhmNoRxUtilsXrefTextFormat;
using xref_test::Upper;

// Units on both sides of the a-z and A-Z ranges, and beyond ASCII.
const std::u16string kPathUnits = u"@AMZ[`amz{\\.0\u00c4\u00e4\u0141\u0142";

// The second path is the first with some units swapped for their other case
// or for any unit, so that equal, nearly equal and unequal pairs all occur,
// at lengths across the comparison's blocks.
TEST(XrefTextFormatFastPath, ChoosesTheFormatAsThePlainPathComparison) {
  std::mt19937 rng(7041);
  const Format::Option option{u"same", u"other", false};
  for (int round = 0; round < 20000; ++round) {
    const std::u16string host = xref_test::RandomText(rng, kPathUnits, 69);
    Format::RefData data;
    data.mDwgPath = host;
    for (char16_t& unit : data.mDwgPath) {
      const unsigned change = rng() % 8;
      if (change == 0) unit = kPathUnits[rng() % kPathUnits.size()];
      if (change == 1 && unit >= u'A' && unit <= u'z') unit ^= 0x20;
    }
    if (rng() % 16 == 0) data.mDwgPath.push_back(u'a');
    std::u16string out;
    Format::getXrefText(option, host, data, out);
    ASSERT_EQ(out, Upper(host) == Upper(data.mDwgPath) ? u"same" : u"other") << U8(host) << " / " << U8(data.mDwgPath);
  }
}

// --- graphic texts and table rows, against the rules written out plainly ---

// A random contact: its CONTACT value, pins, the coil's pin list and style.
struct RandomCoil {
  std::u16string contact;
  xref_test::Pins pins;
  std::u16string pinList;
  std::u16string graphic, family;
};

RandomCoil MakeCoil(std::mt19937& rng) {
  const std::u16string contacts[] = {u"NO", u"no", u"NC", u"nC", u"NONC", u"ncno", u"X", u""};
  const std::u16string codes[] = {u"1", u"2", u"3", u"1", u"2", u"0", u"4", u" 2"};
  const std::u16string terms[] = {u"11", u"12", u"14", u" 11", u"14 ", u"13", u""};
  const std::u16string pinLists[] = {u"3,11,14,12", u"3,11,14,12;3,13,11,14", u"", u"3,14,11,13"};
  RandomCoil coil;
  coil.contact = contacts[rng() % std::size(contacts)];
  for (std::size_t n = rng() % 5; n > 0; --n)
    coil.pins.emplace_back(codes[rng() % std::size(codes)], terms[rng() % std::size(terms)]);
  coil.pinList = pinLists[rng() % std::size(pinLists)];
  coil.graphic = std::u16string(1, static_cast<char16_t>(u'0' + rng() % 3));
  coil.family = std::u16string(1, static_cast<char16_t>(u'0' + rng() % 2));
  return coil;
}

std::u16string Trimmed(const std::u16string& text) {
  const std::size_t first = text.find_first_not_of(u' ');
  return first == std::u16string::npos ? u"" : text.substr(first, text.find_last_not_of(u' ') - first + 1);
}

// The rules of the graphic entity for one coil, straight from their wording.
struct PlainCoil {
  std::map<int, std::u16string> terms;  // untrimmed; the later pin wins, numbers below 1 skipped
  std::u16string kind;                  // NO, NC, FORMC, EMPTY or OTHER
  bool full = false, partial = false;
  std::u16string common, no, nc;  // of a partial Form C contact
  const std::u16string reference = u"[3-12]";

  explicit PlainCoil(const RandomCoil& c) {
    for (const auto& [code, term] : c.pins)
      if (std::stoi(U8(code)) >= 1) terms[std::stoi(U8(code))] = term;
    const std::u16string upper = Upper(c.contact);
    kind = upper.empty()                          ? u"EMPTY"
           : upper == u"NO" || upper == u"NC"     ? upper
           : upper == u"NONC" || upper == u"NCNO" ? u"FORMC"
                                                  : u"OTHER";
    full = kind == u"FORMC" && terms.size() == 3 && terms.count(1) && terms.count(2) && terms.count(3);
    std::vector<std::vector<std::u16string>> triples;
    std::u16string list = c.pinList + u";";
    for (std::size_t start = 0, end; (end = list.find(u';', start)) != std::u16string::npos; start = end + 1) {
      std::vector<std::u16string> fields;
      std::u16string entry = list.substr(start, end - start) + u",";
      for (std::size_t s = 0, e; (e = entry.find(u',', s)) != std::u16string::npos; s = e + 1)
        fields.push_back(entry.substr(s, e - s));
      if (fields.size() == 4 && fields[0] == u"3") triples.push_back(fields);
    }
    if ((kind == u"NO" || kind == u"NC") && terms.size() == 2 && terms.count(1) && terms.count(2)) {
      const std::size_t side = kind == u"NO" ? 2 : 3;
      for (const auto& t : triples)
        partial = partial || (terms[1] == t[1] && terms[2] == t[side]) || (terms[2] == t[1] && terms[1] == t[side]);
    }
    if (!partial) return;
    const std::u16string t1 = Trimmed(terms[1]), t2 = Trimmed(terms[2]);
    for (const auto& t : triples) {
      for (int key : {1, 2}) {
        const std::u16string& value = key == 1 ? t1 : t2;
        const std::u16string& other = key == 1 ? t2 : t1;
        if (value != t[1]) continue;
        common = value;
        no = other == t[2] ? other : u"";
        nc = other != t[2] && other == t[3] ? other : u"";
        if (!no.empty() || !nc.empty() || other == t[2] || other == t[3]) break;
      }
    }
  }
  // Symbol for the class, style 0/1 family 0/1, 1 contact map A,B,C, 2 none; nullopt when there is none.
  std::optional<std::u16string> Symbol(const RandomCoil& c, bool ncSide) const {
    if (c.graphic == u"2") return u"";
    if (c.graphic == u"1") {
      if (kind == u"OTHER") return std::nullopt;
      return kind == u"NO" ? u"A" : kind == u"NC" ? u"B" : kind == u"FORMC" ? u"C" : u"";
    }
    const bool second = c.family == u"1";
    if (full || partial) {
      const bool noSymbol = full ? !ncSide : kind == u"NO";
      return std::u16string(second ? (noSymbol ? u"-N-" : u"-W-") : (noSymbol ? u"-n-" : u"-w-"));
    }
    if (kind == u"NO") return std::u16string(second ? u"-O-" : u"-o-");
    if (kind == u"NC") return std::u16string(second ? u"-X-" : u"-x-");
    if (kind == u"EMPTY") return std::u16string(second ? u"-'-" : u"-.-");
    return std::nullopt;
  }
  std::u16string Term(int number) const { return terms.count(number) ? terms.at(number) : u""; }
};

OhmNoRxUtilsSettingOverride::SettingMap CoilSettings(const RandomCoil& c) {
  return {{OhmCfgSetting::WD_XREF_FORMAT, u"[%S-%N]"},   {OhmCfgSetting::WD_XREF_ALTFORMAT, u"[%S-%N]"},
          {OhmCfgSetting::WD_XREF_GRAPHIC, c.graphic},   {OhmCfgSetting::WD_XREF_GRAPHICSTYLE, c.family},
          {OhmCfgSetting::WD_XREF_CONTACTMAP, u"A,B,C"}, {OhmCfgSetting::WD_XREF_TBLINDEX, u"0,1,2,3,5,6"}};
}

TEST(XrefGraphicFastPath, GivesTheTextsOfThePlainRules) {
  std::mt19937 rng(1807);
  for (int round = 0; round < 5000; ++round) {
    const RandomCoil c = MakeCoil(rng);
    const PlainCoil plain(c);
    OhmNoRxUtilsSettingOverride settings(CoilSettings(c));
    OhmUtXrefGraphicEntity entity(settings, c.pinList);
    const OhmDsComponentOcc occ = xref_test::Contact(c.contact, c.pins);
    SCOPED_TRACE("contact " + U8(c.contact) + ", " + std::to_string(c.pins.size()) + " pins, list " + U8(c.pinList) +
                 ", style " + U8(c.graphic + c.family));
    ASSERT_EQ(entity.isFullFormCContact(occ), plain.full);
    ASSERT_EQ(entity.isPartialFormCContact(occ), plain.partial);
    std::u16string text, nc;
    const std::optional<std::u16string> symbol = plain.Symbol(c, false);
    const bool plainOk = !plain.full && !plain.partial && plain.terms.count(1) && plain.terms.count(2) && symbol;
    ASSERT_EQ(entity.getUnformattedXrefText(occ, text), plainOk);
    ASSERT_EQ(text, plainOk ? Trimmed(plain.Term(1)) + *symbol + Trimmed(plain.Term(2)) + plain.reference : u"");
    const bool fullOk = plain.full && symbol;
    ASSERT_EQ(entity.getUnformattedXrefTextForFullFormCContact(occ, text, nc), fullOk);
    if (fullOk) {
      ASSERT_EQ(text, Trimmed(plain.Term(2)) + *symbol + Trimmed(plain.Term(1)) + plain.reference);
      ASSERT_EQ(nc, Trimmed(plain.Term(3)) + *plain.Symbol(c, true) + plain.reference);
    }
    const bool partialOk = plain.partial && symbol;
    ASSERT_EQ(entity.getUnformattedXrefTextForPartialFormCContact(occ, text), partialOk);
    if (partialOk) {
      ASSERT_EQ(text, plain.kind == u"NO" ? plain.no + *symbol + plain.common + plain.reference
                                          : plain.nc + *symbol + plain.reference);
    }
  }
}

// Columns 0,1,2,3,5,6: a cell of the caller's own, terminal 1, symbol,
// terminal 2, reference and sheet. Rows are the contact's own values with
// one cell changed now and then, so that matches and near misses both occur.
TEST(XrefTableFastPath, MatchesRowsAsThePlainRules) {
  std::mt19937 rng(2903);
  const std::u16string others[] = {u"11", u"14", u"-n-", u"[3-12]", u"3", u"", u" ", u"C"};
  for (int round = 0; round < 5000; ++round) {
    const RandomCoil c = MakeCoil(rng);
    const PlainCoil plain(c);
    OhmNoRxUtilsSettingOverride settings(CoilSettings(c));
    OhmUtXrefTableEntity entity(settings, c.pinList);
    const OhmDsComponentOcc occ = xref_test::Contact(c.contact, c.pins);
    const bool ncSide = plain.full && rng() % 2;
    const bool contactMap = c.graphic == u"1";
    // The value each contact cell must hold; nullopt when it can't be worked out.
    std::optional<std::u16string> term1, term2, symbol = plain.Symbol(c, ncSide);
    if (plain.partial) {
      term1 = plain.kind == u"NO" ? plain.no : plain.nc;
      term2 = plain.common;
    } else if (plain.full) {
      term1 = plain.Term(ncSide ? 3 : 2);
      term2 = plain.Term(1);
    } else {
      if (plain.terms.count(1)) term1 = plain.Term(1);
      if (plain.terms.count(2)) term2 = plain.Term(2);
      if (symbol && symbol->empty() && contactMap) symbol = u" ";
    }
    std::vector<std::u16string> row{
        u"aux", term1.value_or(u"?"), symbol.value_or(u"?"), term2.value_or(u"?"), plain.reference, u"3"};
    if (rng() % 2) row[rng() % row.size()] = others[rng() % std::size(others)];
    // Each cell on its own; a full Form C cell may hold either side's value.
    const bool cell1 = term1 && (row[1] == *term1 || (plain.full && row[1] == plain.Term(ncSide ? 2 : 3)));
    const bool cell2 =
        c.graphic == u"2" || (symbol && (row[2] == *symbol || (plain.full && row[2] == *plain.Symbol(c, !ncSide))));
    const bool cell3 = term2 && row[3] == *term2;
    const bool expected = cell1 && cell2 && cell3 && row[4] == plain.reference && row[5] == u"3";
    SCOPED_TRACE("contact " + U8(c.contact) + ", list " + U8(c.pinList) + ", style " + U8(c.graphic + c.family));
    ASSERT_EQ(entity.isCompOccMatchingRow(occ, row), expected)
        << U8(row[1]) << "|" << U8(row[2]) << "|" << U8(row[3]) << "|" << U8(row[4]);
  }
}

}  // namespace
