#pragma once
// The duplex attributes of a product with automatic duplexing (feature
// "supportsAutoDuplex"), from its "duplex" dictionary: "cupsBackSide" from
// "backSide", "cupsFlipDuplex" "true" when the back side is "Rotated" or
// "Flipped", and "APDuplexRequiresFlippedMargin" from "requiresFlippedMargin";
// each only when its datum exists, all of value type 3.

#include "generators/APPDGenericAttributesGenerator.h"

namespace ppdforge {

class APPDDuplexAttributesGenerator : public APPDGenericAttributesGenerator {
 public:
  // True when the product's feature "supportsAutoDuplex" is true.
  bool IsApplicable() const override;
  // Adds the attributes (the entry's comment on the first). False with
  // "Invalid product description: ..." before anything is added (a back side
  // other than "Normal", "ManualTumble", "Rotated", "Flipped" included), or
  // "Cannot add PPD attribute: ..." (code 1).
  bool Generate(AError* error) override;
};

}  // namespace ppdforge
