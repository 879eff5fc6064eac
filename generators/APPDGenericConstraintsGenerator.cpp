#include "generators/APPDGenericConstraintsGenerator.h"

#include <string>
#include <string_view>
#include <vector>

#include "core/AFormatter.h"
#include "core/RKPPDMessages.h"
#include "engine/IPPDGenerator.h"
#include "model/IPPD.h"
#include "model/IPPDConstraint.h"
#include "model/RKPPDConstants.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDGenericConstraintsGenerator);

namespace {

// The string at `index` as GetStringAt gives it (empty past the end or for
// another type), without a copy: this runs for every pair of constraints.
std::string_view StringAt(const AArray& array, std::size_t index) {
  if (index >= array.Count()) return std::string_view();
  const AQVString* text = array[index].AsString();
  return text != nullptr ? std::string_view(text->UTF8()) : std::string_view();
}

IPPD* Document(const IPPDGenerator* engine) {
  return engine != nullptr ? engine->GetPPD() : nullptr;
}

// Whether `constraint` names exactly the given options, in any order, each
// with the given choice.
bool MatchesOptionsAndChoices(const IPPDConstraint& constraint, const AArray& options,
                              const AArray& choices) {
  const AArray& held = constraint.GetOptions();
  if (held.Count() != options.Count()) return false;
  const AArray& heldChoices = constraint.GetChoices();
  for (std::size_t i = 0; i < options.Count(); ++i) {
    const std::string_view option = StringAt(options, i);
    std::size_t position = 0;
    while (position < held.Count() && StringAt(held, position) != option) ++position;
    if (position == held.Count()) return false;
    if (StringAt(heldChoices, position) != StringAt(choices, i)) return false;
  }
  return true;
}

}  // namespace

bool APPDGenericConstraintsGenerator::Generate(AError* error) {
  AArray options;
  AArray choices;
  GetOptionsAndChoices(options, choices);
  if (!AddConstraint(options, choices, GetResolverName(), IsCUPSUIConstraint(), IsConstraintNonUI(),
                     GetConstraintComment())) {
    return messages::Report(error, messages::kCannotAddConstraint);
  }
  return true;
}

bool APPDGenericConstraintsGenerator::IsApplicable() const {
  const IPPD* ppd = Document(GetPPDGenerator());
  if (ppd == nullptr) return false;

  if (IsCUPSUIConstraint()) {
    AArray options;
    AArray choices;
    GetOptionsAndChoices(options, choices);
    if (!IsOptionsAndChoicesApplicable(options, choices)) return false;
    const AQVString resolver = GetResolverName();
    if (!resolver.IsEmpty()) {
      std::vector<IPPDAttribute*> resolvers;
      ppd->GetAttributesWithNameAndSpec(kRKPPDCUPSUIResolverKeyword, &resolver, resolvers);
      if (resolvers.size() != 1) return false;
    }
    return true;
  }

  const IPPDOption* first = ppd->GetOptionWithID(GetFirstOptionID());
  if (first == nullptr) return false;
  const bool nonUI = IsConstraintNonUI();
  const IPPDOption* second = nullptr;
  if (nonUI) {
    // The other side of a NonUIConstraints line is a printer-description keyword.
    std::vector<IPPDAttribute*> attributes;
    ppd->GetAttributesWithNameAndSpec(GetSecondOptionID(), nullptr, attributes);
    if (attributes.empty()) return false;
  } else {
    second = ppd->GetOptionWithID(GetSecondOptionID());
    if (second == nullptr) return false;
  }
  const AQVString firstChoice = GetFirstChoiceID();
  if (!firstChoice.IsEmpty() && first->GetChoiceWithID(firstChoice) == nullptr) return false;
  const AQVString secondChoice = GetSecondChoiceID();
  if (!nonUI && !secondChoice.IsEmpty() && second->GetChoiceWithID(secondChoice) == nullptr) {
    return false;
  }
  return true;
}

AQVString APPDGenericConstraintsGenerator::GetFirstOptionID() const {
  return GetParams().GetString(NumberedKey(kRKPPDGenerationOptionIDKeyFormat, 1));
}

AQVString APPDGenericConstraintsGenerator::GetSecondOptionID() const {
  return GetParams().GetString(NumberedKey(kRKPPDGenerationOptionIDKeyFormat, 2));
}

AQVString APPDGenericConstraintsGenerator::GetFirstChoiceID() const {
  return GetParams().GetString(NumberedKey(kRKPPDGenerationChoiceIDKeyFormat, 1));
}

AQVString APPDGenericConstraintsGenerator::GetSecondChoiceID() const {
  return GetParams().GetString(NumberedKey(kRKPPDGenerationChoiceIDKeyFormat, 2));
}

bool APPDGenericConstraintsGenerator::IsConstraintNonUI() const {
  const AValue* value = GetParams().Get(kRKPPDGenerationNonUIKey);
  if (value == nullptr) return false;
  // Only a true boolean counts, not a number.
  if (value->IsBoolean()) return value->BoolValue();
  const AQVString* text = value->AsString();
  return text != nullptr && *text == "true";
}

