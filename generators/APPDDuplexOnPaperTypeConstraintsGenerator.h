#pragma once
// Duplex modes that a paper type cannot be printed with.

#include "generators/APPDPairedConstraintsGenerator.h"

namespace ppdforge {

class APPDDuplexOnPaperTypeConstraintsGenerator : public APPDPairedConstraintsGenerator {
 public:
  APPDDuplexOnPaperTypeConstraintsGenerator();
};

}  // namespace ppdforge
