#pragma once
// An installable accessory's option: made only when the product setting it
// comes from is "enabled".

#include "generators/APPDSpecificOptionGenerator.h"

namespace ppdforge {

class APPDInstallableOptionGenerator : public APPDSpecificOptionGenerator {
 public:
  // The generic test, and "enabled" true in the product setting "setting-name".
  bool IsApplicable() const override;
};

}  // namespace ppdforge
