#include "model/APPDAttribute.h"

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
#include <cups/ppd.h>
#pragma GCC diagnostic pop

#include "model/APPDTextDecoder.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "core/ASharedObject.h"
#include "model/APPDStatement.h"
#include "model/IPPD.h"
#include "model/IPPDLocalizer.h"

namespace ppdforge {

namespace {

constexpr const char* kPPDAdobeKeyword = "PPD-Adobe";

using ValueTypeTable = std::unordered_map<std::string_view, PPDValueType>;

const ValueTypeTable& DefaultValueTypes() {
  static const ValueTypeTable table = [] {
    ValueTypeTable t;
    for (const char* name :
         {"PPD-Adobe", "FormatVersion", "FileVersion", "cupsLanguages", "PCFileName",
          "LanguageLevel", "PSVersion", "Manufacturer", "Product", "QVProductName", "ModelName",
          "NickName", "ShortNickName", "cupsFilter", "QVPrinterFile", "QVSettingsCache",
          "APPrinterIconPath", "QVPrinterIconPath", "APDialogExtension", "DefaultColorSpace",
          "APPrinterUtilityPath", "APPrinterLowInkTool", "BPEAPPrinterUtilityToolTip",
          "APScanAppBundleID", "APAutoSetupTool", "MaxMediaWidth", "MaxMediaHeight"}) {
      t.emplace(name, kPPDQuotedValue);
    }
    for (const char* name :
         {"LanguageEncoding", "LanguageVersion", "cupsVersion", "cupsManualCopies", "ColorDevice",
          "ParamCustomPageSize", "CenterRegistered", "HWMargins", "DefaultOutputOrder", "Font",
          "APDuplexRequiresFlippedMargin", "cupsFlipDuplex", "cupsICCQualifier3"}) {
      t.emplace(name, kPPDStringValue);
    }
    for (const char* name :
         {"APPrinterPreset", "QVPDEPanel", "QVPDEController", "CustomPageSize",
          "CustomPageRegion", "cupsICCProfile", "cupsIPPReasons", "cupsPageSizeCategory"}) {
      t.emplace(name, kPPDInvocationValue);
    }
    return t;
  }();
  return table;
}

}  // namespace

IPPDAttribute* IPPDAttribute::Create(const AQVString& name, const AQVString& spec,
                                     const AQVString& text, const AQVString& value,
                                     PPDValueType type, const AQVString& comment) {
  return CreateSharedObject<APPDAttribute>(name, spec, text, value, type, comment);
}

APPDAttribute::APPDAttribute(const AQVString& name, const AQVString& spec, const AQVString& text,
                             const AQVString& value, PPDValueType type, const AQVString& comment)
    : APPDCommentable(comment),
      name_(name),
      spec_(spec),
      text_(text),
      value_(value),
      valueType_(type) {}

APPDAttribute::APPDAttribute(const APPDAttribute& other)
    : IPPDAttribute(),
      APPDCommentable(other),
      APPDLocalizable(),
      name_(other.name_),
      spec_(other.spec_),
      text_(other.text_),
      value_(other.value_),
      valueType_(other.valueType_) {}

IPPDAttribute* APPDAttribute::Clone() const {
  return CreateSharedObject<APPDAttribute>(static_cast<const APPDAttribute&>(*this));
}

APPDCommentable* APPDAttribute::QueryPPDCommentable() const {
  auto* self = const_cast<APPDAttribute*>(this);
  self->Retain();
  return self;
}

APPDLocalizable* APPDAttribute::QueryPPDLocalizable() const {
  auto* self = const_cast<APPDAttribute*>(this);
  self->Retain();
  return self;
}

void APPDAttribute::SetText(const AQVString& text) {
  text_ = text;
  ClearLocalization();
}

void APPDAttribute::SetTextLocalizations(const ADictionary& localizations) {
  for (const auto& [localeID, text] : localizations) {
    if (const AQVString* string = text.AsString()) SetLocalizedString(*string, localeID);
  }
}

void APPDAttribute::GetLocalizationKeys(std::vector<AQVString>& keys) const {
  keys.clear();
  keys.push_back(text_);
}

IPPDLocalizer* APPDAttribute::GetLocalizer() const {
  return ppd_ != nullptr ? ppd_->GetLocalizer() : nullptr;
}

bool APPDAttribute::operator==(const IPPDAttribute& other) const {
  if (const auto* attribute = dynamic_cast<const APPDAttribute*>(&other)) {
    return name_ == attribute->name_ && spec_ == attribute->spec_ &&
           text_ == attribute->text_ && value_ == attribute->value_;
  }
  return name_ == other.GetName() && spec_ == other.GetSpec() && text_ == other.GetText() &&
         value_ == other.GetValue();
}

PPDValueType APPDAttribute::DefaultValueType(const AQVString& name) {
  const ValueTypeTable& table = DefaultValueTypes();
  const auto found = table.find(std::string_view(name.UTF8()));
  return found == table.end() ? kPPDInvocationValue : found->second;
}

void APPDAttribute::GetLanguages(AQVString& mainLanguage,
                                 std::vector<AQVString>& additional) const {
  additional.clear();
  if (ppd_ == nullptr) {
    mainLanguage = AQVString();
    return;
  }
  mainLanguage = ppd_->GetMainLanguage();
  ppd_->GetAdditionalLanguages(additional);
}

AQVString APPDAttribute::GetStringRepresentation(AError* error) const {
  AQVString mainLanguage;
  std::vector<AQVString> languages;
  GetLanguages(mainLanguage, languages);

  AQVString mainText = GetLocalizedString(mainLanguage);
  // A main text that is not plain ASCII cannot stand on the main line of a
  // multi-language file; it moves to a translation line of its own.
  if (!languages.empty() && !APPDStatement::IsPlainMainTranslation(mainText)) {
    mainText = AQVString();
    languages.insert(languages.begin(), IPPDLocalizer::GetLocaleID(mainLanguage));
  }

  // Lines are appended by the statement rules, without a statement object
  // per line.
  std::string mainLine;
  if (!APPDStatement::Append(mainLine, name_.UTF8(), spec_.UTF8(), mainText.UTF8(), value_.UTF8(), valueType_,
                             std::string_view(), error)) {
    return AQVString();
  }

  const AQVString& comment = GetComment();
  const AQVString commentLines = APPDStatement::CommentLines(comment, error);
  if (!comment.IsEmpty() && commentLines.IsEmpty()) return AQVString();

  std::string out;
  if (commentLines.IsEmpty()) {
    out = std::move(mainLine);
  } else if (name_ == kPPDAdobeKeyword) {
    // That line must open the file, so its comment follows it.
    out.reserve(mainLine.size() + commentLines.ByteLength() + 1);
    out = mainLine;
    out += '\n';
    out += commentLines.UTF8();
  } else {
    out.reserve(mainLine.size() + commentLines.ByteLength() + 1);
    out = commentLines.UTF8();
    out += '\n';
    out += mainLine;
  }

  if (!text_.IsEmpty()) {
    std::string keyword;
    for (const AQVString& language : languages) {
      keyword.assign(language.UTF8());
      keyword += '.';
      keyword += name_.UTF8();
      const AQVString text = GetLocalizedString(language);
      out += '\n';
      if (!APPDStatement::Append(out, keyword, spec_.UTF8(), text.UTF8(), std::string_view(), kPPDQuotedValue,
                                 std::string_view(), error)) {
        out.pop_back();
        break;
      }
    }
  }
  return AQVString::FromTrustedUTF8(std::move(out));
}

IPPDAttribute* IPPDAttribute::Create(const ppd_attr_s* record, APPDTextDecoder* decoder) {
  if (record == nullptr) {
    return Create(AQVString(), AQVString(), AQVString(), AQVString(), kPPDInvocationValue,
                  AQVString());
  }
  const AQVString name = APPDTextDecoder::DecodeWith(decoder, record->name, APPDTextDecoder::Kind::kRaw);
  // Translation lines are UTF-8 by CUPS convention, whatever the file's encoding.
  const auto kind = APPDTextDecoder::IsTranslationKeyword(record->name)
                        ? APPDTextDecoder::Kind::kTranslation
                        : APPDTextDecoder::Kind::kRaw;
  return Create(name, APPDTextDecoder::DecodeWith(decoder, record->spec, APPDTextDecoder::Kind::kRaw),
                APPDTextDecoder::DecodeWith(decoder, record->text, kind, true),
                APPDTextDecoder::DecodeWith(decoder, record->value, kind),
                APPDAttribute::DefaultValueType(name), AQVString());
}

}  // namespace ppdforge
