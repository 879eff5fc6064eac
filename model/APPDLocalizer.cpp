#include "model/APPDLocalizer.h"

#include <array>
#include <fstream>
#include <iterator>
#include <mutex>
#include <optional>
#include <shared_mutex>
#include <string>
#include <system_error>
#include <unordered_map>

#include "core/ALocale.h"
#include "core/ASharedObject.h"
#include "core/AStringsTable.h"

namespace ppdforge {

namespace {

// The languages for which the platform's locale names are not used; row i of
// one table corresponds to row i of the other.
constexpr std::array<const char*, 2> kRKPPDAdditionalLocalizationNames = {"Chinese_Simplified",
                                                                          "Chinese_Traditional"};
constexpr std::array<const char*, 2> kRKPPDAdditionalLocaleIDs = {"zh_CN", "zh_TW"};

constexpr const char* kDefaultLocaleID = "en";
constexpr const char* kDefaultLocalizationName = "English";
constexpr const char* kDefaultTableName = "Localizable";
constexpr const char* kStringsType = "strings";

// Locale names are asked for every object and language while a document is
// written, possibly on several threads; the platform's answers are kept.
class NameCache {
 public:
  template <class Compute>
  AQVString Get(const AQVString& key, Compute compute) {
    {
      std::shared_lock lock(mutex_);
      const auto found = entries_.find(key.UTF8());
      if (found != entries_.end()) return found->second;
    }
    AQVString value = compute(key);
    std::unique_lock lock(mutex_);
    // Names come from a handful of languages; the bound only guards against
    // a caller that feeds arbitrary text.
    if (entries_.size() < kMaxEntries) entries_.emplace(key.UTF8(), value);
    return value;
  }

 private:
  static constexpr std::size_t kMaxEntries = 4096;
  std::shared_mutex mutex_;
  std::unordered_map<std::string, AQVString> entries_;
};

AQVString ComputeLocaleID(const AQVString& language) {
  for (std::size_t i = 0; i < kRKPPDAdditionalLocalizationNames.size(); ++i) {
    if (language == kRKPPDAdditionalLocalizationNames[i]) return kRKPPDAdditionalLocaleIDs[i];
  }
  const std::optional<AQVString> canonical = ALocale::CanonicalLocaleIdentifier(language);
  if (!canonical || canonical->IsEmpty()) return kDefaultLocaleID;
  return *canonical;
}

AQVString ComputeLocalizationName(const AQVString& localeID) {
  for (std::size_t i = 0; i < kRKPPDAdditionalLocaleIDs.size(); ++i) {
    if (localeID == kRKPPDAdditionalLocaleIDs[i]) return kRKPPDAdditionalLocalizationNames[i];
  }
  const std::optional<AQVString> name = ALocale::EnglishDisplayName(localeID);
  if (!name || name->IsEmpty()) return kDefaultLocalizationName;
  return *name;
}

std::optional<std::string> ReadFile(const std::filesystem::path& path) {
  std::ifstream stream(path, std::ios::binary);
  if (!stream) return std::nullopt;
  std::string bytes((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
  if (stream.bad()) return std::nullopt;
  return bytes;
}

bool IsFile(const std::filesystem::path& path) {
  std::error_code code;
  return std::filesystem::is_regular_file(path, code);
}

AQVString TableNameOrDefault(const AQVString& tableName) {
  return tableName.IsEmpty() ? AQVString(kDefaultTableName) : tableName;
}

std::filesystem::path UnlocalizedResource(const ABundle& bundle, const AQVString& tableName) {
  return bundle.GetResourcesPath() /
         (TableNameOrDefault(tableName).UTF8() + "." + kStringsType);
}

}  // namespace

IPPDLocalizer* IPPDLocalizer::Create() { return CreateSharedObject<APPDLocalizer>(); }

AQVString IPPDLocalizer::GetLocaleID(const AQVString& language) {
  static NameCache cache;
  return cache.Get(language, ComputeLocaleID);
}

AQVString IPPDLocalizer::GetLocalizationName(const AQVString& localeID) {
  static NameCache cache;
  return cache.Get(localeID, ComputeLocalizationName);
}

APPDLocalizer::APPDLocalizer() : current_(tables_.end()) { Initialize(); }

void APPDLocalizer::Initialize() {
  LoadStrings(AQVString(kRKPPDPrintCoreBundlePath), AQVString());
  SetCurrentLocaleID(kDefaultLocaleID);
}

AQVString APPDLocalizer::Localize(const AQVString& key, const AQVString& language) const {
  const AQVString localeID = GetLocaleID(language.IsEmpty() ? GetCurrentLocaleID() : language);
  const auto entry = tables_.find(localeID);
  if (entry == tables_.end()) return key;
  for (const ADictionary& table : entry->second) {
    const AValue* text = table.Get(key);
    if (text == nullptr) continue;
    const AQVString* string = text->AsString();
    if (string == nullptr || string->IsEmpty()) return key;
    return *string;
  }
  return key;
}

void APPDLocalizer::LoadStrings(const ABundle& bundle, const AQVString& tableName) {
  const std::vector<AQVString> localizations = bundle.GetLocalizationNames();
  if (localizations.empty()) {
    std::filesystem::path url =
        GetLocalizedResourceURL(bundle, tableName, AQVString(kDefaultLocaleID));
    // Without localization folders the table lies in the resources folder
    // itself, where a bundle lookup finds it as well.
    if (!IsFile(url)) url = UnlocalizedResource(bundle, tableName);
    if (IsFile(url)) AddLocalizationToTable(AQVString(kDefaultLocaleID), url);
    return;
  }
  for (const AQVString& localization : localizations) {
    const AQVString localeID = GetLocaleID(localization);
    const std::filesystem::path url = GetLocalizedResourceURL(bundle, tableName, localization);
    if (IsFile(url)) AddLocalizationToTable(localeID, url);
  }
}

void APPDLocalizer::LoadStrings(const AQVString& bundlePath, const AQVString& tableName) {
  if (bundlePath.IsEmpty()) return;
  if (const std::optional<ABundle> bundle = ABundle::Open(std::filesystem::path(bundlePath.UTF8()))) {
    LoadStrings(*bundle, tableName);
  }
}

AQVString APPDLocalizer::GetCurrentLocaleID() const {
  return current_ == tables_.end() ? AQVString() : current_->first;
}

void APPDLocalizer::SetCurrentLocaleID(const AQVString& language) {
  current_ = tables_.find(GetLocaleID(language));
  if (current_ == tables_.end()) current_ = tables_.find(AQVString(kDefaultLocaleID));
}

void APPDLocalizer::GetPossibleLocales(std::vector<AQVString>& localeIDs) const {
  localeIDs.clear();
  localeIDs.reserve(tables_.size());
  for (const auto& entry : tables_) localeIDs.push_back(entry.first);
}

std::filesystem::path APPDLocalizer::GetLocalizedResourceURL(const ABundle& bundle,
                                                             const AQVString& tableName,
                                                             const AQVString& localizationName) {
  return bundle.GetResourceForLocalization(TableNameOrDefault(tableName), AQVString(kStringsType),
                                           localizationName);
}

bool APPDLocalizer::AddLocalizationToTable(const AQVString& localeID,
                                           const std::filesystem::path& url) {
  const std::optional<std::string> bytes = ReadFile(url);
  if (!bytes) return false;
  std::optional<ADictionary> table = AStringsTable::Parse(*bytes);
  if (!table) return false;
  tables_[localeID].push_back(std::move(*table));
  return true;
}

}  // namespace ppdforge
