#include "generators/APPDQualityOnPaperTypeConstraintsGenerator.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDQualityOnPaperTypeConstraintsGenerator);

APPDQualityOnPaperTypeConstraintsGenerator::APPDQualityOnPaperTypeConstraintsGenerator()
    : APPDPairedConstraintsGenerator(
          {FirstSide::kSetting, "QVPaperType", "MediaType", "OutputMode"}) {}

}  // namespace ppdforge
