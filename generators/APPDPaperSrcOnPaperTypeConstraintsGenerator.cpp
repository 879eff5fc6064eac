#include "generators/APPDPaperSrcOnPaperTypeConstraintsGenerator.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDPaperSrcOnPaperTypeConstraintsGenerator);

APPDPaperSrcOnPaperTypeConstraintsGenerator::APPDPaperSrcOnPaperTypeConstraintsGenerator()
    : APPDPairedConstraintsGenerator(
          {FirstSide::kSetting, "QVPaperType", "MediaType", "InputSlot"}) {}

}  // namespace ppdforge
