#include "generators/APPDGenericOptionGenerator.h"

#include <climits>
#include <vector>

#include "core/RKPPDMessages.h"
#include "engine/IPPDGenerator.h"
#include "engine/IProductInfo.h"
#include "model/IPPD.h"
#include "model/IPPDChoice.h"
#include "model/RKPPDConstants.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDGenericOptionGenerator);

namespace {

// A description number or boolean read as a signed 32-bit count, as
// intValue of a Foundation number does (truncation).
std::int32_t NumberAsInt32(const AValue& value) {
  return static_cast<std::int32_t>(value.IntegerValue());
}

// intValue of a Foundation string saturates instead of wrapping.
std::int32_t StringAsInt32(const AQVString& text) {
  const long long value = text.IntegerValue();
  if (value > INT_MAX) return INT_MAX;
  if (value < INT_MIN) return INT_MIN;
  return static_cast<std::int32_t>(value);
}

std::optional<ADictionary> ProductOption(const IPPDGenerator* engine, const AQVString& name) {
  if (engine == nullptr) return std::nullopt;
  const IProductInfo* product = engine->GetPPDProductInfo();
  if (product == nullptr) return std::nullopt;
  return product->InfoForOptionWithName(name);
}

// What a malformed choice entry (not a dictionary) is called in the error.
AQVString ItemText(const AValue& item) {
  const AQVString* text = item.AsString();
  return text != nullptr ? *text : AQVString();
}

IPPD* Document(const IPPDGenerator* engine) {
  return engine != nullptr ? engine->GetPPD() : nullptr;
}

}  // namespace

bool APPDGenericOptionGenerator::Generate(AError* error) {
  IPPDGroup* group = AddGroup(error);
  if (group == nullptr) return false;
  IPPDOption* option = AddOptionToGroup(group, error);
  if (option == nullptr) return false;
  if (!AddChoicesToOption(option, error)) return false;
  option->SetDefaultChoice(GetDefaultChoice(option));
  return PostProcess(option, error);
}

bool APPDGenericOptionGenerator::IsApplicable() const {
  switch (GetChoiceSource()) {
    case PPDChoiceSource::kDescription:
      return true;
    case PPDChoiceSource::kProductSetting:
      if (!ProductOption(GetPPDGenerator(), GetOptionSettingName())) return false;
      [[fallthrough]];
    case PPDChoiceSource::kSettingValues: {
      const std::optional<AArray> values = GetOptionSettingValues();
      const long long count = values ? static_cast<long long>(values->Count()) : 0;
      return count >= GetChoiceMinValueCount();
    }
  }
  return false;
}

AQVString APPDGenericOptionGenerator::GetGroupID() const {
  AQVString group;
  if (GetParams().GetString(kRKPPDGenerationOptionGroupNameKey, group)) return group;
  return kRKPPDGeneralGroupName;
}

AQVString APPDGenericOptionGenerator::GetOptionID() const {
  return GetParams().GetString(kRKPPDGenerationOptionIDKey);
}

AQVString APPDGenericOptionGenerator::GetOptionName() const {
  AQVString name;
  if (GetParams().GetString(kRKPPDGenerationOptionNameKey, name)) return name;
  if (GetChoiceSource() != PPDChoiceSource::kProductSetting) return {};
  const std::optional<ADictionary> setting = ProductOption(GetPPDGenerator(), GetOptionSettingName());
  return setting ? setting->GetString(kRKPPDOptionUserNameKey) : AQVString();
}

ppd_ui_e APPDGenericOptionGenerator::GetOptionUIType() const {
  ppd_ui_e type = PPD_UI_PICKONE;
  const AValue* value = GetParams().Get(kRKPPDGenerationOptionUITypeKey);
  if (value == nullptr) return type;
  if (value->IsNumber() || value->IsBoolean()) {
    // Numbers outside the enumeration name no UI type the option could write.
    const std::int32_t number = NumberAsInt32(*value);
    if (number >= PPD_UI_BOOLEAN && number <= PPD_UI_PICKMANY) type = static_cast<ppd_ui_e>(number);
  } else if (const AQVString* text = value->AsString(); text != nullptr && *text == "Boolean") {
    // Only Boolean has a textual form; PickMany must be given as a number.
    type = PPD_UI_BOOLEAN;
  }
  return type;
}

