#include "model/APPD.h"

#include <algorithm>
#include <atomic>
#include <functional>
#include <new>
#include <thread>

#include "core/ASharedObject.h"
#include "model/APPDGroup.h"
#include "model/APPDLineWriter.h"
#include "model/APPDPaperSize.h"
#include "model/APPDStatement.h"
#include "model/APPDTextPieces.h"
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

void APPD::AddAttributePieces(const AQVString& name, APPDTextPieces& pieces) const {
  const auto it = attributes_.find(name);
  if (it == attributes_.end()) return;
  pieces.AddWriter([&attributes = it->second](std::string& text, AError* error) {
    AQVString lines;
    if (!APPDLineWriter::AppendLines(lines, attributes, error)) return false;
    text = lines.TakeUTF8();
    return true;
  });
}

void APPD::AddPaperSizePieces(APPDTextPieces& pieces) const {
  pieces.BeginUnit();
  const IPPDOption* pageSize = GetOptionWithID(kRKPPDPageSizeKeyword);
  if (pageSize == nullptr) return;

  const std::vector<IPPDPaperSize*>& sizes = paperSizes_.Elements();
  const AQVString defaultSize = pageSize->GetDefaultChoice();
  // Sizes are written in runs of this many, a piece each.
  constexpr std::size_t kRun = 16;
  for (const char* sizeType : {kRKPPDImageableAreaSizeType, kRKPPDPaperDimensionSizeType}) {
    if (!defaultSize.IsEmpty()) {
      AError local;
      AQVString line = APPDStatement(AQVString("Default") + sizeType, AQVString(), AQVString(),
                                     defaultSize, kPPDStringValue, AQVString())
                           .GetStringRepresentation(&local);
      if (local.code != 0) {
        pieces.AddFailure(local);
        return;
      }
      line += kRKPPDNewLine;
      pieces.AddText(line.TakeUTF8());
    }
    for (std::size_t first = 0; first < sizes.size(); first += kRun) {
      const std::size_t last = std::min(sizes.size(), first + kRun);
      pieces.AddWriter([&sizes, first, last, sizeType](std::string& text, AError* error) {
        const AQVString type(sizeType);
        for (std::size_t i = first; i < last; ++i) {
          AError local;
          // Written for either type without changing the size, so that both
          // blocks may be written at once.
          const auto* known = dynamic_cast<const APPDPaperSize*>(sizes[i]);
          AQVString line;
          if (known != nullptr) {
            line = known->GetStringRepresentation(type, &local);
          } else {
            sizes[i]->SetSizeType(type);
            line = sizes[i]->GetStringRepresentation(&local);
          }
          if (APPDLineWriter::Failed(local, error)) return false;
          text += line.UTF8();
          text += kRKPPDNewLine;
        }
        return true;
      });
    }
    pieces.AddText(kRKPPDNewLine);
  }
}

AQVString APPD::GetStringRepresentation(AError* error) const {
  // Every element asks the document for its languages; read them once.
  const Languages languages = ReadLanguages();
  struct CacheScope {
    const APPD& document;
    ~CacheScope() { document.renderLanguages_ = nullptr; }
  } scope{*this};
  renderLanguages_ = &languages;

  APPDTextPieces pieces;
  // Nearly every piece needs the string table of every language, each read
  // on its first use: read them side by side first.
  if (localizer_ != nullptr && renderThreads_ > 1) {
    std::vector<AQVString> all = languages.additional;
    all.push_back(languages.main);
    for (const AQVString& language : all) {
      pieces.AddWriter([this, language](std::string&, AError*) {
        localizer_->Localize(AQVString(), language);
        return true;
      });
    }
  }
  for (const AQVString& name : attributeOrder_) {
    if (name != kRKPPDIPPReasonKeyword) AddAttributePieces(name, pieces);
  }
  pieces.AddText(kRKPPDNewLine);
  for (const IPPDGroup* group : groups_.Elements()) {
    pieces.BeginUnit();
    APPDGroup::AddLinePieces(*group, pieces);
    if (group->GetID() == kRKPPDGeneralGroupName) AddPaperSizePieces(pieces);
  }
  pieces.BeginUnit();
  pieces.AddWriter([this](std::string& text, AError* failure) {
    AQVString lines;
    if (!APPDLineWriter::AppendLines(lines, constraints_.Elements(), failure)) return false;
    text = lines.TakeUTF8();
    return true;
  });
  AddAttributePieces(kRKPPDIPPReasonKeyword, pieces);
  pieces.AddText(kRKPPDNewLine);

  // Lookups fill their indexes on first use; fill them now, before the
  // threads read them.
  GetOptionWithID(AQVString(kRKPPDPageSizeKeyword));
  AQVString result;
  pieces.WriteTo(result, renderThreads_, error);
  for (IPPDPaperSize* paperSize : paperSizes_.Elements()) {
    paperSize->SetSizeType(kRKPPDPaperDimensionSizeType);
  }
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
