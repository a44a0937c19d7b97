// The one property lookup that every reader of an occurrence map uses.
#pragma once

#include <string>

#include "ohmutils/xref/OhmDsOccurrence.h"

namespace ohm_internal {

// The empty string that absent properties refer to; lives as long as the library.
const std::u16string& emptyProperty() noexcept;

// The value under `key`, or the shared empty string when the key is empty
// (without a look at the map) or absent.
const std::u16string& lookupProperty(const OhmDsOccurrence::PropertyMap& map, const std::u16string& key);

}  // namespace ohm_internal
