#pragma once
// Paper sources that cannot feed a paper size.

#include "generators/APPDPairedConstraintsGenerator.h"

namespace ppdforge {

class APPDPaperSrcOnPaperSizeConstraintsGenerator : public APPDPairedConstraintsGenerator {
 public:
  APPDPaperSrcOnPaperSizeConstraintsGenerator();
};

}  // namespace ppdforge
