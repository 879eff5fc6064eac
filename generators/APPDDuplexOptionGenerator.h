#pragma once
// The duplex option: made exactly when the product prints both sides by
// itself, whatever its description's value count would say.

#include "generators/APPDSpecificOptionGenerator.h"

namespace ppdforge {

class APPDDuplexOptionGenerator : public APPDSpecificOptionGenerator {
 public:
  // The feature "supportsAutoDuplex"; the generic value-count test is not made.
  bool IsApplicable() const override;
};

}  // namespace ppdforge
