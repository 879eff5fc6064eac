#include "generators/APPDPaperSrcOnPaperSizeConstraintsGenerator.h"

#include "model/RKPPDConstants.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDPaperSrcOnPaperSizeConstraintsGenerator);

APPDPaperSrcOnPaperSizeConstraintsGenerator::APPDPaperSrcOnPaperSizeConstraintsGenerator()
    : APPDPairedConstraintsGenerator(
          {FirstSide::kMedia, kRKPPDOptionPageSizeName, "PageSize", "InputSlot"}) {}

}  // namespace ppdforge
