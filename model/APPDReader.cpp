#include "model/APPDReader.h"

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
#include <cups/ppd.h>
#pragma GCC diagnostic pop

#include <cctype>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <unordered_set>

#include "core/ACupsLibrary.h"
#include "core/ASharedObject.h"
#include "core/RKPPDMessages.h"
#include "model/APPD.h"
#include "model/APPDIPPReason.h"
#include "model/APPDLocalizable.h"
#include "model/APPDStatement.h"
#include "model/APPDTextDecoder.h"
#include "model/APPDVerbatimAttribute.h"
#include "model/IPPDLocalizer.h"
#include "model/RKPPDConstants.h"

namespace ppdforge {

const char* const APPDReader::kHeaderComment =
    "=================================\n"
    "Adobe Systems PostScript(R) Printer Description File\n"
    "Copyright (C) the ppdforge authors. All rights reserved.\n"
    "PPD Version for Apple Macintosh\n"
    "=================================";

namespace {

constexpr const char* kPPDAdobeKeyword = "PPD-Adobe";
constexpr const char* kLanguageEncodingKeyword = "LanguageEncoding";
constexpr const char* kCustomChoice = "Custom";
constexpr const char* kCustomPageSizeKeyword = "CustomPageSize";
constexpr const char* kVariablePaperSizeKeyword = "VariablePaperSize";
constexpr const char* kTranslationKeyword = "Translation";
constexpr const char* kTextURIScheme = "text:";

// Lines that libcups keeps as attributes although they are structure: it
// flattens sub-groups into their group, and written in the header these
// lines would open a sub-group outside any group.
bool IsStructuralKeyword(const AQVString& name) {
  return name == "OpenSubGroup" || name == "CloseSubGroup";
}

template <class Visit>
void ForEachGroup(const std::vector<IPPDGroup*>& groups, Visit&& visit) {
  for (IPPDGroup* group : groups) {
    visit(group);
    ForEachGroup(group->GetSubGroups(), visit);
  }
}

// The first option with this ID in any group or sub-group, in document order.
IPPDOption* FindOption(const APPD& ppd, const AQVString& id) {
  if (IPPDOption* option = ppd.GetOptionWithID(id)) return option;
  IPPDOption* found = nullptr;
  ForEachGroup(ppd.GetGroups(), [&found, &id](IPPDGroup* group) {
    if (found == nullptr) found = group->GetOptionWithID(id);
  });
  return found;
}

std::vector<IPPDAttribute*> AttributesNamed(const APPD& ppd, const AQVString& name) {
  std::vector<IPPDAttribute*> attributes;
  ppd.GetAttributesWithNameAndSpec(name, nullptr, attributes);
  return attributes;
}

// Leaves `name` with exactly `kept` (held by the document, in this order);
// the others are detached and released. The name keeps its place.
void ReplaceAttributes(APPD& ppd, const AQVString& name, const std::vector<IPPDAttribute*>& kept) {
  for (IPPDAttribute* attribute : kept) attribute->Retain();
  ppd.RemoveAttributesWithNameAndSpec(name, nullptr);
  for (IPPDAttribute* attribute : kept) {
    ppd.AddAttribute(attribute, false);
    attribute->Release();
  }
}

bool IsValidStringValue(const AQVString& value) {
  return !value.IsEmpty() && !value.StartsWith(kRKPPDCaret) && !value.StartsWith(kRKPPDDoubleQuote) &&
         APPDStatement::IsValidCharacters(value, 32, 126, "/\n\r");
}

// Written as it stands, without quotes (any kind above kPPDStringValue).
constexpr PPDValueType kBareValue = 4;

// libcups does not say whether a value stood in quotes. The keyword table
// decides, except where its answer cannot be written: a value holding a
// double-quote character (libcups keeps the quotes of a quoted value that
// has a translation, as in *Status: "warming up"/warming up), and the option
// keyword of a "Default..." line, which PPD files write bare.
PPDValueType ValueTypeFor(const AQVString& name, const AQVString& value) {
  const PPDValueType type = APPDAttribute::DefaultValueType(name);
  if (type != kPPDInvocationValue) return type;
  if (value.Contains(kRKPPDDoubleQuote)) {
    if (IsValidStringValue(value)) return kPPDStringValue;
    if (APPDStatement::IsValidCharacters(value, 32, 126, "")) return kBareValue;
    return type;
  }
  if (name.StartsWith("Default") && IsValidStringValue(value)) return kPPDStringValue;
  return type;
}

// libcups decodes the hexadecimal <XX> strings of JCL codes; written as an
// ordinary quoted value the code needs them back for the double quotes and
// control characters it holds.
AQVString EncodeJCLCode(const AQVString& code) {
  std::string encoded;
  for (const char byte : code.UTF8()) {
    const auto value = static_cast<unsigned char>(byte);
    if (value < 32 || byte == '"') {
      static constexpr char kHex[] = "0123456789ABCDEF";
      encoded += '<';
      encoded += kHex[value >> 4];
      encoded += kHex[value & 0x0F];
      encoded += '>';
    } else {
      encoded += byte;
    }
  }
  return AQVString(std::move(encoded));
}

void EncodeJCLCodes(const APPD& ppd, const ppd_group_s& group, APPDTextDecoder& decoder) {
  for (int i = 0; i < group.num_options; ++i) {
    const ppd_option_s& record = group.options[i];
    if (record.section != PPD_ORDER_JCL) continue;
    IPPDOption* option = FindOption(ppd, decoder.Decode(record.keyword, APPDTextDecoder::Kind::kRaw));
    if (option == nullptr) continue;
    for (IPPDChoice* choice : option->GetChoices()) choice->SetCode(EncodeJCLCode(choice->GetCode()));
  }
  for (int i = 0; i < group.num_subgroups; ++i) EncodeJCLCodes(ppd, group.subgroups[i], decoder);
}

// The message of a "text:" URI value (continuation lines each start with
// "text:"), provided that writing the message gives the value back exactly.
std::optional<AQVString> DecodeTextURI(const AQVString& value, const APPDIPPReason& writer) {
  std::string message;
  for (const AQVString& piece : value.ParseDelimitedString(kRKPPDNewLine)) {
    if (!piece.StartsWith(kTextURIScheme)) return std::nullopt;
    const std::string& bytes = piece.UTF8();
    for (std::size_t i = std::strlen(kTextURIScheme); i < bytes.size(); ++i) {
      if (bytes[i] == '%' && i + 2 < bytes.size() && std::isxdigit(static_cast<unsigned char>(bytes[i + 1])) &&
          std::isxdigit(static_cast<unsigned char>(bytes[i + 2]))) {
        message += static_cast<char>(std::stoi(bytes.substr(i + 1, 2), nullptr, 16));
        i += 2;
      } else {
        message += bytes[i];
      }
    }
  }
  std::optional<AQVString> text = AQVString::FromUTF8(message);
  if (!text || text->IsEmpty()) return std::nullopt;
  AQVString uri = writer.GetTextURIFromString(*text);
  if (uri.ByteLength() >= 187) uri = writer.GetSplittedString(uri);
  if (uri != value) return std::nullopt;
  return text;
}

void ConvertIPPReasons(APPD& ppd) {
  const std::vector<IPPDAttribute*> reasons = AttributesNamed(ppd, kRKPPDIPPReasonKeyword);
  if (reasons.empty()) return;
  // The document writes them after the constraints, so a file it wrote
  // lists them last.
  ppd.MoveAttributeNameToBack(kRKPPDIPPReasonKeyword);
  AScopedRef<APPDIPPReason> writer(
      APPDIPPReason::Create(kRKPPDIPPReasonKeyword, AQVString(), AQVString(), AQVString(), AQVString()));
  if (!writer) return;
  std::vector<IPPDAttribute*> kept;
  std::vector<AScopedRef<IPPDAttribute>> made;
  bool changed = false;
  for (IPPDAttribute* attribute : reasons) {
    std::optional<AQVString> message;
    if (dynamic_cast<APPDIPPReason*>(attribute) == nullptr && attribute->GetText().IsEmpty()) {
      message = DecodeTextURI(attribute->GetValue(), *writer.get());
    }
    APPDIPPReason* reason =
        message ? APPDIPPReason::Create(attribute->GetName(), attribute->GetSpec(), *message, *message,
                                        AQVString())
                : nullptr;
    if (reason == nullptr) {
      kept.push_back(attribute);
      continue;
    }
    made.emplace_back(reason);
    kept.push_back(reason);
    changed = true;
  }
  if (changed) ReplaceAttributes(ppd, kRKPPDIPPReasonKeyword, kept);
}

// One translation line's target: the object whose text it translates.
struct TranslationTarget {
  APPDLocalizable* localizable = nullptr;
  // The text the object writes on its main line.
  AQVString baseText;
};

class LocalizationFiller {
 public:
  explicit LocalizationFiller(APPD& ppd)
      : ppd_(ppd),
        writer_(APPDIPPReason::Create(kRKPPDIPPReasonKeyword, AQVString(), AQVString(), AQVString(),
                                      AQVString())) {
    std::vector<AQVString> languages;
    ppd.GetAdditionalLanguages(languages);
    languages_.insert(languages.begin(), languages.end());
    mainLocale_ = IPPDLocalizer::GetLocaleID(ppd.GetMainLanguage());
    // The first option and group of each ID, in document order.
    ForEachGroup(ppd.GetGroups(), [this](IPPDGroup* group) {
      groups_.emplace(group->GetID(), group);
      for (IPPDOption* option : group->GetOptions()) options_.emplace(option->GetID(), option);
    });
    if (IPPDOption* first = ppd.GetOptionWithID(kRKPPDPageSizeKeyword)) options_[first->GetID()] = first;
  }

