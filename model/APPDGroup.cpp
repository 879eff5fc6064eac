#include "model/APPDGroup.h"

#include <cups/ppd.h>

#include "model/APPDTextDecoder.h"

#include <new>

#include "core/ASharedObject.h"
#include "model/APPDLineWriter.h"
#include "model/APPDStatement.h"
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

AQVString APPDGroup::GetStringRepresentation(AError* error) const {
  if (options_.Elements().empty() && subGroups_.Elements().empty()) return AQVString();

  AQVString mainLanguage;
  std::vector<AQVString> languages;
  if (ppd_ != nullptr) {
    mainLanguage = ppd_->GetMainLanguage();
    ppd_->GetAdditionalLanguages(languages);
  }

  AError local;
  const AQVString comment = APPDCommentable::GetStringRepresentation(&local);
  if (APPDLineWriter::Failed(local, error)) return AQVString();
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
    if (APPDLineWriter::Failed(local, error)) return AQVString();
    close = APPDStatement(isSubGroup_ ? "CloseSubGroup" : "CloseGroup", AQVString(), AQVString(),
                          id_, kPPDStringValue, AQVString())
                .GetStringRepresentation(&local);
    if (APPDLineWriter::Failed(local, error)) return AQVString();
    if (open.IsEmpty() || close.IsEmpty()) return AQVString();

    result += open;
    result += kRKPPDNewLine;
    if (!name_.IsEmpty()) {
      for (const AQVString& language : languages) {
        const APPDStatement translation(language + ".Translation", id_,
                                        GetLocalizedString(language), AQVString(),
                                        kPPDQuotedValue, AQVString());
        if (!APPDLineWriter::AppendLine(result, translation, error)) return result;
      }
    }
    result += kRKPPDNewLine;
  }

  if (!APPDLineWriter::AppendLines(result, subGroups_.Elements(), error) ||
      !APPDLineWriter::AppendLines(result, options_.Elements(), error)) {
    return result;
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
