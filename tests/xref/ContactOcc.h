// Contact occurrences for the graphic and table entity tests: a contact on
// sheet 3 of Z:\p\b.dxf with reference number 12, and its pins.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "ohmutils/xref/OhmDsComponentOcc.h"
#include "ohmutils/xref/OhmDsPropertyKeys.h"

namespace xref_test {

using Pins = std::vector<std::pair<std::u16string, std::u16string>>;  // TERMCODE, TERM (empty: no TERM key)

inline OhmDsComponentOcc Contact(const std::u16string& contact, const Pins& pins) {
  OhmDsComponentOcc occ;
  occ.mOccID.mDwgPath = u"Z:\\p\\b.dxf";
  if (!contact.empty()) occ.mProperties[OhmDsKeys::CONTACT] = contact;
  occ.mSheetProperties[OhmDsKeys::SHEET] = u"3";
  occ.mProperties[OhmDsKeys::REF] = u"12";
  for (const auto& [code, term] : pins) {
    OhmDsComponentPinOcc pin;
    pin.mProperties[OhmDsKeys::TERMCODE] = code;
    if (!term.empty()) pin.mProperties[OhmDsKeys::TERM] = term;
    occ.mPins.push_back(pin);
  }
  return occ;
}

inline const Pins k13_14{{u"1", u"13"}, {u"2", u"14"}};
inline const Pins kFormC{{u"1", u"11"}, {u"2", u"14"}, {u"3", u"12"}};

}  // namespace xref_test
