#pragma once
// The general case: the values of the setting named by "setting-name",
// the option keyword "option-1" of the entry, and every option keyword under
// each value's "excludes" as a second side.

#include "generators/APPDPairedConstraintsGenerator.h"

namespace ppdforge {

class APPDOwnSelfConstraintsGenerator : public APPDPairedConstraintsGenerator {
 public:
  APPDOwnSelfConstraintsGenerator();
};

}  // namespace ppdforge
