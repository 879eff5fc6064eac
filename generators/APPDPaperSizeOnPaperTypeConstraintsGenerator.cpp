#include "generators/APPDPaperSizeOnPaperTypeConstraintsGenerator.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDPaperSizeOnPaperTypeConstraintsGenerator);

APPDPaperSizeOnPaperTypeConstraintsGenerator::APPDPaperSizeOnPaperTypeConstraintsGenerator()
    : APPDPairedConstraintsGenerator(
          {FirstSide::kSetting, "QVPaperType", "MediaType", "PageSize"}) {}

}  // namespace ppdforge
