// The property lookup that every reader of an occurrence map uses, alone or
// for several keys in one pass over a map.
#pragma once

#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>

#include "ohmutils/xref/OhmDsOccurrence.h"

namespace ohm_internal {

// The empty string that absent properties refer to; lives as long as the library.
const std::u16string& emptyProperty() noexcept;

// Whether two texts hold the same units: lengths first, then four units at
// a time, which is all that most keys and values take.
inline bool sameUnits(std::u16string_view a, std::u16string_view b) noexcept {
  if (a.size() != b.size()) return false;
  const char16_t* x = a.data();
  const char16_t* y = b.data();
  std::size_t left = a.size();
  for (; left >= 4; left -= 4, x += 4, y += 4) {
    std::uint64_t p, q;
    std::memcpy(&p, x, sizeof p);
    std::memcpy(&q, y, sizeof q);
    if (p != q) return false;
  }
  for (std::size_t i = 0; i < left; ++i)
    if (x[i] != y[i]) return false;
  return true;
}

// The value under `key`, or the shared empty string when the key is empty
// (without a look at the map) or absent.
const std::u16string& lookupProperty(const OhmDsOccurrence::PropertyMap& map, const std::u16string& key);

// values[i] becomes what lookupProperty(map, *keys[i]) gives, for every i, in
// one pass over a small map. REQUIRES: as many values as keys.
void lookupProperties(const OhmDsOccurrence::PropertyMap& map, std::span<const std::u16string* const> keys,
                      std::span<const std::u16string*> values);

}  // namespace ohm_internal