AQVString APPDGenericOptionGenerator::GetOptionComment() const {
  return GetParams().GetString(kRKPPDGenerationCommentKey);
}

AQVString APPDGenericOptionGenerator::GetOptionSettingName() const {
  return GetParams().GetString(kRKPPDGenerationOptionSettingNameKey);
}

std::optional<AArray> APPDGenericOptionGenerator::GetOptionSettingValues() const {
  const std::optional<ADictionary> setting = ProductOption(GetPPDGenerator(), GetOptionSettingName());
  AArray values;
  if (!setting || !setting->GetArray(kRKPPDOptionChoicesKey, values)) return std::nullopt;
  return values;
}

std::optional<AQVString> APPDGenericOptionGenerator::GetChoiceGenericCode(
    const IPPDOption* /*option*/, const ADictionary* /*value*/, const AQVString& /*codeName*/,
    AError* /*error*/) const {
  return GetParams().GetString(kRKPPDGenerationOptionChoiceCodeRepresentationKey);
}

PPDChoiceSource APPDGenericOptionGenerator::GetChoiceSource() const {
  AArray choices;
  GetChoices(choices);
  if (!choices.IsEmpty()) return PPDChoiceSource::kDescription;
  if (!GetOptionSettingName().IsEmpty()) return PPDChoiceSource::kProductSetting;
  return PPDChoiceSource::kSettingValues;
}

std::int32_t APPDGenericOptionGenerator::GetChoiceMinValueCount() const {
  const AValue* value = GetParams().Get(kRKPPDGenerationOptionMinValueCountKey);
  if (value == nullptr) return 1;
  if (value->IsNumber() || value->IsBoolean()) return NumberAsInt32(*value);
  if (const AQVString* text = value->AsString(); text != nullptr) return StringAsInt32(*text);
  return 1;
}

void APPDGenericOptionGenerator::GetChoices(AArray& out) const {
  if (!GetParams().GetArray(kRKPPDGenerationOptionChoicesKey, out)) out = AArray();
}

AQVString APPDGenericOptionGenerator::GetDefaultChoice(const IPPDOption* /*option*/) const {
  switch (GetChoiceSource()) {
    case PPDChoiceSource::kProductSetting: {
      const std::optional<ADictionary> setting =
          ProductOption(GetPPDGenerator(), GetOptionSettingName());
      return setting ? setting->GetString(kRKPPDOptionDefaultChoiceNameKey) : AQVString();
    }
    case PPDChoiceSource::kDescription: {
      AQVString choice;
      if (GetParams().GetString(kRKPPDGenerationOptionDefaultChoiceIDKey, choice)) return choice;
      AArray choices;
      GetChoices(choices);
      ADictionary first;
      if (!choices.IsEmpty() && choices.At(0).GetDictionary(first)) {
        return first.GetString(kRKPPDGenerationChoiceIDKey);
      }
      return {};
    }
    case PPDChoiceSource::kSettingValues: {
      const std::optional<AArray> values = GetOptionSettingValues();
      ADictionary first;
      if (values && !values->IsEmpty() && values->At(0).GetDictionary(first)) {
        return first.GetString(kRKPPDCommonCodeNameKey);
      }
      return {};
    }
  }
  return {};
}

IPPDGroup* APPDGenericOptionGenerator::AddGroup(AError* error) {
  const AQVString groupID = GetGroupID();
  IPPD* ppd = Document(GetPPDGenerator());
  if (ppd == nullptr) {
    messages::Report(error, messages::kCannotAddGroup, {groupID});
    return nullptr;
  }
  if (IPPDGroup* existing = ppd->GetGroupWithID(groupID); existing != nullptr) return existing;

  AScopedRef<IPPDGroup> group(IPPDGroup::Create(groupID, groupID, {}, {}, AQVString()));
  IPPDGroup* stored = nullptr;
  if (group) {
    ppd->AddGroup(group.get(), false);
    stored = ppd->GetGroupWithID(groupID);
  }
  if (stored == nullptr) messages::Report(error, messages::kCannotAddGroup, {groupID});
  return stored;
}

