// The texts of OhmUtXrefGraphicEntity: terminal texts, symbol and reference
// joined end to end, one operation per contact class.
#include "ohmutils/xref/OhmDsPropertyKeys.h"
#include "ohmutils/xref/OhmUtXrefGraphicEntity.h"

bool OhmUtXrefGraphicEntity::getSymbolTextForContact(const OhmDsComponentOcc& occurrence, std::u16string& symbol) {
  symbol.clear();
  if (isPartialFormCContact(occurrence) || isFullFormCContact(occurrence)) return false;
  const std::u16string& contact = occurrence.getProperty(OhmDsKeys::CONTACT);
  const GraphicalStyle style = getGraphicalStyle();
  if (style == GraphicalContactMap) return getContactName(contact, symbol);
  if (style == GraphicalNone) return true;
  const bool first = style == GraphicalStyle1;
  if (isValidContactForRelayCoilNO(contact)) {
    symbol = first ? mStyle1SymbolTextForNO : mStyle2SymbolTextForNO;
  } else if (isValidContactForRelayCoilNC(contact)) {
    symbol = first ? mStyle1SymbolTextForNC : mStyle2SymbolTextForNC;
  } else if (contact.empty()) {
    symbol = first ? mStyle1SymbolTextForNIL : mStyle2SymbolTextForNIL;
  } else {
    return false;
  }
  return true;
}

bool OhmUtXrefGraphicEntity::getSymbolTextForFullFormCContact(const OhmDsComponentOcc& occurrence,
                                                              std::u16string& noSymbol, std::u16string& ncSymbol) {
  noSymbol.clear();
  ncSymbol.clear();
  if (!isFullFormCContact(occurrence)) return false;
  switch (getGraphicalStyle()) {
    case GraphicalStyle1:
      noSymbol = mStyle1SymbolTextForFORMC_NO;
      ncSymbol = mStyle1SymbolTextForFORMC_NC;
      return true;
    case GraphicalStyle2:
      noSymbol = mStyle2SymbolTextForFORMC_NO;
      ncSymbol = mStyle2SymbolTextForFORMC_NC;
      return true;
    case GraphicalContactMap: {
      const bool named = getContactName(occurrence.getProperty(OhmDsKeys::CONTACT), noSymbol);
      ncSymbol = noSymbol;
      return named;
    }
    case GraphicalNone: return true;
  }
  return true;
}

bool OhmUtXrefGraphicEntity::getSymbolTextForPartialFormCContact(const OhmDsComponentOcc& occurrence,
                                                                 std::u16string& symbol) {
  symbol.clear();
  if (!isPartialFormCContact(occurrence)) return false;
  const GraphicalStyle style = getGraphicalStyle();
  const std::u16string& contact = occurrence.getProperty(OhmDsKeys::CONTACT);
  const bool noSide = isValidContactForRelayCoilNO(contact);
  switch (style) {
    case GraphicalStyle1: symbol = noSide ? mStyle1SymbolTextForFORMC_NO : mStyle1SymbolTextForFORMC_NC; return true;
    case GraphicalStyle2: symbol = noSide ? mStyle2SymbolTextForFORMC_NO : mStyle2SymbolTextForFORMC_NC; return true;
    case GraphicalContactMap: return getContactName(contact, symbol);
    case GraphicalNone: return true;
  }
  return true;
}

bool OhmUtXrefGraphicEntity::getUnformattedXrefText(const OhmDsComponentOcc& occurrence, std::u16string& text) {
  text.clear();
  init();
  TermMap termMap;
  getCompOccTermMap(occurrence, termMap, true);
  if (isPartialFormCContact(occurrence) || isFullFormCContact(occurrence)) return false;
  if (!termMap.count(1) || !termMap.count(2)) return false;
  std::u16string symbol, reference;
  if (!getSymbolTextForContact(occurrence, symbol)) return false;
  if (!generateXrefText(occurrence, reference, false)) return false;
  text = termMap[1] + symbol + termMap[2] + reference;
  return true;
}

bool OhmUtXrefGraphicEntity::getUnformattedXrefTextForFullFormCContact(const OhmDsComponentOcc& occurrence,
                                                                       std::u16string& noText,
                                                                       std::u16string& ncText) {
  noText.clear();
  ncText.clear();
  init();
  if (!isFullFormCContact(occurrence)) return false;
  TermMap termMap;
  getCompOccTermMap(occurrence, termMap, true);
  std::u16string reference, noSymbol, ncSymbol;
  if (!generateXrefText(occurrence, reference, false)) return false;
  if (!getSymbolTextForFullFormCContact(occurrence, noSymbol, ncSymbol)) return false;
  noText = termMap[2] + noSymbol + termMap[1] + reference;
  ncText = termMap[3] + ncSymbol + reference;
  return true;
}

bool OhmUtXrefGraphicEntity::getUnformattedXrefTextForPartialFormCContact(const OhmDsComponentOcc& occurrence,
                                                                          std::u16string& text) {
  text.clear();
  init();
  if (!isPartialFormCContact(occurrence)) return false;
  const auto [common, no, nc] = identifyPartialFormCPins(occurrence);
  std::u16string symbol, reference;
  if (!getSymbolTextForPartialFormCContact(occurrence, symbol)) return false;
  if (!generateXrefText(occurrence, reference, false)) return false;
  if (isValidContactForRelayCoilNO(occurrence.getProperty(OhmDsKeys::CONTACT))) {
    text = no + symbol + common + reference;
  } else {
    text = nc + symbol + reference;
  }
  return true;
}
