#include "engine/APPDObjectGenerator.h"

#include <charconv>
#include <string>
#include <string_view>
#include <utility>

#include "core/AFormatter.h"
#include "core/RKPPDMessages.h"
#include "model/RKPPDConstants.h"

namespace ppdforge {

AQVString APPDObjectGenerator::NumberedKey(const char* format, long long number) {
  // Generators ask for these keys in loops over every numbered entry; a
  // format with one "%d" and no other conversion is filled in directly.
  const std::string_view text(format);
  const std::size_t at = text.find('%');
  if (at == std::string_view::npos || text.compare(at, 2, "%d") != 0 ||
      text.find('%', at + 2) != std::string_view::npos) {
    return AFormatter::FormatTrusted(format, {number});
  }
  char digits[24];
  const auto written = std::to_chars(digits, digits + sizeof(digits), number);
  std::string key;
  key.reserve(text.size() + 20);
  key.append(text.substr(0, at)).append(digits, written.ptr).append(text.substr(at + 2));
  return AQVString::FromTrustedUTF8(std::move(key));
}

APPDObjectGenerator::~APPDObjectGenerator() { ReleaseObject(std::exchange(generator_, nullptr)); }

void APPDObjectGenerator::Initialize(IPPDGenerator* generator, const ADictionary* description) {
  // Retain before releasing, so that initialising twice with the same engine is safe.
  if (generator != nullptr) generator->Retain();
  ReleaseObject(std::exchange(generator_, generator));
  if (description != nullptr) params_ = *description;
}

bool APPDObjectGenerator::AddAttributesFromArray(const AArray* attributes, AError* error) const {
  if (attributes == nullptr) return true;
  IPPD* ppd = generator_ != nullptr ? generator_->GetPPD() : nullptr;
  for (const AValue& element : *attributes) {
    ADictionary attribute;
    if (!element.GetDictionary(attribute)) continue;
    const AQVString name = attribute.GetString(kRKPPDGenerationAttributeNameKey);
    const AQVString value = attribute.GetString(kRKPPDGenerationAttributeValueKey);
    if (name.IsEmpty() || value.IsEmpty()) continue;
    const AQVString spec = attribute.GetString(kRKPPDGenerationAttributeSpecKey);
    const AQVString translation = attribute.GetString(kRKPPDGenerationAttributeTextKey);
    const AQVString comment = attribute.GetString(kRKPPDGenerationCommentKey);
    const AValue* valueType = attribute.Get(kRKPPDGenerationAttributeValueTypeKey);
    const PPDValueType type =
        valueType != nullptr ? static_cast<PPDValueType>(valueType->IntegerValue()) : 0;
    if (ppd == nullptr ||
        ppd->AddAttribute(name, value, spec, translation, type, comment) == nullptr) {
      return messages::Report(error, messages::kCannotAddAttributeFromArray, {name, spec, value});
    }
  }
  return true;
}

}  // namespace ppdforge
