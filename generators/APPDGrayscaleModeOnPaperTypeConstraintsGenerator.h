#pragma once
// Colour models that a paper type cannot be printed with.

#include "generators/APPDPairedConstraintsGenerator.h"

namespace ppdforge {

class APPDGrayscaleModeOnPaperTypeConstraintsGenerator : public APPDPairedConstraintsGenerator {
 public:
  APPDGrayscaleModeOnPaperTypeConstraintsGenerator();
};

}  // namespace ppdforge
