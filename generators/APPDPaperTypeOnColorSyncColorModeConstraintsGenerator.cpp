#include "generators/APPDPaperTypeOnColorSyncColorModeConstraintsGenerator.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDPaperTypeOnColorSyncColorModeConstraintsGenerator);

APPDPaperTypeOnColorSyncColorModeConstraintsGenerator::
    APPDPaperTypeOnColorSyncColorModeConstraintsGenerator()
    : APPDPairedConstraintsGenerator(
          {FirstSide::kSetting, "QVPaperType", "MediaType", "ColorSyncColorMode"}) {}

}  // namespace ppdforge
