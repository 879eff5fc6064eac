#include "model/APPDLocalizer.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <fstream>
#include <iterator>
#include <mutex>
#include <optional>
#include <shared_mutex>
#include <string>
#include <system_error>
#include <unordered_map>

#include "core/ALocale.h"
#include "core/APropertyList.h"
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

using Entries = std::vector<std::pair<AQVString, AQVString>>;

bool ReadTable(const std::filesystem::path& url, Entries& entries) {
  std::string bytes;
  return ReadFileBytes(url, bytes) && AStringsTable::ParseEntries(bytes, entries);
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

void IPPDLocalizer::LocalizeEach(const AQVString& key, const std::vector<AQVString>& languages,
                                 std::vector<AQVString>& texts) const {
  texts.resize(languages.size());
  for (std::size_t i = 0; i < languages.size(); ++i) texts[i] = Localize(key, languages[i]);
}

const AQVString* APPDLocalizer::Find(const Locale* locale, const HashedKey& key) {
  if (locale == nullptr) return nullptr;
  const auto found = locale->index.find(key);
  return found == locale->index.end() || found->second->IsEmpty() ? nullptr : found->second;
}

AQVString APPDLocalizer::Localize(const AQVString& key, const AQVString& language) const {
  const std::string_view text(key.UTF8());
  const AQVString* found = Find(LocaleFor(language.IsEmpty() ? GetCurrentLocaleID() : language),
                                HashedKey{text, KeyHash()(text)});
  return found == nullptr ? key : *found;
}

void APPDLocalizer::LocalizeEach(const AQVString& key, const std::vector<AQVString>& languages,
                                 std::vector<AQVString>& texts) const {
  const std::string_view text(key.UTF8());
  const HashedKey hashed{text, KeyHash()(text)};
  texts.resize(languages.size());
  for (std::size_t i = 0; i < languages.size(); ++i) {
    const AQVString& language = languages[i];
    const AQVString* found = Find(LocaleFor(language.IsEmpty() ? GetCurrentLocaleID() : language), hashed);
    texts[i] = found == nullptr ? key : *found;
  }
}

APPDLocalizer::LanguageTag APPDLocalizer::TagOf(const AQVString& language) {
  const std::string& bytes = language.UTF8();
  LanguageTag tag;
  tag.size = bytes.size();
  // Fixed-size copies stay inline; a short name is gathered byte by byte.
  if (bytes.size() >= sizeof tag.head) {
    std::memcpy(&tag.head, bytes.data(), sizeof tag.head);
  } else {
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      tag.head |= std::uint64_t{static_cast<unsigned char>(bytes[i])} << (8 * i);
    }
  }
  return tag;
}

const APPDLocalizer::Locale* APPDLocalizer::LocaleFor(const AQVString& language) const {
  // Asked once per text and language: the scan compares words, not strings.
  const LanguageTag tag = TagOf(language);
  const std::size_t published = recentCount_.load(std::memory_order_acquire);
  for (std::size_t i = 0; i < published; ++i) {
    const RecentLanguage& recent = recentLanguages_[i];
    if (recent.tag == tag && (tag.size <= sizeof tag.head || recent.language == language)) return recent.locale;
  }
  const auto entry = FindLoaded(GetLocaleID(language));
  const Locale* locale = entry == tables_.end() ? nullptr : &entry->second;
  std::lock_guard lock(mutex_);
  const std::size_t count = recentCount_.load(std::memory_order_relaxed);
  for (std::size_t i = published; i < count; ++i) {
    if (recentLanguages_[i].language == language) return locale;
  }
  // A document asks for a handful of languages; the bound keeps the scan short.
  if (count < kRecentLanguages) {
    recentLanguages_[count] = RecentLanguage{language, tag, locale};
    recentCount_.store(count + 1, std::memory_order_release);
  }
  return locale;
}

APPDLocalizer::TableMap::iterator APPDLocalizer::FindLoaded(const AQVString& localeID) const {
  const auto entry = tables_.find(localeID);
  if (entry == tables_.end()) return entry;
  ReadPending(entry->second);
  std::lock_guard lock(entry->second.reading);
  return entry->second.tables.empty() ? tables_.end() : entry;
}

void APPDLocalizer::ReadPending(Locale& locale) {
  std::lock_guard lock(locale.reading);
  if (locale.pending.empty()) return;
  for (const std::filesystem::path& url : locale.pending) {
    Entries entries;
    if (!ReadTable(url, entries)) continue;
    locale.tables.push_back(std::move(entries));
    // Earlier tables win over later ones, and within a table the last entry
    // of a key wins: the entries are indexed backwards, first come first kept.
    const auto& table = locale.tables.back();
    locale.index.reserve(locale.index.size() + table.size());
    for (auto entry = table.rbegin(); entry != table.rend(); ++entry) {
      locale.index.try_emplace(std::string_view(entry->first.UTF8()), &entry->second);
    }
  }
  locale.pending.clear();
}

std::vector<std::pair<AQVString, std::filesystem::path>> APPDLocalizer::BundleTables(const ABundle& bundle,
                                                                                     const AQVString& tableName) {
  std::vector<std::pair<AQVString, std::filesystem::path>> files;
  const std::vector<AQVString> localizations = bundle.GetLocalizationNames();
  if (localizations.empty()) {
    std::filesystem::path url =
        GetLocalizedResourceURL(bundle, tableName, AQVString(kDefaultLocaleID));
    // Without localization folders the table lies in the resources folder
    // itself, where a bundle lookup finds it as well.
    if (!IsFile(url)) url = UnlocalizedResource(bundle, tableName);
    if (IsFile(url)) files.emplace_back(AQVString(kDefaultLocaleID), std::move(url));
    return files;
  }
  for (const AQVString& localization : localizations) {
    std::filesystem::path url = GetLocalizedResourceURL(bundle, tableName, localization);
    if (IsFile(url)) files.emplace_back(GetLocaleID(localization), std::move(url));
  }
  return files;
}

void APPDLocalizer::LoadStrings(const ABundle& bundle, const AQVString& tableName) {
  for (const auto& [localeID, url] : BundleTables(bundle, tableName)) AddLocalizationToTable(localeID, url);
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
  current_ = FindLoaded(GetLocaleID(language));
  if (current_ == tables_.end()) current_ = FindLoaded(AQVString(kDefaultLocaleID));
}

void APPDLocalizer::GetPossibleLocales(std::vector<AQVString>& localeIDs) const {
  localeIDs.clear();
  localeIDs.reserve(tables_.size());
  for (auto& entry : tables_) {
    ReadPending(entry.second);
    if (!entry.second.tables.empty()) localeIDs.push_back(entry.first);
  }
}

std::filesystem::path APPDLocalizer::GetLocalizedResourceURL(const ABundle& bundle,
                                                             const AQVString& tableName,
                                                             const AQVString& localizationName) {
  return bundle.GetResourceForLocalization(TableNameOrDefault(tableName), AQVString(kStringsType),
                                           localizationName);
}

void APPDLocalizer::AddLocalizationToTable(const AQVString& localeID,
                                           const std::filesystem::path& url) {
  tables_[localeID].pending.push_back(url);
  // A language that had no tables may have some now.
  recentCount_.store(0, std::memory_order_release);
}

}  // namespace ppdforge
