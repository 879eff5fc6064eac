#pragma once
// The colour profile option: one choice per colour profile of the product,
// then "None" ("Automatic"), the default, which leaves the choice of profile
// to the system.

#include "generators/APPDGenericOptionGenerator.h"
#include "generators/colorprofiles/AICCProfilesGenerator.h"

namespace ppdforge {

class APPDICCProfileOptionGenerator : public APPDGenericOptionGenerator {
 public:
  // The generic initialisation, then reads the product's colour profiles.
  void Initialize(IPPDGenerator* generator, const ADictionary* description) override;
  // The profiles as values with "name" and "userName" (empty without profiles).
  std::optional<AArray> GetOptionSettingValues() const override;
  // Adds the last choice "None"/"Automatic" and makes it the default; false
  // with "Cannot add PPD choice None to option ..." (code 1) when refused.
  bool PostProcess(IPPDOption* option, AError* error) override;

 private:
  AICCProfilesGenerator profiles_;
};

}  // namespace ppdforge
