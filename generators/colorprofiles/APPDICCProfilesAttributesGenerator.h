#pragma once
// The colour-matching attributes of the product's colour profiles: one
// "cupsICCProfile" per profile and, when the product supports custom colour
// matching, "APSupportsCustomColorMatching" and "APCustomColorMatchingProfile".
// Each attribute goes through the generic Generate, whose getters here answer
// for the attribute being added.

#include <cstddef>
#include <vector>

#include "generators/APPDGenericAttributesGenerator.h"
#include "generators/colorprofiles/AICCProfilesGenerator.h"

namespace ppdforge {

class APPDICCProfilesAttributesGenerator : public APPDGenericAttributesGenerator {
 public:
  // The generic initialisation, then reads the product's colour profiles.
  void Initialize(IPPDGenerator* generator, const ADictionary* description) override;
  // True when the product has colour profiles.
  bool IsApplicable() const override;
  // Adds the attributes in order; the first refusal ends it with the generic
  // "Cannot add PPD attribute: ..." (code 1).
  bool Generate(AError* error) override;

  // The attribute being added; the entry's "comment" goes on the first only.
  AQVString GetAttributeName() const override;
  AQVString GetAttributeSpec() const override;
  AQVString GetAttributeText() const override;
  AQVString GetAttributeValue() const override;
  AQVString GetAttributeComment() const override;
  PPDValueType GetAttributeValueType() const override;

 private:
  struct PlannedAttribute {
    AQVString name;
    AQVString spec;
    AQVString text;
    AQVString value;
    PPDValueType type;
  };

  std::vector<PlannedAttribute> Plan() const;

  AICCProfilesGenerator profiles_;
  std::vector<PlannedAttribute> planned_;
  std::size_t current_ = 0;
};

}  // namespace ppdforge
