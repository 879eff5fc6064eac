#include "generators/APPDQualityOnPaperSizeConstraintsGenerator.h"

#include "model/RKPPDConstants.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDQualityOnPaperSizeConstraintsGenerator);

APPDQualityOnPaperSizeConstraintsGenerator::APPDQualityOnPaperSizeConstraintsGenerator()
    : APPDPairedConstraintsGenerator(
          {FirstSide::kMedia, kRKPPDOptionPageSizeName, "PageSize", "OutputMode"}) {}

}  // namespace ppdforge
