#include "generators/APPDMediaTypeOptionGenerator.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDMediaTypeOptionGenerator);

std::optional<AQVString> APPDMediaTypeOptionGenerator::GetChoiceGenericCode(
    const IPPDOption* option, const ADictionary* value, const AQVString& codeName,
    AError* error) const {
  return FormatChoiceGenericCodeWithKeywords(option, value, codeName, error);
}

}  // namespace ppdforge
