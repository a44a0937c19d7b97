#include "ohmutils/xref/OhmUtXrefGraphicEntity.h"

#include <algorithm>
#include <iterator>

#include "mfc/CString.h"
#include "ohmutils/util/OhmUtilsStringSplit.h"
#include "ohmutils/util/OhmUtilsStringSplit_internal.h"
#include "ohmutils/xref/OhmDsOccurrence_internal.h"
#include "ohmutils/xref/OhmDsPropertyKeys.h"
#include "ohmutils/xref/OhmUtXrefEntity_internal.h"
#include "win/CrtChar.h"

const std::u16string OhmUtXrefGraphicEntity::mStyle1SymbolTextForNO = u"-o-";
const std::u16string OhmUtXrefGraphicEntity::mStyle1SymbolTextForNC = u"-x-";
const std::u16string OhmUtXrefGraphicEntity::mStyle1SymbolTextForNIL = u"-.-";
const std::u16string OhmUtXrefGraphicEntity::mStyle1SymbolTextForFORMC_NO = u"-n-";
const std::u16string OhmUtXrefGraphicEntity::mStyle1SymbolTextForFORMC_NC = u"-w-";
const std::u16string OhmUtXrefGraphicEntity::mStyle2SymbolTextForNO = u"-O-";
const std::u16string OhmUtXrefGraphicEntity::mStyle2SymbolTextForNC = u"-X-";
const std::u16string OhmUtXrefGraphicEntity::mStyle2SymbolTextForNIL = u"-'-";
const std::u16string OhmUtXrefGraphicEntity::mStyle2SymbolTextForFORMC_NO = u"-N-";
const std::u16string OhmUtXrefGraphicEntity::mStyle2SymbolTextForFORMC_NC = u"-W-";

OhmUtXrefGraphicEntity::OhmUtXrefGraphicEntity(OhmNoRxUtilsSettingOverride& settingOverride,
                                               const std::u16string& pinList)
    : OhmUtXrefEntity(settingOverride), mPinList(pinList) {
  mStyle = StyleGraphic;
}

OhmUtXrefGraphicEntity::OhmUtXrefGraphicEntity(const OhmUtXrefGraphicEntity& other) = default;

OhmUtXrefGraphicEntity::~OhmUtXrefGraphicEntity() = default;

// --- initialisation ---------------------------------------------------------

void OhmUtXrefGraphicEntity::init() {
  if (isInitialized()) return;
  OhmUtXrefEntity::init();
  updateContactMap();
  updateFormCPins();
}

void OhmUtXrefGraphicEntity::updateContactMap() {
  mContactMap.clear();
  std::u16string value;
  mSettingOverride.getSettingValue(OhmCfgSetting::WD_XREF_CONTACTMAP, value);
  if (!value.empty()) OhmUtilsSplitString(value, u',', mContactMap);
}

void OhmUtXrefGraphicEntity::updateFormCPins() {
  mFormCPins.clear();
  std::vector<std::u16string> entries;
  std::vector<std::u16string> fields;
  OhmUtilsSplitString(mPinList, u';', entries);
  for (const std::u16string& entry : entries) {
    if (entry.empty()) continue;
    OhmUtilsSplitString(entry, u',', fields);
    if (fields.size() == 4 && fields[0] == u"3") mFormCPins.emplace_back(fields[1], fields[2], fields[3]);
  }
}

void OhmUtXrefGraphicEntity::getXrefOptionEntOverride(const ZdDbEntity* entity,
                                                      OhmNoRxUtilsSettingOverride::SettingMap& overrides) const {
  OhmUtXrefEntity::getXrefOptionEntOverride(entity, overrides);
  if (!entity) return;
  readXDataOptions(*entity,
                   {{u"KVA_WD_XREF_GRAPHIC", OhmCfgSetting::WD_XREF_GRAPHIC},
                    {u"KVA_WD_XREF_GRAPHICSTYLE", OhmCfgSetting::WD_XREF_GRAPHICSTYLE},
                    {u"KVA_WD_XREF_CONTACTMAP", OhmCfgSetting::WD_XREF_CONTACTMAP}},
                   overrides);
}

// --- terminals and classification -------------------------------------------

