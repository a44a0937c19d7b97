// The texts of OhmUtXrefGraphicEntity: terminal texts, symbol and reference
// joined end to end, one operation per contact class. Each public operation
// classifies its occurrence once and works from that.
#include "ohmutils/xref/OhmDsPropertyKeys.h"
#include "ohmutils/xref/OhmUtXrefGraphicEntity.h"

bool OhmUtXrefGraphicEntity::symbolOfPlainContact(const Contact& contact, GraphicalStyle style,
                                                  std::u16string& symbol) const {
  symbol.clear();
  if (contact.partialFormC || contact.fullFormC) return false;
  if (style == GraphicalContactMap) return getContactName(contact.kind, symbol);
  if (style == GraphicalNone) return true;
  const bool first = style == GraphicalStyle1;
  switch (contact.kind) {
    case ContactKind::NO:
      symbol = first ? mStyle1SymbolTextForNO : mStyle2SymbolTextForNO;
      return true;
    case ContactKind::NC:
      symbol = first ? mStyle1SymbolTextForNC : mStyle2SymbolTextForNC;
      return true;
    case ContactKind::Empty:
      symbol = first ? mStyle1SymbolTextForNIL : mStyle2SymbolTextForNIL;
      return true;
    default:
      return false;
  }
}

bool OhmUtXrefGraphicEntity::symbolsOfFullFormCContact(const Contact& contact, GraphicalStyle style,
                                                       std::u16string& noSymbol, std::u16string& ncSymbol) const {
  noSymbol.clear();
  ncSymbol.clear();
  if (!contact.fullFormC) return false;
  switch (style) {
    case GraphicalStyle1:
      noSymbol = mStyle1SymbolTextForFORMC_NO;
      ncSymbol = mStyle1SymbolTextForFORMC_NC;
      return true;
    case GraphicalStyle2:
      noSymbol = mStyle2SymbolTextForFORMC_NO;
      ncSymbol = mStyle2SymbolTextForFORMC_NC;
      return true;
    case GraphicalContactMap: {
      const bool named = getContactName(contact.kind, noSymbol);
      ncSymbol = noSymbol;
      return named;
    }
    case GraphicalNone:
      return true;
  }
  return true;
}

bool OhmUtXrefGraphicEntity::symbolOfPartialFormCContact(const Contact& contact, GraphicalStyle style,
                                                         std::u16string& symbol) const {
  symbol.clear();
  if (!contact.partialFormC) return false;
  const bool noSide = contact.kind == ContactKind::NO;
  switch (style) {
    case GraphicalStyle1:
      symbol = noSide ? mStyle1SymbolTextForFORMC_NO : mStyle1SymbolTextForFORMC_NC;
      return true;
    case GraphicalStyle2:
      symbol = noSide ? mStyle2SymbolTextForFORMC_NO : mStyle2SymbolTextForFORMC_NC;
      return true;
    case GraphicalContactMap:
      return getContactName(contact.kind, symbol);
    case GraphicalNone:
      return true;
  }
  return true;
}

bool OhmUtXrefGraphicEntity::getSymbolTextForContact(const OhmDsComponentOcc& occurrence, std::u16string& symbol) {
  init();
  return symbolOfPlainContact(classifyContact(occurrence), getGraphicalStyle(), symbol);
}

bool OhmUtXrefGraphicEntity::getSymbolTextForFullFormCContact(const OhmDsComponentOcc& occurrence,
                                                              std::u16string& noSymbol, std::u16string& ncSymbol) {
  init();
  return symbolsOfFullFormCContact(classifyContact(occurrence), getGraphicalStyle(), noSymbol, ncSymbol);
}

bool OhmUtXrefGraphicEntity::getSymbolTextForPartialFormCContact(const OhmDsComponentOcc& occurrence,
                                                                 std::u16string& symbol) {
  init();
  return symbolOfPartialFormCContact(classifyContact(occurrence), getGraphicalStyle(), symbol);
}

bool OhmUtXrefGraphicEntity::getUnformattedXrefText(const OhmDsComponentOcc& occurrence, std::u16string& text) {
  text.clear();
  init();
  const Contact contact = classifyContact(occurrence);
  if (contact.partialFormC || contact.fullFormC) return false;
  if (!termOf(contact.terms, 1) || !termOf(contact.terms, 2)) return false;
  std::u16string symbol, reference;
  if (!symbolOfPlainContact(contact, getGraphicalStyle(), symbol)) return false;
  if (!generateXrefText(occurrence, reference, false)) return false;
  text = trimmedTerm(contact.terms, 1) + symbol + trimmedTerm(contact.terms, 2) + reference;
  return true;
}

bool OhmUtXrefGraphicEntity::getUnformattedXrefTextForFullFormCContact(const OhmDsComponentOcc& occurrence,
                                                                       std::u16string& noText, std::u16string& ncText) {
  noText.clear();
  ncText.clear();
  init();
  const Contact contact = classifyContact(occurrence);
  if (!contact.fullFormC) return false;
  std::u16string reference, noSymbol, ncSymbol;
  if (!generateXrefText(occurrence, reference, false)) return false;
  if (!symbolsOfFullFormCContact(contact, getGraphicalStyle(), noSymbol, ncSymbol)) return false;
  const TermList& terms = contact.terms;
  noText = trimmedTerm(terms, 2) + noSymbol + trimmedTerm(terms, 1) + reference;
  ncText = trimmedTerm(terms, 3) + ncSymbol + reference;
  return true;
}

bool OhmUtXrefGraphicEntity::getUnformattedXrefTextForPartialFormCContact(const OhmDsComponentOcc& occurrence,
                                                                          std::u16string& text) {
  text.clear();
  init();
  const Contact contact = classifyContact(occurrence);
  if (!contact.partialFormC) return false;
  const auto [common, no, nc] = identifyPartialFormCPins(contact.terms);
  std::u16string symbol, reference;
  if (!symbolOfPartialFormCContact(contact, getGraphicalStyle(), symbol)) return false;
  if (!generateXrefText(occurrence, reference, false)) return false;
  text = contact.kind == ContactKind::NO ? no + symbol + common + reference : nc + symbol + reference;
  return true;
}
