#pragma once
// Writes one attribute per media size category ("mediaSizeCategory" of the
// product's media): the description's name, the category as spec and
// translation, and the keywords of the category's media as value.

#include "generators/APPDGenericAttributesGenerator.h"

namespace ppdforge {

class APPDPageSizeCategoryAttributeGenerator : public APPDGenericAttributesGenerator {
 public:
  // Adds the attributes in category order, the description's comment on the
  // first only. True when all were added (also when there are none); false
  // with "Cannot add PPD attribute: ..." (code 1) on the first refusal.
  bool Generate(AError* error) override;
};

}  // namespace ppdforge
