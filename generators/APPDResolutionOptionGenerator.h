#pragma once
// The resolution option: the values of the product setting "QVResolution",
// each code filled with the value's horizontal and vertical resolution.

#include "generators/APPDSpecificOptionGenerator.h"

namespace ppdforge {

class APPDResolutionOptionGenerator : public APPDSpecificOptionGenerator {
 public:
  // The "QVResolution" values; nothing when the product lacks the setting.
  std::optional<AArray> GetOptionSettingValues() const override;
  // The code filled with "horizontalResolutionValue" then
  // "verticalResolutionValue" (two integers).
  std::optional<AQVString> GetChoiceGenericCode(const IPPDOption* option, const ADictionary* value,
                                                const AQVString& codeName,
                                                AError* error) const override;
};

}  // namespace ppdforge
