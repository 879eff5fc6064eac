#include "generators/APPDDuplexOptionGenerator.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDDuplexOptionGenerator);

bool APPDDuplexOptionGenerator::IsApplicable() const {
  return IsProductFeatureOn("supportsAutoDuplex");
}

}  // namespace ppdforge
