#pragma once
// Print qualities that a paper type cannot be printed with.

#include "generators/APPDPairedConstraintsGenerator.h"

namespace ppdforge {

class APPDQualityOnPaperTypeConstraintsGenerator : public APPDPairedConstraintsGenerator {
 public:
  APPDQualityOnPaperTypeConstraintsGenerator();
};

}  // namespace ppdforge
