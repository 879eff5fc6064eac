#pragma once
// The output mode (print quality) option: each code filled with the option's
// keyword and the choice's keyword; the default is the "defaultQuality" of
// the product's default paper type.

#include "generators/APPDSpecificOptionGenerator.h"

namespace ppdforge {

class APPDOutputModeOptionGenerator : public APPDSpecificOptionGenerator {
 public:
  // The code filled with the option's keyword then the choice's keyword (two strings).
  std::optional<AQVString> GetChoiceGenericCode(const IPPDOption* option, const ADictionary* value,
                                                const AQVString& codeName,
                                                AError* error) const override;
  // The "defaultQuality" of the "QVPaperType" value named by its
  // "defaultChoice"; empty when there is no such value (the option then
  // falls back on its first choice).
  AQVString GetDefaultChoice(const IPPDOption* option) const override;
};

}  // namespace ppdforge
