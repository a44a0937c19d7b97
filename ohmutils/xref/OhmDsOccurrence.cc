#include "ohmutils/xref/OhmDsOccurrence.h"

#include "ohmutils/xref/OhmDsComponentOcc.h"
#include "ohmutils/xref/OhmDsComponentPinOcc.h"
#include "ohmutils/xref/OhmDsOccID.h"
#include "ohmutils/xref/OhmDsOccurrence_internal.h"
#include "ohmutils/xref/OhmDsPropertyKeys.h"

namespace OhmDsKeys {

const std::u16string CONTACT = u"CONTACT";
const std::u16string REF = u"REF";
const std::u16string LNUMBER = u"LNUMBER";
const std::u16string STRIPSEQ = u"STRIPSEQ";
const std::u16string SHEET = u"SHEET";
const std::u16string SHEETDWGNAME = u"SHEETDWGNAME";
const std::u16string IEC_INST = u"IEC_INST";
const std::u16string IEC_LOC = u"IEC_LOC";
const std::u16string IEC_PROJ = u"IEC_PROJ";
const std::u16string TERM = u"TERM";
const std::u16string TERMDESC = u"TERMDESC";
const std::u16string TERMCODE = u"TERMCODE";
const std::u16string ADDR = u"ADDR";

}  // namespace OhmDsKeys

namespace ohm_internal {

const std::u16string& emptyProperty() noexcept {
  static const std::u16string empty;
  return empty;
}

// Occurrences carry a handful of properties each. Up to this many, a scan
// for equality, which compares lengths first, beats the tree's ordered
// comparisons, which go unit by unit through every key on the way.
constexpr std::size_t kScannedMapSize = 8;

const std::u16string& lookupProperty(const OhmDsOccurrence::PropertyMap& map, const std::u16string& key) {
  if (key.empty()) return emptyProperty();
  if (map.size() <= kScannedMapSize) {
    for (const auto& [name, value] : map)
      if (sameUnits(name, key)) return value;
    return emptyProperty();
  }
  const auto it = map.find(key);
  return it == map.end() ? emptyProperty() : it->second;
}

void lookupProperties(const OhmDsOccurrence::PropertyMap& map, std::span<const std::u16string* const> keys,
                      std::span<const std::u16string*> values) {
  if (map.size() > kScannedMapSize) {
    for (std::size_t i = 0; i < keys.size(); ++i) values[i] = &lookupProperty(map, *keys[i]);
    return;
  }
  for (const std::u16string*& value : values) value = &emptyProperty();
  // Names are unique in the map, so a key matches one entry at most; an
  // empty key matches none. The walk ends as soon as every key is found.
  std::size_t missing = keys.size();
  auto entry = map.begin();
  for (std::size_t left = map.size(); left > 0 && missing > 0; --left) {
    for (std::size_t i = 0; i < keys.size(); ++i) {
      if (keys[i]->empty() || !sameUnits(entry->first, *keys[i])) continue;
      values[i] = &entry->second;
      --missing;
    }
    if (left > 1) ++entry;
  }
}

}  // namespace ohm_internal

OhmDsOccID::~OhmDsOccID() = default;
OhmDsOccurrence::~OhmDsOccurrence() = default;
OhmDsComponentPinOcc::~OhmDsComponentPinOcc() = default;
OhmDsComponentOcc::~OhmDsComponentOcc() = default;

const std::u16string& OhmDsOccurrence::getProperty(const std::u16string& key) const {
  return ohm_internal::lookupProperty(mProperties, key);
}
