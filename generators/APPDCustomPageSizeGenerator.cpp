#include "generators/APPDCustomPageSizeGenerator.h"

#include <vector>

#include "core/AFormatter.h"
#include "core/ARKMediaSizeRect.h"
#include "model/RKPPDConstants.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDCustomPageSizeGenerator);

bool APPDCustomPageSizeGenerator::IsApplicable() const {
  const IPPDGenerator* generator = GetPPDGenerator();
  const IProductInfo* product = generator != nullptr ? generator->GetPPDProductInfo() : nullptr;
  return product != nullptr &&
         product->ProductFeatureForKey(kRKPPDSupportsCustomPageSizeKey).BoolValue();
}

AQVString APPDCustomPageSizeGenerator::GetAttributeValue() const {
  const AQVString format = APPDGenericAttributesGenerator::GetAttributeValue();
  const IPPDGenerator* generator = GetPPDGenerator();
  const IProductInfo* product = generator != nullptr ? generator->GetPPDProductInfo() : nullptr;
  // Margins: top, left, bottom, right. Limits: minimum height, minimum
  // width, maximum height, maximum width.
  const ARKMediaSizeRect margins = product != nullptr ? product->CustomPageSizeMargins()
                                                      : ARKMediaSizeRect{};
  const ARKMediaSizeRect limits = product != nullptr ? product->CustomPageSizeConstraints()
                                                     : ARKMediaSizeRect{};

  const AQVString name = GetAttributeName();
  std::vector<AFormatter::Argument> numbers;
  if (name == "HWMargins") {
    numbers = {margins.left, margins.bottom, margins.right, margins.top};
  } else if (name == "ParamCustomPageSize") {
    const AQVString spec = GetAttributeSpec();
    if (spec == "Width") {
      numbers = {limits.left, limits.right};
    } else if (spec == "Height") {
      numbers = {limits.top, limits.bottom};
    } else {
      return format;
    }
  } else if (name == "MaxMediaWidth") {
    numbers = {limits.right};
  } else if (name == "MaxMediaHeight") {
    numbers = {limits.bottom};
  } else {
    return format;
  }

  AQVString value;
  if (!AFormatter::Format(format, numbers, value)) return format;
  return value;
}

}  // namespace ppdforge
