// OhmDsComponentPinOcc: one pin of a component occurrence. Its mProperties
// carry TERMCODE (the terminal's number as decimal text) and TERM (the text the
// drawing shows). Copies are deep and share nothing with their source.
#pragma once

#include "ohmutils/OhmUtilsExport.h"
#include "ohmutils/xref/OhmDsOccurrence.h"

class OHMUTILS_EXPORT OhmDsComponentPinOcc : public OhmDsOccurrence {
 public:
  OhmDsComponentPinOcc() = default;
  OhmDsComponentPinOcc(const OhmDsComponentPinOcc&) = default;
  OhmDsComponentPinOcc& operator=(const OhmDsComponentPinOcc&) = default;
  ~OhmDsComponentPinOcc() override;
};
