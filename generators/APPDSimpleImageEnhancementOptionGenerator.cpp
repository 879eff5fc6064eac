#include "generators/APPDSimpleImageEnhancementOptionGenerator.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDSimpleImageEnhancementOptionGenerator);

bool APPDSimpleImageEnhancementOptionGenerator::IsApplicable() const {
  return IsProductFeatureOn("supportsSimpleImageEnhancement") && APPDSpecificOptionGenerator::IsApplicable();
}

bool APPDSimpleImageEnhancementOptionGenerator::PostProcess(IPPDOption* option, AError* error) {
  return AddPreFilterAttributesOfOption(option, error);
}

}  // namespace ppdforge
