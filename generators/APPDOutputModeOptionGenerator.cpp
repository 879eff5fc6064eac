#include "generators/APPDOutputModeOptionGenerator.h"

#include "model/RKPPDConstants.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDOutputModeOptionGenerator);

namespace {

constexpr const char* kPaperTypeSettingName = "QVPaperType";
constexpr const char* kDefaultQualityKey = "defaultQuality";

}  // namespace

std::optional<AQVString> APPDOutputModeOptionGenerator::GetChoiceGenericCode(
    const IPPDOption* option, const ADictionary* value, const AQVString& codeName,
    AError* error) const {
  return FormatChoiceGenericCodeWithKeywords(option, value, codeName, error);
}

AQVString APPDOutputModeOptionGenerator::GetDefaultChoice(const IPPDOption* /*option*/) const {
  const std::optional<ADictionary> paperType = GetProductSetting(kPaperTypeSettingName);
  AArray values;
  if (!paperType || !paperType->GetArray(kRKPPDOptionChoicesKey, values)) return {};
  // A missing name matches nothing, not even a missing default.
  AQVString defaultPaperType;
  if (!paperType->GetString(kRKPPDOptionDefaultChoiceNameKey, defaultPaperType)) return {};
  for (const AValue& item : values) {
    ADictionary value;
    AQVString name;
    if (item.GetDictionary(value) && value.GetString(kRKPPDCommonCodeNameKey, name) &&
        name == defaultPaperType) {
      return value.GetString(kDefaultQualityKey);
    }
  }
  return {};
}

}  // namespace ppdforge
