#include "generators/APPDICCProfileOptionGenerator.h"

#include "core/RKPPDMessages.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDICCProfileOptionGenerator);

namespace {

constexpr const char* kAutomaticChoiceID = "None";
constexpr const char* kAutomaticChoiceName = "Automatic";

}  // namespace

void APPDICCProfileOptionGenerator::Initialize(IPPDGenerator* generator,
                                               const ADictionary* description) {
  APPDGenericOptionGenerator::Initialize(generator, description);
  profiles_.Initialize(generator);
}

std::optional<AArray> APPDICCProfileOptionGenerator::GetOptionSettingValues() const {
  return profiles_.GetProfileValues();
}

bool APPDICCProfileOptionGenerator::PostProcess(IPPDOption* option, AError* error) {
  if (option == nullptr) return true;
  if (!AddChoiceToOption(option, kAutomaticChoiceID, kAutomaticChoiceName, AQVString(),
                         AQVString())) {
    return messages::Report(error, messages::kCannotAddChoice,
                            {AQVString(kAutomaticChoiceID), option->GetName()});
  }
  option->SetDefaultChoice(kAutomaticChoiceID);
  return true;
}

}  // namespace ppdforge
