#include "engine/APPDObjectGenerator.h"

#include <utility>

#include "core/RKPPDMessages.h"
#include "model/RKPPDConstants.h"

namespace ppdforge {

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