bool OhmUtXrefGraphicEntity::getCompOccTermMap(const OhmDsComponentOcc& occurrence, TermMap& termMap, bool trim) const {
  termMap.clear();
  for (const OhmDsComponentPinOcc& pin : occurrence.mPins) {
    const std::int32_t number = ohm_internal::stoiDecimal(pin.getProperty(OhmDsKeys::TERMCODE));
    if (number < 1) continue;
    const std::u16string& term = pin.getProperty(OhmDsKeys::TERM);
    termMap[number] = trim ? CString(term).Trim().str() : term;
  }
  return true;
}

bool OhmUtXrefGraphicEntity::isFullFormCContact(TermMap& termMap) const {
  return termMap.size() == 3 && termMap.count(1) && termMap.count(2) && termMap.count(3);
}

bool OhmUtXrefGraphicEntity::isPartialFormCSide(const TermMap& termMap, std::size_t side) const {
  if (termMap.size() != 2) return false;
  const auto first = termMap.find(1);
  const auto second = termMap.find(2);
  if (first == termMap.end() || second == termMap.end()) return false;
  return isPartialFormCSide(first->second, second->second, side);
}

bool OhmUtXrefGraphicEntity::isPartialFormCSide(const std::u16string& t1, const std::u16string& t2,
                                                std::size_t side) const {
  for (const PinTriple& triple : mFormCPins) {
    const std::u16string& common = std::get<0>(triple);
    const std::u16string& other = side == 1 ? std::get<1>(triple) : std::get<2>(triple);
    if ((t1 == common && t2 == other) || (t2 == common && t1 == other)) return true;
  }
  return false;
}

bool OhmUtXrefGraphicEntity::isPartialFormC_NOContact(TermMap& termMap) const { return isPartialFormCSide(termMap, 1); }

bool OhmUtXrefGraphicEntity::isPartialFormC_NCContact(TermMap& termMap) const { return isPartialFormCSide(termMap, 2); }

OhmUtXrefGraphicEntity::ContactKind OhmUtXrefGraphicEntity::contactKindOf(const std::u16string& contact) {
  using ohm_internal::ContactText;
  switch (ohm_internal::contactTextOf(contact)) {
    case ContactText::Empty:
      return ContactKind::Empty;
    case ContactText::NO:
      return ContactKind::NO;
    case ContactText::NC:
      return ContactKind::NC;
    case ContactText::FormC:
      return ContactKind::FormC;
    case ContactText::Other:
      break;
  }
  return ContactKind::Other;
}

namespace {

// A TERMCODE's number. Up to nine digits and nothing else, the usual case,
// need no sign, no blank and no range check; all else goes the standard way.
std::int32_t termNumberOf(const std::u16string& code) {
  if (code.empty() || code.size() > 9) return ohm_internal::stoiDecimal(code);
  std::int32_t number = 0;
  for (const char16_t unit : code) {
    if (unit < u'0' || unit > u'9') return ohm_internal::stoiDecimal(code);
    number = number * 10 + (unit - u'0');
  }
  return number;
}

}  // namespace

void OhmUtXrefGraphicEntity::readTerms(const OhmDsComponentOcc& occurrence, TermList& terms) {
  using namespace ohm_internal;
  terms.clear();
  for (const OhmDsComponentPinOcc& pin : occurrence.mPins) {
    const auto values = lookupProperties(pin.mProperties, keys::kTermCode, keys::kTerm);
    const std::int32_t number = termNumberOf(*values[0]);
    if (number < 1) continue;
    // Pins come mostly in ascending order, so the search starts at the end.
    if (terms.empty() || terms.back().first < number) {
      terms.emplace_back(number, values[1]);
      continue;
    }
    auto at = terms.end();
    while (at != terms.begin() && std::prev(at)->first >= number) --at;
    if (at->first == number) {
      at->second = values[1];  // the later of two equal numbers wins
    } else {
      terms.emplace(at, number, values[1]);
    }
  }
}

const OhmUtXrefGraphicEntity::Contact& OhmUtXrefGraphicEntity::classify(const OhmDsComponentOcc& occurrence) {
  Contact& contact = mContact;
  contact.kind =
      contactKindOf(*ohm_internal::lookupProperties(occurrence.mProperties, ohm_internal::keys::kContact)[0]);
  readTerms(occurrence, contact.terms);
  const TermList& terms = contact.terms;
  contact.fullFormC = contact.kind == ContactKind::FormC && terms.size() == 3 && terms[0].first == 1 &&
                      terms[1].first == 2 && terms[2].first == 3;
  const bool onlyOneAndTwo = terms.size() == 2 && terms[0].first == 1 && terms[1].first == 2;
  contact.partialFormC =
      onlyOneAndTwo &&
      ((contact.kind == ContactKind::NO && isPartialFormCSide(*terms[0].second, *terms[1].second, 1)) ||
       (contact.kind == ContactKind::NC && isPartialFormCSide(*terms[0].second, *terms[1].second, 2)));
  return contact;
}

