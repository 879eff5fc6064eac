#include "generators/APPDPairedConstraintsGenerator.h"

#include <map>
#include <optional>
#include <unordered_set>
#include <utility>

#include "core/RKPPDMessages.h"
#include "generators/APPDProductData.h"
#include "model/IPPD.h"
#include "model/RKPPDConstants.h"

namespace ppdforge {

namespace {

using ChoiceSet = std::unordered_set<AQVString>;

constexpr const char* kExcludesKey = "excludes";
constexpr const char* kExcludesExpectation =
    "a dictionary from option keyword to an array of choice keywords";

ChoiceSet ChoicesOf(const IPPDOption& option) {
  ChoiceSet choices;
  for (const IPPDChoice* choice : option.GetChoices()) choices.insert(choice->GetID());
  return choices;
}

bool HasAttribute(const IPPD& ppd, const AQVString& name) {
  std::vector<IPPDAttribute*> attributes;
  ppd.GetAttributesWithNameAndSpec(name, nullptr, attributes);
  return !attributes.empty();
}

// Checks that `value` is a dictionary of arrays of strings.
bool ReadExcludes(const AValue& value, const AQVString& path, ADictionary& excludes,
                  AError* error) {
  if (!value.GetDictionary(excludes)) {
    return APPDProductData::ReportInvalid(error, path, kExcludesExpectation);
  }
  for (const auto& [option, choices] : excludes) {
    AArray list;
    const AQVString optionPath = APPDProductData::MemberPath(path, option);
    if (!choices.GetArray(list)) {
      return APPDProductData::ReportInvalid(error, optionPath, "an array of choice keywords");
    }
    for (std::size_t i = 0; i < list.Count(); ++i) {
      if (!list[i].IsString()) {
        return APPDProductData::ReportInvalid(error, APPDProductData::ElementPath(optionPath, i),
                                              "a choice keyword");
      }
    }
  }
  return true;
}

}  // namespace

bool APPDPairedConstraintsGenerator::IsApplicable() const {
  const IPPDGenerator* generator = GetPPDGenerator();
  const IPPD* ppd = generator != nullptr ? generator->GetPPD() : nullptr;
  if (ppd == nullptr) return false;
  const AQVString first = GetFirstOptionID();
  if (row_.side == FirstSide::kCustomPageSize) {
    if (!HasAttribute(*ppd, first)) return false;
  } else if (ppd->GetOptionWithID(first) == nullptr) {
    return false;
  }
  const AQVString second = GetSecondOptionID();
  if (second.IsEmpty()) return true;
  if (IsConstraintNonUI()) return HasAttribute(*ppd, second);
  return ppd->GetOptionWithID(second) != nullptr;
}

bool APPDPairedConstraintsGenerator::Generate(AError* error) {
  const IPPDGenerator* generator = GetPPDGenerator();
  const IPPD* ppd = generator != nullptr ? generator->GetPPD() : nullptr;
  if (ppd == nullptr) return true;
  std::vector<FirstSideValue> values;
  if (!ReadFirstSide(values, error)) return false;

  const AQVString option1 = GetFirstOptionID();
  // The custom page size has no option; its one choice is always there.
  std::optional<ChoiceSet> firstChoices;
  if (row_.side != FirstSide::kCustomPageSize) {
    const IPPDOption* first = ppd->GetOptionWithID(option1);
    if (first == nullptr) return true;
    firstChoices = ChoicesOf(*first);
  }

  const AQVString fixedSecond = GetSecondOptionID();
  const bool nonUI = IsConstraintNonUI();
  const AQVString comment = GetConstraintComment();
  bool commented = false;
  // Second options by keyword: their choices, or nothing when the document
  // lacks them. A non-UI second side is an attribute and its choices are not checked.
  std::map<AQVString, std::optional<ChoiceSet>> seconds;
  auto secondChoices = [&](const AQVString& keyword) -> const std::optional<ChoiceSet>& {
    auto found = seconds.find(keyword);
    if (found != seconds.end()) return found->second;
    std::optional<ChoiceSet> choices;
    if (nonUI) {
      if (HasAttribute(*ppd, keyword)) choices.emplace();
    } else if (const IPPDOption* option = ppd->GetOptionWithID(keyword)) {
      choices = ChoicesOf(*option);
    }
    return seconds.emplace(keyword, std::move(choices)).first->second;
  };

  for (const FirstSideValue& value : values) {
    if (firstChoices && firstChoices->count(value.choice) == 0) continue;
    std::vector<AQVString> keywords;
    if (!fixedSecond.IsEmpty()) {
      keywords.push_back(fixedSecond);
    } else {
      for (const auto& entry : value.excludes) keywords.push_back(entry.first);
    }
    for (const AQVString& option2 : keywords) {
      AArray excluded;
      if (!value.excludes.GetArray(option2, excluded)) continue;
      const std::optional<ChoiceSet>& held = secondChoices(option2);
      if (!held) continue;
      for (const AValue& item : excluded) {
        const AQVString choice2 = *item.AsString();
        if (!nonUI && held->count(choice2) == 0) continue;
        if (!AddConstraint(option1, option2, value.choice, choice2, nonUI,
                           commented ? AQVString() : comment)) {
          return messages::Report(error, messages::kCannotAddPairConstraint,
                                  {option1, value.choice, option2, choice2});
        }
        commented = true;
      }
    }
  }
  return true;
}

AQVString APPDPairedConstraintsGenerator::GetFirstOptionID() const {
  const AQVString option = APPDGenericConstraintsGenerator::GetFirstOptionID();
  return option.IsEmpty() ? AQVString(row_.option1) : option;
}

AQVString APPDPairedConstraintsGenerator::GetSecondOptionID() const {
  const AQVString option = APPDGenericConstraintsGenerator::GetSecondOptionID();
  return option.IsEmpty() ? AQVString(row_.option2) : option;
}

AQVString APPDPairedConstraintsGenerator::GetFirstSideSettingName() const {
  const AQVString setting = GetParams().GetString(kRKPPDGenerationOptionSettingNameKey);
  return setting.IsEmpty() ? AQVString(row_.setting) : setting;
}

bool APPDPairedConstraintsGenerator::ReadFirstSide(std::vector<FirstSideValue>& values,
                                                   AError* error) const {
  const IPPDGenerator* generator = GetPPDGenerator();
  const IProductInfo* product = generator != nullptr ? generator->GetPPDProductInfo() : nullptr;
  if (product == nullptr) return true;

  if (row_.side == FirstSide::kCustomPageSize) {
    const std::optional<ADictionary> excludes = product->CustomPageSizeExcludes();
    if (!excludes) return true;
    FirstSideValue value{kCustomPageSizeChoice, ADictionary()};
    if (!ReadExcludes(AValue(*excludes), "customPageSizeExcludes", value.excludes, error)) {
      return false;
    }
    values.push_back(value);
    return true;
  }

  const AQVString setting = GetFirstSideSettingName();
  if (setting.IsEmpty()) return true;
  const std::optional<ADictionary> info = product->InfoForOptionWithName(setting);
  AArray list;
  if (!info || !info->GetArray(kRKPPDOptionChoicesKey, list)) return true;
  const char* choiceKey =
      row_.side == FirstSide::kMedia ? kRKPPDPageSizePPDNameKey : kRKPPDCommonCodeNameKey;
  const AQVString listPath = "options." + setting + "." + kRKPPDOptionChoicesKey;
  for (std::size_t i = 0; i < list.Count(); ++i) {
    ADictionary entry;
    if (!list[i].GetDictionary(entry)) continue;
    const AValue* excludes = entry.Get(kExcludesKey);
    if (excludes == nullptr) continue;
    FirstSideValue value{entry.GetString(choiceKey), ADictionary()};
    const AQVString path =
        APPDProductData::MemberPath(APPDProductData::ElementPath(listPath, i), kExcludesKey);
    if (!ReadExcludes(*excludes, path, value.excludes, error)) return false;
    if (!value.choice.IsEmpty()) values.push_back(value);
  }
  return true;
}

}  // namespace ppdforge
