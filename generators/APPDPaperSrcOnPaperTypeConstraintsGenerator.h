#pragma once
// Paper sources that cannot feed a paper type.

#include "generators/APPDPairedConstraintsGenerator.h"

namespace ppdforge {

class APPDPaperSrcOnPaperTypeConstraintsGenerator : public APPDPairedConstraintsGenerator {
 public:
  APPDPaperSrcOnPaperTypeConstraintsGenerator();
};

}  // namespace ppdforge
