#include "generators/colorprofiles/APPDICCProfilesAttributesGenerator.h"

#include "engine/IPPDGenerator.h"
#include "engine/IProductInfo.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDICCProfilesAttributesGenerator);

namespace {

constexpr const char* kICCProfileKeyword = "cupsICCProfile";
constexpr const char* kSupportsCustomColorMatchingKeyword = "APSupportsCustomColorMatching";
constexpr const char* kCustomColorMatchingProfileKeyword = "APCustomColorMatchingProfile";
constexpr const char* kSupportsCustomColorMatchingFeature = "supportsCustomColorMatching";

}  // namespace

void APPDICCProfilesAttributesGenerator::Initialize(IPPDGenerator* generator,
                                                    const ADictionary* description) {
  APPDGenericAttributesGenerator::Initialize(generator, description);
  profiles_.Initialize(generator);
}

bool APPDICCProfilesAttributesGenerator::IsApplicable() const {
  return !profiles_.GetProfiles().empty();
}

std::vector<APPDICCProfilesAttributesGenerator::PlannedAttribute>
APPDICCProfilesAttributesGenerator::Plan() const {
  std::vector<PlannedAttribute> planned;
  for (const AICCProfilesGenerator::Profile& profile : profiles_.GetProfiles()) {
    planned.push_back({kICCProfileKeyword, AICCProfilesGenerator::QualifierSpec(profile),
                       profile.userName, profile.path, kPPDQuotedValue});
  }
  const IPPDGenerator* engine = GetPPDGenerator();
  const IProductInfo* product = engine != nullptr ? engine->GetPPDProductInfo() : nullptr;
  const AICCProfilesGenerator::Profile* matching = profiles_.GetDefaultProfile();
  if (matching != nullptr && product != nullptr &&
      product->ProductFeatureForKey(kSupportsCustomColorMatchingFeature).BoolValue()) {
    planned.push_back({kSupportsCustomColorMatchingKeyword, {}, {}, "true", kPPDStringValue});
    planned.push_back(
        {kCustomColorMatchingProfileKeyword, {}, {}, matching->name, kPPDStringValue});
  }
  return planned;
}

bool APPDICCProfilesAttributesGenerator::Generate(AError* error) {
  planned_ = Plan();
  for (current_ = 0; current_ < planned_.size(); ++current_) {
    if (!APPDGenericAttributesGenerator::Generate(error)) return false;
  }
  return true;
}

AQVString APPDICCProfilesAttributesGenerator::GetAttributeName() const {
  return current_ < planned_.size() ? planned_[current_].name : AQVString();
}

AQVString APPDICCProfilesAttributesGenerator::GetAttributeSpec() const {
  return current_ < planned_.size() ? planned_[current_].spec : AQVString();
}

AQVString APPDICCProfilesAttributesGenerator::GetAttributeText() const {
  return current_ < planned_.size() ? planned_[current_].text : AQVString();
}

AQVString APPDICCProfilesAttributesGenerator::GetAttributeValue() const {
  return current_ < planned_.size() ? planned_[current_].value : AQVString();
}

AQVString APPDICCProfilesAttributesGenerator::GetAttributeComment() const {
  return current_ == 0 ? APPDGenericAttributesGenerator::GetAttributeComment() : AQVString();
}

PPDValueType APPDICCProfilesAttributesGenerator::GetAttributeValueType() const {
  return current_ < planned_.size() ? planned_[current_].type : kPPDQuotedValue;
}

}  // namespace ppdforge
