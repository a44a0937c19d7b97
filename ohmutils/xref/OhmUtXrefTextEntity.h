// OhmUtXrefTextEntity: a cross-reference shown as plain text in a block
// attribute. For one attribute tag and one occurrence it says whether the
// occurrence belongs in the attribute and gives its reference text; the
// caller gathers the occurrences and joins their texts with getSeparator.
//
// Tags (case ignored, no trimming): "XREF" lists occurrences of the accepted
// types whatever their contact; "XREFNO" normally open and Form C contacts;
// "XREFNC" normally closed and Form C contacts. Normally closed references,
// and Form C ones under "XREFNC", are underlined.
#pragma once

#include <cstdint>
#include <string>

#include "ohmutils/OhmUtilsExport.h"
#include "ohmutils/xref/OhmUtXrefEntity.h"

class OHMUTILS_EXPORT OhmUtXrefTextEntity : public OhmUtXrefEntity {
 public:
  explicit OhmUtXrefTextEntity(OhmNoRxUtilsSettingOverride& settingOverride);
  // Copies the base part and the prompt; shares the option set.
  OhmUtXrefTextEntity(const OhmUtXrefTextEntity& other);
  ~OhmUtXrefTextEntity() override;

  static bool isXrefTag(const std::u16string& tag);                // "XREF"
  static bool isXrefTagForRelayCoil(const std::u16string& tag);    // "XREFNC" or "XREFNO"
  static bool isXrefTagForRelayCoilNC(const std::u16string& tag);  // "XREFNC"
  static bool isXrefTagForRelayCoilNO(const std::u16string& tag);  // "XREFNO"

  // True when the occurrence belongs in an attribute of this tag; `text` is
  // then its reference text (empty when the format is). False with an empty
  // `text` otherwise.
  bool getXrefText(const std::u16string& tag, const OhmDsComponentOcc& occurrence, std::u16string& text) const;
  // Option 65 when the option set holds it (even empty), else ",".
  std::u16string getSeparator() const;
  // The attribute's prompt, the label that may stand before the reference.
  void setXrefAttPrompt(const std::u16string& prompt);
  // Removes "<prompt> " from the start of an "XREF" attribute's value (case
  // counts); the units removed, 0 with the value unchanged otherwise.
  std::uint64_t removeLabelPrefixFromAttribute(const std::u16string& tag, std::u16string& value) const;

 protected:
  // The base's options, then 65 from KVA_WD_XREF_TXTBTWN.
  void getXrefOptionEntOverride(const ZdDbEntity* entity,
                                OhmNoRxUtilsSettingOverride::SettingMap& overrides) const override;

 private:
  std::u16string mXrefAttPrompt;
};
