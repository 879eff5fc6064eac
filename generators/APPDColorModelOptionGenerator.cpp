#include "generators/APPDColorModelOptionGenerator.h"

#include "model/RKPPDConstants.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDColorModelOptionGenerator);

namespace {

constexpr const char* kColorModelSettingName = "QVColorModel";
constexpr const char* kColorOrderKey = "cupsColorOrder";
constexpr const char* kColorSpaceKey = "cupsColorSpace";
constexpr const char* kBitsPerColorKey = "cupsBitsPerColor";
// CUPS 1.2.0 and later choose "no colour model" themselves.
constexpr long kCUPSVersionWithoutNone = 0x120;

}  // namespace

std::optional<AArray> APPDColorModelOptionGenerator::GetOptionSettingValues() const {
  std::optional<AArray> values = GetProductSettingValues(kColorModelSettingName);
  if (!values || GetCUPSVersion() < kCUPSVersionWithoutNone) return values;
  for (std::size_t i = 0; i < values->Count(); ++i) {
    ADictionary value;
    if (values->At(i).GetDictionary(value) && value.GetString(kRKPPDCommonCodeNameKey) == "None") {
      values->RemoveAt(i);
      break;
    }
  }
  return values;
}

std::optional<AQVString> APPDColorModelOptionGenerator::GetChoiceGenericCode(
    const IPPDOption* option, const ADictionary* value, const AQVString& codeName,
    AError* error) const {
  return FormatChoiceGenericCode(option, value, codeName,
                                 {IntegerIn(value, kColorOrderKey), IntegerIn(value, kColorSpaceKey),
                                  IntegerIn(value, kBitsPerColorKey)},
                                 /*needsValue=*/true, error);
}

AQVString APPDColorModelOptionGenerator::GetDefaultChoice(const IPPDOption* option) const {
  const AQVString generic = APPDSpecificOptionGenerator::GetDefaultChoice(option);
  if (option == nullptr) return generic;
  if (option->GetChoiceWithID("RGB") != nullptr) return "RGB";
  if (option->GetChoiceWithID("Gray") != nullptr) return "Gray";
  return generic;
}

}  // namespace ppdforge