AQVString APPDGenericConstraintsGenerator::GetConstraintComment() const {
  return GetParams().GetString(kRKPPDGenerationCommentKey);
}

bool APPDGenericConstraintsGenerator::IsCUPSUIConstraint() const {
  const AValue* value = GetParams().Get(kRKPPDGenerationCUPSUIConstraintKey);
  if (value == nullptr) return false;
  if (value->IsBoolean() || value->IsNumber()) return value->BoolValue();
  const AQVString* text = value->AsString();
  return text != nullptr && *text == "true";
}

void APPDGenericConstraintsGenerator::GetOptionsAndChoices(AArray& options, AArray& choices) const {
  options.Clear();
  choices.Clear();
  const ADictionary& params = GetParams();
  for (long long n = 1;; ++n) {
    const AQVString optionKey = NumberedKey(kRKPPDGenerationOptionIDKeyFormat, n);
    if (!params.Contains(optionKey)) break;
    options.Append(params.GetString(optionKey));
    choices.Append(params.GetString(NumberedKey(kRKPPDGenerationChoiceIDKeyFormat, n)));
  }
}

AQVString APPDGenericConstraintsGenerator::GetResolverName() const {
  return GetParams().GetString(kRKPPDGenerationResolverKey);
}

bool APPDGenericConstraintsGenerator::IsOptionsAndChoicesApplicable(const AArray& options,
                                                                    const AArray& choices) const {
  const IPPD* ppd = Document(GetPPDGenerator());
  for (std::size_t i = 0; i < options.Count(); ++i) {
    const IPPDOption* option = ppd != nullptr ? ppd->GetOptionWithID(options.GetStringAt(i)) : nullptr;
    if (option == nullptr) return false;
    const AQVString choice = choices.GetStringAt(i);
    if (!choice.IsEmpty() && option->GetChoiceWithID(choice) == nullptr) return false;
  }
  return true;
}

bool APPDGenericConstraintsGenerator::AddConstraint(const AQVString& option1,
                                                    const AQVString& option2,
                                                    const AQVString& choice1,
                                                    const AQVString& choice2, bool nonUI,
                                                    const AQVString& comment) {
  return AddConstraint(AArray{option1, option2}, AArray{choice1, choice2}, GetResolverName(),
                       IsCUPSUIConstraint(), nonUI, comment);
}

bool APPDGenericConstraintsGenerator::AddConstraint(const AArray& options, const AArray& choices,
                                                    const AQVString& resolver,
                                                    bool cupsUIConstraint, bool nonUI,
                                                    const AQVString& comment) {
  IPPD* ppd = Document(GetPPDGenerator());
  if (ppd == nullptr) return false;
  AScopedRef<IPPDConstraint> constraint(
      IPPDConstraint::Create(options, choices, resolver, cupsUIConstraint, nonUI, comment));
  if (!constraint) return false;
  RemoveConstraintsForOptionsAndChoices(options, choices);
  return ppd->AddConstraint(constraint.get(), false) != nullptr;
}

void APPDGenericConstraintsGenerator::RemoveConstraintsForOptionsAndChoices(const AArray& options,
                                                                           const AArray& choices) {
  IPPD* ppd = Document(GetPPDGenerator());
  if (ppd == nullptr) return;
  // A match of one or two options holds each given pair at its index 0 or 1,
  // so the document's index of such pairs gives the candidates without a
  // walk over every constraint (the second pair's list when the first one's
  // is long: one side of a pairwise constraint is often shared by many).
  std::vector<IPPDConstraint*> candidates;
  const std::vector<IPPDConstraint*>* walked = &ppd->GetConstraints();
  if (options.Count() == 1 || options.Count() == 2) {
    ppd->GetConstraintsWithOptionAndChoice(AQVString(StringAt(options, 0)), AQVString(StringAt(choices, 0)),
                                           candidates);
    constexpr std::size_t kShortList = 16;
    if (options.Count() == 2 && candidates.size() > kShortList) {
      std::vector<IPPDConstraint*> second;
      ppd->GetConstraintsWithOptionAndChoice(AQVString(StringAt(options, 1)),
                                             AQVString(StringAt(choices, 1)), second);
      if (second.size() < candidates.size()) candidates.swap(second);
    }
    walked = &candidates;
  }
  // Collected first: removing while walking the document's list would skip entries.
  std::vector<IPPDConstraint*> matches;
  for (IPPDConstraint* constraint : *walked) {
    if (constraint != nullptr && MatchesOptionsAndChoices(*constraint, options, choices)) {
      matches.push_back(constraint);
    }
  }
  for (IPPDConstraint* constraint : matches) ppd->RemoveConstraint(constraint);
}

AQVString APPDGenericConstraintsGenerator::MakeValueFromOptionsAndChoices(
    const AArray& options, const AArray& choices) const {
  return IPPDConstraint::MakeValueFromOptionsAndChoices(options, choices);
}

}  // namespace ppdforge
