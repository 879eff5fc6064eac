#pragma once
// A driver component attribute (for example "cupsFilter" with the value
// "application/vnd.cups-raster 0 %@") from the product's "components", the
// installed path of the component that the entry names under "component".

#include "generators/APPDProductDatumAttributesGenerator.h"

namespace ppdforge {

class APPDDriverComponentsGenerator : public APPDProductDatumAttributesGenerator {
 protected:
  // components[entry's "component"]; absent when the entry names none or
  // the product does not list it.
  State GetProductDatum(AQVString& datum, AError* error) const override;
};

}  // namespace ppdforge
