#pragma once
// Print qualities that a paper size cannot be printed with.

#include "generators/APPDPairedConstraintsGenerator.h"

namespace ppdforge {

class APPDQualityOnPaperSizeConstraintsGenerator : public APPDPairedConstraintsGenerator {
 public:
  APPDQualityOnPaperSizeConstraintsGenerator();
};

}  // namespace ppdforge