  void Run() {
    ConvertIPPReasons(ppd_);
    const std::vector<AQVString> names = ppd_.GetAttributeNames();
    for (const AQVString& name : names) {
      std::string_view language;
      std::string_view keyword;
      if (!APPDTextDecoder::IsTranslationKeyword(name.UTF8(), &language, &keyword)) continue;
      const std::vector<IPPDAttribute*> lines = AttributesNamed(ppd_, name);
      std::vector<IPPDAttribute*> kept;
      for (IPPDAttribute* line : lines) {
        if (!Consume(AQVString(language), AQVString(keyword), *line)) kept.push_back(line);
      }
      if (kept.size() != lines.size()) ReplaceAttributes(ppd_, name, kept);
    }
    FillPaperSizesFromPageSize();
  }

 private:
  // Whether the line became an explicit translation (or was a duplicate of
  // one, which libcups would never use).
  bool Consume(const AQVString& language, const AQVString& keyword, const IPPDAttribute& line) {
    if (languages_.count(language) == 0) return false;
    AQVString text = line.GetText();
    std::vector<TranslationTarget> targets;
    if (keyword == kRKPPDIPPReasonKeyword) {
      if (!text.IsEmpty()) return false;
      const std::optional<AQVString> message = ReasonMessage(line);
      if (!message) return false;
      text = *message;
      for (IPPDAttribute* reason : AttributesNamed(ppd_, keyword)) {
        auto* localizable = dynamic_cast<APPDIPPReason*>(reason);
        if (localizable != nullptr && reason->GetSpec() == line.GetSpec()) {
          targets.push_back({localizable, reason->GetText()});
        }
      }
    } else {
      if (!line.GetValue().IsEmpty()) return false;
      targets = FindTargets(keyword, line.GetSpec());
    }
    if (targets.empty()) return false;

    const AQVString localeID = IPPDLocalizer::GetLocaleID(language);
    bool consumed = false;
    for (const TranslationTarget& target : targets) {
      const auto& explicitTexts = target.localizable->GetLocalizations();
      if (explicitTexts.count(localeID) != 0) {
        consumed = true;
        continue;
      }
      // The main language's translation is also the main line's text.
      if (localeID == mainLocale_ && text != target.baseText) continue;
      target.localizable->SetLocalizedString(text, localeID);
      consumed = true;
    }
    return consumed;
  }

