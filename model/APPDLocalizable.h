#pragma once
// Mixin: per-language texts of an object. Explicit translations set on the
// object win over the localizer's string tables.

#include <cstdint>
#include <map>
#include <vector>

#include "core/AQVString.h"

namespace ppdforge {

class IPPDLocalizer;

class APPDLocalizable {
 public:
  APPDLocalizable() = default;
  APPDLocalizable(const APPDLocalizable&) = default;
  APPDLocalizable& operator=(const APPDLocalizable&) = default;
  virtual ~APPDLocalizable() = default;

  // Supplied by ASharedObject for the object that carries this mixin.
  virtual std::int32_t Retain() = 0;
  virtual std::int32_t Release() = 0;

  // Stores or replaces the explicit text for the locale identifier `localeID`.
  void SetLocalizedString(const AQVString& text, const AQVString& localeID);
  // The object's text in `language` (a name or identifier): for each
  // localization key in order, the explicit text for the language's locale
  // identifier, else the localizer's, else (without a localizer) the key; all
  // appended.
  AQVString GetLocalizedString(const AQVString& language) const;
  // The texts in each of `languages`, in order, into `texts` (resized to
  // match; its strings are reused): as GetLocalizedString gives them, with
  // the keys made once.
  void GetLocalizedStrings(const std::vector<AQVString>& languages, std::vector<AQVString>& texts) const;
  // The explicit texts by locale identifier.
  const std::map<AQVString, AQVString>& GetLocalizations() const { return localizations_; }
  void ClearLocalization() { localizations_.clear(); }

  // The keys whose texts are looked up (each object says which).
  virtual void GetLocalizationKeys(std::vector<AQVString>& keys) const = 0;
  // The localizer of the object's document (borrowed), or null.
  virtual IPPDLocalizer* GetLocalizer() const = 0;

 private:
  // The text of `keys` in `language`, as GetLocalizedString describes.
  AQVString Localized(const std::vector<AQVString>& keys, const AQVString& language) const;

  std::map<AQVString, AQVString> localizations_;
};

}  // namespace ppdforge
