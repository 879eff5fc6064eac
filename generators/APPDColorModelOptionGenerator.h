#pragma once
// The colour model option: the values of the product setting "QVColorModel"
// (without "None" from CUPS 1.2.0 on), each code filled with the value's
// colour order, colour space and bits per colour, "RGB" or else "Gray" as
// the default.

#include "generators/APPDSpecificOptionGenerator.h"

namespace ppdforge {

class APPDColorModelOptionGenerator : public APPDSpecificOptionGenerator {
 public:
  // A copy of the "QVColorModel" values; from CUPS 0x120 on without the first
  // value named "None". Nothing when the product lacks the setting.
  std::optional<AArray> GetOptionSettingValues() const override;
  // The code filled with "cupsColorOrder", "cupsColorSpace" and
  // "cupsBitsPerColor" (three integers, in this order).
  std::optional<AQVString> GetChoiceGenericCode(const IPPDOption* option, const ADictionary* value,
                                                const AQVString& codeName,
                                                AError* error) const override;
  // "RGB" when the option has it, else "Gray", else the generic default.
  AQVString GetDefaultChoice(const IPPDOption* option) const override;
};

}  // namespace ppdforge
