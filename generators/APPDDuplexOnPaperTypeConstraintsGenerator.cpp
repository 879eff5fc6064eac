#include "generators/APPDDuplexOnPaperTypeConstraintsGenerator.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDDuplexOnPaperTypeConstraintsGenerator);

APPDDuplexOnPaperTypeConstraintsGenerator::APPDDuplexOnPaperTypeConstraintsGenerator()
    : APPDPairedConstraintsGenerator({FirstSide::kSetting, "QVPaperType", "MediaType", "Duplex"}) {}

}  // namespace ppdforge
