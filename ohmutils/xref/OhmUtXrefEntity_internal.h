// The reading of a CONTACT value that the entity base's three tests and the
// graphic entity's classification share.
#pragma once

#include <string>

#include "win/CrtChar.h"

namespace ohm_internal {

// What a CONTACT value names, compared after a-z -> A-Z: "NO", "NC", "NONC"
// or "NCNO" (Form C); Empty for the empty value, Other for all else.
enum class ContactText { Empty, NO, NC, FormC, Other };

inline ContactText contactTextOf(const std::u16string& contact) noexcept {
  auto upper = [&contact](std::size_t i) { return CrtToUpper(contact[i]); };
  switch (contact.size()) {
    case 0:
      return ContactText::Empty;
    case 2:
      if (upper(0) != u'N') return ContactText::Other;
      return upper(1) == u'O' ? ContactText::NO : upper(1) == u'C' ? ContactText::NC : ContactText::Other;
    case 4: {
      if (upper(0) != u'N' || upper(2) != u'N') return ContactText::Other;
      const char16_t first = upper(1), second = upper(3);
      const bool formC = (first == u'O' && second == u'C') || (first == u'C' && second == u'O');
      return formC ? ContactText::FormC : ContactText::Other;
    }
    default:
      return ContactText::Other;
  }
}

}  // namespace ohm_internal
