// OhmUtXrefGraphicEntity: a cross-reference shown as contact symbol text. For
// each contact of a relay coil it gives a line of terminal texts, a short
// symbol and the reference to where the contact stands.
//
// Contact classes: full Form C (a Form C CONTACT with terminals 1, 2, 3
// exactly), partial Form C (an NO or NC CONTACT with terminals 1 and 2 that
// are the common terminal and that side's terminal of a triple of the pin
// list), and plain (everything else). The term map of an occurrence (terminal
// number -> TERM text) is built once in each public call, in working space
// that the next call builds afresh, so a changed occurrence is always seen as
// it is now.
//
// State: the contact map (option 68) and the pin list triples are taken at the
// first public call (init) and fixed from then on; options 66 and 67 take
// effect at the next use: the style worked out from them is kept only until
// the option set changes. A pin whose TERMCODE is no number makes every operation on its
// occurrence throw std::invalid_argument("invalid stoi argument") or
// std::out_of_range("stoi argument out of range"); nothing here catches them.
//
// Members marked hidden are working steps of the library's own, left out of
// its exported interface so that calls to them bind within the library.
//
// Thread safety: one object, with its option set, by one thread at a time.
// Operations on distinct objects with distinct option sets may run on several
// threads at once.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "ohmutils/OhmUtilsExport.h"
#include "ohmutils/xref/OhmUtXrefEntity.h"

// Orders terminal numbers ascending, as signed integers.
struct OHMUTILS_EXPORT OhmUtXrefTermMapFunctor {
  bool operator()(std::int32_t a, std::int32_t b) const noexcept { return a < b; }
};

class OHMUTILS_EXPORT OhmUtXrefGraphicEntity : public OhmUtXrefEntity {
 public:
  // Terminal number -> terminal text.
  using TermMap = std::map<std::int32_t, std::u16string, OhmUtXrefTermMapFunctor>;
  // A pin list triple: common, NO and NC terminal texts.
  using PinTriple = std::tuple<std::u16string, std::u16string, std::u16string>;

  enum GraphicalStyle {
    GraphicalStyle1 = 0,      // the first family of symbol texts
    GraphicalStyle2 = 1,      // the second family
    GraphicalContactMap = 2,  // the names of the contact map
    GraphicalNone = 3,        // no symbol
  };

  // `pinList`: the entity's pin list ("3,common,no,nc;..."), kept as given.
  OhmUtXrefGraphicEntity(OhmNoRxUtilsSettingOverride& settingOverride, const std::u16string& pinList);
  // Deep copy of pin list, contact map and triples; shares the option set.
  OhmUtXrefGraphicEntity(const OhmUtXrefGraphicEntity& other);
  ~OhmUtXrefGraphicEntity() override;

  bool isFullFormCContact(const OhmDsComponentOcc& occurrence);
  bool isPartialFormCContact(const OhmDsComponentOcc& occurrence);

  // A plain contact: T1, symbol, T2, reference. False (output empty) for Form
  // C contacts, a term map without 1 or 2, or a symbol the style can't give.
  bool getUnformattedXrefText(const OhmDsComponentOcc& occurrence, std::u16string& text);
  // A full Form C contact: NO side T2 S T1 R, NC side T3 S R. False otherwise.
  bool getUnformattedXrefTextForFullFormCContact(const OhmDsComponentOcc& occurrence, std::u16string& noText,
                                                 std::u16string& ncText);
  // A partial Form C contact: NO "no S common R", NC "nc S R". False otherwise.
  bool getUnformattedXrefTextForPartialFormCContact(const OhmDsComponentOcc& occurrence, std::u16string& text);

 protected:
  void init() override;
  // The base's options, then 66, 67, 68 from their xdata.
  void getXrefOptionEntOverride(const ZdDbEntity* entity,
                                OhmNoRxUtilsSettingOverride::SettingMap& overrides) const override;
  // The term map of the occurrence's pins (TERMCODE < 1 skipped; the later of
  // two equal numbers wins), TERM trimmed when asked. Always true; throws on a
  // TERMCODE that is no number.
  bool getCompOccTermMap(const OhmDsComponentOcc& occurrence, TermMap& termMap, bool trim) const;
  bool isFullFormCContact(TermMap& termMap) const;
  bool isPartialFormC_NOContact(TermMap& termMap) const;
  bool isPartialFormC_NCContact(TermMap& termMap) const;
  // (common, no, nc) of a partial Form C contact; the last triple whose common
  // terminal is T1 or T2 decides.
  PinTriple identifyPartialFormCPins(const OhmDsComponentOcc& occurrence) const;
  // From options 66 and 67 as they are now.
  GraphicalStyle getGraphicalStyle() const;

  bool getSymbolTextForContact(const OhmDsComponentOcc& occurrence, std::u16string& symbol);
  bool getSymbolTextForFullFormCContact(const OhmDsComponentOcc& occurrence, std::u16string& noSymbol,
                                        std::u16string& ncSymbol);
  bool getSymbolTextForPartialFormCContact(const OhmDsComponentOcc& occurrence, std::u16string& symbol);

