#pragma once
// The media (paper) type option: choices as for the generic option, each code
// filled with the option's keyword and the choice's keyword.

#include "generators/APPDSpecificOptionGenerator.h"

namespace ppdforge {

class APPDMediaTypeOptionGenerator : public APPDSpecificOptionGenerator {
 public:
  // The code filled with the option's keyword then the choice's keyword (two strings).
  std::optional<AQVString> GetChoiceGenericCode(const IPPDOption* option, const ADictionary* value,
                                                const AQVString& codeName,
                                                AError* error) const override;
};

}  // namespace ppdforge
