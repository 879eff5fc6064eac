#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <vector>

#include "core/ADictionary.h"
#include "core/ASharedObject.h"
#include "engine/IPPDObjectGenerator.h"
#include "model/IPPD.h"
#include "support/GeneratorTestSupport.h"
#include "support/PPDOracle.h"

namespace ppdforge {
namespace {

using testing::Dict;
using testing::GeneratorRun;
using testing::PPDOracle;
using testing::Setting;
using testing::SettingValue;

ADictionary ColorModel(const char* name, int order, int space, int bits) {
  ADictionary value = SettingValue(name, name);
  value.Set("cupsColorOrder", order);
  value.Set("cupsColorSpace", space);
  value.Set("cupsBitsPerColor", bits);
  return value;
}

ADictionary ThreeColorModels() {
  return Setting(AArray{ColorModel("None", 0, 0, 0), ColorModel("RGB", 0, 1, 8),
                        ColorModel("Gray", 0, 3, 8)});
}

class SpecificOptionGeneratorsTest : public testing::GeneratorTestSupport {
 protected:
  void SetUp() override {
    ADictionary root = testing::MinimalProductRoot();
    root.Set("CUPSVersion", 0x120);
    ASSERT_TRUE(StartEngine(root));
  }

  std::vector<std::string> ChoiceIDs(const char* id) const {
    std::vector<std::string> ids;
    if (const IPPDOption* option = Doc()->GetOptionWithID(id); option != nullptr) {
      for (const IPPDChoice* choice : option->GetChoices()) ids.push_back(choice->GetID().UTF8());
    }
    return ids;
  }

  std::string DefaultChoice(const char* id) const {
    const IPPDOption* option = Doc()->GetOptionWithID(id);
    return option != nullptr ? option->GetDefaultChoice().UTF8() : "<no option>";
  }

