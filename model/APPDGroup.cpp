#include "model/APPDGroup.h"

#include <cups/ppd.h>

#include "model/APPDTextDecoder.h"

#include <new>

#include "core/ASharedObject.h"
#include "model/APPDLineWriter.h"
#include "model/APPDOption.h"
#include "model/APPDStatement.h"
#include "model/APPDTextPieces.h"
#include "model/IPPD.h"
#include "model/RKPPDConstants.h"

namespace ppdforge {

APPDGroup::APPDGroup(const AQVString& id, const AQVString& name, const AQVString& comment)
    : APPDLocalizableObject(comment), id_(id), name_(name) {}

APPDGroup::APPDGroup(const APPDGroup& other)
    : APPDLocalizableObject(other), id_(other.id_), name_(other.name_) {
  bool copied = true;
  for (IPPDOption* option : other.options_.Elements()) {
    copied = copied && APPDGroup::AddOption(option, true) != nullptr;
  }
  for (IPPDGroup* group : other.subGroups_.Elements()) {
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

IPPDOption* APPDGroup::AddOption(IPPDOption* option, bool copy) {
  return options_.Add(option, copy);
}

void APPDGroup::RemoveOption(IPPDOption* option) { options_.Remove(option); }

void APPDGroup::RemoveOptionWithID(const AQVString& id) { options_.RemoveWithID(id); }

IPPDOption* APPDGroup::GetOptionWithID(const AQVString& id) const { return options_.Find(id); }

IPPDGroup* APPDGroup::AddSubGroup(IPPDGroup* group, bool copy) {
  return subGroups_.Add(group, copy);
}

void APPDGroup::RemoveSubGroup(IPPDGroup* group) { subGroups_.Remove(group); }

void APPDGroup::RemoveSubGroupWithID(const AQVString& id) { subGroups_.RemoveWithID(id); }

IPPDGroup* APPDGroup::GetSubGroupWithID(const AQVString& id) const {
  return subGroups_.Find(id);
}

void APPDGroup::Attach(IPPDGroup* group) {
  group->SetPPD(ppd_);
  group->SetSubGroup(true);
}

void APPDGroup::SetPPD(IPPD* ppd) {
  ppd_ = ppd;
  // A sub-group does not hand the document further down.
  if (isSubGroup_) return;
  for (IPPDGroup* group : subGroups_.Elements()) group->SetPPD(ppd);
}

void APPDGroup::ClearOptions() { options_.Clear(); }

void APPDGroup::ClearSubgroups() { subGroups_.Clear(); }

bool APPDGroup::operator==(const IPPDGroup& other) const {
  if (id_ != other.GetID() || name_ != other.GetName()) return false;
  // Equal elements share their ID, so only those are compared.
  const auto byID = [](const auto& element) { return element.GetID(); };
  return options_.SameElements(other.GetOptions(), byID) &&
         subGroups_.SameElements(other.GetSubGroups(), byID);
}

void APPDGroup::GetLocalizationKeys(std::vector<AQVString>& keys) const {
  keys.clear();
  keys.push_back(name_);
}

IPPDLocalizer* APPDGroup::GetLocalizer() const {
  return ppd_ != nullptr ? ppd_->GetLocalizer() : nullptr;
}

bool APPDGroup::WriteHeading(std::string& result, AError* error) const {
  AQVString mainLanguage;
  std::vector<AQVString> languages;
  if (ppd_ != nullptr) {
    mainLanguage = ppd_->GetMainLanguage();
    ppd_->GetAdditionalLanguages(languages);
  }

  AError local;
  const AQVString comment = APPDCommentable::GetStringRepresentation(&local);
  if (APPDLineWriter::Failed(local, error)) return false;
  std::string open;
  if (id_ != kRKPPDGeneralGroupName) {
    std::string close;
    if (!APPDStatement::Append(open, isSubGroup_ ? "OpenSubGroup" : "OpenGroup", std::string_view(),
                               std::string_view(), id_.UTF8(), kPPDStringValue,
                               GetLocalizedString(mainLanguage).UTF8(), &local) ||
        !APPDStatement::Append(close, CloseKeyword(), std::string_view(), std::string_view(),
                               id_.UTF8(), kPPDStringValue, std::string_view(), &local)) {
      APPDLineWriter::Failed(local, error);
      return false;
    }
  }
  if (!comment.IsEmpty()) {
    result += comment.UTF8();
    result += kRKPPDNewLine;
  }
  if (open.empty()) return true;
  result += open;
  result += kRKPPDNewLine;
  if (!name_.IsEmpty()) {
    for (const AQVString& language : languages) {
      if (!APPDStatement::Append(result, language.UTF8() + ".Translation", id_.UTF8(),
                                 GetLocalizedString(language).UTF8(), std::string_view(),
                                 kPPDQuotedValue, std::string_view(), &local)) {
        APPDLineWriter::Failed(local, error);
        return false;
      }
      result += kRKPPDNewLine;
    }
  }
  result += kRKPPDNewLine;
  return true;
}

void APPDGroup::AddPieces(APPDTextPieces& pieces) const {
  if (options_.Elements().empty() && subGroups_.Elements().empty()) return;
  pieces.AddWriter(
      [this](std::string& text, AError* error) { return WriteHeading(text, error); });
  for (const IPPDGroup* group : subGroups_.Elements()) AddLinePieces(*group, pieces);
  for (const IPPDOption* option : options_.Elements()) {
    const std::size_t from = pieces.Size();
    if (const auto* known = dynamic_cast<const APPDOption*>(option)) {
      known->AddPieces(pieces);
    } else {
      pieces.AddWriter(APPDTextPieces::TextOf(*option));
    }
    pieces.AddLineEnd(from);
  }
  if (id_ == kRKPPDGeneralGroupName) return;
  // The heading writer has checked the close line already.
  std::string close;
  APPDStatement::Append(close, CloseKeyword(), std::string_view(), std::string_view(), id_.UTF8(),
                        kPPDStringValue, std::string_view(), nullptr);
  close += kRKPPDNewLine;
  pieces.AddText(std::move(close));
}

void APPDGroup::AddLinePieces(const IPPDGroup& group, APPDTextPieces& pieces) {
  const std::size_t from = pieces.Size();
  if (const auto* known = dynamic_cast<const APPDGroup*>(&group)) {
    known->AddPieces(pieces);
  } else {
    pieces.AddWriter(APPDTextPieces::TextOf(group));
  }
  pieces.AddLineEnd(from);
}

AQVString APPDGroup::GetStringRepresentation(AError* error) const {
  return APPDTextPieces::WriteAlone(*this, error);
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
