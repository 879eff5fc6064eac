#pragma once
// Locale names through ICU, preceded by the legacy language names that
// bundles and "LanguageVersion" use ("English", "French", ...).

#include <optional>
#include <string_view>
#include <vector>

#include "core/AQVString.h"

namespace com_qv_print_driver_core_cpp_util_v1 {

class ALocale {
 public:
  // The canonical locale identifier of `text` ("English" gives "en", "en-US"
  // gives "en_US", "FR" gives "fr"); nothing when no identifier can be made.
  static std::optional<AQVString> CanonicalLocaleIdentifier(const AQVString& text);
  // The English display name of a locale identifier ("fr" gives "French",
  // "pt_BR" "Portuguese (Brazil)"); nothing when none can be had.
  static std::optional<AQVString> EnglishDisplayName(const AQVString& localeID);
  // The identifiers that CanonicalLocaleIdentifier answers from a table of
  // its own, without loading ICU: each is its own canonical form.
  static std::vector<std::string_view> KnownCanonicalIdentifiers();
};

}  // namespace com_qv_print_driver_core_cpp_util_v1

namespace ppdforge {
using com_qv_print_driver_core_cpp_util_v1::ALocale;
}
