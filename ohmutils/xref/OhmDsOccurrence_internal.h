// The property lookup that every reader of an occurrence map uses, alone or
// for several keys in one pass over a map.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "ohmutils/xref/OhmDsOccurrence.h"

namespace ohm_internal {

// The empty string that absent properties refer to; lives as long as the
// library. Nothing reads it while the library loads, so the order in which
// the library's constants are set up doesn't matter to it.
inline const std::u16string kNoProperty;
inline const std::u16string& emptyProperty() noexcept { return kNoProperty; }

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

// The texts of the keys that the engine reads; OhmDsKeys holds them as strings.
namespace keys {
inline constexpr char16_t kContact[] = u"CONTACT";
inline constexpr char16_t kRef[] = u"REF";
inline constexpr char16_t kSheet[] = u"SHEET";
inline constexpr char16_t kSheetDwgName[] = u"SHEETDWGNAME";
inline constexpr char16_t kIecInst[] = u"IEC_INST";
inline constexpr char16_t kIecLoc[] = u"IEC_LOC";
inline constexpr char16_t kIecProj[] = u"IEC_PROJ";
inline constexpr char16_t kTerm[] = u"TERM";
inline constexpr char16_t kTermCode[] = u"TERMCODE";
}  // namespace keys

// Whether `name` is `key`, a key of the engine. Its length is known here, so
// the comparison takes a few whole-word compares.
template <std::size_t N>
[[gnu::always_inline]] inline bool isKey(const std::u16string& name, const char16_t (&key)[N]) noexcept {
  return name.size() == N - 1 && std::memcmp(name.data(), key, (N - 1) * sizeof(char16_t)) == 0;
}

// Occurrences carry a handful of properties each. Up to this many, a scan
// for equality, which compares lengths first, beats the tree's ordered
// comparisons, which go unit by unit through every key on the way.
inline constexpr std::size_t kScannedMapSize = 8;

// What lookupProperty gives for each of the keys (distinct keys of the
// engine), read in one pass over a small map.
template <std::size_t... N>
[[gnu::always_inline]] inline std::array<const std::u16string*, sizeof...(N)> lookupProperties(
    const OhmDsOccurrence::PropertyMap& map, const char16_t (&... keys)[N]) {
  std::array<const std::u16string*, sizeof...(N)> values{((void)keys, &emptyProperty())...};
  if (map.size() > kScannedMapSize) {
    std::size_t i = 0;
    ((values[i++] = &lookupProperty(map, std::u16string(keys))), ...);
    return values;
  }
  // Names are unique in the map, so a key matches one entry at most.
  std::size_t missing = sizeof...(N);
  auto match = [&](const OhmDsOccurrence::PropertyMap::value_type& entry) {
    std::size_t i = 0;
    ((isKey(entry.first, keys) ? (values[i] = &entry.second, --missing) : 0, ++i), ...);
  };
  // The first and the last entry are at hand without a walk, so two entries,
  // as a pin has, take no walk at all.
  if (map.empty()) return values;
  match(*map.begin());
  if (map.size() == 1 || missing == 0) return values;
  match(*map.rbegin());
  if (map.size() == 2 || missing == 0) return values;
  auto entry = map.begin();
  for (std::size_t left = map.size() - 2; left > 0 && missing > 0; --left) match(*++entry);
  return values;
}

}  // namespace ohm_internal
