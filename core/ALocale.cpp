#include "core/ALocale.h"

#include <unicode/uloc.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

namespace com_qv_print_driver_core_cpp_util_v1 {

namespace {

struct LegacyName {
  std::string_view name;
  std::string_view identifier;
};

// The old localization names of bundles, as the platform's locale functions
// map them; sorted by name for the binary search.
constexpr LegacyName kLegacyNames[] = {
    {"Afrikaans", "af"},
    {"Albanian", "sq"},
    {"Amharic", "am"},
    {"Arabic", "ar"},
    {"Armenian", "hy"},
    {"Assamese", "as"},
    {"Aymara", "ay"},
    {"Azerbaijani", "az"},
    {"Basque", "eu"},
    {"Belarusian", "be"},
    {"Bengali", "bn"},
    {"Brazilian Portugese", "pt_BR"},
    {"Brazilian Portuguese", "pt_BR"},
    {"Breton", "br"},
    {"Bulgarian", "bg"},
    {"Burmese", "my"},
    {"Byelorussian", "be"},
    {"Catalan", "ca"},
    {"Chewa", "ny"},
    {"Chichewa", "ny"},
    {"Chinese", "zh"},
    {"Croatian", "hr"},
    {"Czech", "cs"},
    {"Danish", "da"},
    {"Dutch", "nl"},
    {"Dzongkha", "dz"},
    {"English", "en"},
    {"Esperanto", "eo"},
    {"Estonian", "et"},
    {"Faroese", "fo"},
    {"Farsi", "fa"},
    {"Finnish", "fi"},
    {"Flemish", "nl_BE"},
    {"French", "fr"},
    {"Galician", "gl"},
    {"Gallegan", "gl"},
    {"Georgian", "ka"},
    {"German", "de"},
    {"Greek", "el"},
    {"Greenlandic", "kl"},
    {"Guarani", "gn"},
    {"Gujarati", "gu"},
    {"Hawaiian", "haw"},
    {"Hebrew", "he"},
    {"Hindi", "hi"},
    {"Hungarian", "hu"},
    {"Icelandic", "is"},
    {"Indonesian", "id"},
    {"Inuktitut", "iu"},
    {"Irish", "ga"},
    {"Italian", "it"},
    {"Japanese", "ja"},
    {"Javanese", "jv"},
    {"Kalaallisut", "kl"},
    {"Kannada", "kn"},
    {"Kashmiri", "ks"},
    {"Kazakh", "kk"},
    {"Khmer", "km"},
    {"Kinyarwanda", "rw"},
    {"Kirghiz", "ky"},
    {"Korean", "ko"},
    {"Kurdish", "ku"},
    {"Lao", "lo"},
    {"Latin", "la"},
    {"Latvian", "lv"},
    {"Lithuanian", "lt"},
    {"Macedonian", "mk"},
    {"Malagasy", "mg"},
    {"Malay", "ms"},
    {"Malayalam", "ml"},
    {"Maltese", "mt"},
    {"Manx", "gv"},
    {"Marathi", "mr"},
    {"Moldavian", "mo"},
    {"Mongolian", "mn"},
    {"Nepali", "ne"},
    {"Norwegian", "nb"},
    {"Nyanja", "ny"},
    {"Nynorsk", "nn"},
    {"Oriya", "or"},
    {"Oromo", "om"},
    {"Panjabi", "pa"},
    {"Pashto", "ps"},
    {"Persian", "fa"},
    {"Polish", "pl"},
    {"Portuguese", "pt"},
    {"Punjabi", "pa"},
    {"Pushto", "ps"},
    {"Quechua", "qu"},
    {"Romanian", "ro"},
    {"Ruanda", "rw"},
    {"Rundi", "rn"},
    {"Russian", "ru"},
    {"Sami", "se"},
    {"Sanskrit", "sa"},
    {"Scottish", "gd"},
    {"Serbian", "sr"},
    {"Simplified Chinese", "zh_Hans"},
    {"Sindhi", "sd"},
    {"Sinhalese", "si"},
    {"Slovak", "sk"},
    {"Slovenian", "sl"},
    {"Somali", "so"},
    {"Spanish", "es"},
    {"Sundanese", "su"},
    {"Swahili", "sw"},
    {"Swedish", "sv"},
    {"Tagalog", "tl"},
    {"Tajik", "tg"},
    {"Tajiki", "tg"},
    {"Tamil", "ta"},
    {"Tatar", "tt"},
    {"Telugu", "te"},
    {"Thai", "th"},
    {"Tibetan", "bo"},
    {"Tigrinya", "ti"},
    {"Tongan", "to"},
    {"Traditional Chinese", "zh_Hant"},
    {"Turkish", "tr"},
    {"Turkmen", "tk"},
    {"Uighur", "ug"},
    {"Ukrainian", "uk"},
    {"Urdu", "ur"},
    {"Uzbek", "uz"},
    {"Vietnamese", "vi"},
    {"Welsh", "cy"},
    {"Yiddish", "yi"},
};

constexpr bool IsSortedByName() {
  for (std::size_t i = 1; i < std::size(kLegacyNames); ++i) {
    if (!(kLegacyNames[i - 1].name < kLegacyNames[i].name)) return false;
  }
  return true;
}
static_assert(IsSortedByName(), "the legacy names must stay sorted");

// Identifiers that ICU gives back unchanged, answered without loading it
// (tests/core hold the table to ICU's answers); sorted for the binary search.
constexpr std::string_view kKnownCanonicalIdentifiers[] = {
    "af", "am", "ar", "ar_SA", "as", "ay", "az", "be", "bg", "bg_BG", "bn", "bo", "br", "ca",
    "ca_ES", "cs", "cs_CZ", "cy", "da", "da_DK", "de", "de_AT", "de_CH", "de_DE", "dz", "el",
    "el_GR", "en", "en_AU", "en_CA", "en_GB", "en_IE", "en_IN", "en_NZ", "en_US", "eo", "es",
    "es_419", "es_ES", "es_MX", "es_US", "et", "et_EE", "eu", "fa", "fi", "fi_FI", "fo", "fr",
    "fr_BE", "fr_CA", "fr_CH", "fr_FR", "ga", "gd", "gl", "gn", "gu", "gv", "haw", "he", "he_IL",
    "hi", "hi_IN", "hr", "hr_HR", "hu", "hu_HU", "hy", "id", "id_ID", "is", "is_IS", "it",
    "it_CH", "it_IT", "iu", "ja", "ja_JP", "jv", "ka", "kk", "kl", "km", "kn", "ko", "ko_KR",
    "ks", "ku", "ky", "la", "lo", "lt", "lt_LT", "lv", "lv_LV", "mg", "mk", "ml", "mn", "mr",
    "ms", "ms_MY", "mt", "my", "nb", "nb_NO", "ne", "nl", "nl_BE", "nl_NL", "nn", "ny", "om",
    "or", "pa", "pl", "pl_PL", "ps", "pt", "pt_BR", "pt_PT", "qu", "ro", "ro_RO", "ru", "ru_RU",
    "rw", "sa", "sd", "se", "si", "sk", "sk_SK", "sl", "sl_SI", "so", "sq", "sr", "sr_RS", "su",
    "sv", "sv_SE", "sw", "ta", "te", "tg", "th", "th_TH", "ti", "tk", "tl", "to", "tr", "tr_TR",
    "tt", "ug", "uk", "uk_UA", "ur", "uz", "vi", "vi_VN", "yi", "zh", "zh_CN", "zh_HK",
    "zh_Hans", "zh_Hant", "zh_SG", "zh_TW",
};

constexpr bool IsSortedIdentifiers() {
  for (std::size_t i = 1; i < std::size(kKnownCanonicalIdentifiers); ++i) {
    if (!(kKnownCanonicalIdentifiers[i - 1] < kKnownCanonicalIdentifiers[i])) return false;
  }
  return true;
}
static_assert(IsSortedIdentifiers(), "the known identifiers must stay sorted");

// ICU wants invariant characters and identifiers of bounded length.
constexpr std::size_t kMaxInputLength = 100;

bool IsPlausibleIdentifier(std::string_view id) {
  if (id.empty()) return false;
  const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
  if (!isLetter(id[0])) return false;
  return std::all_of(id.begin(), id.end(), [&](char c) { return isLetter(c) || (c >= '0' && c <= '9') || c == '_'; });
}

bool IsInvariantText(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) {
    const auto b = static_cast<unsigned char>(c);
    return b > 0x20 && b < 0x7F;
  });
}