  std::optional<AQVString> ReasonMessage(const IPPDAttribute& line) {
    if (!writer_) return std::nullopt;
    return DecodeTextURI(line.GetValue(), *writer_.get());
  }

  std::vector<TranslationTarget> FindTargets(const AQVString& keyword, const AQVString& spec) {
    std::vector<TranslationTarget> targets;
    if (keyword == kTranslationKeyword) {
      if (IPPDOption* option = Find(options_, spec)) {
        targets.push_back({dynamic_cast<APPDLocalizable*>(option), option->GetName()});
      } else if (IPPDGroup* group = Find(groups_, spec)) {
        targets.push_back({dynamic_cast<APPDLocalizable*>(group), group->GetName()});
      }
    } else if (keyword == kRKPPDImageableAreaSizeType || keyword == kRKPPDPaperDimensionSizeType) {
      if (IPPDPaperSize* paperSize = ppd_.GetPaperSizeWithID(spec)) {
        std::vector<AQVString> keys;
        paperSize->GetLocalizationKeys(keys);
        targets.push_back({dynamic_cast<APPDLocalizable*>(paperSize), keys.empty() ? AQVString() : keys.front()});
      }
    } else if (IPPDOption* option = Find(options_, keyword)) {
      if (IPPDChoice* choice = option->GetChoiceWithID(spec)) {
        targets.push_back({dynamic_cast<APPDLocalizable*>(choice), choice->GetName()});
      }
    } else {
      std::vector<IPPDAttribute*> attributes;
      ppd_.GetAttributesWithNameAndSpec(keyword, &spec, attributes);
      for (IPPDAttribute* attribute : attributes) {
        // An attribute without a text writes no translation lines.
        if (attribute->GetText().IsEmpty() || dynamic_cast<APPDVerbatimAttribute*>(attribute)) continue;
        targets.push_back({dynamic_cast<APPDLocalizable*>(attribute), attribute->GetText()});
      }
    }
    std::erase_if(targets, [](const TranslationTarget& target) { return target.localizable == nullptr; });
    return targets;
  }

