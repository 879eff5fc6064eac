#include "generators/APPDPaperSrcOnCustomSizeConstraintsGenerator.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDPaperSrcOnCustomSizeConstraintsGenerator);

APPDPaperSrcOnCustomSizeConstraintsGenerator::APPDPaperSrcOnCustomSizeConstraintsGenerator()
    : APPDPairedConstraintsGenerator(
          {FirstSide::kCustomPageSize, "", "CustomPageSize", "InputSlot"}) {}

}  // namespace ppdforge
