// The texts of OhmUtXrefGraphicEntity: terminal texts, symbol and reference
// joined end to end, one operation per contact class. Each public operation
// classifies its occurrence once and works from that.
#include "ohmutils/xref/OhmDsOccurrence_internal.h"
#include "ohmutils/xref/OhmUtXrefGraphicEntity.h"

namespace {

const std::u16string* orEmpty(const std::u16string* symbol) { return symbol ? symbol : &ohm_internal::emptyProperty(); }

// `text` becomes the pieces end to end, with one allocation at most.
void join(std::u16string& text, std::initializer_list<std::u16string_view> pieces) {
  std::size_t length = 0;
  for (const std::u16string_view piece : pieces) length += piece.size();
  text.clear();
  text.reserve(length);
  for (const std::u16string_view piece : pieces) text.append(piece);
}

}  // namespace

const std::u16string* OhmUtXrefGraphicEntity::plainSymbol(const Contact& contact, GraphicalStyle style) const {
  if (contact.partialFormC || contact.fullFormC) return nullptr;
  if (style == GraphicalContactMap) return contactName(contact.kind);
  if (style == GraphicalNone) return &ohm_internal::emptyProperty();
  const bool first = style == GraphicalStyle1;
  switch (contact.kind) {
    case ContactKind::NO:
      return first ? &mStyle1SymbolTextForNO : &mStyle2SymbolTextForNO;
    case ContactKind::NC:
      return first ? &mStyle1SymbolTextForNC : &mStyle2SymbolTextForNC;
    case ContactKind::Empty:
      return first ? &mStyle1SymbolTextForNIL : &mStyle2SymbolTextForNIL;
    default:
      return nullptr;
  }
}

std::pair<const std::u16string*, const std::u16string*> OhmUtXrefGraphicEntity::fullFormCSymbols(
    const Contact& contact, GraphicalStyle style) const {
  if (!contact.fullFormC) return {nullptr, nullptr};
  switch (style) {
    case GraphicalStyle1:
      return {&mStyle1SymbolTextForFORMC_NO, &mStyle1SymbolTextForFORMC_NC};
    case GraphicalStyle2:
      return {&mStyle2SymbolTextForFORMC_NO, &mStyle2SymbolTextForFORMC_NC};
    case GraphicalContactMap: {
      const std::u16string* name = contactName(contact.kind);
      return {name, name};
    }
    case GraphicalNone:
      break;
  }
  return {&ohm_internal::emptyProperty(), &ohm_internal::emptyProperty()};
}

const std::u16string* OhmUtXrefGraphicEntity::partialFormCSymbol(const Contact& contact, GraphicalStyle style) const {
  if (!contact.partialFormC) return nullptr;
  const bool noSide = contact.kind == ContactKind::NO;
  switch (style) {
    case GraphicalStyle1:
      return noSide ? &mStyle1SymbolTextForFORMC_NO : &mStyle1SymbolTextForFORMC_NC;
    case GraphicalStyle2:
      return noSide ? &mStyle2SymbolTextForFORMC_NO : &mStyle2SymbolTextForFORMC_NC;
    case GraphicalContactMap:
      return contactName(contact.kind);
    case GraphicalNone:
      break;
  }
  return &ohm_internal::emptyProperty();
}

bool OhmUtXrefGraphicEntity::getSymbolTextForContact(const OhmDsComponentOcc& occurrence, std::u16string& symbol) {
  symbol.clear();
  init();
  const std::u16string* found = plainSymbol(classify(occurrence), getGraphicalStyle());
  symbol = *orEmpty(found);
  return found != nullptr;
}

bool OhmUtXrefGraphicEntity::getSymbolTextForFullFormCContact(const OhmDsComponentOcc& occurrence,
                                                              std::u16string& noSymbol, std::u16string& ncSymbol) {
  noSymbol.clear();
  ncSymbol.clear();
  init();
  const auto [no, nc] = fullFormCSymbols(classify(occurrence), getGraphicalStyle());
  noSymbol = *orEmpty(no);
  ncSymbol = *orEmpty(nc);
  return no != nullptr;
}

bool OhmUtXrefGraphicEntity::getSymbolTextForPartialFormCContact(const OhmDsComponentOcc& occurrence,
                                                                 std::u16string& symbol) {
  symbol.clear();
  init();
  const std::u16string* found = partialFormCSymbol(classify(occurrence), getGraphicalStyle());
  symbol = *orEmpty(found);
  return found != nullptr;
}

bool OhmUtXrefGraphicEntity::getUnformattedXrefText(const OhmDsComponentOcc& occurrence, std::u16string& text) {
  text.clear();
  init();
  const Contact& contact = classify(occurrence);
  if (contact.partialFormC || contact.fullFormC) return false;
  if (!termOf(contact.terms, 1) || !termOf(contact.terms, 2)) return false;
  const std::u16string* symbol = plainSymbol(contact, getGraphicalStyle());
  if (!symbol) return false;
  generateXrefText(occurrence, mReference, false);
  join(text, {trimmedTerm(contact.terms, 1), *symbol, trimmedTerm(contact.terms, 2), mReference});
  return true;
}

bool OhmUtXrefGraphicEntity::getUnformattedXrefTextForFullFormCContact(const OhmDsComponentOcc& occurrence,
                                                                       std::u16string& noText, std::u16string& ncText) {
  noText.clear();
  ncText.clear();
  init();
  const Contact& contact = classify(occurrence);
  if (!contact.fullFormC) return false;
  const auto [noSymbol, ncSymbol] = fullFormCSymbols(contact, getGraphicalStyle());
  if (!noSymbol) return false;
  generateXrefText(occurrence, mReference, false);
  const TermList& terms = contact.terms;
  join(noText, {trimmedTerm(terms, 2), *noSymbol, trimmedTerm(terms, 1), mReference});
  join(ncText, {trimmedTerm(terms, 3), *ncSymbol, mReference});
  return true;
}

bool OhmUtXrefGraphicEntity::getUnformattedXrefTextForPartialFormCContact(const OhmDsComponentOcc& occurrence,
                                                                          std::u16string& text) {
  text.clear();
  init();
  const Contact& contact = classify(occurrence);
  if (!contact.partialFormC) return false;
  const PartialPins pins = partialFormCPins(contact.terms);
  const std::u16string* symbol = partialFormCSymbol(contact, getGraphicalStyle());
  if (!symbol) return false;
  generateXrefText(occurrence, mReference, false);
  if (contact.kind == ContactKind::NO) {
    join(text, {pins.no, *symbol, pins.common, mReference});
  } else {
    join(text, {pins.nc, *symbol, mReference});
  }
  return true;
}