  // A paper size without translations of its own takes those of the
  // "PageSize" choice of the same ID (the lines PPD compilers write).
  void FillPaperSizesFromPageSize() {
    const IPPDOption* pageSize = ppd_.GetOptionWithID(kRKPPDPageSizeKeyword);
    if (pageSize == nullptr) return;
    for (IPPDPaperSize* paperSize : ppd_.GetPaperSizes()) {
      auto* localizable = dynamic_cast<APPDLocalizable*>(paperSize);
      const auto* choice = dynamic_cast<const APPDLocalizable*>(pageSize->GetChoiceWithID(paperSize->GetID()));
      if (localizable == nullptr || choice == nullptr) continue;
      for (const auto& [localeID, text] : choice->GetLocalizations()) {
        if (localizable->GetLocalizations().count(localeID) != 0) continue;
        std::vector<AQVString> keys;
        paperSize->GetLocalizationKeys(keys);
        if (localeID == mainLocale_ && (keys.empty() || text != keys.front())) continue;
        localizable->SetLocalizedString(text, localeID);
      }
    }
  }

  template <class T>
  static T* Find(const std::unordered_map<AQVString, T*>& index, const AQVString& id) {
    const auto found = index.find(id);
    return found != index.end() ? found->second : nullptr;
  }

  APPD& ppd_;
  std::unordered_map<AQVString, IPPDOption*> options_;
  std::unordered_map<AQVString, IPPDGroup*> groups_;
  std::unordered_set<AQVString> languages_;
  AQVString mainLocale_;
  AScopedRef<APPDIPPReason> writer_;
};

// "*OPTION [CHOICE] *OPTION [CHOICE] ..." as parallel arrays; false when a
// choice stands before any option or after another choice.
bool ParseConstraintValue(const AQVString& value, AArray& options, AArray& choices) {
  bool haveChoice = true;
  for (const AQVString& token : value.SplitAtWhitespace()) {
    if (token.StartsWith(kRKPPDAsterisk)) {
      if (!haveChoice) choices.Append(AQVString());
      options.Append(token.GetSubString(1));
      haveChoice = false;
    } else {
      if (haveChoice) return false;
      choices.Append(token);
      haveChoice = true;
    }
  }
  if (!haveChoice) choices.Append(AQVString());
  return options.Count() >= 2;
}

void MergeMirroredConstraints(APPD& ppd) {
  using Key = std::tuple<AQVString, AQVString, AQVString, AQVString, bool>;
  std::set<Key> seen;
  std::vector<IPPDConstraint*> mirrors;
  for (IPPDConstraint* constraint : ppd.GetConstraints()) {
    if (constraint->IsCUPSUIConstraint() || constraint->GetOptions().Count() != 2) continue;
    const AQVString option0 = constraint->GetOptionAtIndex(0);
    const AQVString choice0 = constraint->GetChoiceAtIndex(0);
    const AQVString option1 = constraint->GetOptionAtIndex(1);
    const AQVString choice1 = constraint->GetChoiceAtIndex(1);
    if (seen.count(Key{option1, choice1, option0, choice0, constraint->IsNonUI()}) != 0) {
      mirrors.push_back(constraint);
      continue;
    }
    seen.insert(Key{option0, choice0, option1, choice1, constraint->IsNonUI()});
  }
  for (IPPDConstraint* constraint : mirrors) ppd.RemoveConstraint(constraint);
}

bool IsTranslationLine(std::string_view line) {
  return line.size() > 1 && line[0] == '*' && APPDTextDecoder::IsTranslationKeyword(line.substr(1));
}

}  // namespace

// Building.

IPPD* APPDReader::Create(const ppd_file_s* file, AError* error, const AQVString& sourceName) {
  if (file == nullptr) return nullptr;

  const char* encoding = nullptr;
  for (int i = 0; i < file->num_attrs; ++i) {
    if (std::strcmp(file->attrs[i]->name, kLanguageEncodingKeyword) == 0) {
      encoding = file->attrs[i]->value;
      break;
    }
  }
  APPDTextDecoder decoder(encoding != nullptr ? encoding : "", encoding != nullptr);

  AScopedRef<APPD> ppd(CreateSharedObject<APPD>());
  AScopedRef<IPPDLocalizer> localizer(IPPDLocalizer::Create());
  if (!ppd || !localizer) {
    messages::Report(error, messages::kPPDDocumentNotCreated, {sourceName});
    return nullptr;
  }
  ppd->SetLocalizer(localizer.get());

  bool built = true;
  for (int i = 0; built && i < file->num_attrs; ++i) {
    AScopedRef<IPPDAttribute> record(IPPDAttribute::Create(file->attrs[i], &decoder));
    if (!record) {
      built = false;
      break;
    }
    const AQVString name = record->GetName();
    if (name == kPPDAdobeKeyword || IsStructuralKeyword(name)) continue;
    record->SetValueType(ValueTypeFor(name, record->GetValue()));
    // Until FillLocalizationCaches finds its object, a translation line is
    // written back as it stands.
    AScopedRef<IPPDAttribute> verbatim(
        APPDTextDecoder::IsTranslationKeyword(name.UTF8())
            ? APPDVerbatimAttribute::Create(name, record->GetSpec(), record->GetText(),
                                            record->GetValue(), record->GetValueType())
            : nullptr);
    IPPDAttribute* attribute = verbatim ? verbatim.get() : record.get();
    built = ppd->AddAttribute(attribute, false) != nullptr;
  }
  for (int i = 0; built && i < file->num_groups; ++i) {
    AScopedRef<IPPDGroup> group(IPPDGroup::Create(&file->groups[i], &decoder));
    // libcups gathers options outside any group under "General", whose
    // heading is never written; its text must be libcups's own.
    if (group && group->GetID() == kRKPPDGeneralGroupName) group->SetName(kRKPPDGeneralGroupName);
    built = group && ppd->AddGroup(group.get(), false) != nullptr;
  }
  for (int i = 0; built && i < file->num_groups; ++i) EncodeJCLCodes(*ppd.get(), file->groups[i], decoder);
  for (int i = 0; built && i < file->num_sizes; ++i) {
    AScopedRef<IPPDPaperSize> paperSize(IPPDPaperSize::Create(&file->sizes[i], &decoder));
    built = paperSize && ppd->AddPaperSize(paperSize.get(), false) != nullptr;
  }
  for (int i = 0; built && i < file->num_consts; ++i) {
    AScopedRef<IPPDConstraint> constraint(IPPDConstraint::Create(&file->consts[i], &decoder));
    built = constraint && ppd->AddConstraint(constraint.get(), false) != nullptr;
  }
  if (!built) {
    messages::Report(error, messages::kPPDDocumentNotCreated, {sourceName});
    return nullptr;
  }
  if (decoder.Failed()) {
    messages::Report(error, messages::kPPDTextNotDecodable,
                     {sourceName, AQVString(decoder.EncodingName()), AQVString(decoder.FailedText())});
    return nullptr;
  }

  APPD& document = *ppd.get();
  NormaliseHeader(document);
  RemoveDefaultAttributes(document);
  PostprocessCustomPaperSizes(document);
  FillPaperSizeNames(document);
  FillLocalizationCaches(document);
  ObtainConstraintsFromAttributes(document);
  ChooseLanguageEncoding(document);
  return ppd.release();
}

IPPD* APPDReader::Read(const AQVString& path, AError* error, bool strict) {
  std::string problem;
  const ACupsLibrary* cups = ACupsLibrary::Get(&problem);
  if (cups == nullptr) {
    messages::Report(error, messages::kCupsLibraryUnavailable, {AQVString(problem)});
    return nullptr;
  }
  std::error_code failure;
  const std::filesystem::path file(path.UTF8());
  const std::filesystem::file_status status = std::filesystem::status(file, failure);
  if (!std::filesystem::exists(status)) {
    messages::Report(error, messages::kPPDFileUnreadable, {path, messages::kPPDFileMissing});
    return nullptr;
  }
  if (std::filesystem::is_directory(status)) {
    messages::Report(error, messages::kPPDFileUnreadable, {path, messages::kPPDFileIsDirectory});
    return nullptr;
  }
  if (!std::ifstream(file, std::ios::binary)) {
    const int reason = errno;
    messages::Report(error, messages::kPPDFileUnreadable,
                     {path, AQVString(reason != 0 ? std::strerror(reason) : "the file cannot be opened")});
    return nullptr;
  }
  ppd_file_s* parsed = cups->OpenFile(path.UTF8(), strict);
  if (parsed == nullptr) {
    int line = 0;
    const std::string reason = cups->LastError(&line);
    messages::Report(error, messages::kPPDFileRejected,
                     {path, AQVString(reason), static_cast<long long>(line)});
    return nullptr;
  }
  IPPD* ppd = Create(parsed, error, path);
  cups->Close(parsed);
  return ppd;
}

IPPD* IPPD::Create(const ppd_file_s* file) { return APPDReader::Create(file, nullptr); }

IPPD* IPPD::Create(const AQVString& path) { return APPDReader::Read(path, nullptr); }

// Normalisation.

void APPDReader::NormaliseHeader(APPD& ppd) {
  ppd.RemoveAttributesWithNameAndSpec(kPPDAdobeKeyword, nullptr);
  ppd.AddAttribute(kPPDAdobeKeyword, "4.3", AQVString(), AQVString(), kPPDQuotedValue, kHeaderComment);
  ppd.MoveAttributeNameToFront(kPPDAdobeKeyword);
}

void APPDReader::RemoveDefaultAttributes(APPD& ppd) {
  std::vector<AQVString> names;
  ForEachGroup(ppd.GetGroups(), [&names](IPPDGroup* group) {
    for (const IPPDOption* option : group->GetOptions()) names.push_back("Default" + option->GetID());
  });
  if (ppd.GetOptionWithID(kRKPPDPageSizeKeyword) != nullptr) {
    names.push_back(AQVString("Default") + kRKPPDImageableAreaSizeType);
    names.push_back(AQVString("Default") + kRKPPDPaperDimensionSizeType);
  }
  for (const AQVString& name : names) ppd.RemoveAttributesWithNameAndSpec(name, nullptr);
}

void APPDReader::PostprocessCustomPaperSizes(APPD& ppd) {
  bool customPageSize = false;
  for (const AQVString& name : ppd.GetAttributeNames()) {
    if (name.ByteLength() <= 6 || !name.StartsWith(kCustomChoice)) continue;
    const AQVString trueSpec("True");
    std::vector<IPPDAttribute*> attributes;
    ppd.GetAttributesWithNameAndSpec(name, &trueSpec, attributes);
    if (attributes.empty()) continue;
    if (name == kCustomPageSizeKeyword) {
      customPageSize = true;
      continue;
    }
    if (IPPDOption* option = FindOption(ppd, name.GetSubString(6))) option->RemoveChoiceWithID(kCustomChoice);
  }
  for (const IPPDAttribute* attribute : AttributesNamed(ppd, kVariablePaperSizeKeyword)) {
    if (attribute->GetValue() == "True") customPageSize = true;
  }
  if (customPageSize) {
    for (const char* id : {kRKPPDPageSizeKeyword, kRKPPDPageRegionKeyword}) {
      if (IPPDOption* option = FindOption(ppd, id)) option->RemoveChoiceWithID(kCustomChoice);
    }
    if (const IPPDPaperSize* size = ppd.GetPaperSizeWithID(kCustomChoice)) {
      const ARKMediaSizeRect paper = size->GetPaperSizeRect();
      if (paper.bottom == 0 && paper.right == 0) ppd.RemovePaperSizeWithID(kCustomChoice);
    }
  }
  if (!ppd.GetPaperSizes().empty() && ppd.GetGroupWithID(kRKPPDGeneralGroupName) == nullptr) {
    AScopedRef<IPPDGroup> general(IPPDGroup::Create(kRKPPDGeneralGroupName, kRKPPDGeneralGroupName, {}, {}, AQVString()));
    if (general) ppd.AddGroup(general.get(), false);
  }
}

void APPDReader::FillPaperSizeNames(APPD& ppd) {
  const IPPDOption* pageSize = ppd.GetOptionWithID(kRKPPDPageSizeKeyword);
  if (pageSize == nullptr) return;
  for (IPPDPaperSize* paperSize : ppd.GetPaperSizes()) {
    if (!paperSize->GetName().IsEmpty()) continue;
    if (const IPPDChoice* choice = pageSize->GetChoiceWithID(paperSize->GetID())) {
      paperSize->SetName(choice->GetName());
    }
  }
}

void APPDReader::FillLocalizationCaches(APPD& ppd) { LocalizationFiller(ppd).Run(); }

void APPDReader::ObtainConstraintsFromAttributes(APPD& ppd) {
  for (const char* keyword : {"UIConstraints", "NonUIConstraints", "cupsUIConstraints"}) {
    const std::vector<IPPDAttribute*> attributes = AttributesNamed(ppd, keyword);
    if (attributes.empty()) continue;
    const bool cups = std::strcmp(keyword, "cupsUIConstraints") == 0;
    std::vector<IPPDAttribute*> kept;
    for (IPPDAttribute* attribute : attributes) {
      AArray options;
      AArray choices;
      const bool parsed =
          ParseConstraintValue(attribute->GetValue(), options, choices) && (cups || options.Count() == 2);
      AScopedRef<IPPDConstraint> constraint(
          parsed ? IPPDConstraint::Create(options, choices, cups ? attribute->GetSpec() : AQVString(),
                                          cups, std::strcmp(keyword, "NonUIConstraints") == 0,
                                          AQVString())
                 : nullptr);
      if (!constraint || ppd.AddConstraint(constraint.get(), false) == nullptr) kept.push_back(attribute);
    }
    ReplaceAttributes(ppd, keyword, kept);
  }
  MergeMirroredConstraints(ppd);
}

void APPDReader::ChooseLanguageEncoding(APPD& ppd) {
  AError error;
  const AQVString text = ppd.GetStringRepresentation(&error);
  if (error.code != 0 || !HasNonASCIIBaseText(text.UTF8())) return;
  const std::vector<IPPDAttribute*> encodings = AttributesNamed(ppd, kLanguageEncodingKeyword);
  if (encodings.empty()) {
    ppd.AddAttribute(kLanguageEncodingKeyword, "UTF-8", AQVString(), AQVString(), kPPDStringValue, AQVString());
    return;
  }
  for (IPPDAttribute* encoding : encodings) encoding->SetValue("UTF-8");
}

bool APPDReader::HasNonASCIIBaseText(const std::string& text) {
  bool inQuotedValue = false;
  bool baseStatement = true;
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t end = text.find('\n', start);
    if (end == std::string::npos) end = text.size();
    const std::string_view line(text.data() + start, end - start);
    start = end + 1;
    if (inQuotedValue) {
      if (line.find('"') != std::string_view::npos) inQuotedValue = false;
    } else if (line.size() > 1 && line[0] == '*' && line[1] != '%') {
      baseStatement = !IsTranslationLine(line);
      const std::size_t colon = line.find(':');
      if (colon != std::string_view::npos) {
        std::string_view value = line.substr(colon + 1);
        while (!value.empty() && (value.front() == ' ' || value.front() == '\t')) value.remove_prefix(1);
        inQuotedValue = !value.empty() && value.front() == '"' && value.find('"', 1) == std::string_view::npos;
      }
    } else {
      baseStatement = true;
    }
    if (!baseStatement) continue;
    for (const char byte : line) {
      if (static_cast<unsigned char>(byte) > 126) return true;
    }
  }
  return false;
}

}  // namespace ppdforge
