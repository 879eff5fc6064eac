#pragma once
// Duplex modes that the custom page size cannot be printed with
// ("customPageSizeExcludes" of "Duplex").

#include "generators/APPDPairedConstraintsGenerator.h"

namespace ppdforge {

class APPDDuplexOnCustomPaperSizeConstraintsGenerator : public APPDPairedConstraintsGenerator {
 public:
  APPDDuplexOnCustomPaperSizeConstraintsGenerator();
};

}  // namespace ppdforge
