#pragma once
// The supply (marker) attributes: per entry of the product's "markers" a
// "cupsMarkerName" attribute whose option keyword is the marker's "name" and whose text
// is its "userName", with an empty quoted value; then "cupsMarkerNotice" with
// the product's "markerNotice".

#include "generators/APPDGenericAttributesGenerator.h"

namespace ppdforge {

class APPDMarkerAttributesGenerator : public APPDGenericAttributesGenerator {
 public:
  // True when the product has "markers" or "markerNotice".
  bool IsApplicable() const override;
  // Adds the attributes (value type 1; the entry's comment on the first).
  // False with "Invalid product description: ..." before anything is added,
  // or "Cannot add PPD attribute: ..." (code 1).
  bool Generate(AError* error) override;
};

}  // namespace ppdforge