IPPDOption* APPDGenericOptionGenerator::AddOptionToGroup(IPPDGroup* group, AError* error) {
  const AQVString optionID = GetOptionID();
  if (group == nullptr) {
    messages::Report(error, messages::kCannotAddOption, {optionID, GetOptionName()});
    return nullptr;
  }
  // A later entry with the same keyword replaces the earlier one.
  if (IPPDOption* existing = group->GetOptionWithID(optionID); existing != nullptr) {
    group->RemoveOption(existing);
  }

  AScopedRef<IPPDOption> option(IPPDOption::Create(optionID, GetOptionName(), AQVString(),
                                                   GetOptionUIType(), {}, GetOptionComment()));
  IPPDOption* stored = nullptr;
  if (option) {
    group->AddOption(option.get(), false);
    stored = group->GetOptionWithID(optionID);
  }
  if (stored == nullptr) {
    messages::Report(error, messages::kCannotAddOption, {optionID, GetOptionName()});
  }
  return stored;
}

bool APPDGenericOptionGenerator::AddChoicesToOption(IPPDOption* option, AError* error) {
  const AQVString optionID = option != nullptr ? option->GetID() : AQVString();
  if (option == nullptr) {
    return messages::Report(error, messages::kCannotDetermineChoices, {optionID});
  }

  switch (GetChoiceSource()) {
    case PPDChoiceSource::kDescription: {
      AArray choices;
      GetChoices(choices);
      for (const AValue& item : choices) {
        ADictionary choice;
        if (!item.GetDictionary(choice)) {
          return messages::Report(error, messages::kCannotAddChoice, {ItemText(item), optionID});
        }
        const AQVString id = choice.GetString(kRKPPDGenerationChoiceIDKey);
        if (!AddChoiceToOption(option, id, choice.GetString(kRKPPDGenerationChoiceNameKey),
                               choice.GetString(kRKPPDGenerationChoiceCodeKey),
                               choice.GetString(kRKPPDGenerationCommentKey))) {
          return messages::Report(error, messages::kCannotAddChoice, {id, optionID});
        }
      }
      return true;
    }
    case PPDChoiceSource::kProductSetting:
    case PPDChoiceSource::kSettingValues: {
      const std::optional<AArray> values = GetOptionSettingValues();
      if (!values) return true;
      for (const AValue& item : *values) {
        ADictionary value;
        if (!item.GetDictionary(value)) {
          return messages::Report(error, messages::kCannotAddChoice, {ItemText(item), optionID});
        }
        const AQVString codeName = value.GetString(kRKPPDCommonCodeNameKey);
        const std::optional<AQVString> code = GetChoiceGenericCode(option, &value, codeName, error);
        if (!code) return false;
        if (!AddChoiceToOption(option, codeName, value.GetString(kRKPPDCommonUserNameKey), *code,
                               AQVString())) {
          return messages::Report(error, messages::kCannotAddChoice, {codeName, optionID});
        }
      }
      return true;
    }
  }
  return messages::Report(error, messages::kCannotDetermineChoices, {optionID});
}

bool APPDGenericOptionGenerator::AddChoiceToOption(IPPDOption* option, const AQVString& id,
                                                   const AQVString& name, const AQVString& code,
                                                   const AQVString& comment) {
  if (option == nullptr) return false;
  // The later choice with a keyword wins.
  if (IPPDChoice* existing = option->GetChoiceWithID(id); existing != nullptr) {
    option->RemoveChoice(existing);
  }
  AScopedRef<IPPDChoice> choice(IPPDChoice::Create(id, name, code, comment));
  if (!choice) return false;
  option->AddChoice(choice.get(), false);
  return option->GetChoiceWithID(id) != nullptr;
}

bool APPDGenericOptionGenerator::PostProcess(IPPDOption* /*option*/, AError* /*error*/) {
  return true;
}

}  // namespace ppdforge
