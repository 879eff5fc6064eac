#pragma once
// The grayscale mode option: made only for a product whose colour modes
// ("QVColorMode") include "grayscale".

#include "generators/APPDSpecificOptionGenerator.h"

namespace ppdforge {

class APPDGrayscaleModeOptionGenerator : public APPDSpecificOptionGenerator {
 public:
  // The generic test, and a value named "grayscale" in "QVColorMode".
  bool IsApplicable() const override;
};

}  // namespace ppdforge
