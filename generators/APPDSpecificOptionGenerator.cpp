#include "generators/APPDSpecificOptionGenerator.h"

#include "core/RKPPDMessages.h"
#include "engine/IPPDGenerator.h"
#include "engine/IProductInfo.h"
#include "model/RKPPDConstants.h"

namespace ppdforge {

namespace {

constexpr const char* kPDFPreFilterAttributesKey = "PDFPreFilterAttributes";

const IProductInfo* Product(const IPPDGenerator* engine) {
  return engine != nullptr ? engine->GetPPDProductInfo() : nullptr;
}

}  // namespace

std::optional<ADictionary> APPDSpecificOptionGenerator::GetProductSetting(
    const AQVString& name) const {
  const IProductInfo* product = Product(GetPPDGenerator());
  if (product == nullptr) return std::nullopt;
  return product->InfoForOptionWithName(name);
}

std::optional<AArray> APPDSpecificOptionGenerator::GetProductSettingValues(
    const AQVString& name) const {
  const std::optional<ADictionary> setting = GetProductSetting(name);
  AArray values;
  if (!setting || !setting->GetArray(kRKPPDOptionChoicesKey, values)) return std::nullopt;
  return values;
}

bool APPDSpecificOptionGenerator::IsProductFeatureOn(const AQVString& key) const {
  const IProductInfo* product = Product(GetPPDGenerator());
  return product != nullptr && product->ProductFeatureForKey(key).BoolValue();
}

long APPDSpecificOptionGenerator::GetCUPSVersion() const {
  const IProductInfo* product = Product(GetPPDGenerator());
  return product != nullptr ? product->CUPSVersion() : 0;
}

std::optional<AQVString> APPDSpecificOptionGenerator::FormatChoiceGenericCode(
    const IPPDOption* option, const ADictionary* value, const AQVString& codeName,
    const std::vector<AFormatter::Argument>& arguments, bool needsValue, AError* error) const {
  std::optional<AQVString> code =
      APPDGenericOptionGenerator::GetChoiceGenericCode(option, value, codeName, error);
  if (!code || code->IsEmpty() || option == nullptr || (needsValue && value == nullptr)) {
    return code;
  }
  // The text comes from a description file: it is checked against the
  // arguments, never trusted.
  AQVString formatted;
  AQVString problem;
  if (!AFormatter::Format(*code, arguments, formatted, &problem)) {
    messages::Report(error, messages::kCannotFormatChoiceCode,
                     {codeName, option->GetID(), *code, problem});
    return std::nullopt;
  }
  return formatted;
}

std::optional<AQVString> APPDSpecificOptionGenerator::FormatChoiceGenericCodeWithKeywords(
    const IPPDOption* option, const ADictionary* value, const AQVString& codeName,
    AError* error) const {
  const AQVString optionID = option != nullptr ? option->GetID() : AQVString();
  return FormatChoiceGenericCode(option, value, codeName, {optionID, codeName},
                                 /*needsValue=*/false, error);
}

bool APPDSpecificOptionGenerator::AddPreFilterAttributesOfOption(const IPPDOption* option,
                                                                AError* error) const {
  if (option == nullptr) return true;
  const std::optional<ADictionary> setting = GetProductSetting(option->GetID());
  AArray attributes;
  if (!setting || !setting->GetArray(kPDFPreFilterAttributesKey, attributes)) return true;
  return AddAttributesFromArray(&attributes, error);
}

long long APPDSpecificOptionGenerator::IntegerIn(const ADictionary* value, const AQVString& key) {
  if (value == nullptr) return 0;
  const AValue* number = value->Get(key);
  return number != nullptr ? number->IntegerValue() : 0;
}

bool APPDSpecificOptionGenerator::HasValueNamed(const AArray& values, const AQVString& name) {
  for (const AValue& item : values) {
    ADictionary value;
    if (item.GetDictionary(value) && value.GetString(kRKPPDCommonCodeNameKey) == name) return true;
  }
  return false;
}

}  // namespace ppdforge
