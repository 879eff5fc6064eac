#pragma once
// Image enhancement choices that a print quality cannot be combined with.

#include "generators/APPDPairedConstraintsGenerator.h"

namespace ppdforge {

class APPDOutputModeOnImageEnhancementConstraintsGenerator : public APPDPairedConstraintsGenerator {
 public:
  APPDOutputModeOnImageEnhancementConstraintsGenerator();
};

}  // namespace ppdforge
