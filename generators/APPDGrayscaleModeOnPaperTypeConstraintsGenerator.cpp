#include "generators/APPDGrayscaleModeOnPaperTypeConstraintsGenerator.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDGrayscaleModeOnPaperTypeConstraintsGenerator);

APPDGrayscaleModeOnPaperTypeConstraintsGenerator::APPDGrayscaleModeOnPaperTypeConstraintsGenerator()
    : APPDPairedConstraintsGenerator(
          {FirstSide::kSetting, "QVPaperType", "MediaType", "ColorModel"}) {}

}  // namespace ppdforge