  std::string Code(const char* option, const char* choice) const {
    const IPPDOption* held = Doc()->GetOptionWithID(option);
    const IPPDChoice* found = held != nullptr ? held->GetChoiceWithID(choice) : nullptr;
    return found != nullptr ? found->GetCode().UTF8() : "<no choice>";
  }
};

const ADictionary kColorModelEntry =
    Dict({{"generator", "APPDColorModelOptionGenerator"}, {"code-name", "ColorModel"},
          {"user-name", "Color Model"}, {"group-name", "Color"},
          {"choice-generic-code",
           "<</cupsColorOrder %d/cupsColorSpace %d/cupsBitsPerColor %d>>setpagedevice"}});

TEST_F(SpecificOptionGeneratorsTest, EachClassIsRegisteredUnderItsOwnName) {
  for (const char* name :
       {"APPDColorModelOptionGenerator", "APPDResolutionOptionGenerator",
        "APPDMediaTypeOptionGenerator", "APPDPaperSourceOptionGenerator",
        "APPDOutputModeOptionGenerator", "APPDDuplexOptionGenerator",
        "APPDGrayscaleModeOptionGenerator", "APPDInstallableOptionGenerator",
        "APPDDigitalPhotoOptionGenerator", "APPDSimpleImageEnhancementOptionGenerator",
        "APPDICCProfileOptionGenerator", "APPDICCProfilesAttributesGenerator"}) {
    AScopedRef<IPPDObjectGenerator> generator(IPPDObjectGenerator::Create(name, Engine(), nullptr));
    EXPECT_TRUE(generator) << name;
  }
  AScopedRef<IPPDObjectGenerator> helper(
      IPPDObjectGenerator::Create("APPDSpecificOptionGenerator", Engine(), nullptr));
  EXPECT_FALSE(helper);
}

TEST_F(SpecificOptionGeneratorsTest, ColorModelFromCUPS120WithoutNoneAndRGBDefault) {
  SetSetting("QVColorModel", ThreeColorModels());
  const GeneratorRun outcome = RunGenerator("APPDColorModelOptionGenerator", kColorModelEntry);
  ASSERT_TRUE(outcome.generated) << outcome.error.message.UTF8();
  EXPECT_EQ(OptionText("ColorModel"),
            "*OpenUI *ColorModel/Color Model: PickOne\n"
            "*OrderDependency: 10.0 AnySetup *ColorModel\n"
            "*DefaultColorModel: RGB\n"
            "*ColorModel RGB/RGB: \"<</cupsColorOrder 0/cupsColorSpace 1/cupsBitsPerColor "
            "8>>setpagedevice\"\n"
            "*ColorModel Gray/Gray: \"<</cupsColorOrder 0/cupsColorSpace 3/cupsBitsPerColor "
            "8>>setpagedevice\"\n"
            "*CloseUI: *ColorModel\n");
}

TEST_F(SpecificOptionGeneratorsTest, ColorModelBeforeCUPS120KeepsNone) {
  Root().Set("CUPSVersion", 0x11F);
  SetSetting("QVColorModel", ThreeColorModels());
  ASSERT_TRUE(RunGenerator("APPDColorModelOptionGenerator", kColorModelEntry).generated);
  EXPECT_EQ(ChoiceIDs("ColorModel"), (std::vector<std::string>{"None", "RGB", "Gray"}));
  EXPECT_EQ(DefaultChoice("ColorModel"), "RGB");
}

TEST_F(SpecificOptionGeneratorsTest, ColorModelRemovesOnlyTheFirstNone) {
  SetSetting("QVColorModel", Setting(AArray{ColorModel("None", 0, 0, 0), ColorModel("Gray", 0, 3, 8),
                                            ColorModel("None", 1, 1, 1)}));
  ASSERT_TRUE(RunGenerator("APPDColorModelOptionGenerator", kColorModelEntry).generated);
  EXPECT_EQ(ChoiceIDs("ColorModel"), (std::vector<std::string>{"Gray", "None"}));
  EXPECT_EQ(DefaultChoice("ColorModel"), "Gray");
  EXPECT_EQ(Code("ColorModel", "None"),
            "<</cupsColorOrder 1/cupsColorSpace 1/cupsBitsPerColor 1>>setpagedevice");
}

TEST_F(SpecificOptionGeneratorsTest, ColorModelWithoutRGBOrGrayKeepsTheGenericDefault) {
  // With "setting-name" the generic default is the setting's "defaultChoice",
  // not the first value, so a kept generic default is visible.
  SetSetting("QVColorModel",
             Setting(AArray{ColorModel("CMYK", 0, 6, 8), ColorModel("KCMY", 0, 7, 8)}, "KCMY"));
  ADictionary entry = kColorModelEntry;
  entry.Set("setting-name", "QVColorModel");
  ASSERT_TRUE(RunGenerator("APPDColorModelOptionGenerator", entry).generated);
  EXPECT_EQ(DefaultChoice("ColorModel"), "KCMY");
}

TEST_F(SpecificOptionGeneratorsTest, EmptyGenericCodeGivesEmptyCodes) {
  SetSetting("QVColorModel", ThreeColorModels());
  ADictionary entry = kColorModelEntry;
  entry.Remove("choice-generic-code");
  ASSERT_TRUE(RunGenerator("APPDColorModelOptionGenerator", entry).generated);
  EXPECT_EQ(Code("ColorModel", "RGB"), "");
  EXPECT_EQ(Code("ColorModel", "Gray"), "");
}

TEST_F(SpecificOptionGeneratorsTest, ResolutionCodeTakesHorizontalThenVertical) {
  ADictionary value = SettingValue("600x300dpi", "600 x 300 dpi");
  value.Set("horizontalResolutionValue", 600);
  value.Set("verticalResolutionValue", 300);
  SetSetting("QVResolution", Setting(AArray{value}));
  const GeneratorRun outcome =
      RunGenerator("APPDResolutionOptionGenerator",
                   Dict({{"code-name", "Resolution"},
                         {"user-name", "Resolution"},
                         {"choice-generic-code", "<</HWResolution[%d %d]>>setpagedevice"}}));
  ASSERT_TRUE(outcome.generated) << outcome.error.message.UTF8();
  EXPECT_EQ(Code("Resolution", "600x300dpi"), "<</HWResolution[600 300]>>setpagedevice");
}

TEST_F(SpecificOptionGeneratorsTest, ResolutionWithoutTheSettingIsNotMade) {
  EXPECT_FALSE(RunGenerator("APPDResolutionOptionGenerator", Dict({{"code-name", "Resolution"}}))
                   .applicable);
}

// The media type, paper source and output mode codes take the option's
// keyword, then the choice's keyword.
TEST_F(SpecificOptionGeneratorsTest, KeywordCodesTakeOptionThenChoice) {
  SetSetting("QVPaperType", Setting(AArray{SettingValue("Plain", "Plain Paper")}));
  SetSetting("QVPaperSource", Setting(AArray{SettingValue("Tray1", "Tray 1")}));
  SetSetting("QVOutputMode", Setting(AArray{SettingValue("Best", "Best Quality")}));
  const struct {
    const char* className;
    const char* option;
    const char* setting;
    const char* choice;
  } cases[] = {
      {"APPDMediaTypeOptionGenerator", "MediaType", "QVPaperType", "Plain"},
      {"APPDPaperSourceOptionGenerator", "InputSlot", "QVPaperSource", "Tray1"},
      {"APPDOutputModeOptionGenerator", "OutputMode", "QVOutputMode", "Best"},
  };
  for (const auto& c : cases) {
    const GeneratorRun outcome =
        RunGenerator(c.className, Dict({{"code-name", c.option},
                                        {"setting-name", c.setting},
                                        {"choice-generic-code", "<</%@ (%@)>>setpagedevice"}}));
    ASSERT_TRUE(outcome.generated) << c.className << ": " << outcome.error.message.UTF8();
    EXPECT_EQ(Code(c.option, c.choice),
              std::string("<</") + c.option + " (" + c.choice + ")>>setpagedevice")
        << c.className;
  }
}

TEST_F(SpecificOptionGeneratorsTest, KeywordCodesMayUsePositionalArguments) {
  SetSetting("QVPaperType", Setting(AArray{SettingValue("Glossy", "Glossy Paper")}));
  ASSERT_TRUE(RunGenerator("APPDMediaTypeOptionGenerator",
                           Dict({{"code-name", "MediaType"},
                                 {"setting-name", "QVPaperType"},
                                 {"choice-generic-code", "<</MediaType (%2$@)>>setpagedevice"}}))
                  .generated);
  EXPECT_EQ(Code("MediaType", "Glossy"), "<</MediaType (Glossy)>>setpagedevice");
}

ADictionary PaperType(const char* name, const char* quality) {
  ADictionary value = SettingValue(name, name);
  value.Set("defaultQuality", quality);
  return value;
}

const ADictionary kOutputModeEntry =
    Dict({{"code-name", "OutputMode"}, {"setting-name", "QVOutputMode"}});

TEST_F(SpecificOptionGeneratorsTest, OutputModeDefaultComesFromTheDefaultPaperType) {
  SetSetting("QVOutputMode",
             Setting(AArray{SettingValue("Draft", "Draft"), SettingValue("Normal", "Normal"),
                            SettingValue("Best", "Best")},
                     "Normal"));
  SetSetting("QVPaperType",
             Setting(AArray{PaperType("Plain", "Normal"), PaperType("Glossy", "Best")}, "Glossy"));
  ASSERT_TRUE(RunGenerator("APPDOutputModeOptionGenerator", kOutputModeEntry).generated);
  EXPECT_EQ(DefaultChoice("OutputMode"), "Best");
}

TEST_F(SpecificOptionGeneratorsTest, OutputModeDefaultIsEmptyWhenTheDefaultPaperTypeIsUnknown) {
  // Empty, not the setting's own "Normal": the option falls back on its first choice.
  SetSetting("QVOutputMode",
             Setting(AArray{SettingValue("Draft", "Draft"), SettingValue("Normal", "Normal"),
                            SettingValue("Best", "Best")},
                     "Normal"));
  SetSetting("QVPaperType", Setting(AArray{PaperType("Plain", "Best")}, "Photo"));
  ASSERT_TRUE(RunGenerator("APPDOutputModeOptionGenerator", kOutputModeEntry).generated);
  EXPECT_EQ(DefaultChoice("OutputMode"), "Draft");
}

TEST_F(SpecificOptionGeneratorsTest, DuplexIsDecidedByTheFeatureAlone) {
  SetSetting("QVDuplex", Setting(AArray{SettingValue("None", "Off"),
                                        SettingValue("DuplexNoTumble", "Long Edge")}));
  const ADictionary entry = Dict({{"code-name", "Duplex"}, {"setting-name", "QVDuplex"},
                                  {"min-value-count", 5}});
  EXPECT_FALSE(RunGenerator("APPDDuplexOptionGenerator", entry).applicable);
  SetFeature("supportsAutoDuplex", false);
  EXPECT_FALSE(RunGenerator("APPDDuplexOptionGenerator", entry).applicable);

  SetFeature("supportsAutoDuplex", true);
  const GeneratorRun outcome = RunGenerator("APPDDuplexOptionGenerator", entry);
  EXPECT_TRUE(outcome.applicable);
  EXPECT_TRUE(outcome.generated);
  EXPECT_EQ(ChoiceIDs("Duplex"), (std::vector<std::string>{"None", "DuplexNoTumble"}));
}

TEST_F(SpecificOptionGeneratorsTest, GrayscaleModeNeedsAGrayscaleColorMode) {
  SetSetting("QVGrayscaleMode", Setting(AArray{SettingValue("Black", "Black Ink"),
                                               SettingValue("Composite", "Composite")}));
  const ADictionary entry = Dict({{"code-name", "GrayscaleMode"}, {"setting-name", "QVGrayscaleMode"}});
  EXPECT_FALSE(RunGenerator("APPDGrayscaleModeOptionGenerator", entry).applicable);

  SetSetting("QVColorMode",
             Setting(AArray{SettingValue("color", "Color"), SettingValue("Grayscale", "Gray")}));
  EXPECT_FALSE(RunGenerator("APPDGrayscaleModeOptionGenerator", entry).applicable)
      << "exact comparison";

  SetSetting("QVColorMode",
             Setting(AArray{SettingValue("color", "Color"), SettingValue("grayscale", "Gray")}));
  EXPECT_TRUE(RunGenerator("APPDGrayscaleModeOptionGenerator", entry).generated);

  // The generic test still comes first.
  EXPECT_FALSE(RunGenerator("APPDGrayscaleModeOptionGenerator",
                            Dict({{"code-name", "Other"}, {"setting-name", "QVUnknown"}}))
                   .applicable);
}

TEST_F(SpecificOptionGeneratorsTest, InstallableNeedsTheSettingEnabled) {
  const ADictionary entry =
      Dict({{"code-name", "OptionalTray"}, {"setting-name", "QVOptionalTray"},
            {"group-name", "InstallableOptions"}});
  ADictionary setting =
      Setting(AArray{SettingValue("True", "Installed"), SettingValue("False", "Not Installed")});
  SetSetting("QVOptionalTray", setting);
  EXPECT_FALSE(RunGenerator("APPDInstallableOptionGenerator", entry).applicable);

  setting.Set("enabled", false);
  SetSetting("QVOptionalTray", setting);
  EXPECT_FALSE(RunGenerator("APPDInstallableOptionGenerator", entry).applicable);

  setting.Set("enabled", true);
  SetSetting("QVOptionalTray", setting);
  EXPECT_TRUE(RunGenerator("APPDInstallableOptionGenerator", entry).generated);

  setting.Set("values", AArray());
  SetSetting("QVOptionalTray", setting);
  EXPECT_FALSE(RunGenerator("APPDInstallableOptionGenerator", entry).applicable) << "generic test";
}

TEST_F(SpecificOptionGeneratorsTest, ImageEnhancementNeedsItsFeatureAndAddsPreFilterAttributes) {
  const struct {
    const char* className;
    const char* feature;
    const char* option;
  } cases[] = {
      {"APPDDigitalPhotoOptionGenerator", "supportsDigitalPhotoEnhancement", "DigitalPhoto"},
      {"APPDSimpleImageEnhancementOptionGenerator", "supportsSimpleImageEnhancement",
       "SimpleImageEnhancement"},
  };
  for (const auto& c : cases) {
    ADictionary setting = Setting(AArray{SettingValue("Off", "Off"), SettingValue("On", "On")});
    setting.Set("PDFPreFilterAttributes",
                AArray{Dict({{"name", "APPDFPreFilter"}, {"spec", c.option},
                             {"value", "/usr/libexec/prefilter"}, {"value-type", 1}}),
                       Dict({{"name", "NoValueIsSkipped"}})});
    SetSetting(c.option, setting);
    const ADictionary entry = Dict({{"code-name", c.option}, {"setting-name", c.option}});

    EXPECT_FALSE(RunGenerator(c.className, entry).applicable) << c.className;
    SetFeature(c.feature, true);
    const GeneratorRun outcome = RunGenerator(c.className, entry);
    ASSERT_TRUE(outcome.generated) << c.className << ": " << outcome.error.message.UTF8();
    EXPECT_EQ(ChoiceIDs(c.option), (std::vector<std::string>{"Off", "On"}));

    const AQVString spec(c.option);
    std::vector<IPPDAttribute*> attributes;
    Doc()->GetAttributesWithNameAndSpec("APPDFPreFilter", &spec, attributes);
    ASSERT_EQ(attributes.size(), 1u) << c.className;
    EXPECT_EQ(attributes[0]->GetValue(), "/usr/libexec/prefilter");
    EXPECT_EQ(attributes[0]->GetValueType(), kPPDQuotedValue);
    Doc()->GetAttributesWithNameAndSpec("NoValueIsSkipped", nullptr, attributes);
    EXPECT_TRUE(attributes.empty());
  }
}

TEST_F(SpecificOptionGeneratorsTest, ImageEnhancementWithoutPreFilterAttributesAddsNone) {
  SetFeature("supportsSimpleImageEnhancement", true);
  SetSetting("SimpleImageEnhancement", Setting(AArray{SettingValue("Off", "Off")}));
  const GeneratorRun outcome = RunGenerator(
      "APPDSimpleImageEnhancementOptionGenerator",
      Dict({{"code-name", "SimpleImageEnhancement"}, {"setting-name", "SimpleImageEnhancement"}}));
  EXPECT_TRUE(outcome.generated);
  EXPECT_TRUE(Doc()->GetAttributeValueWithNameAndSpec("APPDFPreFilter", nullptr).IsEmpty());
}

TEST_F(SpecificOptionGeneratorsTest, ICCProfileOptionEndsWithAutomaticAsDefault) {
  Root().Set(
      "colorProfiles",
      AArray{Dict({{"name", "Plain"}, {"userName", "Plain Paper"}, {"path", "/p/plain.icc"}}),
             Dict({{"name", "Photo"},
                   {"userName", "Photo Paper"},
                   {"path", "/p/photo.icc"},
                   {"default", true}})});
  const GeneratorRun outcome =
      RunGenerator("APPDICCProfileOptionGenerator", Dict({{"code-name", "ColorProfile"},
                                                          {"user-name", "Color Profile"},
                                                          {"group-name", "Color"}}));
  ASSERT_TRUE(outcome.generated) << outcome.error.message.UTF8();
  EXPECT_EQ(OptionText("ColorProfile"),
            "*OpenUI *ColorProfile/Color Profile: PickOne\n"
            "*OrderDependency: 10.0 AnySetup *ColorProfile\n"
            "*DefaultColorProfile: None\n"
            "*ColorProfile Plain/Plain Paper: \"\"\n"
            "*ColorProfile Photo/Photo Paper: \"\"\n"
            "*ColorProfile None/Automatic: \"\"\n"
            "*CloseUI: *ColorProfile\n");
}

TEST_F(SpecificOptionGeneratorsTest, ICCProfileOptionMovesAProfileNamedNoneToTheEnd) {
  Root().Set("colorProfiles",
             AArray{Dict({{"name", "None"}, {"userName", "Nothing"}, {"path", "/p/n.icc"}}),
                    Dict({{"name", "Photo"}, {"path", "/p/photo.icc"}})});
  ASSERT_TRUE(RunGenerator("APPDICCProfileOptionGenerator", Dict({{"code-name", "ColorProfile"}}))
                  .generated);
  EXPECT_EQ(ChoiceIDs("ColorProfile"), (std::vector<std::string>{"Photo", "None"}));
  EXPECT_EQ(Doc()->GetOptionWithID("ColorProfile")->GetChoiceWithID("None")->GetName(), "Automatic");
  EXPECT_EQ(DefaultChoice("ColorProfile"), "None");
}

TEST_F(SpecificOptionGeneratorsTest, ICCProfileOptionWithoutProfilesIsNotMade) {
  EXPECT_FALSE(RunGenerator("APPDICCProfileOptionGenerator", Dict({{"code-name", "ColorProfile"}}))
                   .applicable);
  EXPECT_EQ(Doc()->GetOptionWithID("ColorProfile"), nullptr);
}

// A description's code text never reaches memory it should not: a format
// that does not fit its arguments fails the option with a message naming it.
TEST_F(SpecificOptionGeneratorsTest, BadChoiceCodeFormatsFailWithAClearError) {
  SetSetting("QVColorModel", Setting(AArray{ColorModel("RGB", 0, 1, 8)}));
  ADictionary resolution = SettingValue("600dpi", "600 dpi");
  resolution.Set("horizontalResolutionValue", 600);
  resolution.Set("verticalResolutionValue", 600);
  SetSetting("QVResolution", Setting(AArray{resolution}));
  SetSetting("QVPaperType", Setting(AArray{SettingValue("Plain", "Plain")}));

  const struct {
    const char* className;
    const char* option;
    const char* settingName;
    const char* code;
    const char* message;
  } cases[] = {
      {"APPDColorModelOptionGenerator", "ColorModel", "", "<</cupsColorOrder %@>>setpagedevice",
       "Cannot make the code of PPD choice RGB in option ColorModel: choice-generic-code "
       "\"<</cupsColorOrder %@>>setpagedevice\" does not fit: conversion \"%@\" needs a string "
       "argument, not an integer"},
      {"APPDColorModelOptionGenerator", "ColorModel", "", "%s",
       "Cannot make the code of PPD choice RGB in option ColorModel: choice-generic-code \"%s\" "
       "does not fit: conversion \"%s\" is not allowed (a string is written with \"%@\")"},
      {"APPDResolutionOptionGenerator", "Resolution", "", "%d%n",
       "Cannot make the code of PPD choice 600dpi in option Resolution: choice-generic-code "
       "\"%d%n\" does not fit: conversion \"%n\" is not allowed"},
      {"APPDResolutionOptionGenerator", "Resolution", "", "[%d %d %d]",
       "Cannot make the code of PPD choice 600dpi in option Resolution: choice-generic-code "
       "\"[%d %d %d]\" does not fit: conversion \"%d\" needs argument 3, but 2 arguments were "
       "passed"},
      {"APPDMediaTypeOptionGenerator", "MediaType", "QVPaperType", "<</MediaType %d>>",
       "Cannot make the code of PPD choice Plain in option MediaType: choice-generic-code "
       "\"<</MediaType %d>>\" does not fit: conversion \"%d\" needs an integer "
       "argument, not a string"},
  };
  for (const auto& c : cases) {
    ADictionary entry = Dict({{"code-name", c.option}, {"choice-generic-code", c.code}});
    if (*c.settingName != '\0') entry.Set("setting-name", c.settingName);
    const GeneratorRun outcome = RunGenerator(c.className, entry);
    EXPECT_TRUE(outcome.applicable) << c.code;
    EXPECT_FALSE(outcome.generated) << c.code;
    EXPECT_EQ(outcome.error.domain, "RKPPDGeneration");
    EXPECT_EQ(outcome.error.code, 1) << c.code;
    EXPECT_EQ(outcome.error.message, c.message) << c.code;
  }
}

// A full run: the engine picks each class by its "generator" entry.
TEST_F(SpecificOptionGeneratorsTest, TheEngineRunsTheClassNamedByTheDescription) {
  SetSetting("QVColorModel", ThreeColorModels());
  SetFeature("supportsAutoDuplex", false);
  SetSetting("QVDuplex",
             Setting(AArray{SettingValue("None", "Off"), SettingValue("DuplexNoTumble", "On")}));
  Root().Set("optionsGenerationInfo",
             AArray{kColorModelEntry, Dict({{"generator", "APPDDuplexOptionGenerator"},
                                            {"code-name", "Duplex"},
                                            {"setting-name", "QVDuplex"}})});
  ASSERT_TRUE(RunEngine());
  EXPECT_EQ(ChoiceIDs("ColorModel"), (std::vector<std::string>{"RGB", "Gray"}));
  EXPECT_EQ(Doc()->GetOptionWithID("Duplex"), nullptr);
}

// The golden product uses all eleven option generators and the colour
// profiles; its PPD is compared whole with the reviewed text and checked by
// libcups and cupstestppd.
std::string GenerateGolden(std::string* problem) {
  return testing::GenerateFromProductFile(testing::GoldenFile("specific-options.plist"), {}, {},
                                          problem);
}

TEST(SpecificOptionsGoldenTest, WholeTextIsTheReviewedOne) {
  std::string problem;
  const std::string text = GenerateGolden(&problem);
  EXPECT_EQ(problem, "");
  EXPECT_EQ(text, PPDOracle::ReadFile(testing::GoldenFile("specific-options.ppd")));
}

// Filters are not installed here (-I filters); the profile files are made
// under the oracle's directory given as the root with -R, so the profiles
// check really runs.
TEST(SpecificOptionsGoldenTest, LoadsStrictlyAndPassesCupsTestPPDWithItsProfileFiles) {
  std::string problem;
  const std::string text = GenerateGolden(&problem);
  ASSERT_EQ(problem, "");
  const PPDOracle oracle;
  const std::filesystem::path ppd = oracle.WriteFile("specific-options.ppd", text);
  EXPECT_EQ(PPDOracle::LoadFile(ppd).Problem(), "");

  const std::vector<std::string> options = {"-I", "filters", "-R", oracle.Directory().string(),
                                            "-v"};
  const PPDOracle::CheckResult withoutFiles = PPDOracle::RunCupsTestPPD(ppd, options);
  EXPECT_NE(withoutFiles.exitStatus, 0) << "the profiles check must be active";
  EXPECT_NE(withoutFiles.output.find("Missing cupsICCProfile file"), std::string::npos)
      << withoutFiles.output;

  // Read-only and owned by whoever runs the test: cupstestppd checks the
  // owner only when it runs as root, which then owns them.
  for (const char* path :
       {"/usr/share/color/icc/qv/plain-rgb-v2.icc", "/usr/share/color/icc/qv/glossy-rgb.icc",
        "/usr/share/color/icc/qv/highres-rgb.icc", "/usr/share/color/icc/qv/gray.icc"}) {
    const std::filesystem::path file =
        oracle.WriteFile(std::filesystem::path(path).relative_path(), "icc");
    ::chmod(file.c_str(), 0444);
  }
  const PPDOracle::CheckResult check = PPDOracle::RunCupsTestPPD(ppd, options);
  EXPECT_EQ(check.exitStatus, 0) << check.output;
  EXPECT_EQ(check.output.find("WARN"), std::string::npos) << check.output;
}

}  // namespace
}  // namespace ppdforge
