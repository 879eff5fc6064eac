#include "model/APPDGroup.h"

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
#include <cups/ppd.h>
#pragma GCC diagnostic pop

#include "model/APPDTextDecoder.h"

#include <algorithm>
#include <new>
#include <unordered_map>

#include "core/ASharedObject.h"
#include "model/APPDStatement.h"
#include "model/IPPD.h"
#include "model/RKPPDConstants.h"

namespace ppdforge {

namespace {

bool Failed(const AError& local, AError* error) {
  if (local.code == 0) return false;
  if (error != nullptr) *error = local;
  return true;
}

// Every element of `mine` has an equal element in `theirs` (same sizes
// checked by the caller). Equal elements share their ID, so only those are compared.
template <class T>
bool EachHasEqual(const std::vector<T*>& mine, const std::vector<T*>& theirs) {
  std::unordered_multimap<AQVString, const T*> byID;
  byID.reserve(theirs.size());
  for (const T* element : theirs) byID.emplace(element->GetID(), element);
  for (const T* element : mine) {
    const auto range = byID.equal_range(element->GetID());
    if (!std::any_of(range.first, range.second,
                     [element](const auto& entry) { return *element == *entry.second; })) {
      return false;
    }
  }
  return true;
}

template <class T>
std::size_t FindByID(const std::vector<T*>& elements, const AQVString& id) {
  const auto it = std::find_if(elements.begin(), elements.end(),
                               [&id](const T* element) { return element->GetID() == id; });
  return static_cast<std::size_t>(it - elements.begin());
}

template <class T>
std::size_t FindSameOrEqual(const std::vector<T*>& elements, T* wanted) {
  auto it = std::find(elements.begin(), elements.end(), wanted);
  if (it == elements.end()) {
    it = std::find_if(elements.begin(), elements.end(),
                      [wanted](const T* element) { return *element == *wanted; });
  }
  return static_cast<std::size_t>(it - elements.begin());
}

}  // namespace

APPDGroup::APPDGroup(const AQVString& id, const AQVString& name, const AQVString& comment)
    : APPDCommentable(comment), id_(id), name_(name) {}

APPDGroup::APPDGroup(const APPDGroup& other)
    : IPPDGroup(), APPDCommentable(other), APPDLocalizable(), id_(other.id_), name_(other.name_) {
  bool copied = true;
  for (IPPDOption* option : other.options_) {
    copied = copied && APPDGroup::AddOption(option, true) != nullptr;
  }
  for (IPPDGroup* group : other.subGroups_) {
    copied = copied && APPDGroup::AddSubGroup(group, true) != nullptr;
  }
  if (!copied) {
    // The destructor does not run for a throwing constructor.
    APPDGroup::ClearOptions();
    APPDGroup::ClearSubgroups();
    throw std::bad_alloc();
  }
}

APPDGroup::~APPDGroup() {
  APPDGroup::ClearOptions();
  APPDGroup::ClearSubgroups();
}

APPDGroup* APPDGroup::Clone() const { return CreateSharedObject<APPDGroup>(*this); }

APPDCommentable* APPDGroup::QueryPPDCommentable() const {
  auto* self = const_cast<APPDGroup*>(this);
  self->Retain();
  return self;
}

APPDLocalizable* APPDGroup::QueryPPDLocalizable() const {
  auto* self = const_cast<APPDGroup*>(this);
  self->Retain();
  return self;
}

void APPDGroup::EraseOptionAt(std::size_t index) {
  IPPDOption* option = options_[index];
  options_.erase(options_.begin() + static_cast<std::ptrdiff_t>(index));
  option->SetGroup(nullptr);
  option->Release();
}

void APPDGroup::EraseSubGroupAt(std::size_t index) {
  IPPDGroup* group = subGroups_[index];
  subGroups_.erase(subGroups_.begin() + static_cast<std::ptrdiff_t>(index));
  group->SetPPD(nullptr);
  group->Release();
}

IPPDOption* APPDGroup::AddOption(IPPDOption* option, bool copy) {
  if (option == nullptr) return nullptr;
  // Our reference first: the option replaced below may be this very object.
  IPPDOption* stored = copy ? option->Clone() : option;
  if (stored == nullptr) return nullptr;
  if (!copy) stored->Retain();
  const std::size_t old = FindByID(options_, stored->GetID());
  if (old < options_.size()) EraseOptionAt(old);
  options_.push_back(stored);
  stored->SetGroup(this);
  return stored;
}

void APPDGroup::RemoveOption(IPPDOption* option) {
  if (option == nullptr) return;
  const std::size_t index = FindSameOrEqual(options_, option);
  if (index < options_.size()) EraseOptionAt(index);
}

void APPDGroup::RemoveOptionWithID(const AQVString& id) {
  const std::size_t index = FindByID(options_, id);
  if (index < options_.size()) EraseOptionAt(index);
}

IPPDOption* APPDGroup::GetOptionWithID(const AQVString& id) const {
  const std::size_t index = FindByID(options_, id);
  return index < options_.size() ? options_[index] : nullptr;
}

IPPDGroup* APPDGroup::AddSubGroup(IPPDGroup* group, bool copy) {
  if (group == nullptr) return nullptr;
  IPPDGroup* stored = copy ? group->Clone() : group;
  if (stored == nullptr) return nullptr;
  if (!copy) stored->Retain();
  const std::size_t old = FindByID(subGroups_, stored->GetID());
  if (old < subGroups_.size()) EraseSubGroupAt(old);
  subGroups_.push_back(stored);
  stored->SetPPD(ppd_);
  stored->SetSubGroup(true);
  return stored;
}

void APPDGroup::RemoveSubGroup(IPPDGroup* group) {
  if (group == nullptr) return;
  const std::size_t index = FindSameOrEqual(subGroups_, group);
  if (index < subGroups_.size()) EraseSubGroupAt(index);
}

void APPDGroup::RemoveSubGroupWithID(const AQVString& id) {
  const std::size_t index = FindByID(subGroups_, id);
  if (index < subGroups_.size()) EraseSubGroupAt(index);
}

IPPDGroup* APPDGroup::GetSubGroupWithID(const AQVString& id) const {
  const std::size_t index = FindByID(subGroups_, id);
  return index < subGroups_.size() ? subGroups_[index] : nullptr;
}

void APPDGroup::SetPPD(IPPD* ppd) {
  ppd_ = ppd;
  // A sub-group does not hand the document further down.
  if (isSubGroup_) return;
  for (IPPDGroup* group : subGroups_) group->SetPPD(ppd);
}

void APPDGroup::ClearOptions() {
  std::vector<IPPDOption*> options;
  options.swap(options_);
  for (IPPDOption* option : options) {
    option->SetGroup(nullptr);
    option->Release();
  }
}

void APPDGroup::ClearSubgroups() {
  std::vector<IPPDGroup*> groups;
  groups.swap(subGroups_);
  for (IPPDGroup* group : groups) {
    group->SetPPD(nullptr);
    group->Release();
  }
}

bool APPDGroup::operator==(const IPPDGroup& other) const {
  if (id_ != other.GetID() || name_ != other.GetName()) return false;
  if (options_.size() != other.GetOptions().size() ||
      subGroups_.size() != other.GetSubGroups().size()) {
    return false;
  }
  return EachHasEqual(options_, other.GetOptions()) &&
         EachHasEqual(subGroups_, other.GetSubGroups());
}

void APPDGroup::GetLocalizationKeys(std::vector<AQVString>& keys) const {
  keys.clear();
  keys.push_back(name_);
}

IPPDLocalizer* APPDGroup::GetLocalizer() const {
  return ppd_ != nullptr ? ppd_->GetLocalizer() : nullptr;
}

AQVString APPDGroup::GetStringRepresentation(AError* error) const {
  if (options_.empty() && subGroups_.empty()) return AQVString();

  AQVString mainLanguage;
  std::vector<AQVString> languages;
  if (ppd_ != nullptr) {
    mainLanguage = ppd_->GetMainLanguage();
    ppd_->GetAdditionalLanguages(languages);
  }

  AError local;
  const AQVString comment = APPDCommentable::GetStringRepresentation(&local);
  if (Failed(local, error)) return AQVString();
  AQVString result;
  if (!comment.IsEmpty()) {
    result += comment;
    result += kRKPPDNewLine;
  }

  const bool bare = id_ == kRKPPDGeneralGroupName;
  AQVString close;
  if (!bare) {
    const AQVString open =
        APPDStatement(isSubGroup_ ? "OpenSubGroup" : "OpenGroup", AQVString(), AQVString(), id_,
                      kPPDStringValue, GetLocalizedString(mainLanguage))
            .GetStringRepresentation(&local);
    if (Failed(local, error)) return AQVString();
    close = APPDStatement(isSubGroup_ ? "CloseSubGroup" : "CloseGroup", AQVString(), AQVString(),
                          id_, kPPDStringValue, AQVString())
                .GetStringRepresentation(&local);
    if (Failed(local, error)) return AQVString();
    if (open.IsEmpty() || close.IsEmpty()) return AQVString();

    result += open;
    result += kRKPPDNewLine;
    if (!name_.IsEmpty()) {
      for (const AQVString& language : languages) {
        const AQVString text = APPDStatement(language + ".Translation", id_,
                                             GetLocalizedString(language), AQVString(),
                                             kPPDQuotedValue, AQVString())
                                   .GetStringRepresentation(&local);
        if (Failed(local, error)) return result;
        if (!text.IsEmpty()) {
          result += text;
          result += kRKPPDNewLine;
        }
      }
    }
    result += kRKPPDNewLine;
  }

  for (const IPPDGroup* group : subGroups_) {
    const AQVString text = group->GetStringRepresentation(&local);
    if (Failed(local, error)) return result;
    if (!text.IsEmpty()) {
      result += text;
      result += kRKPPDNewLine;
    }
  }
  for (const IPPDOption* option : options_) {
    const AQVString text = option->GetStringRepresentation(&local);
    if (Failed(local, error)) return result;
    if (!text.IsEmpty()) {
      result += text;
      result += kRKPPDNewLine;
    }
  }
  if (!bare) {
    result += close;
    result += kRKPPDNewLine;
  }
  return result;
}

IPPDGroup* IPPDGroup::Create(const AQVString& id, const AQVString& name,
                             const std::vector<IPPDOption*>& options,
                             const std::vector<IPPDGroup*>& subGroups, const AQVString& comment) {
  APPDGroup* group = CreateSharedObject<APPDGroup>(id, name, comment);
  if (group == nullptr) return nullptr;
  bool copied = true;
  for (IPPDOption* option : options) {
    copied = copied && (option == nullptr || group->AddOption(option, true) != nullptr);
  }
  for (IPPDGroup* subGroup : subGroups) {
    copied = copied && (subGroup == nullptr || group->AddSubGroup(subGroup, true) != nullptr);
  }
  if (!copied) {
    group->Release();
    return nullptr;
  }
  return group;
}

IPPDGroup* IPPDGroup::Create(const ppd_group_s* record, APPDTextDecoder* decoder) {
  if (record == nullptr) return CreateSharedObject<APPDGroup>(AQVString(), AQVString(), AQVString());
  APPDGroup* group = CreateSharedObject<APPDGroup>(
      APPDTextDecoder::DecodeWith(decoder, record->name, APPDTextDecoder::Kind::kRaw),
      APPDTextDecoder::DecodeWith(decoder, record->text, APPDTextDecoder::Kind::kConverted, true),
      AQVString());
  if (group == nullptr) return nullptr;
  bool added = true;
  for (int i = 0; added && i < record->num_options; ++i) {
    IPPDOption* option = IPPDOption::Create(&record->options[i], decoder);
    added = option != nullptr && group->AddOption(option, false) != nullptr;
    ReleaseObject(option);
  }
  for (int i = 0; added && i < record->num_subgroups; ++i) {
    IPPDGroup* subGroup = IPPDGroup::Create(&record->subgroups[i], decoder);
    added = subGroup != nullptr && group->AddSubGroup(subGroup, false) != nullptr;
    ReleaseObject(subGroup);
  }
  if (!added) {
    group->Release();
    return nullptr;
  }
  return group;
}

}  // namespace ppdforge
