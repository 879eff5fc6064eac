#pragma once
// The printer presets: per entry of the product's "presets" an
// "APPrinterPreset" attribute whose option keyword is the preset's "name", whose text
// is its "userName" (localized like any attribute text) and whose value is
// the lines "*OPTION CHOICE" of its "settings" and then "IDENTIFIER VALUE" of
// its "presetValues", joined by LF (the statement closes it with *End).

#include "generators/APPDGenericAttributesGenerator.h"

namespace ppdforge {

class APPDPrinterPresetsGenerator : public APPDGenericAttributesGenerator {
 public:
  // The main keyword of every preset.
  static constexpr const char* kPresetKeyword = "APPrinterPreset";

  // True when the product has "presets" (of any type, so that a wrong one is reported).
  bool IsApplicable() const override;
  // Adds one attribute per preset (value type 0; the entry's comment on the
  // first). False with "Invalid product description: ..." before anything is
  // added, or "Cannot add PPD attribute: ..." on the first refusal (code 1).
  bool Generate(AError* error) override;
};

}  // namespace ppdforge
