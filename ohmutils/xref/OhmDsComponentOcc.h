// OhmDsComponentOcc: one component occurrence, the record callers hand to the
// cross-reference entities by const reference. Its pins are held by value;
// their order counts only where two pins share a TERMCODE (the later wins).
#pragma once

#include <vector>

#include "ohmutils/OhmUtilsExport.h"
#include "ohmutils/xref/OhmDsComponentPinOcc.h"
#include "ohmutils/xref/OhmDsOccurrence.h"

class OHMUTILS_EXPORT OhmDsComponentOcc : public OhmDsOccurrence {
 public:
  OhmDsComponentOcc() = default;
  OhmDsComponentOcc(const OhmDsComponentOcc&) = default;
  OhmDsComponentOcc& operator=(const OhmDsComponentOcc&) = default;
  ~OhmDsComponentOcc() override;

  std::vector<OhmDsComponentPinOcc> mPins;
};
