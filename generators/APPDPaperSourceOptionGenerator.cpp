#include "generators/APPDPaperSourceOptionGenerator.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDPaperSourceOptionGenerator);

std::optional<AQVString> APPDPaperSourceOptionGenerator::GetChoiceGenericCode(
    const IPPDOption* option, const ADictionary* value, const AQVString& codeName,
    AError* error) const {
  return FormatChoiceGenericCodeWithKeywords(option, value, codeName, error);
}

}  // namespace ppdforge
