#include "ohmutils/xref/OhmDsOccurrence.h"

#include "ohmutils/xref/OhmDsComponentOcc.h"
#include "ohmutils/xref/OhmDsComponentPinOcc.h"
#include "ohmutils/xref/OhmDsOccID.h"
#include "ohmutils/xref/OhmDsOccurrence_internal.h"
#include "ohmutils/xref/OhmDsPropertyKeys.h"

namespace OhmDsKeys {

const std::u16string CONTACT{ohm_internal::keys::kContact};
const std::u16string REF{ohm_internal::keys::kRef};
const std::u16string LNUMBER = u"LNUMBER";
const std::u16string STRIPSEQ = u"STRIPSEQ";
const std::u16string SHEET{ohm_internal::keys::kSheet};
const std::u16string SHEETDWGNAME{ohm_internal::keys::kSheetDwgName};
const std::u16string IEC_INST{ohm_internal::keys::kIecInst};
const std::u16string IEC_LOC{ohm_internal::keys::kIecLoc};
const std::u16string IEC_PROJ{ohm_internal::keys::kIecProj};
const std::u16string TERM{ohm_internal::keys::kTerm};
const std::u16string TERMDESC = u"TERMDESC";
const std::u16string TERMCODE{ohm_internal::keys::kTermCode};
const std::u16string ADDR = u"ADDR";

}  // namespace OhmDsKeys

namespace ohm_internal {

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

}  // namespace ohm_internal

OhmDsOccID::~OhmDsOccID() = default;
OhmDsOccurrence::~OhmDsOccurrence() = default;
OhmDsComponentPinOcc::~OhmDsComponentPinOcc() = default;
OhmDsComponentOcc::~OhmDsComponentOcc() = default;

const std::u16string& OhmDsOccurrence::getProperty(const std::u16string& key) const {
  return ohm_internal::lookupProperty(mProperties, key);
}
