#include "model/APPDChoice.h"

#include <cups/ppd.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "model/APPDTextDecoder.h"

#include "core/ASharedObject.h"
#include "model/APPDLineWriter.h"
#include "model/APPDOption.h"
#include "model/APPDStatement.h"
#include "model/IPPD.h"
#include "model/IPPDGroup.h"
#include "model/RKPPDConstants.h"

namespace ppdforge {

APPDChoice::APPDChoice(const AQVString& id, const AQVString& name, const AQVString& code,
                       const AQVString& comment)
    : APPDLocalizableObject(comment), id_(id), name_(name), code_(code) {}

// Explicit translations and the owner stay behind: the copy starts unattached.
APPDChoice::APPDChoice(const APPDChoice& other)
    : APPDLocalizableObject(other), id_(other.id_), name_(other.name_), code_(other.code_) {}

APPDChoice* APPDChoice::Clone() const { return CreateSharedObject<APPDChoice>(*this); }

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

  // Lines are appended to one buffer by the statement rules, without a
  // statement object per line.
  AError local;
  std::string result;
  // A line and one per language, of about this length: no regrowth.
  result.reserve((code_.ByteLength() + 64) * (languages.size() + 1));
  if (!APPDStatement::Append(result, optionID.UTF8(), id_.UTF8(), mainText.UTF8(), code_.UTF8(),
                             kPPDQuotedValue, std::string_view(), &local)) {
    APPDLineWriter::Failed(local, error);
    return AQVString();
  }

  const AQVString comment = APPDCommentable::GetStringRepresentation(&local);
  if (APPDLineWriter::Failed(local, error)) return AQVString();
  if (!comment.IsEmpty()) result.insert(0, comment.UTF8() + kRKPPDNewLine);

  if (!name_.IsEmpty()) {
    APPDLineWriter::AppendTranslationLines(result, *this, optionID.UTF8(), id_.UTF8(), languages,
                                           error);
  }
  return AQVString::FromTrustedUTF8(std::move(result));
}

IPPDChoice* IPPDChoice::Create(const AQVString& id, const AQVString& name, const AQVString& code,
                               const AQVString& comment) {
  return CreateSharedObject<APPDChoice>(id, name, code, comment);
}

IPPDChoice* IPPDChoice::Create(const ppd_choice_s* record, APPDTextDecoder* decoder) {
  if (record == nullptr) return Create(AQVString(), AQVString(), AQVString(), AQVString());
  return Create(APPDTextDecoder::DecodeWith(decoder, record->choice, APPDTextDecoder::Kind::kRaw),
                APPDTextDecoder::DecodeWith(decoder, record->text, APPDTextDecoder::Kind::kConverted, true),
                APPDTextDecoder::DecodeWith(decoder, record->code, APPDTextDecoder::Kind::kRaw),
                AQVString());
}

}  // namespace ppdforge
