#include "model/APPDChoice.h"

#include "core/ASharedObject.h"
#include "model/APPDOption.h"
#include "model/APPDStatement.h"
#include "model/IPPD.h"
#include "model/IPPDGroup.h"
#include "model/RKPPDConstants.h"

namespace ppdforge {

APPDChoice::APPDChoice(const AQVString& id, const AQVString& name, const AQVString& code,
                       const AQVString& comment)
    : APPDCommentable(comment), id_(id), name_(name), code_(code) {}

// Explicit translations and the owner stay behind: the copy starts unattached.
APPDChoice::APPDChoice(const APPDChoice& other)
    : IPPDChoice(), APPDCommentable(other), APPDLocalizable(), id_(other.id_),
      name_(other.name_), code_(other.code_) {}

APPDChoice* APPDChoice::Clone() const { return CreateSharedObject<APPDChoice>(*this); }

APPDCommentable* APPDChoice::QueryPPDCommentable() const {
  auto* self = const_cast<APPDChoice*>(this);
  static_cast<IPPDObject*>(self)->Retain();
  return self;
}

APPDLocalizable* APPDChoice::QueryPPDLocalizable() const {
  auto* self = const_cast<APPDChoice*>(this);
  static_cast<IPPDObject*>(self)->Retain();
  return self;
}

void APPDChoice::SetID(const AQVString& id) {
  id_ = id;
  if (auto* owner = dynamic_cast<APPDOption*>(option_)) owner->InvalidateChoiceIndex();
}

bool APPDChoice::operator==(const IPPDChoice& other) const {
  return id_ == other.GetID() && name_ == other.GetName() && code_ == other.GetCode();
}

void APPDChoice::GetLocalizationKeys(std::vector<AQVString>& keys) const {
  keys.clear();
  keys.push_back(name_);
}

IPPD* APPDChoice::GetDocument() const {
  if (option_ == nullptr) return nullptr;
  IPPDGroup* group = option_->GetGroup();
  return group != nullptr ? group->GetPPD() : nullptr;
}

IPPDLocalizer* APPDChoice::GetLocalizer() const {
  IPPD* ppd = GetDocument();
  return ppd != nullptr ? ppd->GetLocalizer() : nullptr;
}

AQVString APPDChoice::GetStringRepresentation(AError* error) const {
  AQVString mainLanguage;
  std::vector<AQVString> languages;
  if (IPPD* ppd = GetDocument()) {
    mainLanguage = ppd->GetMainLanguage();
    ppd->GetAdditionalLanguages(languages);
  }
  const AQVString mainText = APPDOption::MainLineTranslation(*this, mainLanguage, languages);
  const AQVString optionID = option_ != nullptr ? option_->GetID() : AQVString(kRKPPDDummySettingName);

  AError local;
  const APPDStatement statement(optionID, id_, mainText, code_, kPPDQuotedValue, AQVString());
  const AQVString line = statement.GetStringRepresentation(&local);
  if (local.code != 0) {
    if (error != nullptr) *error = local;
    return AQVString();
  }
  if (line.IsEmpty()) return AQVString();

  const AQVString comment = APPDCommentable::GetStringRepresentation(&local);
  if (local.code != 0) {
    if (error != nullptr) *error = local;
    return AQVString();
  }
  AQVString result;
  if (!comment.IsEmpty()) {
    result += comment;
    result += kRKPPDNewLine;
  }
  result += line;

  if (name_.IsEmpty()) return result;
  for (const AQVString& language : languages) {
    const APPDStatement translation(language + "." + optionID, id_, GetLocalizedString(language),
                                    AQVString(), kPPDQuotedValue, AQVString());
    const AQVString text = translation.GetStringRepresentation(&local);
    if (local.code != 0) {
      if (error != nullptr) *error = local;
      return result;
    }
    if (!text.IsEmpty()) {
      result += kRKPPDNewLine;
      result += text;
    }
  }
  return result;
}

IPPDChoice* IPPDChoice::Create(const AQVString& id, const AQVString& name, const AQVString& code,
                               const AQVString& comment) {
  return CreateSharedObject<APPDChoice>(id, name, code, comment);
}

}  // namespace ppdforge
