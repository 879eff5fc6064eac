#pragma once
// Turns a localization key (a text in the PPD's main language) into its text
// in another language, from string tables loaded from bundles; and maps
// between locale identifiers ("en", "zh_CN") and localization names
// ("English", "Chinese_Simplified").

#include <cstdint>
#include <filesystem>
#include <vector>

#include "core/ABundle.h"
#include "core/AQVString.h"

namespace ppdforge {

class IPPDLocalizer {
 public:
  virtual ~IPPDLocalizer() = default;
  virtual std::int32_t Retain() = 0;
  virtual std::int32_t Release() = 0;

  // The text of `key` in `language` (empty: the current locale) from the
  // first loaded table of that language holding it with a non-empty text;
  // else the key itself.
  virtual AQVString Localize(const AQVString& key, const AQVString& language) const = 0;
  // The texts of `key` in each of `languages`, in order, as Localize gives
  // them, into `texts` (resized to match; its strings are reused). This
  // default asks Localize for each language.
  virtual void LocalizeEach(const AQVString& key, const std::vector<AQVString>& languages,
                            std::vector<AQVString>& texts) const;
  // Loads the table `tableName` (empty: "Localizable") of type "strings" of
  // every localization of the bundle. Unreadable tables are skipped silently.
  virtual void LoadStrings(const ABundle& bundle, const AQVString& tableName) = 0;
  // The same for the bundle at `bundlePath`; a path that is not a bundle does nothing.
  virtual void LoadStrings(const AQVString& bundlePath, const AQVString& tableName) = 0;
  // The current locale identifier, or empty when there is none.
  virtual AQVString GetCurrentLocaleID() const = 0;
  // Makes `language` current when tables exist for it, else "en", else none.
  virtual void SetCurrentLocaleID(const AQVString& language) = 0;
  // Every locale identifier that has tables, in ascending order.
  virtual void GetPossibleLocales(std::vector<AQVString>& localeIDs) const = 0;

  // A new localizer (count 1, owned by the caller), or null.
  static IPPDLocalizer* Create();
  // "Chinese_Simplified" gives "zh_CN", "Chinese_Traditional" "zh_TW";
  // otherwise the canonical identifier, or "en" when none can be made.
  // Thread-safe.
  static AQVString GetLocaleID(const AQVString& language);
  // "zh_CN" gives "Chinese_Simplified", "zh_TW" "Chinese_Traditional";
  // otherwise the English display name, or "English". Thread-safe.
  static AQVString GetLocalizationName(const AQVString& localeID);
};

// The system print framework's bundle, loaded first by every localizer (it
// does not exist on Linux, so nothing is loaded).
inline constexpr const char* kRKPPDPrintCoreBundlePath =
    "/System/Library/Frameworks/ApplicationServices.framework/Frameworks/PrintCore.framework";

}  // namespace ppdforge
