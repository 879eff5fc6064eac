#include "model/APPD.h"

#include <algorithm>
#include <atomic>
#include <functional>
#include <new>
#include <thread>

#include "core/ASharedObject.h"
#include "model/APPDLineWriter.h"
#include "model/APPDStatement.h"
#include "model/RKPPDConstants.h"

namespace ppdforge {

namespace {

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

}  // namespace

APPD::APPD() = default;

APPD::APPD(const APPD& other) : APPDCommentableObject(other) {
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
  // Copies in order, duplicate IDs included.
  const auto copyAll = [&copied](const auto& from, auto& to) {
    for (const auto* element : from.Elements()) {
      auto* copy = copied ? element->Clone() : nullptr;
      copied = copy != nullptr;
      if (copied) to.Append(copy);
    }
  };
  copyAll(other.constraints_, constraints_);
  copyAll(other.paperSizes_, paperSizes_);
  copyAll(other.groups_, groups_);
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
  groups_.Clear();
  paperSizes_.Clear();
  // Dropped whole: no constraint needs taking out of the indexes one by one.
  constraintIndex_.clear();
  choiceIndex_.clear();
  constraintIndexValid_ = false;
  constraints_.Clear();
  constraintIndexValid_ = true;
  if (localizer_ != nullptr) localizer_->Release();
  localizer_ = nullptr;
}

APPD* APPD::Clone() const { return CreateSharedObject<APPD>(*this); }

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

void APPD::Attach(IPPDConstraint* constraint) {
  if (constraintIndexValid_) IndexConstraint(constraint);
  constraint->SetPPD(this);
}

void APPD::Detach(IPPDConstraint* constraint) {
  // Replacing constraints one by one must not rebuild the indexes each time.
  if (constraintIndexValid_) UnindexConstraint(constraint);
  constraint->SetPPD(nullptr);
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
  for (IPPDConstraint* held : constraints_.Elements()) IndexConstraint(held);
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
  constraints_.Append(stored);
  return stored;
}

void APPD::RemoveConstraint(IPPDConstraint* constraint) { constraints_.Remove(constraint); }

void APPD::RemoveConstraintsForOption(const AQVString& option) {
  constraints_.RemoveIf([&option](const IPPDConstraint& constraint) {
    return constraint.GetOptionAtIndex(0) == option || constraint.GetOptionAtIndex(1) == option;
  });
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

IPPDPaperSize* APPD::GetPaperSizeWithID(const AQVString& id) const {
  return paperSizes_.Find(id);
}

IPPDPaperSize* APPD::AddPaperSize(IPPDPaperSize* paperSize, bool copy) {
  return paperSizes_.Add(paperSize, copy);
}

void APPD::RemovePaperSize(IPPDPaperSize* paperSize) { paperSizes_.Remove(paperSize); }

void APPD::RemovePaperSizeWithID(const AQVString& id) { paperSizes_.RemoveWithID(id); }

// Groups.

IPPDGroup* APPD::AddGroup(IPPDGroup* group, bool copy) { return groups_.Add(group, copy); }

void APPD::RemoveGroup(IPPDGroup* group) { groups_.Remove(group); }

void APPD::RemoveGroupWithID(const AQVString& id) { groups_.RemoveWithID(id); }

IPPDGroup* APPD::GetGroupWithID(const AQVString& id) const { return groups_.Find(id); }

IPPDOption* APPD::GetOptionWithID(const AQVString& id) const {
  for (const IPPDGroup* group : groups_.Elements()) {
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
  return it == attributes_.end() || APPDLineWriter::AppendLines(result, it->second, error);
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
    if (APPDLineWriter::Failed(local, error)) return false;
    imageableArea += kRKPPDNewLine;
    paperDimension = APPDStatement(AQVString("Default") + kRKPPDPaperDimensionSizeType,
                                   AQVString(), AQVString(), defaultSize, kPPDStringValue,
                                   AQVString())
                         .GetStringRepresentation(&local);
    if (APPDLineWriter::Failed(local, error)) return false;
    paperDimension += kRKPPDNewLine;
  }
  for (IPPDPaperSize* paperSize : paperSizes_.Elements()) {
    paperSize->SetSizeType(kRKPPDImageableAreaSizeType);
    imageableArea += paperSize->GetStringRepresentation(&local);
    if (APPDLineWriter::Failed(local, error)) return false;
    imageableArea += kRKPPDNewLine;
    paperSize->SetSizeType(kRKPPDPaperDimensionSizeType);
    paperDimension += paperSize->GetStringRepresentation(&local);
    if (APPDLineWriter::Failed(local, error)) return false;
    paperDimension += kRKPPDNewLine;
  }
  result += imageableArea;
  result += kRKPPDNewLine;
  result += paperDimension;
  result += kRKPPDNewLine;
  return true;
}

bool APPD::WriteGroups(AQVString& result, AError* error) const {
  const std::vector<IPPDGroup*>& groups = groups_.Elements();
  // Each group, and the paper size blocks after the General group, is
  // written on its own into its own text; the texts are then joined in order
  // up to the first failure, where the serial loop would stop.
  struct Piece {
    const IPPDGroup* group = nullptr;  // null: the paper size blocks
    AQVString text;
    AError error;
    bool failed = false;
  };
  std::vector<Piece> pieces;
  pieces.reserve(groups.size() + 1);
  for (const IPPDGroup* group : groups) {
    pieces.push_back(Piece{group, {}, {}, false});
    if (group->GetID() == kRKPPDGeneralGroupName) pieces.push_back(Piece{});
  }
  const auto write = [&](std::size_t index) {
    Piece& piece = pieces[index];
    piece.failed = piece.group != nullptr ? !APPDLineWriter::AppendLine(piece.text, *piece.group, &piece.error)
                                          : !WritePaperSizeBlocks(piece.text, &piece.error);
  };

  const std::size_t threads = std::min<std::size_t>(renderThreads_, pieces.size());
  if (threads <= 1) {
    for (std::size_t i = 0; i < pieces.size(); ++i) {
      write(i);
      if (pieces[i].failed) break;
    }
  } else {
    // Lookups fill their indexes on first use; fill them now, before the
    // threads read them.
    GetOptionWithID(AQVString(kRKPPDPageSizeKeyword));
    std::atomic<std::size_t> next{0};
    const auto work = [&] {
      for (std::size_t i = next++; i < pieces.size(); i = next++) write(i);
    };
    std::vector<std::thread> helpers;
    helpers.reserve(threads - 1);
    for (std::size_t t = 1; t < threads; ++t) helpers.emplace_back(work);
    work();
    for (std::thread& helper : helpers) helper.join();
  }

  std::size_t length = result.ByteLength();
  for (const Piece& piece : pieces) length += piece.text.ByteLength();
  result.Reserve(length);
  for (Piece& piece : pieces) {
    result += piece.text;
    piece.text = AQVString();
    if (piece.failed) {
      if (error != nullptr) *error = piece.error;
      return false;
    }
  }
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

  if (!WriteGroups(result, error)) return result;
  if (!APPDLineWriter::AppendLines(result, constraints_.Elements(), error)) return result;

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
  return groups_.SameElements(document->groups_.Elements(), byID) &&
         paperSizes_.SameElements(document->paperSizes_.Elements(), byID) &&
         constraints_.SameElements(
             document->constraints_.Elements(),
             [](const IPPDConstraint& constraint) { return ConstraintHash(constraint); });
}

IPPD* IPPD::Create() { return CreateSharedObject<APPD>(); }

}  // namespace ppdforge
