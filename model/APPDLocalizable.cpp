#include "model/APPDLocalizable.h"

#include "model/IPPDLocalizer.h"

namespace ppdforge {

void APPDLocalizable::SetLocalizedString(const AQVString& text, const AQVString& localeID) {
  localizations_[localeID] = text;
}

AQVString APPDLocalizable::GetLocalizedString(const AQVString& language) const {
  std::vector<AQVString> keys;
  GetLocalizationKeys(keys);
  const IPPDLocalizer* localizer = GetLocalizer();
  if (localizer == nullptr) {
    if (keys.size() == 1) return keys.front();
    AQVString result;
    for (const AQVString& key : keys) result += key;
    return result;
  }

  const AQVString localeID = IPPDLocalizer::GetLocaleID(language);
  const auto explicitText = localizations_.find(localeID);
  AQVString result;
  for (const AQVString& key : keys) {
    if (explicitText != localizations_.end()) {
      result += explicitText->second;
    } else {
      result += localizer->Localize(key, language);
    }
  }
  return result;
}

}  // namespace ppdforge
