#include "generators/APPDDuplexOnCustomPaperSizeConstraintsGenerator.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDDuplexOnCustomPaperSizeConstraintsGenerator);

APPDDuplexOnCustomPaperSizeConstraintsGenerator::APPDDuplexOnCustomPaperSizeConstraintsGenerator()
    : APPDPairedConstraintsGenerator({FirstSide::kCustomPageSize, "", "CustomPageSize", "Duplex"}) {
}

}  // namespace ppdforge
