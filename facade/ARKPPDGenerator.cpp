#include "facade/ARKPPDGenerator.h"

#include <utility>

#include "facade/ARKPPDConcreteGenerator.h"

namespace ppdforge {

std::unique_ptr<ARKPPDGenerator> ARKPPDGenerator::GeneratorWithProductInfo(
    std::shared_ptr<const IProductInfo> productInfo, AError* error) {
  return ARKPPDConcreteGenerator::Create(std::move(productInfo), error);
}

}  // namespace ppdforge
