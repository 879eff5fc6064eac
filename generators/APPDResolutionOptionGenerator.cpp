#include "generators/APPDResolutionOptionGenerator.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDResolutionOptionGenerator);

namespace {

constexpr const char* kResolutionSettingName = "QVResolution";
constexpr const char* kHorizontalResolutionKey = "horizontalResolutionValue";
constexpr const char* kVerticalResolutionKey = "verticalResolutionValue";

}  // namespace

std::optional<AArray> APPDResolutionOptionGenerator::GetOptionSettingValues() const {
  return GetProductSettingValues(kResolutionSettingName);
}

std::optional<AQVString> APPDResolutionOptionGenerator::GetChoiceGenericCode(
    const IPPDOption* option, const ADictionary* value, const AQVString& codeName,
    AError* error) const {
  return FormatChoiceGenericCode(
      option, value, codeName,
      {IntegerIn(value, kHorizontalResolutionKey), IntegerIn(value, kVerticalResolutionKey)},
      /*needsValue=*/true, error);
}

}  // namespace ppdforge
