#pragma once
// Paper sizes that a paper type does not come in.

#include "generators/APPDPairedConstraintsGenerator.h"

namespace ppdforge {

class APPDPaperSizeOnPaperTypeConstraintsGenerator : public APPDPairedConstraintsGenerator {
 public:
  APPDPaperSizeOnPaperTypeConstraintsGenerator();
};

}  // namespace ppdforge
