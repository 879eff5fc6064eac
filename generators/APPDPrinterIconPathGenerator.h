#pragma once
// The printer icon attribute (normally "APPrinterIconPath") from the
// product's "iconPath".

#include "generators/APPDProductDatumAttributesGenerator.h"

namespace ppdforge {

class APPDPrinterIconPathGenerator : public APPDProductDatumAttributesGenerator {
 protected:
  // "iconPath".
  State GetProductDatum(AQVString& datum, AError* error) const override;
};

}  // namespace ppdforge
