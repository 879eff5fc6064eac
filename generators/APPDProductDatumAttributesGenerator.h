#pragma once
// Base of the attribute generators that take one datum from the product
// ("version", "iconPath", a name, a component path ...). The entry's "value",
// when present, is a format with one "%@" that receives the datum; without it
// the datum is the value. A product without the datum makes the generator
// not applicable: nothing is written and nothing reported. Not registered.

#include "generators/APPDGenericAttributesGenerator.h"
#include "generators/APPDProductData.h"

namespace ppdforge {

class APPDProductDatumAttributesGenerator : public APPDGenericAttributesGenerator {
 public:
  // True when the product has the datum (a datum of the wrong type counts,
  // so that Generate reports it).
  bool IsApplicable() const override;
  // Checks the datum and the value format, then adds the attribute as the
  // generic generator does. False with "Invalid product description: ..."
  // or "Cannot format the value of PPD attribute ..." (code 1). Without the
  // datum: true, nothing added.
  bool Generate(AError* error) override;
  // The entry's "value" formatted with the datum, or the datum itself; a
  // format that does not fit gives the format unformatted (Generate has
  // refused it before the value is ever used).
  AQVString GetAttributeValue() const override;

 protected:
  using State = APPDProductData::State;

  // The datum of this entry: kPresent with `datum` set, kAbsent, or
  // kInvalid with *error set (when non-null) naming the product key.
  virtual State GetProductDatum(AQVString& datum, AError* error) const = 0;

  // The string under `key` of "product" (empty strings count as absent).
  State GetProductString(const AQVString& key, AQVString& datum, AError* error) const;
  // `format` ("value" of the entry) filled with `datum` into `value`; false
  // with the error naming the attribute when the format does not take one
  // string. An empty format gives the datum.
  bool FormatValue(const AQVString& format, const AQVString& datum, AQVString& value,
                   AError* error) const;
};

}  // namespace ppdforge
