#pragma once
// Colour matching modes that a paper type cannot be printed with.

#include "generators/APPDPairedConstraintsGenerator.h"

namespace ppdforge {

class APPDPaperTypeOnColorSyncColorModeConstraintsGenerator
    : public APPDPairedConstraintsGenerator {
 public:
  APPDPaperTypeOnColorSyncColorModeConstraintsGenerator();
};

}  // namespace ppdforge
