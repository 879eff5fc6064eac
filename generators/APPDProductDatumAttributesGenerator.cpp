#include "generators/APPDProductDatumAttributesGenerator.h"

#include "core/AFormatter.h"
#include "core/RKPPDMessages.h"
#include "model/RKPPDConstants.h"

namespace ppdforge {

bool APPDProductDatumAttributesGenerator::IsApplicable() const {
  AQVString datum;
  return GetProductDatum(datum, nullptr) != State::kAbsent;
}

bool APPDProductDatumAttributesGenerator::Generate(AError* error) {
  AQVString datum;
  switch (GetProductDatum(datum, error)) {
    case State::kAbsent:
      return true;
    case State::kInvalid:
      return false;
    case State::kPresent:
      break;
  }
  AQVString value;
  if (!FormatValue(APPDGenericAttributesGenerator::GetAttributeValue(), datum, value, error)) {
    return false;
  }
  return APPDGenericAttributesGenerator::Generate(error);
}

AQVString APPDProductDatumAttributesGenerator::GetAttributeValue() const {
  const AQVString format = APPDGenericAttributesGenerator::GetAttributeValue();
  AQVString datum;
  if (GetProductDatum(datum, nullptr) != State::kPresent) return format;
  AQVString value;
  if (!FormatValue(format, datum, value, nullptr)) return format;
  return value;
}

APPDProductDatumAttributesGenerator::State APPDProductDatumAttributesGenerator::GetProductString(
    const AQVString& key, AQVString& datum, AError* error) const {
  const std::optional<ADictionary> product = APPDProductData::Load(GetPPDGenerator());
  if (!product) return State::kAbsent;
  return APPDProductData::GetString(*product, key, APPDProductData::kRootPath, datum, error);
}

bool APPDProductDatumAttributesGenerator::FormatValue(const AQVString& format,
                                                      const AQVString& datum, AQVString& value,
                                                      AError* error) const {
  if (format.IsEmpty()) {
    value = datum;
    return true;
  }
  AQVString problem;
  if (AFormatter::Format(format, {datum}, value, &problem)) return true;
  return messages::Report(error, messages::kCannotFormatAttributeValue,
                          {GetAttributeName(), format, problem});
}

}  // namespace ppdforge
