#pragma once
// The "Product" attributes: one per entry of the product's "productNames"
// (or "modelName" alone), valued "(" + name + ")" unless the entry's "value"
// formats the name; the entry's comment goes on the first only.

#include <vector>

#include "generators/APPDProductDatumAttributesGenerator.h"

namespace ppdforge {

class APPDProductGenerator : public APPDProductDatumAttributesGenerator {
 public:
  // Adds one attribute per product name. False with "Invalid product
  // description: ...", "Cannot format the value of PPD attribute ..." or,
  // on the first refused attribute, "Cannot add PPD attribute: ..." (code 1).
  bool Generate(AError* error) override;
  // The entry's "name", or "Product".
  AQVString GetAttributeName() const override;
  // The value for the first product name.
  AQVString GetAttributeValue() const override;

 protected:
  // The first product name.
  State GetProductDatum(AQVString& datum, AError* error) const override;

 private:
  // "productNames", or else "modelName" alone.
  State GetProductNames(std::vector<AQVString>& names, AError* error) const;
  bool MakeValue(const AQVString& productName, AQVString& value, AError* error) const;
};

}  // namespace ppdforge
