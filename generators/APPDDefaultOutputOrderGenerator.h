#pragma once
// The output order attribute (normally "DefaultOutputOrder", value type 3)
// from the product's "outputOrder": "Normal" or "Reverse", "Normal" when the
// product does not say, so the generator always applies.

#include "generators/APPDProductDatumAttributesGenerator.h"

namespace ppdforge {

class APPDDefaultOutputOrderGenerator : public APPDProductDatumAttributesGenerator {
 protected:
  // "outputOrder" or "Normal"; kInvalid for any other text.
  State GetProductDatum(AQVString& datum, AError* error) const override;
};

}  // namespace ppdforge
