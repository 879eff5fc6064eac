// The colour profiles of a product: their *cupsICCProfile attributes and
// custom colour matching, and the option made of them.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "generators/colorprofiles/AICCProfilesGenerator.h"
#include "model/IPPD.h"
#include "support/GeneratorTestSupport.h"

namespace ppdforge {
namespace {

using testing::Dict;

ADictionary Profile(const char* name, const char* userName, const char* path,
                    std::initializer_list<std::pair<const char*, AValue>> more = {}) {
  ADictionary profile = Dict({{"name", name}, {"userName", userName}, {"path", path}});
  for (const auto& [key, value] : more) profile.Set(key, value);
  return profile;
}

class ColorProfilesTest : public testing::GeneratorTestSupport {
 protected:
  void SetUp() override {
    ASSERT_TRUE(StartEngine(testing::ProductRoot(AArray{testing::MediaSize("L", "L", 612, 792, 18)})));
  }

  // "-" when the attributes generator does not apply; else the lines of its
  // attributes with their value types.
  std::string Outcome(const AValue& profiles, const AValue& customColorMatching, const ADictionary& description = {}) {
    Root().Set("colorProfiles", profiles);
    Root().Set("features", Dict({{"supportsCustomColorMatching", customColorMatching}}));
    if (!RunGenerator("APPDICCProfilesAttributesGenerator", description).generated) return "-";
    std::string lines;
    for (const char* name : {"cupsICCProfile", "APSupportsCustomColorMatching", "APCustomColorMatchingProfile"}) {
      std::vector<IPPDAttribute*> attributes;
      Doc()->GetAttributesWithNameAndSpec(name, nullptr, attributes);
      for (const IPPDAttribute* attribute : attributes) {
        AError error;
        lines += attribute->GetStringRepresentation(&error).UTF8() + " (type " +
                 std::to_string(attribute->GetValueType()) + ")" + error.message.UTF8() + "\n";
      }
    }
    return lines;
  }
};

TEST_F(ColorProfilesTest, AttributesOfTheProfiles) {
  // One per profile, with empty qualifiers; no custom colour matching attributes without the feature.
  EXPECT_EQ(
      Outcome(AArray{Profile("Plain", "Plain Paper", "/p/plain.icc", {{"colorModel", "RGB"}, {"mediaType", "Plain"}}),
                     Profile("Photo", "Photo Paper", "/p/photo.icc", {{"resolution", "1200dpi"}}),
                     Profile("Any", "Any Paper", "/p/any.icc")},
              false),
      "*cupsICCProfile RGB.Plain./Plain Paper: \"/p/plain.icc\" (type 1)\n"
      "*cupsICCProfile ..1200dpi/Photo Paper: \"/p/photo.icc\" (type 1)\n"
      "*cupsICCProfile ../Any Paper: \"/p/any.icc\" (type 1)\n");
  // Custom colour matching names the marked profile, else the first; the entry's comment goes on the first.
  SetUp();
  EXPECT_EQ(Outcome(AArray{Profile("Plain", "Plain Paper", "/p/plain.icc"),
                           Profile("Photo", "Photo Paper", "/p/photo.icc", {{"default", true}})},
                    true, Dict({{"comment", "Colour profiles"}})),
            "*% Colour profiles\n*cupsICCProfile ../Plain Paper: \"/p/plain.icc\" (type 1)\n"
            "*cupsICCProfile ../Photo Paper: \"/p/photo.icc\" (type 1)\n"
            "*APSupportsCustomColorMatching: true (type 3)\n*APCustomColorMatchingProfile: Photo (type 3)\n");
}

TEST_F(ColorProfilesTest, CustomColorMatchingFallsBackOnTheFirstProfile) {
  EXPECT_EQ(Outcome(AArray{Profile("Plain", "Plain Paper", "/p/plain.icc"),
                           Profile("Photo", "Photo Paper", "/p/photo.icc", {{"default", false}})},
                    true),
            "*cupsICCProfile ../Plain Paper: \"/p/plain.icc\" (type 1)\n"
            "*cupsICCProfile ../Photo Paper: \"/p/photo.icc\" (type 1)\n"
            "*APSupportsCustomColorMatching: true (type 3)\n*APCustomColorMatchingProfile: Plain (type 3)\n");
}

// A later profile of the same name replaces the earlier in place.
TEST_F(ColorProfilesTest, ALaterProfileWithTheSameNameReplacesTheEarlier) {
  EXPECT_EQ(
      Outcome(AArray{Profile("Plain", "Plain Paper", "/p/plain.icc"), Profile("Photo", "Photo Paper", "/p/photo.icc"),
                     Profile("Plain", "Plain Paper 2", "/p/plain2.icc", {{"default", true}})},
              true),
      "*cupsICCProfile ../Plain Paper 2: \"/p/plain2.icc\" (type 1)\n"
      "*cupsICCProfile ../Photo Paper: \"/p/photo.icc\" (type 1)\n"
      "*APSupportsCustomColorMatching: true (type 3)\n*APCustomColorMatchingProfile: Plain (type 3)\n");
}

// None, an empty list, or only entries without a name or a file (which the
// product loader reports) write nothing.
TEST_F(ColorProfilesTest, NoUsableProfilesWriteNothing) {
  EXPECT_EQ(Outcome(AValue(), true), "-");
  EXPECT_EQ(Outcome(AArray(), true), "-");
  EXPECT_EQ(
      Outcome(AArray{Profile("", "No Name", "/p/x.icc"), Profile("Plain", "Plain", ""), AValue("not a dictionary")},
              true),
      "-");
  std::vector<IPPDAttribute*> attributes;
  Doc()->GetAttributesWithNameAndSpec("APSupportsCustomColorMatching", nullptr, attributes);
  EXPECT_TRUE(attributes.empty());
}

TEST_F(ColorProfilesTest, ProfilesGeneratorOffersNameAndUserNameValues) {
  Root().Set("colorProfiles", AArray{Profile("Plain", "Plain Paper", "/p/plain.icc"),
                                     Dict({{"name", "Bare"}, {"path", "/p/bare.icc"}}), Dict({{"name", "NoPath"}})});
  AICCProfilesGenerator profiles;
  profiles.Initialize(Engine());
  ASSERT_EQ(profiles.GetProfiles().size(), 2u);
  EXPECT_EQ(profiles.GetProfileValues(), (AArray{Dict({{"name", "Plain"}, {"userName", "Plain Paper"}}),
                                                 Dict({{"name", "Bare"}, {"userName", "Bare"}})}));
  profiles.Initialize(nullptr);
  EXPECT_TRUE(profiles.GetProfiles().empty());
  EXPECT_EQ(profiles.GetDefaultProfile(), nullptr);
}

}  // namespace
}  // namespace ppdforge
