#include "generators/APPDOutputModeOnImageEnhancementConstraintsGenerator.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDOutputModeOnImageEnhancementConstraintsGenerator);

APPDOutputModeOnImageEnhancementConstraintsGenerator::
    APPDOutputModeOnImageEnhancementConstraintsGenerator()
    : APPDPairedConstraintsGenerator(
          {FirstSide::kSetting, "QVOutputMode", "OutputMode", "SimpleImageEnhancement"}) {}

}  // namespace ppdforge
