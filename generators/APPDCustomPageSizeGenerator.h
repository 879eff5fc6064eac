#pragma once
// Writes one custom page size attribute ("HWMargins", "ParamCustomPageSize",
// "MaxMediaWidth", "MaxMediaHeight") whose description "value" is a
// printf-style format that this class fills with the product's numbers.

#include "generators/APPDGenericAttributesGenerator.h"

namespace ppdforge {

class APPDCustomPageSizeGenerator : public APPDGenericAttributesGenerator {
 public:
  // True when the product's feature "supportsCustomPageSize" is true.
  bool IsApplicable() const override;
  // The description's value formatted with the product's margins or size
  // limits as the attribute name (and, for "ParamCustomPageSize", the spec
  // "Width" or "Height") selects them. Other attributes, and a format that
  // does not fit its numbers, give the value unformatted: a getter has no
  // way to report an error, and the document then writes the text as given.
  AQVString GetAttributeValue() const override;
};

}  // namespace ppdforge
