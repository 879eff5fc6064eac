#include "model/APPDLocalizable.h"

#include <vector>

#include "model/IPPDLocalizer.h"

namespace ppdforge {

void APPDLocalizable::SetLocalizedString(const AQVString& text, const AQVString& localeID) {
  localizations_[localeID] = text;
}

AQVString APPDLocalizable::GetLocalizedString(const AQVString& language) const {
  // This runs for every object and language of a document: the list of keys
  // reuses one buffer per thread (a nested call simply makes its own).
  thread_local std::vector<AQVString> spare;
  struct Borrowed {
    std::vector<AQVString> keys;
    explicit Borrowed(std::vector<AQVString>& from) { keys.swap(from); }
    ~Borrowed() {
      if (spare.capacity() < keys.capacity()) spare.swap(keys);
    }
  } borrowed(spare);
  std::vector<AQVString>& keys = borrowed.keys;
  GetLocalizationKeys(keys);
  const IPPDLocalizer* localizer = GetLocalizer();
  if (localizer == nullptr) {
    if (keys.size() == 1) return keys.front();
    AQVString result;
    for (const AQVString& key : keys) result += key;
    return result;
  }

  // Explicit translations are rare; the locale identifier is needed only for them.
  const auto explicitText =
      localizations_.empty() ? localizations_.end() : localizations_.find(IPPDLocalizer::GetLocaleID(language));
  if (keys.size() == 1) {
    return explicitText != localizations_.end() ? explicitText->second
                                                : localizer->Localize(keys.front(), language);
  }
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
