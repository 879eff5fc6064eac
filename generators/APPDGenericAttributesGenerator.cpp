#include "generators/APPDGenericAttributesGenerator.h"

#include "core/RKPPDMessages.h"
#include "model/IPPD.h"
#include "model/RKPPDConstants.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDGenericAttributesGenerator);

bool APPDGenericAttributesGenerator::Generate(AError* error) {
  const AQVString name = GetAttributeName();
  const AQVString value = GetAttributeValue();
  const AQVString spec = GetAttributeSpec();
  const AQVString translation = GetAttributeText();
  const PPDValueType type = GetAttributeValueType();
  const AQVString comment = GetAttributeComment();
  if (AddAttribute(name, value, spec, translation, type, comment)) return true;
  if (error == nullptr) return false;
  // Asked again so that a subclass's computed values show in the message.
  return messages::Report(error, messages::kCannotAddAttribute,
                          {GetAttributeName(), GetAttributeSpec(), GetAttributeText(),
                           GetAttributeValue()});
}

bool APPDGenericAttributesGenerator::IsApplicable() const { return true; }

AQVString APPDGenericAttributesGenerator::GetAttributeName() const {
  return GetParams().GetString(kRKPPDGenerationAttributeNameKey);
}

AQVString APPDGenericAttributesGenerator::GetAttributeSpec() const {
  return GetParams().GetString(kRKPPDGenerationAttributeSpecKey);
}

AQVString APPDGenericAttributesGenerator::GetAttributeText() const {
  return GetParams().GetString(kRKPPDGenerationAttributeTextKey);
}

AQVString APPDGenericAttributesGenerator::GetAttributeValue() const {
  return GetParams().GetString(kRKPPDGenerationAttributeValueKey);
}

AQVString APPDGenericAttributesGenerator::GetAttributeComment() const {
  return GetParams().GetString(kRKPPDGenerationCommentKey);
}

PPDValueType APPDGenericAttributesGenerator::GetAttributeValueType() const {
  const AValue* valueType = GetParams().Get(kRKPPDGenerationAttributeValueTypeKey);
  if (valueType == nullptr) return kPPDQuotedValue;
  // A boolean is a number to the product's property lists, as it was to Foundation.
  if (valueType->IsNumber() || valueType->IsBoolean()) {
    return static_cast<PPDValueType>(valueType->IntegerValue());
  }
  if (const AQVString* text = valueType->AsString()) {
    return static_cast<PPDValueType>(text->IntegerValue());
  }
  return kPPDQuotedValue;
}

bool APPDGenericAttributesGenerator::AddAttribute(const AQVString& name, const AQVString& value,
                                                  const AQVString& spec,
                                                  const AQVString& translation, PPDValueType type,
                                                  const AQVString& comment) {
  IPPDGenerator* generator = GetPPDGenerator();
  IPPD* ppd = generator != nullptr ? generator->GetPPD() : nullptr;
  return ppd != nullptr &&
         ppd->AddAttribute(name, value, spec, translation, type, comment) != nullptr;
}

bool APPDGenericAttributesGenerator::AddAttribute(IPPDAttribute* attribute) {
  IPPDGenerator* generator = GetPPDGenerator();
  IPPD* ppd = generator != nullptr ? generator->GetPPD() : nullptr;
  return ppd != nullptr && ppd->AddAttribute(attribute, false) != nullptr;
}

}  // namespace ppdforge
