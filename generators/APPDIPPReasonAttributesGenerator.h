#pragma once
// The IPP reasons: per entry of the product's "ippReasons" an IPP reason
// ("cupsIPPReason", option keyword the entry's "reason", text its "message", value its
// "value" or else the message), which the document writes at the end of the
// file.

#include "generators/APPDGenericAttributesGenerator.h"

namespace ppdforge {

class APPDIPPReasonAttributesGenerator : public APPDGenericAttributesGenerator {
 public:
  // True when the product has "ippReasons".
  bool IsApplicable() const override;
  // Adds one reason per entry (the entry's comment on the first). False
  // with "Invalid product description: ..." before anything is added, or
  // "Cannot add PPD attribute: ..." (code 1).
  bool Generate(AError* error) override;
};

}  // namespace ppdforge
