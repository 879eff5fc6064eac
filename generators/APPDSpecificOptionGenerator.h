#pragma once
// Common ground of the option generators whose values, codes, defaults or
// applicability come from fixed product settings and features: lookups in
// the product, and the one checked way of filling a "choice-generic-code".
// Not registered; the concrete generators derive from it.

#include <optional>
#include <vector>

#include "core/AFormatter.h"
#include "generators/APPDGenericOptionGenerator.h"

namespace ppdforge {

class APPDSpecificOptionGenerator : public APPDGenericOptionGenerator {
 protected:
  // The product setting `name` (a copy), or nothing when there is no engine,
  // no product or no such setting.
  std::optional<ADictionary> GetProductSetting(const AQVString& name) const;
  // The "values" of the product setting `name`, or nothing.
  std::optional<AArray> GetProductSettingValues(const AQVString& name) const;
  // The product feature `key` read as a boolean; unknown features are false.
  bool IsProductFeatureOn(const AQVString& key) const;
  // The product's CUPS version (0x120 is 1.2.0); 0 when unknown.
  long GetCUPSVersion() const;

  // The entry's "choice-generic-code" filled with `arguments`. Returned
  // unchanged when it is empty, when `option` is null, or when `needsValue`
  // and `value` is null. Nothing, with a code 1 error naming the choice and
  // the option, when the text does not fit the arguments.
  std::optional<AQVString> FormatChoiceGenericCode(
      const IPPDOption* option, const ADictionary* value, const AQVString& codeName,
      const std::vector<AFormatter::Argument>& arguments, bool needsValue, AError* error) const;
  // FormatChoiceGenericCode with two strings: the option's keyword and the
  // choice's keyword `codeName`.
  std::optional<AQVString> FormatChoiceGenericCodeWithKeywords(const IPPDOption* option,
                                                               const ADictionary* value,
                                                               const AQVString& codeName,
                                                               AError* error) const;
  // Adds the "PDFPreFilterAttributes" of the product setting named like
  // `option` to the document; true when there are none. Fails as
  // AddAttributesFromArray does.
  bool AddPreFilterAttributesOfOption(const IPPDOption* option, AError* error) const;

  // The integer under `key` of `value`; 0 when `value` is null or lacks it.
  static long long IntegerIn(const ADictionary* value, const AQVString& key);
  // Whether some dictionary of `values` has the "name" `name` (exactly).
  static bool HasValueNamed(const AArray& values, const AQVString& name);
};

}  // namespace ppdforge
