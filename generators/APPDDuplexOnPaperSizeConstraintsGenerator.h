#pragma once
// Duplex modes that a paper size cannot be printed with (media "excludes" of "Duplex").

#include "generators/APPDPairedConstraintsGenerator.h"

namespace ppdforge {

class APPDDuplexOnPaperSizeConstraintsGenerator : public APPDPairedConstraintsGenerator {
 public:
  APPDDuplexOnPaperSizeConstraintsGenerator();
};

}  // namespace ppdforge
