#include "generators/APPDDriverComponentsGenerator.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDDriverComponentsGenerator);

APPDDriverComponentsGenerator::State APPDDriverComponentsGenerator::GetProductDatum(
    AQVString& datum, AError* error) const {
  const AQVString component = GetParams().GetString("component");
  if (component.IsEmpty()) return State::kAbsent;
  const std::optional<ADictionary> product = APPDProductData::Load(GetPPDGenerator());
  if (!product) return State::kAbsent;
  ADictionary components;
  const State state = APPDProductData::GetDictionary(*product, "components",
                                                     APPDProductData::kRootPath, components, error);
  if (state != State::kPresent) return state;
  return APPDProductData::GetString(
      components, component, APPDProductData::MemberPath(APPDProductData::kRootPath, "components"),
      datum, error);
}

}  // namespace ppdforge