  static const std::u16string mStyle1SymbolTextForNO;        // "-o-"
  static const std::u16string mStyle1SymbolTextForNC;        // "-x-"
  static const std::u16string mStyle1SymbolTextForNIL;       // "-.-"
  static const std::u16string mStyle1SymbolTextForFORMC_NO;  // "-n-"
  static const std::u16string mStyle1SymbolTextForFORMC_NC;  // "-w-"
  static const std::u16string mStyle2SymbolTextForNO;        // "-O-"
  static const std::u16string mStyle2SymbolTextForNC;        // "-X-"
  static const std::u16string mStyle2SymbolTextForNIL;       // "-'-"
  static const std::u16string mStyle2SymbolTextForFORMC_NO;  // "-N-"
  static const std::u16string mStyle2SymbolTextForFORMC_NC;  // "-W-"

 protected:
  // Terminal number -> TERM text of the occurrence, ascending by number,
  // pointing into the occurrence: valid for the call that made it.
  using TermList = std::vector<std::pair<std::int32_t, const std::u16string*>>;
  // What the CONTACT value says, compared as upper case.
  enum class ContactKind { Empty, NO, NC, FormC, Other };
  // An occurrence's contact as the operations need it, worked out once per
  // call: its kind, its untrimmed terms and its class.
  struct Contact {
    ContactKind kind = ContactKind::Other;
    TermList terms;
    bool fullFormC = false;
    bool partialFormC = false;
  };
  // The terminals of a partial Form C contact: (common, no, nc), viewing the
  // occurrence's terms or empty.
  struct PartialPins {
    std::u16string_view common, no, nc;
  };

  // The occurrence classified into the entity's working space, which each
  // public operation refills before it reads it: valid until the next call
  // of classify. Throws as getCompOccTermMap does.
  [[gnu::visibility("hidden")]] const Contact& classify(const OhmDsComponentOcc& occurrence);
  // The symbol texts of the three contact classes in the style, from a
  // classified contact; null where the contact or style gives none. They
  // point at constants or into the contact map.
  [[gnu::visibility("hidden")]] const std::u16string* plainSymbol(const Contact& contact, GraphicalStyle style) const;
  // (NO side, NC side); both null when there is none.
  [[gnu::visibility("hidden")]] std::pair<const std::u16string*, const std::u16string*> fullFormCSymbols(
      const Contact& contact, GraphicalStyle style) const;
  [[gnu::visibility("hidden")]] const std::u16string* partialFormCSymbol(const Contact& contact,
                                                                         GraphicalStyle style) const;
  // (common, no, nc) from the untrimmed terms of a partial Form C contact.
  [[gnu::visibility("hidden")]] PartialPins partialFormCPins(const TermList& terms) const;
  // Fills `terms` from the occurrence's pins by the rules of getCompOccTermMap.
  [[gnu::visibility("hidden")]] static void readTerms(const OhmDsComponentOcc& occurrence, TermList& terms);
  // The terminal's text; null when the list lacks it.
  static const std::u16string* termOf(const TermList& terms, std::int32_t number) {
    for (const auto& [n, term] : terms)
      if (n == number) return term;
    return nullptr;
  }
  // The terminal's text trimmed; empty when the list lacks it.
  [[gnu::visibility("hidden")]] static std::u16string_view trimmedTerm(const TermList& terms, std::int32_t number);

  // Working space for reference texts, refilled wherever it is used.
  std::u16string mReference;

 private:
  [[gnu::visibility("hidden")]] static ContactKind contactKindOf(const std::u16string& contact);
  // The contact map's name for a kind; null as getContactName says false.
  [[gnu::visibility("hidden")]] const std::u16string* contactName(ContactKind kind) const;
  // The contact map's name for a CONTACT value: [0] NO, [1] NC, [2] Form C,
  // empty for an empty value; false for any other value or a map of fewer
  // than three names.
  bool getContactName(const std::u16string& contact, std::u16string& name) const;
  // Options 66 and 67 read afresh.
  [[gnu::visibility("hidden")]] GraphicalStyle readGraphicalStyle() const;
  void updateContactMap();
  void updateFormCPins();
  // Whether T1/T2 are the common terminal and `side` (1 NO, 2 NC) of one triple.
  bool isPartialFormCSide(const TermMap& termMap, std::size_t side) const;
  [[gnu::visibility("hidden")]] bool isPartialFormCSide(const std::u16string& t1, const std::u16string& t2,
                                                        std::size_t side) const;

  std::u16string mPinList;
  std::vector<std::u16string> mContactMap;
  std::vector<PinTriple> mFormCPins;
  Contact mContact;  // working space of classify
  // The style at the option set's change count it was read at; read again
  // once the set has changed.
  mutable std::optional<std::pair<std::uint64_t, GraphicalStyle>> mStyleSeen;
};
