#include "ohmutils/xref/OhmUtXrefGraphicEntity.h"

#include <algorithm>

#include "mfc/CString.h"
#include "ohmutils/util/OhmUtilsStringSplit.h"
#include "ohmutils/util/OhmUtilsStringSplit_internal.h"
#include "ohmutils/xref/OhmDsPropertyKeys.h"

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
  if (contact.empty()) return ContactKind::Empty;
  if (isValidContactForRelayCoilNO(contact)) return ContactKind::NO;
  if (isValidContactForRelayCoilNC(contact)) return ContactKind::NC;
  if (isValidContactForRelayCoilFormC(contact)) return ContactKind::FormC;
  return ContactKind::Other;
}

OhmUtXrefGraphicEntity::TermList OhmUtXrefGraphicEntity::termListOf(const OhmDsComponentOcc& occurrence) {
  TermList terms;
  terms.reserve(occurrence.mPins.size());
  for (const OhmDsComponentPinOcc& pin : occurrence.mPins) {
    const std::int32_t number = ohm_internal::stoiDecimal(pin.getProperty(OhmDsKeys::TERMCODE));
    if (number < 1) continue;
    const std::u16string* term = &pin.getProperty(OhmDsKeys::TERM);
    const auto at = std::lower_bound(terms.begin(), terms.end(), number,
                                     [](const auto& entry, std::int32_t n) { return entry.first < n; });
    if (at != terms.end() && at->first == number) {
      at->second = term;  // the later of two equal numbers wins
    } else {
      terms.emplace(at, number, term);
    }
  }
  return terms;
}

const std::u16string* OhmUtXrefGraphicEntity::termOf(const TermList& terms, std::int32_t number) {
  for (const auto& [n, term] : terms)
    if (n == number) return term;
  return nullptr;
}

OhmUtXrefGraphicEntity::Contact OhmUtXrefGraphicEntity::classifyContact(const OhmDsComponentOcc& occurrence) const {
  Contact contact;
  contact.kind = contactKindOf(occurrence.getProperty(OhmDsKeys::CONTACT));
  contact.terms = termListOf(occurrence);
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
  return classifyContact(occurrence).fullFormC;
}

bool OhmUtXrefGraphicEntity::isPartialFormCContact(const OhmDsComponentOcc& occurrence) {
  init();
  return classifyContact(occurrence).partialFormC;
}

std::u16string OhmUtXrefGraphicEntity::trimmedTerm(const TermList& terms, std::int32_t number) {
  const std::u16string* term = termOf(terms, number);
  if (!term) return std::u16string();
  // Printable ASCII at both ends is no white space: nothing to trim.
  auto plain = [](char16_t unit) { return unit > u' ' && unit < 0x7F; };
  if (term->empty() || (plain(term->front()) && plain(term->back()))) return *term;
  return CString(*term).Trim().str();
}

OhmUtXrefGraphicEntity::PinTriple OhmUtXrefGraphicEntity::identifyPartialFormCPins(
    const OhmDsComponentOcc& occurrence) const {
  return identifyPartialFormCPins(termListOf(occurrence));
}

OhmUtXrefGraphicEntity::PinTriple OhmUtXrefGraphicEntity::identifyPartialFormCPins(const TermList& terms) const {
  const std::u16string t1 = trimmedTerm(terms, 1);
  const std::u16string t2 = trimmedTerm(terms, 2);
  std::u16string common, no, nc;
  for (const auto& [c, n, x] : mFormCPins) {
    for (const std::int32_t key : {1, 2}) {
      const std::u16string& value = key == 1 ? t1 : t2;
      const std::u16string& other = key == 1 ? t2 : t1;
      if (value != c) continue;
      common = value;
      no.clear();
      nc.clear();
      if (other == n) {
        no = other;
        break;
      }
      if (other == x) {
        nc = other;
        break;
      }
    }
  }
  return {common, no, nc};
}

OhmUtXrefGraphicEntity::GraphicalStyle OhmUtXrefGraphicEntity::getGraphicalStyle() const {
  std::u16string graphic, family;
  mSettingOverride.getSettingValue(OhmCfgSetting::WD_XREF_GRAPHIC, graphic);
  mSettingOverride.getSettingValue(OhmCfgSetting::WD_XREF_GRAPHICSTYLE, family);
  if (graphic == u"0") return family == u"1" ? GraphicalStyle2 : GraphicalStyle1;
  if (graphic == u"1") return GraphicalContactMap;
  if (graphic == u"2") return GraphicalNone;
  return GraphicalStyle1;
}

bool OhmUtXrefGraphicEntity::getContactName(const std::u16string& contact, std::u16string& name) const {
  return getContactName(contactKindOf(contact), name);
}

bool OhmUtXrefGraphicEntity::getContactName(ContactKind kind, std::u16string& name) const {
  name.clear();
  if (mContactMap.size() < 3) return false;
  switch (kind) {
    case ContactKind::NO:
      name = mContactMap[0];
      return true;
    case ContactKind::NC:
      name = mContactMap[1];
      return true;
    case ContactKind::FormC:
      name = mContactMap[2];
      return true;
    case ContactKind::Empty:
      return true;
    case ContactKind::Other:
      return false;
  }
  return false;
}
