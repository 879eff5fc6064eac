#pragma once
// Paper sources that cannot feed the custom page size.

#include "generators/APPDPairedConstraintsGenerator.h"

namespace ppdforge {

class APPDPaperSrcOnCustomSizeConstraintsGenerator : public APPDPairedConstraintsGenerator {
 public:
  APPDPaperSrcOnCustomSizeConstraintsGenerator();
};

}  // namespace ppdforge
