#include "model/APPDOption.h"

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
#include <cups/ppd.h>
#pragma GCC diagnostic pop

#include "model/APPDTextDecoder.h"

#include <algorithm>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "core/ASharedObject.h"
#include "model/APPDStatement.h"
#include "model/APPDTextPieces.h"
#include "model/IPPD.h"
#include "model/IPPDGroup.h"
#include "model/IPPDLocalizer.h"
#include "model/RKPPDConstants.h"

namespace ppdforge {

namespace {

const char* UITypeName(ppd_ui_e type) {
  switch (type) {
    case PPD_UI_BOOLEAN: return "Boolean";
    case PPD_UI_PICKONE: return "PickOne";
    case PPD_UI_PICKMANY: return "PickMany";
  }
  return "";
}

// Stores the first error of a failed statement for the caller.
bool Failed(const AError& local, AError* error) {
  if (local.code == 0) return false;
  if (error != nullptr) *error = local;
  return true;
}

}  // namespace

APPDOption::APPDOption(const AQVString& id, const AQVString& name, const AQVString& defaultChoice,
                       ppd_ui_e uiType, const AQVString& comment)
    : APPDCommentable(comment), id_(id), name_(name), defaultChoice_(defaultChoice),
      uiType_(uiType) {}

APPDOption::APPDOption(const APPDOption& other)
    : IPPDOption(), APPDCommentable(other), APPDLocalizable(), id_(other.id_),
      name_(other.name_), defaultChoice_(other.defaultChoice_), uiType_(other.uiType_) {
  for (IPPDChoice* choice : other.choices_) {
    if (APPDOption::AddChoice(choice, true) == nullptr) {
      // The destructor does not run for a throwing constructor.
      ReleaseChoices();
      throw std::bad_alloc();
    }
  }
}

APPDOption::~APPDOption() { ReleaseChoices(); }

APPDOption* APPDOption::Clone() const { return CreateSharedObject<APPDOption>(*this); }

APPDCommentable* APPDOption::QueryPPDCommentable() const {
  auto* self = const_cast<APPDOption*>(this);
  static_cast<IPPDObject*>(self)->Retain();
  return self;
}

APPDLocalizable* APPDOption::QueryPPDLocalizable() const {
  auto* self = const_cast<APPDOption*>(this);
  static_cast<IPPDObject*>(self)->Retain();
  return self;
}

AQVString APPDOption::GetDefaultChoice() const {
  if (defaultChoice_.IsEmpty() && !choices_.empty()) return choices_.front()->GetID();
  return defaultChoice_;
}

std::size_t APPDOption::FindChoiceWithID(const AQVString& id) const {
  IPPDChoice* found = GetChoiceWithID(id);
  if (found == nullptr) return choices_.size();
  return static_cast<std::size_t>(std::find(choices_.begin(), choices_.end(), found) -
                                  choices_.begin());
}

IPPDChoice* APPDOption::GetChoiceWithID(const AQVString& id) const {
  for (int attempt = 0; attempt < 2; ++attempt) {
    if (!choiceIndexValid_) {
      choiceIndex_.clear();
      for (IPPDChoice* choice : choices_) choiceIndex_.emplace(choice->GetID(), choice);
      choiceIndexValid_ = true;
    }
    const auto it = choiceIndex_.find(id);
    if (it == choiceIndex_.end()) return nullptr;
    if (it->second->GetID() == id) return it->second;
    // Renamed without telling us (e.g. a choice of another implementation).
    choiceIndexValid_ = false;
  }
  return nullptr;
}

void APPDOption::EraseChoiceAt(std::size_t index) {
  IPPDChoice* choice = choices_[index];
  choices_.erase(choices_.begin() + static_cast<std::ptrdiff_t>(index));
  if (choiceIndexValid_) {
    const auto it = choiceIndex_.find(choice->GetID());
    if (it != choiceIndex_.end() && it->second == choice) {
      choiceIndex_.erase(it);
    } else {
      choiceIndexValid_ = false;
    }
  }
  choice->SetOption(nullptr);
  choice->Release();
}

IPPDChoice* APPDOption::AddChoice(IPPDChoice* choice, bool copy) {
  if (choice == nullptr) return nullptr;
  // Take our reference before dropping an old one: the old one may be this very object.
  IPPDChoice* stored = copy ? choice->Clone() : choice;
  if (stored == nullptr) return nullptr;
  if (!copy) stored->Retain();

  const AQVString id = stored->GetID();
  const std::size_t old = FindChoiceWithID(id);
  if (old < choices_.size()) EraseChoiceAt(old);
  choices_.push_back(stored);
  if (choiceIndexValid_) choiceIndex_.emplace(id, stored);
  stored->SetOption(this);
  return stored;
}

void APPDOption::AddChoices(const std::vector<IPPDChoice*>& choices, bool copy) {
  for (IPPDChoice* choice : choices) AddChoice(choice, copy);
}

void APPDOption::RemoveChoice(IPPDChoice* choice) {
  if (choice == nullptr) return;
  auto it = std::find(choices_.begin(), choices_.end(), choice);
  if (it == choices_.end()) {
    it = std::find_if(choices_.begin(), choices_.end(),
                      [choice](const IPPDChoice* held) { return *held == *choice; });
  }
  if (it != choices_.end()) EraseChoiceAt(static_cast<std::size_t>(it - choices_.begin()));
}

void APPDOption::RemoveChoiceWithID(const AQVString& id) {
  const std::size_t index = FindChoiceWithID(id);
  if (index < choices_.size()) EraseChoiceAt(index);
}

void APPDOption::ReleaseChoices() {
  std::vector<IPPDChoice*> choices;
  choices.swap(choices_);
  choiceIndex_.clear();
  choiceIndexValid_ = true;
  for (IPPDChoice* choice : choices) {
    choice->SetOption(nullptr);
    choice->Release();
  }
}

void APPDOption::ClearChoices() { ReleaseChoices(); }

bool APPDOption::operator==(const IPPDOption& other) const {
  if (id_ != other.GetID() || name_ != other.GetName() ||
      GetDefaultChoice() != other.GetDefaultChoice() || uiType_ != other.GetUIType()) {
    return false;
  }
  const std::vector<IPPDChoice*>& theirs = other.GetChoices();
  if (choices_.size() != theirs.size()) return false;
  // Equal choices share their ID, so only those of the same ID need comparing.
  std::unordered_multimap<AQVString, const IPPDChoice*> byID;
  byID.reserve(theirs.size());
  for (const IPPDChoice* choice : theirs) byID.emplace(choice->GetID(), choice);
  for (const IPPDChoice* mine : choices_) {
    const auto range = byID.equal_range(mine->GetID());
    const bool found = std::any_of(range.first, range.second,
                                   [mine](const auto& entry) { return *mine == *entry.second; });
    if (!found) return false;
  }
  return true;
}

void APPDOption::GetLocalizationKeys(std::vector<AQVString>& keys) const {
  keys.clear();
  keys.push_back(name_);
}

IPPD* APPDOption::GetDocument() const { return group_ != nullptr ? group_->GetPPD() : nullptr; }

IPPDLocalizer* APPDOption::GetLocalizer() const {
  IPPD* ppd = GetDocument();
  return ppd != nullptr ? ppd->GetLocalizer() : nullptr;
}

AQVString APPDOption::MainLineTranslation(const APPDLocalizable& object,
                                          const AQVString& mainLanguage,
                                          std::vector<AQVString>& languages) {
  AQVString text = object.GetLocalizedString(mainLanguage);
  if (languages.empty() || APPDStatement::IsPlainMainTranslation(text)) return text;
  languages.insert(languages.begin(), IPPDLocalizer::GetLocaleID(mainLanguage));
  return AQVString();
}

bool APPDOption::WriteHeading(std::string& result, AError* error) const {
  AQVString mainLanguage;
  std::vector<AQVString> languages;
  if (IPPD* ppd = GetDocument()) {
    mainLanguage = ppd->GetMainLanguage();
    ppd->GetAdditionalLanguages(languages);
  }
  const AQVString mainText = MainLineTranslation(*this, mainLanguage, languages);
  const std::string keyword = kRKPPDAsterisk + id_.UTF8();

  // Lines are appended to buffers by the statement rules, without a
  // statement object per line.
  AError local;
  std::string open;
  std::string close;
  std::string order;
  std::string defaultLine;
  if (!APPDStatement::Append(open, "OpenUI", keyword, mainText.UTF8(), UITypeName(uiType_),
                             kPPDStringValue, std::string_view(), &local) ||
      !APPDStatement::Append(close, "CloseUI", std::string_view(), std::string_view(), keyword,
                             kPPDStringValue, std::string_view(), &local) ||
      !APPDStatement::Append(order, "OrderDependency", std::string_view(), std::string_view(),
                             "10.0 AnySetup " + keyword, kPPDStringValue, std::string_view(), &local) ||
      !APPDStatement::Append(defaultLine, "Default" + id_.UTF8(), std::string_view(), std::string_view(),
                             GetDefaultChoice().UTF8(), kPPDStringValue, std::string_view(), &local)) {
    Failed(local, error);
    return false;
  }

  const AQVString comment = APPDCommentable::GetStringRepresentation(&local);
  if (Failed(local, error)) return false;
  result.reserve(open.size() + order.size() + defaultLine.size() + 64 * (languages.size() + 1));
  if (!comment.IsEmpty()) {
    result += comment.UTF8();
    result += kRKPPDNewLine;
  }
  result += open;
  result += kRKPPDNewLine;

  if (!name_.IsEmpty()) {
    std::string translationKeyword;
    for (const AQVString& language : languages) {
      translationKeyword.assign(language.UTF8());
      translationKeyword += ".Translation";
      const AQVString text = GetLocalizedString(language);
      if (!APPDStatement::Append(result, translationKeyword, id_.UTF8(), text.UTF8(), std::string_view(),
                                 kPPDQuotedValue, std::string_view(), &local)) {
        Failed(local, error);
        return false;
      }
      result += kRKPPDNewLine;
    }
  }
  result += order;
  result += kRKPPDNewLine;
  result += defaultLine;
  result += kRKPPDNewLine;
  return true;
}

void APPDOption::AddPieces(APPDTextPieces& pieces) const {
  if (choices_.empty()) return;
  pieces.AddWriter(
      [this](std::string& text, AError* error) { return WriteHeading(text, error); });
  // Large options (the page sizes) are split, so that threads share them.
  constexpr std::size_t kRun = 8;
  for (std::size_t first = 0; first < choices_.size(); first += kRun) {
    const std::size_t last = std::min(choices_.size(), first + kRun);
    pieces.AddWriter([this, first, last](std::string& text, AError* error) {
      for (std::size_t i = first; i < last; ++i) {
        AError local;
        const AQVString line = choices_[i]->GetStringRepresentation(&local);
        if (Failed(local, error)) return false;
        text += line.UTF8();
        text += kRKPPDNewLine;
      }
      return true;
    });
  }
  // The heading writer has checked the close line already.
  std::string close;
  APPDStatement::Append(close, "CloseUI", std::string_view(), std::string_view(),
                        kRKPPDAsterisk + id_.UTF8(), kPPDStringValue, std::string_view(), nullptr);
  close += kRKPPDNewLine;
  pieces.AddText(std::move(close));
}

AQVString APPDOption::GetStringRepresentation(AError* error) const {
  return APPDTextPieces::WriteAlone(*this, error);
}

IPPDOption* IPPDOption::Create(const AQVString& id, const AQVString& name,
                               const AQVString& defaultChoice, ppd_ui_e uiType,
                               const std::vector<IPPDChoice*>& choices, const AQVString& comment) {
  APPDOption* option = CreateSharedObject<APPDOption>(id, name, defaultChoice, uiType, comment);
  if (option == nullptr) return nullptr;
  for (IPPDChoice* choice : choices) {
    if (choice != nullptr && option->AddChoice(choice, true) == nullptr) {
      option->Release();
      return nullptr;
    }
  }
  return option;
}

IPPDOption* IPPDOption::Create(const ppd_option_s* record, APPDTextDecoder* decoder) {
  if (record == nullptr) {
    return CreateSharedObject<APPDOption>(AQVString(), AQVString(), AQVString(), PPD_UI_BOOLEAN,
                                          AQVString());
  }
  APPDOption* option = CreateSharedObject<APPDOption>(
      APPDTextDecoder::DecodeWith(decoder, record->keyword, APPDTextDecoder::Kind::kRaw),
      APPDTextDecoder::DecodeWith(decoder, record->text, APPDTextDecoder::Kind::kConverted, true),
      APPDTextDecoder::DecodeWith(decoder, record->defchoice, APPDTextDecoder::Kind::kRaw),
      record->ui, AQVString());
  if (option == nullptr) return nullptr;
  for (int i = 0; i < record->num_choices; ++i) {
    IPPDChoice* choice = IPPDChoice::Create(&record->choices[i], decoder);
    const bool added = choice != nullptr && option->AddChoice(choice, false) != nullptr;
    ReleaseObject(choice);
    if (!added) {
      option->Release();
      return nullptr;
    }
  }
  return option;
}

}  // namespace ppdforge
