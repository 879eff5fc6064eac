#pragma once
// The localizer: string tables by locale identifier, searched in load order.

#include <array>
#include <atomic>
#include <cstdint>
#include <filesystem>
#include <mutex>
#include <map>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "core/ADictionary.h"
#include "model/IPPDLocalizer.h"

namespace ppdforge {

class APPDLocalizer : public IPPDLocalizer {
 public:
  // Loads the system print framework's "Localizable" tables (absent on
  // Linux) and makes "en" current when it has tables.
  APPDLocalizer();
  APPDLocalizer(const APPDLocalizer&) = delete;
  APPDLocalizer& operator=(const APPDLocalizer&) = delete;
  ~APPDLocalizer() override = default;

  AQVString Localize(const AQVString& key, const AQVString& language) const override;
  // Finds the key once for all languages (one hash).
  void LocalizeEach(const AQVString& key, const std::vector<AQVString>& languages,
                    std::vector<AQVString>& texts) const override;
  void LoadStrings(const ABundle& bundle, const AQVString& tableName) override;
  void LoadStrings(const AQVString& bundlePath, const AQVString& tableName) override;
  AQVString GetCurrentLocaleID() const override;
  void SetCurrentLocaleID(const AQVString& language) override;
  void GetPossibleLocales(std::vector<AQVString>& localeIDs) const override;

  // Every table file of the bundle with its locale identifier, in the
  // order LoadStrings queues them.
  static std::vector<std::pair<AQVString, std::filesystem::path>> BundleTables(const ABundle& bundle,
                                                                              const AQVString& tableName);

 private:
  // A key with its hash, so that one hash serves the tables of every language.
  struct HashedKey {
    std::string_view text;
    std::size_t hash;
  };
  struct KeyHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
    std::size_t operator()(const HashedKey& key) const { return key.hash; }
  };
  struct KeyEqual {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const { return a == b; }
    bool operator()(const HashedKey& a, std::string_view b) const { return a.text == b; }
    bool operator()(std::string_view a, const HashedKey& b) const { return a == b.text; }
  };
  using Index = std::unordered_map<std::string_view, const AQVString*, KeyHash, KeyEqual>;

  // The tables of one locale. Files are read when the locale is first
  // asked for (a generation in English never reads the other languages);
  // `index` maps every key to the text of the first table that holds it.
  struct Locale {
    // Held while the pending tables are read, so that threads rendering
    // at once read each file once and different languages side by side.
    std::mutex reading;
    std::vector<std::filesystem::path> pending;
    std::vector<std::vector<std::pair<AQVString, AQVString>>> tables;
    Index index;
  };
  // The text of `key` in `locale` (null: none), or null when Localize
  // would give the key itself.
  static const AQVString* Find(const Locale* locale, const HashedKey& key);
  using TableMap = std::map<AQVString, Locale>;

  void Initialize();
  // The file of table `tableName` (empty: "Localizable") of type "strings"
  // in `localizationName`; it may not exist.
  static std::filesystem::path GetLocalizedResourceURL(const ABundle& bundle,
                                                       const AQVString& tableName,
                                                       const AQVString& localizationName);
  // Queues the table file `url` for `localeID`, behind its earlier tables;
  // it is read on first use.
  void AddLocalizationToTable(const AQVString& localeID, const std::filesystem::path& url);
  // Reads the queued tables of `locale`; files that cannot be read or are
  // not string tables are dropped.
  static void ReadPending(Locale& locale);
  // The entry of a locale identifier when it holds at least one table.
  TableMap::iterator FindLoaded(const AQVString& localeID) const;
  // The tables for `language` (a name or an identifier), or null; answers
  // are remembered per language text until tables are added.
  const Locale* LocaleFor(const AQVString& language) const;

  // Reading tables on first use changes them from const operations. Localize
  // may run on several threads at once (a document renders its parts in
  // parallel); loading tables and changing the current locale may not.
  mutable TableMap tables_;
  // The current entry of tables_, or end() for none (map iterators stay
  // valid while entries are added).
  TableMap::const_iterator current_;
  // Answers of LocaleFor: entries below the count are complete and never
  // change until tables are added, so readers scan them without a lock;
  // new entries are written under `mutex_` and published by the count.
  static constexpr std::size_t kRecentLanguages = 16;
  // Language names are short: up to eight bytes compare as one word.
  struct LanguageTag {
    std::uint64_t head = 0;
    std::size_t size = 0;
    bool operator==(const LanguageTag&) const = default;
  };
  static LanguageTag TagOf(const AQVString& language);
  struct RecentLanguage {
    AQVString language;
    LanguageTag tag;
    const Locale* locale = nullptr;
  };
  mutable std::array<RecentLanguage, kRecentLanguages> recentLanguages_;
  mutable std::atomic<std::size_t> recentCount_{0};
  mutable std::mutex mutex_;
};

}  // namespace ppdforge
