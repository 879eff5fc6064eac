#include "model/APPDLocalizable.h"

#include <vector>

#include "model/IPPDLocalizer.h"

namespace ppdforge {

void APPDLocalizable::SetLocalizedString(const AQVString& text, const AQVString& localeID) {
  localizations_[localeID] = text;
}

namespace {

// The list of keys runs for every object and language of a document: it
// reuses one buffer per thread (a nested use simply makes its own).
class BorrowedKeys {
 public:
  BorrowedKeys() { keys.swap(Spare()); }
  ~BorrowedKeys() {
    if (Spare().capacity() < keys.capacity()) Spare().swap(keys);
  }
  BorrowedKeys(const BorrowedKeys&) = delete;
  BorrowedKeys& operator=(const BorrowedKeys&) = delete;

  std::vector<AQVString> keys;

 private:
  static std::vector<AQVString>& Spare() {
    thread_local std::vector<AQVString> spare;
    return spare;
  }
};

}  // namespace

AQVString APPDLocalizable::GetLocalizedString(const AQVString& language) const {
  BorrowedKeys borrowed;
  GetLocalizationKeys(borrowed.keys);
  return Localized(borrowed.keys, language);
}

void APPDLocalizable::GetLocalizedStrings(const std::vector<AQVString>& languages,
                                          std::vector<AQVString>& texts) const {
  BorrowedKeys borrowed;
  GetLocalizationKeys(borrowed.keys);
  const IPPDLocalizer* localizer = GetLocalizer();
  // The common case, one key and no explicit texts, is one lookup for all
  // languages.
  if (localizer != nullptr && borrowed.keys.size() == 1 && localizations_.empty()) {
    localizer->LocalizeEach(borrowed.keys.front(), languages, texts);
    return;
  }
  texts.resize(languages.size());
  for (std::size_t i = 0; i < languages.size(); ++i) texts[i] = Localized(borrowed.keys, languages[i]);
}

AQVString APPDLocalizable::Localized(const std::vector<AQVString>& keys, const AQVString& language) const {
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
