#pragma once
// The PDF pre-filter attributes: the product's "preFilterAttributes", an
// array of attribute dictionaries ("name", "value", "spec", "translation",
// "comment", "value-type" (default 0)) added as AddAttributesFromArray does.

#include "generators/APPDGenericAttributesGenerator.h"

namespace ppdforge {

class APPDPreFilterAttributesGenerator : public APPDGenericAttributesGenerator {
 public:
  // True when the product has "preFilterAttributes".
  bool IsApplicable() const override;
  // Adds them in order; elements without "name" or "value" are skipped.
  // False with "Invalid product description: ..." (an element that is not a
  // dictionary) before anything is added, or "Cannot add attribute: ..." (code 1).
  bool Generate(AError* error) override;
};

}  // namespace ppdforge