std::optional<AQVString> Canonicalize(const std::string& text) {
  if (text.empty() || text.size() > kMaxInputLength) return std::nullopt;
  const auto legacy = std::lower_bound(std::begin(kLegacyNames), std::end(kLegacyNames), text,
                                       [](const LegacyName& entry, const std::string& key) { return entry.name < key; });
  if (legacy != std::end(kLegacyNames) && legacy->name == text) return AQVString(legacy->identifier);
  if (std::binary_search(std::begin(kKnownCanonicalIdentifiers), std::end(kKnownCanonicalIdentifiers),
                         std::string_view(text))) {
    return AQVString(text);
  }
  if (!IsInvariantText(text)) return std::nullopt;

  char buffer[ULOC_FULLNAME_CAPACITY + 1] = {};
  UErrorCode status = U_ZERO_ERROR;
  const int32_t length = uloc_canonicalize(text.c_str(), buffer, ULOC_FULLNAME_CAPACITY, &status);
  if (U_FAILURE(status) || status == U_STRING_NOT_TERMINATED_WARNING || length <= 0 ||
      length > ULOC_FULLNAME_CAPACITY) {
    return std::nullopt;
  }
  std::string id(buffer, static_cast<std::size_t>(length));
  std::replace(id.begin(), id.end(), '-', '_');
  if (!IsPlausibleIdentifier(id)) return std::nullopt;
  return AQVString(std::move(id));
}

