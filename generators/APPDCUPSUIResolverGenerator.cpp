#include "generators/APPDCUPSUIResolverGenerator.h"

#include <string>
#include <string_view>
#include <vector>

#include "core/AFormatter.h"
#include "core/RKPPDMessages.h"
#include "engine/IPPDGenerator.h"
#include "model/IPPD.h"
#include "model/PPDValueType.h"
#include "model/RKPPDConstants.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDCUPSUIResolverGenerator);

bool APPDCUPSUIResolverGenerator::Generate(AError* error) {
  const AQVString resolverName = GetResolverName();
  IPPD* ppd = GetPPDGenerator() != nullptr ? GetPPDGenerator()->GetPPD() : nullptr;
  if (ppd == nullptr) {
    return messages::Report(error, messages::kCannotAddResolver, {resolverName});
  }

  // The first entry of a resolver name wins; later ones are ignored.
  std::vector<IPPDAttribute*> existing;
  ppd->GetAttributesWithNameAndSpec(kRKPPDCUPSUIResolverKeyword, &resolverName, existing);
  if (!existing.empty()) return true;

  AArray options;
  AArray choices;
  GetOptionsAndChoices(options, choices);
  const AQVString value = MakeValueFromOptionsAndChoices(options, choices);
  if (ppd->AddAttribute(kRKPPDCUPSUIResolverKeyword, value, resolverName, AQVString(),
                        kPPDQuotedValue, GetResolverComment()) == nullptr) {
    return messages::Report(error, messages::kCannotAddResolver, {resolverName});
  }
  return true;
}

bool APPDCUPSUIResolverGenerator::IsApplicable() const {
  AArray options;
  AArray choices;
  GetOptionsAndChoices(options, choices);
  return IsOptionsAndChoicesApplicable(options, choices);
}

void APPDCUPSUIResolverGenerator::GetOptionsAndChoices(AArray& options, AArray& choices) const {
  options.Clear();
  choices.Clear();
  const ADictionary& params = GetParams();
  const IPPD* ppd = GetPPDGenerator() != nullptr ? GetPPDGenerator()->GetPPD() : nullptr;
  for (long long n = 1;; ++n) {
    const AQVString optionKey = NumberedKey(kRKPPDGenerationOptionIDKeyFormat, n);
    if (!params.Contains(optionKey)) break;
    const AQVString option = params.GetString(optionKey);

    const AQVString choiceKey = NumberedKey(kRKPPDGenerationChoiceIDKeyFormat, n);
    AQVString choice;
    if (params.Contains(choiceKey)) {
      choice = params.GetString(choiceKey);
    } else if (const IPPDOption* found = ppd != nullptr ? ppd->GetOptionWithID(option) : nullptr;
               found != nullptr) {
      choice = found->GetDefaultChoice();
    }
    options.Append(option);
    choices.Append(choice);
  }
}

AQVString APPDCUPSUIResolverGenerator::GetResolverName() const {
  return GetParams().GetString(kRKPPDGenerationResolverNameKey);
}

AQVString APPDCUPSUIResolverGenerator::GetResolverComment() const {
  return GetParams().GetString(kRKPPDGenerationCommentKey);
}

AQVString APPDCUPSUIResolverGenerator::MakeValueFromOptionsAndChoices(const AArray& options,
                                                                      const AArray& choices) const {
  AQVString value;
  for (std::size_t i = 0; i < options.Count(); ++i) {
    if (!value.IsEmpty()) value += kRKPPDSpace;
    value += kRKPPDAsterisk;
    value += options.GetStringAt(i);
    const AQVString choice = choices.GetStringAt(i);
    if (!choice.IsEmpty()) {
      value += kRKPPDSpace;
      value += choice;
    }
  }
  return value;
}

bool APPDCUPSUIResolverGenerator::IsOptionsAndChoicesApplicable(const AArray& options,
                                                                const AArray& choices) const {
  const IPPD* ppd = GetPPDGenerator() != nullptr ? GetPPDGenerator()->GetPPD() : nullptr;
  for (std::size_t i = 0; i < options.Count(); ++i) {
    const IPPDOption* option = ppd != nullptr ? ppd->GetOptionWithID(options.GetStringAt(i)) : nullptr;
    if (option == nullptr) return false;
    if (option->GetChoiceWithID(choices.GetStringAt(i)) == nullptr) return false;
  }
  return true;
}

}  // namespace ppdforge
