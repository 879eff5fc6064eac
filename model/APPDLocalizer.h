#pragma once
// The localizer: string tables by locale identifier, searched in load order.

#include <filesystem>
#include <map>
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
  void LoadStrings(const ABundle& bundle, const AQVString& tableName) override;
  void LoadStrings(const AQVString& bundlePath, const AQVString& tableName) override;
  AQVString GetCurrentLocaleID() const override;
  void SetCurrentLocaleID(const AQVString& language) override;
  void GetPossibleLocales(std::vector<AQVString>& localeIDs) const override;

 private:
  using TableMap = std::map<AQVString, std::vector<ADictionary>>;

  void Initialize();
  // The file of table `tableName` (empty: "Localizable") of type "strings"
  // in `localizationName`; it may not exist.
  static std::filesystem::path GetLocalizedResourceURL(const ABundle& bundle,
                                                       const AQVString& tableName,
                                                       const AQVString& localizationName);
  // Appends the table in `url` to the list of `localeID`; false when the file
  // cannot be read or is not a string table.
  bool AddLocalizationToTable(const AQVString& localeID, const std::filesystem::path& url);

  TableMap tables_;
  // The current entry of tables_, or end() for none (map iterators stay
  // valid while entries are added).
  TableMap::const_iterator current_;
};

}  // namespace ppdforge
