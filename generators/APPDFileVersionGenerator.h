#pragma once
// The file version attribute (normally "FileVersion") from the product's
// "version", digits and dots such as "1.4.2".

#include "generators/APPDProductDatumAttributesGenerator.h"

namespace ppdforge {

class APPDFileVersionGenerator : public APPDProductDatumAttributesGenerator {
 protected:
  // "version"; kInvalid when it is not a string of digits and dots.
  State GetProductDatum(AQVString& datum, AError* error) const override;
};

}  // namespace ppdforge
