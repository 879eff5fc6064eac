#include "generators/APPDDuplexOnPaperSizeConstraintsGenerator.h"

#include "model/RKPPDConstants.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDDuplexOnPaperSizeConstraintsGenerator);

APPDDuplexOnPaperSizeConstraintsGenerator::APPDDuplexOnPaperSizeConstraintsGenerator()
    : APPDPairedConstraintsGenerator(
          {FirstSide::kMedia, kRKPPDOptionPageSizeName, "PageSize", "Duplex"}) {}

}  // namespace ppdforge
