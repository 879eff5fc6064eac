#include "generators/APPDDigitalPhotoOptionGenerator.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDDigitalPhotoOptionGenerator);

bool APPDDigitalPhotoOptionGenerator::IsApplicable() const {
  return IsProductFeatureOn("supportsDigitalPhotoEnhancement") && APPDSpecificOptionGenerator::IsApplicable();
}

bool APPDDigitalPhotoOptionGenerator::PostProcess(IPPDOption* option, AError* error) {
  return AddPreFilterAttributesOfOption(option, error);
}

}  // namespace ppdforge
