#include "generators/APPDPreFilterAttributesGenerator.h"

#include "generators/APPDProductData.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDPreFilterAttributesGenerator);

namespace {

using State = APPDProductData::State;

constexpr const char* kPreFilterAttributesKey = "preFilterAttributes";

}  // namespace

bool APPDPreFilterAttributesGenerator::IsApplicable() const {
  const std::optional<ADictionary> product = APPDProductData::Load(GetPPDGenerator());
  AArray attributes;
  return product &&
         APPDProductData::GetArray(*product, kPreFilterAttributesKey, APPDProductData::kRootPath,
                                   attributes, nullptr) != State::kAbsent;
}

bool APPDPreFilterAttributesGenerator::Generate(AError* error) {
  const std::optional<ADictionary> product = APPDProductData::Load(GetPPDGenerator());
  if (!product) return true;
  AArray attributes;
  const State state = APPDProductData::GetArray(*product, kPreFilterAttributesKey,
                                                APPDProductData::kRootPath, attributes, error);
  if (state != State::kPresent) return state == State::kAbsent;
  const AQVString path =
      APPDProductData::MemberPath(APPDProductData::kRootPath, kPreFilterAttributesKey);
  for (std::size_t i = 0; i < attributes.Count(); ++i) {
    ADictionary attribute;
    if (!APPDProductData::GetDictionaryAt(attributes, i, path, attribute, error)) return false;
  }
  return AddAttributesFromArray(&attributes, error);
}

}  // namespace ppdforge
