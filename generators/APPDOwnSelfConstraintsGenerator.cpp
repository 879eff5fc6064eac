#include "generators/APPDOwnSelfConstraintsGenerator.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDOwnSelfConstraintsGenerator);

APPDOwnSelfConstraintsGenerator::APPDOwnSelfConstraintsGenerator()
    : APPDPairedConstraintsGenerator({FirstSide::kSetting, "", "", ""}) {}

}  // namespace ppdforge
