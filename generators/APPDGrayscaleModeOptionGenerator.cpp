#include "generators/APPDGrayscaleModeOptionGenerator.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDGrayscaleModeOptionGenerator);

bool APPDGrayscaleModeOptionGenerator::IsApplicable() const {
  if (!APPDSpecificOptionGenerator::IsApplicable()) return false;
  const std::optional<AArray> colorModes = GetProductSettingValues("QVColorMode");
  return colorModes && HasValueNamed(*colorModes, "grayscale");
}

}  // namespace ppdforge
