#include "generators/APPDProductGenerator.h"

#include "core/RKPPDMessages.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDProductGenerator);

bool APPDProductGenerator::Generate(AError* error) {
  std::vector<AQVString> names;
  switch (GetProductNames(names, error)) {
    case State::kAbsent:
      return true;
    case State::kInvalid:
      return false;
    case State::kPresent:
      break;
  }
  const AQVString name = GetAttributeName();
  const AQVString spec = GetAttributeSpec();
  const AQVString translation = GetAttributeText();
  const PPDValueType type = GetAttributeValueType();
  const AQVString comment = GetAttributeComment();
  for (std::size_t i = 0; i < names.size(); ++i) {
    AQVString value;
    if (!MakeValue(names[i], value, error)) return false;
    if (!AddAttribute(name, value, spec, translation, type, i == 0 ? comment : AQVString())) {
      return messages::Report(error, messages::kCannotAddAttribute,
                              {name, spec, translation, value});
    }
  }
  return true;
}

AQVString APPDProductGenerator::GetAttributeName() const {
  const AQVString name = APPDProductDatumAttributesGenerator::GetAttributeName();
  return name.IsEmpty() ? AQVString("Product") : name;
}

AQVString APPDProductGenerator::GetAttributeValue() const {
  AQVString name;
  AQVString value;
  if (GetProductDatum(name, nullptr) != State::kPresent || !MakeValue(name, value, nullptr)) {
    return APPDGenericAttributesGenerator::GetAttributeValue();
  }
  return value;
}

APPDProductGenerator::State APPDProductGenerator::GetProductDatum(AQVString& datum,
                                                                  AError* error) const {
  std::vector<AQVString> names;
  const State state = GetProductNames(names, error);
  if (state == State::kPresent) datum = names.front();
  return state;
}

APPDProductGenerator::State APPDProductGenerator::GetProductNames(std::vector<AQVString>& names,
                                                                  AError* error) const {
  names.clear();
  const std::optional<ADictionary> product = APPDProductData::Load(GetPPDGenerator());
  if (!product) return State::kAbsent;
  AArray list;
  const State state =
      APPDProductData::GetArray(*product, "productNames", APPDProductData::kRootPath, list, error);
  if (state == State::kInvalid) return state;
  if (state == State::kAbsent) {
    AQVString model;
    const State modelState = GetProductString("modelName", model, error);
    if (modelState == State::kPresent) names.push_back(model);
    return modelState;
  }
  const AQVString path = APPDProductData::MemberPath(APPDProductData::kRootPath, "productNames");
  for (std::size_t i = 0; i < list.Count(); ++i) {
    const AQVString* name = list[i].AsString();
    if (name == nullptr || name->IsEmpty()) {
      names.clear();
      APPDProductData::ReportInvalid(error, APPDProductData::ElementPath(path, i),
                                     "a non-empty string");
      return State::kInvalid;
    }
    names.push_back(*name);
  }
  return State::kPresent;
}

bool APPDProductGenerator::MakeValue(const AQVString& productName, AQVString& value,
                                     AError* error) const {
  const AQVString format = APPDGenericAttributesGenerator::GetAttributeValue();
  if (format.IsEmpty()) {
    value = "(" + productName + ")";
    return true;
  }
  return FormatValue(format, productName, value, error);
}

}  // namespace ppdforge