std::optional<AQVString> ToUTF8(const UChar* units, int32_t length) {
  return AQVString::FromUTF16(std::u16string_view(reinterpret_cast<const char16_t*>(units), static_cast<std::size_t>(length)));
}

std::optional<AQVString> DisplayName(const std::string& id) {
  if (!IsPlausibleIdentifier(id) || id.size() > kMaxInputLength) return std::nullopt;

  // ICU echoes a language it does not know; such a name is no name.
  char language[ULOC_LANG_CAPACITY + 1] = {};
  UErrorCode status = U_ZERO_ERROR;
  const int32_t languageLength = uloc_getLanguage(id.c_str(), language, ULOC_LANG_CAPACITY, &status);
  if (U_FAILURE(status) || languageLength <= 0) return std::nullopt;
  UChar languageName[128];
  status = U_ZERO_ERROR;
  const int32_t languageNameLength = uloc_getDisplayLanguage(id.c_str(), "en", languageName, 127, &status);
  if (U_FAILURE(status) || status == U_USING_DEFAULT_WARNING || languageNameLength <= 0 ||
      languageNameLength > 127) {
    return std::nullopt;
  }
  const std::optional<AQVString> languageText = ToUTF8(languageName, languageNameLength);
  if (!languageText || languageText->UTF8() == std::string_view(language, static_cast<std::size_t>(languageLength))) {
    return std::nullopt;
  }

  UChar name[512];
  status = U_ZERO_ERROR;
  const int32_t nameLength = uloc_getDisplayName(id.c_str(), "en", name, 511, &status);
  if (U_FAILURE(status) || nameLength <= 0 || nameLength > 511) return std::nullopt;
  return ToUTF8(name, nameLength);
}

// Both answers are pure functions of their input; the tool asks them for
// every product and language, from several threads.
class Cache {
 public:
  template <class Compute>
  std::optional<AQVString> Get(std::map<std::string, std::optional<AQVString>, std::less<>>& table,
                               const std::string& key, Compute compute) {
    {
      std::lock_guard<std::mutex> lock(mutex_);
      const auto found = table.find(key);
      if (found != table.end()) return found->second;
    }
    std::optional<AQVString> result = compute(key);
    std::lock_guard<std::mutex> lock(mutex_);
    if (table.size() < kMaxEntries) table.emplace(key, result);
    return result;
  }

  std::map<std::string, std::optional<AQVString>, std::less<>> canonical;
  std::map<std::string, std::optional<AQVString>, std::less<>> display;

 private:
  static constexpr std::size_t kMaxEntries = 4096;
  std::mutex mutex_;
};

Cache& SharedCache() {
  static Cache cache;
  return cache;
}

}  // namespace

std::optional<AQVString> ALocale::CanonicalLocaleIdentifier(const AQVString& text) {
  Cache& cache = SharedCache();
  return cache.Get(cache.canonical, text.UTF8(), Canonicalize);
}

std::vector<std::string_view> ALocale::KnownCanonicalIdentifiers() {
  return {std::begin(kKnownCanonicalIdentifiers), std::end(kKnownCanonicalIdentifiers)};
}

std::optional<AQVString> ALocale::EnglishDisplayName(const AQVString& localeID) {
  Cache& cache = SharedCache();
  return cache.Get(cache.display, localeID.UTF8(), DisplayName);
}

}  // namespace com_qv_print_driver_core_cpp_util_v1