bool OhmUtXrefGraphicEntity::isFullFormCContact(const OhmDsComponentOcc& occurrence) {
  init();
  return classify(occurrence).fullFormC;
}

bool OhmUtXrefGraphicEntity::isPartialFormCContact(const OhmDsComponentOcc& occurrence) {
  init();
  return classify(occurrence).partialFormC;
}

std::u16string_view OhmUtXrefGraphicEntity::trimmedTerm(const TermList& terms, std::int32_t number) {
  const std::u16string* term = termOf(terms, number);
  if (!term) return {};
  // As CString::Trim: white space off the end, then off the start.
  std::u16string_view text = *term;
  while (!text.empty() && CrtIsSpace(text.back())) text.remove_suffix(1);
  while (!text.empty() && CrtIsSpace(text.front())) text.remove_prefix(1);
  return text;
}

OhmUtXrefGraphicEntity::PinTriple OhmUtXrefGraphicEntity::identifyPartialFormCPins(
    const OhmDsComponentOcc& occurrence) const {
  TermList terms;
  readTerms(occurrence, terms);
  const auto [common, no, nc] = partialFormCPins(terms);
  return {std::u16string(common), std::u16string(no), std::u16string(nc)};
}

OhmUtXrefGraphicEntity::PartialPins OhmUtXrefGraphicEntity::partialFormCPins(const TermList& terms) const {
  const std::u16string_view t1 = trimmedTerm(terms, 1);
  const std::u16string_view t2 = trimmedTerm(terms, 2);
  PartialPins pins;
  for (const auto& [c, n, x] : mFormCPins) {
    for (const std::int32_t key : {1, 2}) {
      const std::u16string_view value = key == 1 ? t1 : t2;
      const std::u16string_view other = key == 1 ? t2 : t1;
      if (!ohm_internal::sameUnits(value, c)) continue;
      pins = {value, {}, {}};
      if (ohm_internal::sameUnits(other, n)) {
        pins.no = other;
        break;
      }
      if (ohm_internal::sameUnits(other, x)) {
        pins.nc = other;
        break;
      }
    }
  }
  return pins;
}

OhmUtXrefGraphicEntity::GraphicalStyle OhmUtXrefGraphicEntity::getGraphicalStyle() const {
  const std::uint64_t changeCount = mSettingOverride.changeCount();
  if (!mStyleSeen || mStyleSeen->first != changeCount) mStyleSeen.emplace(changeCount, readGraphicalStyle());
  return mStyleSeen->second;
}

OhmUtXrefGraphicEntity::GraphicalStyle OhmUtXrefGraphicEntity::readGraphicalStyle() const {
  using ohm_internal::sameUnits;
  const std::u16string* graphic = mSettingOverride.findSettingValue(OhmCfgSetting::WD_XREF_GRAPHIC);
  if (!graphic) return GraphicalStyle1;
  if (sameUnits(*graphic, u"0")) {
    const std::u16string* family = mSettingOverride.findSettingValue(OhmCfgSetting::WD_XREF_GRAPHICSTYLE);
    return family && sameUnits(*family, u"1") ? GraphicalStyle2 : GraphicalStyle1;
  }
  if (sameUnits(*graphic, u"1")) return GraphicalContactMap;
  if (sameUnits(*graphic, u"2")) return GraphicalNone;
  return GraphicalStyle1;
}

bool OhmUtXrefGraphicEntity::getContactName(const std::u16string& contact, std::u16string& name) const {
  const std::u16string* found = contactName(contactKindOf(contact));
  name = found ? *found : std::u16string();
  return found != nullptr;
}

const std::u16string* OhmUtXrefGraphicEntity::contactName(ContactKind kind) const {
  if (mContactMap.size() < 3) return nullptr;
  switch (kind) {
    case ContactKind::NO:
      return &mContactMap[0];
    case ContactKind::NC:
      return &mContactMap[1];
    case ContactKind::FormC:
      return &mContactMap[2];
    case ContactKind::Empty:
      return &ohm_internal::emptyProperty();
    case ContactKind::Other:
      return nullptr;
  }
  return nullptr;
}
