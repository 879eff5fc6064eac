#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/ADictionary.h"
#include "generators/colorprofiles/AICCProfilesGenerator.h"
#include "model/IPPD.h"
#include "support/GeneratorTestSupport.h"

namespace ppdforge {
namespace {

using testing::Dict;

ADictionary Profile(const char* name, const char* userName, const char* path) {
  return Dict({{"name", name}, {"userName", userName}, {"path", path}});
}

class ColorProfilesTest : public testing::GeneratorTestSupport {
 protected:
  void SetUp() override {
    ASSERT_TRUE(StartEngine(
        testing::ProductRoot(AArray{testing::MediaSize("Letter", "Letter", 612, 792, 18)})));
  }

  void SetProfiles(const AArray& profiles) { Root().Set("colorProfiles", profiles); }
  void SetCustomColorMatching(const AValue& value) {
    Root().Set("features", Dict({{"supportsCustomColorMatching", value}}));
  }

  // Runs the attributes generator as the engine does; false when not applicable.
  bool Run(const ADictionary& description = {}, AError* error = nullptr) {
    return RunGenerator("APPDICCProfilesAttributesGenerator", description, error).generated;
  }

  // The lines of every attribute named `name`, with their value types.
  std::vector<std::string> LinesOf(const char* name) const {
    std::vector<IPPDAttribute*> attributes;
    Doc()->GetAttributesWithNameAndSpec(name, nullptr, attributes);
    std::vector<std::string> lines;
    for (const IPPDAttribute* attribute : attributes) {
      AError error;
      lines.push_back(attribute->GetStringRepresentation(&error).UTF8() + " (type " +
                      std::to_string(attribute->GetValueType()) + ")" + error.message.UTF8());
    }
    return lines;
  }
};

using Lines = std::vector<std::string>;

TEST_F(ColorProfilesTest, OneICCProfileAttributePerProfileWithEmptyQualifiers) {
  ADictionary plain = Profile("Plain", "Plain Paper", "/usr/share/color/icc/plain.icc");
  plain.Set("colorModel", "RGB");
  plain.Set("mediaType", "Plain");
  ADictionary photo = Profile("Photo", "Photo Paper", "/usr/share/color/icc/photo.icc");
  photo.Set("resolution", "1200dpi");
  SetProfiles(AArray{plain, photo, Profile("Any", "Any Paper", "/usr/share/color/icc/any.icc")});
  SetCustomColorMatching(false);
  ASSERT_TRUE(Run());
  EXPECT_EQ(LinesOf("cupsICCProfile"),
            (Lines{"*cupsICCProfile RGB.Plain./Plain Paper: \"/usr/share/color/icc/plain.icc\" (type 1)",
                   "*cupsICCProfile ..1200dpi/Photo Paper: \"/usr/share/color/icc/photo.icc\" (type 1)",
                   "*cupsICCProfile ../Any Paper: \"/usr/share/color/icc/any.icc\" (type 1)"}));
  EXPECT_TRUE(LinesOf("APSupportsCustomColorMatching").empty());
  EXPECT_TRUE(LinesOf("APCustomColorMatchingProfile").empty());
}

TEST_F(ColorProfilesTest, CustomColorMatchingNamesTheMarkedProfile) {
  ADictionary photo = Profile("Photo", "Photo Paper", "/p/photo.icc");
  photo.Set("default", true);
  SetProfiles(AArray{Profile("Plain", "Plain Paper", "/p/plain.icc"), photo});
  SetCustomColorMatching(true);
  ASSERT_TRUE(Run());
  EXPECT_EQ(LinesOf("APSupportsCustomColorMatching"),
            (Lines{"*APSupportsCustomColorMatching: true (type 3)"}));
  EXPECT_EQ(LinesOf("APCustomColorMatchingProfile"),
            (Lines{"*APCustomColorMatchingProfile: Photo (type 3)"}));
}

TEST_F(ColorProfilesTest, CustomColorMatchingFallsBackOnTheFirstProfile) {
  ADictionary photo = Profile("Photo", "Photo Paper", "/p/photo.icc");
  photo.Set("default", false);
  SetProfiles(AArray{Profile("Plain", "Plain Paper", "/p/plain.icc"), photo});
  SetCustomColorMatching(true);
  ASSERT_TRUE(Run());
  EXPECT_EQ(LinesOf("APCustomColorMatchingProfile"),
            (Lines{"*APCustomColorMatchingProfile: Plain (type 3)"}));
}

TEST_F(ColorProfilesTest, ALaterProfileWithTheSameNameReplacesTheEarlierInPlace) {
  ADictionary plainAgain = Profile("Plain", "Plain Paper 2", "/p/plain2.icc");
  plainAgain.Set("default", true);
  SetProfiles(AArray{Profile("Plain", "Plain Paper", "/p/plain.icc"),
                     Profile("Photo", "Photo Paper", "/p/photo.icc"), plainAgain});
  SetCustomColorMatching(true);
  ASSERT_TRUE(Run());
  EXPECT_EQ(LinesOf("cupsICCProfile"),
            (Lines{"*cupsICCProfile ../Plain Paper 2: \"/p/plain2.icc\" (type 1)",
                   "*cupsICCProfile ../Photo Paper: \"/p/photo.icc\" (type 1)"}));
  EXPECT_EQ(LinesOf("APCustomColorMatchingProfile"),
            (Lines{"*APCustomColorMatchingProfile: Plain (type 3)"}));
}

TEST_F(ColorProfilesTest, NoProfilesWriteNothing) {
  SetCustomColorMatching(true);
  EXPECT_FALSE(Run());
  SetProfiles(AArray());
  EXPECT_FALSE(Run());
  EXPECT_TRUE(LinesOf("cupsICCProfile").empty());
  EXPECT_TRUE(LinesOf("APSupportsCustomColorMatching").empty());
  EXPECT_TRUE(LinesOf("APCustomColorMatchingProfile").empty());
}

TEST_F(ColorProfilesTest, TheEntryCommentGoesOnTheFirstAttributeOnly) {
  SetProfiles(AArray{Profile("Plain", "Plain Paper", "/p/plain.icc"),
                     Profile("Photo", "Photo Paper", "/p/photo.icc")});
  ASSERT_TRUE(Run(Dict({{"comment", "Colour profiles"}})));
  EXPECT_EQ(LinesOf("cupsICCProfile"),
            (Lines{"*% Colour profiles\n*cupsICCProfile ../Plain Paper: \"/p/plain.icc\" (type 1)",
                   "*cupsICCProfile ../Photo Paper: \"/p/photo.icc\" (type 1)"}));
}

TEST_F(ColorProfilesTest, MalformedEntriesArePassedOver) {
  // The product loader reports these; a product that slips them through
  // still writes no attribute without a name or a file.
  SetProfiles(AArray{Profile("", "No Name", "/p/x.icc"), Profile("Plain", "Plain", ""),
                     AValue("not a dictionary")});
  EXPECT_FALSE(Run());
  EXPECT_TRUE(LinesOf("cupsICCProfile").empty());
}

TEST_F(ColorProfilesTest, ProfilesGeneratorOffersNameAndUserNameValues) {
  SetProfiles(AArray{Profile("Plain", "Plain Paper", "/p/plain.icc"),
                     Dict({{"name", "Bare"}, {"path", "/p/bare.icc"}}),
                     Dict({{"name", "NoPath"}})});
  AICCProfilesGenerator profiles;
  profiles.Initialize(Engine());
  ASSERT_EQ(profiles.GetProfiles().size(), 2u);
  EXPECT_EQ(profiles.GetProfileValues(),
            (AArray{Dict({{"name", "Plain"}, {"userName", "Plain Paper"}}),
                    Dict({{"name", "Bare"}, {"userName", "Bare"}})}));
  profiles.Initialize(nullptr);
  EXPECT_TRUE(profiles.GetProfiles().empty());
  EXPECT_EQ(profiles.GetDefaultProfile(), nullptr);
}

// Through the engine: the attributes come in the attributes phase, the
// option in the options phase, and both agree on the profiles.
TEST_F(ColorProfilesTest, AttributesAndOptionFromOneProductDescription) {
  ADictionary photo = Profile("Photo", "Photo Paper", "/p/photo.icc");
  photo.Set("colorModel", "RGB");
  photo.Set("default", true);
  SetProfiles(AArray{Profile("Plain", "Plain Paper", "/p/plain.icc"), photo});
  SetCustomColorMatching(true);
  Root().Set("attributesGenerationInfo",
             AArray{Dict({{"generator", "APPDICCProfilesAttributesGenerator"}})});
  Root().Set("optionsGenerationInfo", AArray{Dict({{"generator", "APPDICCProfileOptionGenerator"},
                                                   {"code-name", "ColorProfile"},
                                                   {"user-name", "Color Profile"}})});
  ASSERT_TRUE(RunEngine());
  EXPECT_EQ(LinesOf("cupsICCProfile"),
            (Lines{"*cupsICCProfile ../Plain Paper: \"/p/plain.icc\" (type 1)",
                   "*cupsICCProfile RGB../Photo Paper: \"/p/photo.icc\" (type 1)"}));
  EXPECT_EQ(LinesOf("APCustomColorMatchingProfile"),
            (Lines{"*APCustomColorMatchingProfile: Photo (type 3)"}));
  const IPPDOption* option = Doc()->GetOptionWithID("ColorProfile");
  ASSERT_NE(option, nullptr);
  ASSERT_EQ(option->GetChoices().size(), 3u);
  EXPECT_EQ(option->GetChoices()[0]->GetID(), "Plain");
  EXPECT_EQ(option->GetChoices()[1]->GetID(), "Photo");
  EXPECT_EQ(option->GetChoices()[2]->GetID(), "None");
  EXPECT_EQ(option->GetDefaultChoice(), "None");
}

}  // namespace
}  // namespace ppdforge
