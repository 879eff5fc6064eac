#include "model/APPD.h"

#include <algorithm>
#include <functional>
#include <new>

#include "core/ASharedObject.h"
#include "model/APPDStatement.h"
#include "model/RKPPDConstants.h"

namespace ppdforge {

namespace {

bool Failed(const AError& local, AError* error) {
  if (local.code == 0) return false;
  if (error != nullptr) *error = local;
  return true;
}

void HashInto(std::size_t& seed, std::size_t value) {
  seed ^= value + 0x9e3779b97f4a7c15ULL + (seed << 6) + (seed >> 2);
}

// Equal constraints hash alike: strings by text, any other element by a
// constant (an integer and an equal real must not differ).
void HashArray(std::size_t& seed, const AArray& array) {
  HashInto(seed, array.Count());
  for (const AValue& value : array) {
    const AQVString* text = value.AsString();
    HashInto(seed, text != nullptr ? std::hash<AQVString>()(*text) : 0x5bd1e995U);
  }
}

// The key of the choice index: an option keyword and one of its choices.
std::string ChoiceKey(const AQVString& option, const AQVString& choice) {
  std::string key = option.UTF8();
  key += '\n';
  key += choice.UTF8();
  return key;
}

std::size_t ConstraintHash(const IPPDConstraint& constraint) {
  std::size_t seed = 0;
  HashArray(seed, constraint.GetOptions());
  HashArray(seed, constraint.GetChoices());
  HashInto(seed, std::hash<AQVString>()(constraint.GetResolver()));
  HashInto(seed, (constraint.IsCUPSUIConstraint() ? 2U : 0U) | (constraint.IsNonUI() ? 1U : 0U));
  return seed;
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

template <class T>
std::size_t IndexOf(const std::vector<T*>& elements, const T* wanted) {
  return static_cast<std::size_t>(std::find(elements.begin(), elements.end(), wanted) -
                                  elements.begin());
}

// Same count and every element of `mine` with an equal one in `theirs`;
// `key` groups the candidates (equal elements have equal keys).
template <class T, class Key>
bool SameSet(const std::vector<T*>& mine, const std::vector<T*>& theirs, Key key) {
  if (mine.size() != theirs.size()) return false;
  std::unordered_multimap<decltype(key(*mine.front())), const T*> byKey;
  byKey.reserve(theirs.size());
  for (const T* element : theirs) byKey.emplace(key(*element), element);
  return std::all_of(mine.begin(), mine.end(), [&byKey, &key](const T* element) {
    const auto range = byKey.equal_range(key(*element));
    return std::any_of(range.first, range.second,
                       [element](const auto& entry) { return *element == *entry.second; });
  });
}

}  // namespace

APPD::APPD() = default;

APPD::APPD(const APPD& other) : IPPD(), APPDCommentable(other) {
  attributeOrder_ = other.attributeOrder_;
  orderedNames_ = other.orderedNames_;
  bool copied = true;
  for (const auto& [name, attributes] : other.attributes_) {
    for (IPPDAttribute* attribute : attributes) {
      IPPDAttribute* copy = copied ? attribute->Clone() : nullptr;
      copied = copy != nullptr;
      if (copied) {
        attributes_[name].push_back(copy);
        copy->SetPPD(this);
      }
    }
  }
  for (IPPDConstraint* constraint : other.constraints_) {
    IPPDConstraint* copy = copied ? constraint->Clone() : nullptr;
    copied = copy != nullptr;
    if (copied) StoreConstraint(copy);
  }
  for (IPPDPaperSize* paperSize : other.paperSizes_) {
    IPPDPaperSize* copy = copied ? paperSize->Clone() : nullptr;
    copied = copy != nullptr;
    if (copied) StorePaperSize(copy);
  }
  for (IPPDGroup* group : other.groups_) {
    IPPDGroup* copy = copied ? group->Clone() : nullptr;
    copied = copy != nullptr;
    if (copied) StoreGroup(copy);
  }
  if (!copied) {
    // The destructor does not run for a throwing constructor.
    ReleaseAll();
    throw std::bad_alloc();
  }
  SetLocalizer(other.localizer_);
}

APPD::~APPD() { ReleaseAll(); }

void APPD::ReleaseAll() {
  for (auto& [name, attributes] : attributes_) {
    for (IPPDAttribute* attribute : attributes) {
      attribute->SetPPD(nullptr);
      attribute->Release();
    }
  }
  attributes_.clear();
  for (IPPDGroup* group : groups_) {
    group->SetPPD(nullptr);
    group->Release();
  }
  groups_.clear();
  for (IPPDPaperSize* paperSize : paperSizes_) {
    paperSize->SetPPD(nullptr);
    paperSize->Release();
  }
  paperSizes_.clear();
  paperSizeIndex_.clear();
  for (IPPDConstraint* constraint : constraints_) {
    constraint->SetPPD(nullptr);
    constraint->Release();
  }
  constraints_.clear();
  constraintIndex_.clear();
  choiceIndex_.clear();
  if (localizer_ != nullptr) localizer_->Release();
  localizer_ = nullptr;
}

APPD* APPD::Clone() const { return CreateSharedObject<APPD>(*this); }

APPDCommentable* APPD::QueryPPDCommentable() const {
  auto* self = const_cast<APPD*>(this);
  self->Retain();
  return self;
}

// Attributes.

void APPD::StoreAttribute(IPPDAttribute* attribute) {
  const AQVString name = attribute->GetName();
  attributes_[name].push_back(attribute);
  if (orderedNames_.insert(name).second) attributeOrder_.push_back(name);
  attribute->SetPPD(this);
}

IPPDAttribute* APPD::AddAttribute(IPPDAttribute* attribute, bool copy) {
  if (attribute == nullptr) return nullptr;
  IPPDAttribute* stored = copy ? attribute->Clone() : attribute;
  if (stored == nullptr) return nullptr;
  if (!copy) stored->Retain();
  StoreAttribute(stored);
  return stored;
}

IPPDAttribute* APPD::AddAttribute(const AQVString& name, const AQVString& value,
                                  const AQVString& spec, const AQVString& translation,
                                  PPDValueType type, const AQVString& comment) {
  IPPDAttribute* attribute = IPPDAttribute::Create(name, spec, translation, value, type, comment);
  if (attribute == nullptr) return nullptr;
  IPPDAttribute* stored = AddAttribute(attribute, false);
  attribute->Release();
  return stored;
}

void APPD::GetAttributesWithNameAndSpec(const AQVString& name, const AQVString* spec,
                                        std::vector<IPPDAttribute*>& out) const {
  out.clear();
  const auto it = attributes_.find(name);
  if (it == attributes_.end()) return;
  for (IPPDAttribute* attribute : it->second) {
    if (spec == nullptr || attribute->GetSpec() == *spec) out.push_back(attribute);
  }
}

AQVString APPD::GetAttributeValueWithNameAndSpec(const AQVString& name,
                                                 const AQVString* spec) const {
  const auto it = attributes_.find(name);
  if (it == attributes_.end()) return AQVString();
  for (const IPPDAttribute* attribute : it->second) {
    if (spec == nullptr || attribute->GetSpec() == *spec) return attribute->GetValue();
  }
  return AQVString();
}

void APPD::RemoveAttributesWithNameAndSpec(const AQVString& name, const AQVString* spec) {
  const auto it = attributes_.find(name);
  if (it == attributes_.end()) return;
  std::vector<IPPDAttribute*> kept;
  for (IPPDAttribute* attribute : it->second) {
    if (spec == nullptr || attribute->GetSpec() == *spec) {
      attribute->SetPPD(nullptr);
      attribute->Release();
    } else {
      kept.push_back(attribute);
    }
  }
  // The name keeps its place in attributeOrder_, so that a re-added name
  // is written where it first stood.
  if (kept.empty()) {
    attributes_.erase(it);
  } else {
    it->second.swap(kept);
  }
}

void APPD::MoveAttributeNameToFront(const AQVString& name) {
  const auto it = std::find(attributeOrder_.begin(), attributeOrder_.end(), name);
  if (it == attributeOrder_.end()) {
    orderedNames_.insert(name);
    attributeOrder_.insert(attributeOrder_.begin(), name);
    return;
  }
  std::rotate(attributeOrder_.begin(), it, it + 1);
}

void APPD::MoveAttributeNameToBack(const AQVString& name) {
  const auto it = std::find(attributeOrder_.begin(), attributeOrder_.end(), name);
  if (it == attributeOrder_.end()) {
    orderedNames_.insert(name);
    attributeOrder_.push_back(name);
    return;
  }
  std::rotate(it, it + 1, attributeOrder_.end());
}

// Constraints.

void APPD::StoreConstraint(IPPDConstraint* constraint) {
  constraints_.push_back(constraint);
  if (constraintIndexValid_) IndexConstraint(constraint);
  constraint->SetPPD(this);
}

void APPD::IndexConstraint(IPPDConstraint* constraint) const {
  constraintIndex_[ConstraintHash(*constraint)].push_back(constraint);
  const std::string first = ChoiceKey(constraint->GetOptionAtIndex(0), constraint->GetChoiceAtIndex(0));
  const std::string second = ChoiceKey(constraint->GetOptionAtIndex(1), constraint->GetChoiceAtIndex(1));
  choiceIndex_[first].push_back(constraint);
  if (second != first) choiceIndex_[second].push_back(constraint);
}

void APPD::UnindexConstraint(IPPDConstraint* constraint) const {
  auto forget = [constraint](auto& index, const auto& key) {
    const auto it = index.find(key);
    if (it == index.end()) return;
    std::vector<IPPDConstraint*>& held = it->second;
    held.erase(std::remove(held.begin(), held.end(), constraint), held.end());
    if (held.empty()) index.erase(it);
  };
  forget(constraintIndex_, ConstraintHash(*constraint));
  forget(choiceIndex_, ChoiceKey(constraint->GetOptionAtIndex(0), constraint->GetChoiceAtIndex(0)));
  forget(choiceIndex_, ChoiceKey(constraint->GetOptionAtIndex(1), constraint->GetChoiceAtIndex(1)));
}

void APPD::EnsureConstraintIndex() const {
  if (constraintIndexValid_) return;
  constraintIndex_.clear();
  choiceIndex_.clear();
  for (IPPDConstraint* held : constraints_) IndexConstraint(held);
  constraintIndexValid_ = true;
}

IPPDConstraint* APPD::FindEqualConstraint(const IPPDConstraint& constraint) const {
  EnsureConstraintIndex();
  const auto it = constraintIndex_.find(ConstraintHash(constraint));
  if (it == constraintIndex_.end()) return nullptr;
  for (IPPDConstraint* held : it->second) {
    if (constraint == *held) return held;
  }
  return nullptr;
}

IPPDConstraint* APPD::AddConstraint(IPPDConstraint* constraint, bool copy) {
  if (constraint == nullptr) return nullptr;
  // The one present is handed back without a new reference.
  if (IPPDConstraint* present = FindEqualConstraint(*constraint)) return present;
  IPPDConstraint* stored = copy ? constraint->Clone() : constraint;
  if (stored == nullptr) return nullptr;
  if (!copy) stored->Retain();
  StoreConstraint(stored);
  return stored;
}

void APPD::EraseConstraintAt(std::size_t index) {
  IPPDConstraint* constraint = constraints_[index];
  constraints_.erase(constraints_.begin() + static_cast<std::ptrdiff_t>(index));
  // Replacing constraints one by one must not rebuild the indexes each time.
  if (constraintIndexValid_) UnindexConstraint(constraint);
  constraint->SetPPD(nullptr);
  constraint->Release();
}

void APPD::RemoveConstraint(IPPDConstraint* constraint) {
  if (constraint == nullptr) return;
  const std::size_t index = FindSameOrEqual(constraints_, constraint);
  if (index < constraints_.size()) EraseConstraintAt(index);
}

void APPD::RemoveConstraintsForOption(const AQVString& option) {
  std::vector<IPPDConstraint*> kept;
  kept.reserve(constraints_.size());
  std::vector<IPPDConstraint*> removed;
  for (IPPDConstraint* constraint : constraints_) {
    if (constraint->GetOptionAtIndex(0) == option || constraint->GetOptionAtIndex(1) == option) {
      removed.push_back(constraint);
    } else {
      kept.push_back(constraint);
    }
  }
  if (removed.empty()) return;
  constraints_.swap(kept);
  constraintIndexValid_ = false;
  for (IPPDConstraint* constraint : removed) {
    constraint->SetPPD(nullptr);
    constraint->Release();
  }
}

void APPD::GetConstraintsWithOptionAndChoice(const AQVString& option, const AQVString& choice,
                                             std::vector<IPPDConstraint*>& out) const {
  out.clear();
  EnsureConstraintIndex();
  const auto it = choiceIndex_.find(ChoiceKey(option, choice));
  if (it == choiceIndex_.end()) return;
  for (IPPDConstraint* constraint : it->second) {
    if ((constraint->GetOptionAtIndex(0) == option && constraint->GetChoiceAtIndex(0) == choice) ||
        (constraint->GetOptionAtIndex(1) == option && constraint->GetChoiceAtIndex(1) == choice)) {
      out.push_back(constraint);
    }
  }
}

// Paper sizes.

void APPD::StorePaperSize(IPPDPaperSize* paperSize) {
  paperSizes_.push_back(paperSize);
  if (paperSizeIndexValid_) paperSizeIndex_.emplace(paperSize->GetID(), paperSize);
  paperSize->SetPPD(this);
}

void APPD::ErasePaperSizeAt(std::size_t index) {
  IPPDPaperSize* paperSize = paperSizes_[index];
  paperSizes_.erase(paperSizes_.begin() + static_cast<std::ptrdiff_t>(index));
  if (paperSizeIndexValid_) {
    const auto it = paperSizeIndex_.find(paperSize->GetID());
    if (it != paperSizeIndex_.end() && it->second == paperSize) {
      paperSizeIndex_.erase(it);
    } else {
      paperSizeIndexValid_ = false;
    }
  }
  paperSize->SetPPD(nullptr);
  paperSize->Release();
}

IPPDPaperSize* APPD::GetPaperSizeWithID(const AQVString& id) const {
  for (int attempt = 0; attempt < 2; ++attempt) {
    if (!paperSizeIndexValid_) {
      paperSizeIndex_.clear();
      for (IPPDPaperSize* paperSize : paperSizes_) paperSizeIndex_.emplace(paperSize->GetID(), paperSize);
      paperSizeIndexValid_ = true;
    }
    const auto it = paperSizeIndex_.find(id);
    if (it == paperSizeIndex_.end()) return nullptr;
    if (it->second->GetID() == id) return it->second;
    // Renamed without telling us (e.g. a paper size of another implementation).
    paperSizeIndexValid_ = false;
  }
  return nullptr;
}

IPPDPaperSize* APPD::AddPaperSize(IPPDPaperSize* paperSize, bool copy) {
  if (paperSize == nullptr) return nullptr;
  // Our reference first: the size replaced below may be this very object.
  IPPDPaperSize* stored = copy ? paperSize->Clone() : paperSize;
  if (stored == nullptr) return nullptr;
  if (!copy) stored->Retain();
  if (IPPDPaperSize* old = GetPaperSizeWithID(stored->GetID())) {
    ErasePaperSizeAt(IndexOf(paperSizes_, old));
  }
  StorePaperSize(stored);
  return stored;
}

void APPD::RemovePaperSize(IPPDPaperSize* paperSize) {
  if (paperSize == nullptr) return;
  const std::size_t index = FindSameOrEqual(paperSizes_, paperSize);
  if (index < paperSizes_.size()) ErasePaperSizeAt(index);
}

void APPD::RemovePaperSizeWithID(const AQVString& id) {
  if (IPPDPaperSize* found = GetPaperSizeWithID(id)) {
    ErasePaperSizeAt(IndexOf(paperSizes_, found));
  }
}

// Groups.

void APPD::StoreGroup(IPPDGroup* group) {
  groups_.push_back(group);
  group->SetPPD(this);
}

void APPD::EraseGroupAt(std::size_t index) {
  IPPDGroup* group = groups_[index];
  groups_.erase(groups_.begin() + static_cast<std::ptrdiff_t>(index));
  group->SetPPD(nullptr);
  group->Release();
}

IPPDGroup* APPD::AddGroup(IPPDGroup* group, bool copy) {
  if (group == nullptr) return nullptr;
  IPPDGroup* stored = copy ? group->Clone() : group;
  if (stored == nullptr) return nullptr;
  if (!copy) stored->Retain();
  if (IPPDGroup* old = GetGroupWithID(stored->GetID())) EraseGroupAt(IndexOf(groups_, old));
  StoreGroup(stored);
  return stored;
}

void APPD::RemoveGroup(IPPDGroup* group) {
  if (group == nullptr) return;
  const std::size_t index = FindSameOrEqual(groups_, group);
  if (index < groups_.size()) EraseGroupAt(index);
}

void APPD::RemoveGroupWithID(const AQVString& id) {
  if (IPPDGroup* found = GetGroupWithID(id)) EraseGroupAt(IndexOf(groups_, found));
}

IPPDGroup* APPD::GetGroupWithID(const AQVString& id) const {
  for (IPPDGroup* group : groups_) {
    if (group->GetID() == id) return group;
  }
  return nullptr;
}

IPPDOption* APPD::GetOptionWithID(const AQVString& id) const {
  for (const IPPDGroup* group : groups_) {
    if (IPPDOption* option = group->GetOptionWithID(id)) return option;
  }
  return nullptr;
}

// Localizer and languages.

void APPD::SetLocalizer(IPPDLocalizer* localizer) {
  // Retain first: setting the same localizer again must not free it.
  if (localizer != nullptr) localizer->Retain();
  if (localizer_ != nullptr) localizer_->Release();
  localizer_ = localizer;
}

APPD::Languages APPD::ReadLanguages() const {
  Languages languages;
  languages.main = GetAttributeValueWithNameAndSpec(kRKPPDLanguageVersionKeyword, nullptr);
  const AQVString list = GetAttributeValueWithNameAndSpec(kRKPPDCUPSLanguagesKeyword, nullptr);
  if (!list.IsEmpty()) {
    for (AQVString& piece : list.ParseDelimitedString(kRKPPDSpace)) {
      if (!piece.IsEmpty()) languages.additional.push_back(std::move(piece));
    }
  }
  return languages;
}

AQVString APPD::GetMainLanguage() const {
  if (renderLanguages_ != nullptr) return renderLanguages_->main;
  return GetAttributeValueWithNameAndSpec(kRKPPDLanguageVersionKeyword, nullptr);
}

void APPD::GetAdditionalLanguages(std::vector<AQVString>& out) const {
  if (renderLanguages_ != nullptr) {
    out = renderLanguages_->additional;
    return;
  }
  out = ReadLanguages().additional;
}

// Text.

bool APPD::WriteAttributes(const AQVString& name, AQVString& result, AError* error) const {
  const auto it = attributes_.find(name);
  if (it == attributes_.end()) return true;
  AError local;
  for (const IPPDAttribute* attribute : it->second) {
    const AQVString text = attribute->GetStringRepresentation(&local);
    if (Failed(local, error)) return false;
    if (!text.IsEmpty()) {
      result += text;
      result += kRKPPDNewLine;
    }
  }
  return true;
}

bool APPD::WritePaperSizeBlocks(AQVString& result, AError* error) const {
  const IPPDOption* pageSize = GetOptionWithID(kRKPPDPageSizeKeyword);
  if (pageSize == nullptr) return true;

  AError local;
  AQVString imageableArea;
  AQVString paperDimension;
  const AQVString defaultSize = pageSize->GetDefaultChoice();
  if (!defaultSize.IsEmpty()) {
    imageableArea = APPDStatement(AQVString("Default") + kRKPPDImageableAreaSizeType, AQVString(),
                                  AQVString(), defaultSize, kPPDStringValue, AQVString())
                        .GetStringRepresentation(&local);
    if (Failed(local, error)) return false;
    imageableArea += kRKPPDNewLine;
    paperDimension = APPDStatement(AQVString("Default") + kRKPPDPaperDimensionSizeType,
                                   AQVString(), AQVString(), defaultSize, kPPDStringValue,
                                   AQVString())
                         .GetStringRepresentation(&local);
    if (Failed(local, error)) return false;
    paperDimension += kRKPPDNewLine;
  }
  for (IPPDPaperSize* paperSize : paperSizes_) {
    paperSize->SetSizeType(kRKPPDImageableAreaSizeType);
    imageableArea += paperSize->GetStringRepresentation(&local);
    if (Failed(local, error)) return false;
    imageableArea += kRKPPDNewLine;
    paperSize->SetSizeType(kRKPPDPaperDimensionSizeType);
    paperDimension += paperSize->GetStringRepresentation(&local);
    if (Failed(local, error)) return false;
    paperDimension += kRKPPDNewLine;
  }
  result += imageableArea;
  result += kRKPPDNewLine;
  result += paperDimension;
  result += kRKPPDNewLine;
  return true;
}

AQVString APPD::GetStringRepresentation(AError* error) const {
  // Every element asks the document for its languages; read them once.
  const Languages languages = ReadLanguages();
  struct CacheScope {
    const APPD& document;
    ~CacheScope() { document.renderLanguages_ = nullptr; }
  } scope{*this};
  renderLanguages_ = &languages;

  AQVString result;
  for (const AQVString& name : attributeOrder_) {
    if (name == kRKPPDIPPReasonKeyword) continue;
    if (!WriteAttributes(name, result, error)) return result;
  }
  result += kRKPPDNewLine;

  AError local;
  for (const IPPDGroup* group : groups_) {
    const AQVString text = group->GetStringRepresentation(&local);
    if (Failed(local, error)) return result;
    if (!text.IsEmpty()) {
      result += text;
      result += kRKPPDNewLine;
    }
    if (group->GetID() == kRKPPDGeneralGroupName && !WritePaperSizeBlocks(result, error)) {
      return result;
    }
  }

  for (const IPPDConstraint* constraint : constraints_) {
    const AQVString text = constraint->GetStringRepresentation(&local);
    if (Failed(local, error)) return result;
    if (!text.IsEmpty()) {
      result += text;
      result += kRKPPDNewLine;
    }
  }

  if (!WriteAttributes(kRKPPDIPPReasonKeyword, result, error)) return result;
  result += kRKPPDNewLine;
  return result;
}

// Equality.

bool APPD::operator==(const IPPD& other) const {
  const auto* document = dynamic_cast<const APPD*>(&other);
  if (document == nullptr) return false;
  if (document == this) return true;

  // Names that hold attributes, in order.
  auto presentNames = [](const APPD& ppd) {
    std::vector<AQVString> names;
    for (const AQVString& name : ppd.attributeOrder_) {
      if (ppd.attributes_.count(name) != 0) names.push_back(name);
    }
    return names;
  };
  const std::vector<AQVString> mine = presentNames(*this);
  if (mine != presentNames(*document)) return false;
  for (const AQVString& name : mine) {
    const std::vector<IPPDAttribute*>& a = attributes_.at(name);
    const std::vector<IPPDAttribute*>& b = document->attributes_.at(name);
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
      if (*a[i] != *b[i]) return false;
    }
  }

  const auto byID = [](const auto& element) { return element.GetID(); };
  return SameSet(groups_, document->groups_, byID) &&
         SameSet(paperSizes_, document->paperSizes_, byID) &&
         SameSet(constraints_, document->constraints_,
                 [](const IPPDConstraint& constraint) { return ConstraintHash(constraint); });
}

IPPD* IPPD::Create() { return CreateSharedObject<APPD>(); }

}  // namespace ppdforge
