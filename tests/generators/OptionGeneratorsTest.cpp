// The generic option generator and the specific ones built on it: each row
// sets up the product, runs one description as the engine does and compares
// what the option became.

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "generators/APPDGenericOptionGenerator.h"
#include "model/IPPD.h"
#include "support/GeneratorTestSupport.h"

namespace ppdforge {
namespace {

using testing::Choice;
using testing::Dict;
using testing::Setting;
using testing::SettingValue;
using testing::ValueLabel;

ADictionary ColorModel(const char* name, int order, int space, int bits) {
  ADictionary value = SettingValue(name, name);
  value.Set("cupsColorOrder", order);
  value.Set("cupsColorSpace", space);
  value.Set("cupsBitsPerColor", bits);
  return value;
}

ADictionary ThreeColorModels() {
  return Setting(AArray{ColorModel("None", 0, 0, 0), ColorModel("RGB", 0, 1, 8), ColorModel("Gray", 0, 3, 8)});
}

ADictionary Valued(ADictionary value, const char* key, const AValue& datum) {
  value.Set(key, datum);
  return value;
}

ADictionary Settings(std::initializer_list<std::pair<const char*, AValue>> settings) {
  return Dict({{"options", Dict(settings)}});
}

class OptionGeneratorsTest : public testing::GeneratorTestSupport {
 protected:
  void SetUp() override {
    ADictionary root = testing::MinimalProductRoot();
    root.Set("CUPSVersion", 0x120);
    ASSERT_TRUE(StartEngine(root));
  }

  // Sets the product's settings ("options"), features and other root keys.
  void Apply(const ADictionary& product) {
    for (const auto& [key, value] : product) {
      ADictionary settings;
      if (key != "options" || !value.GetDictionary(settings)) Root().Set(key, value);
      for (const auto& [name, setting] : settings) {
        ADictionary dictionary;
        setting.GetDictionary(dictionary);
        SetSetting(name.CString(), dictionary);
      }
    }
  }

  // "-" when the description does not apply; else the error, if any, then
  // the option's group and its lines without the *OrderDependency and
  // *CloseUI lines every option has, and without the keyword they repeat.
  std::string Outcome(const char* className, const ADictionary& entry) const {
    AError error;
    const testing::GeneratorRun run = RunGenerator(className, entry, &error);
    if (!run.applicable) return "-";
    std::string outcome = run.generated ? "" : testing::Describe(error) + " => ";
    const std::string keyword = entry.GetString("code-name").UTF8();
    const IPPDOption* option = Doc()->GetOptionWithID(AQVString(keyword));
    if (option == nullptr) return outcome + "<no option>";
    outcome += "[" + option->GetGroup()->GetID().UTF8() + "]";
    std::istringstream lines(OptionText(keyword.c_str()));
    std::string separator = " ";
    for (std::string line; std::getline(lines, line);) {
      if (line.rfind("*OrderDependency", 0) == 0 || line.rfind("*CloseUI", 0) == 0) continue;
      for (const std::string& prefix :
           {std::string("*OpenUI *"), "*Default" + keyword + ": ", "*" + keyword + " ", std::string("*")}) {
        if (line.rfind(prefix, 0) != 0) continue;
        line = (prefix.rfind("*Default", 0) == 0 ? "default " : "") + line.substr(prefix.size());
        break;
      }
      outcome += separator + line;
      separator = "; ";
    }
    return outcome;
  }
};

struct OptionCase {
  const char* label;
  ADictionary product;
  const char* className;  // after "APPD", before "OptionGenerator"
  ADictionary entry;
  std::string outcome;
};

void PrintTo(const OptionCase& row, std::ostream* out) { *out << row.label; }

class OptionGeneratorRows : public OptionGeneratorsTest, public ::testing::WithParamInterface<OptionCase> {};

TEST_P(OptionGeneratorRows, WriteTheOption) {
  Apply(GetParam().product);
  EXPECT_EQ(Outcome(("APPD" + std::string(GetParam().className) + "OptionGenerator").c_str(), GetParam().entry),
            GetParam().outcome);
}

const ADictionary kColorModel = Dict({{"code-name", "ColorModel"},
                                      {"user-name", "Color Model"},
                                      {"group-name", "Color"},
                                      {"choice-generic-code", "%d/%d/%d"}});
const ADictionary kOutputModes = Setting(
    AArray{SettingValue("Draft", "Draft"), SettingValue("Normal", "Normal"), SettingValue("Best", "Best")}, "Normal");
const ADictionary kOffOn = Setting(AArray{SettingValue("Off", "Off"), SettingValue("On", "On")});

const ADictionary kColorModels = Settings({{"QVColorModel", ThreeColorModels()}});
const std::string kCode = "RKPPDGeneration/1: Cannot make the code of PPD choice ";

ADictionary Resolution600() {
  return Valued(Valued(SettingValue("600dpi", "600 dpi"), "horizontalResolutionValue", 600), "verticalResolutionValue",
                600);
}

ADictionary Keyed(const char* option, const char* setting, const char* code = nullptr) {
  ADictionary entry = Dict({{"code-name", option}, {"setting-name", setting}});
  if (code != nullptr) entry.Set("choice-generic-code", code);
  return entry;
}

ADictionary PaperTypes(const char* defaultChoice,
                       std::initializer_list<std::pair<const char*, const char*>> qualities) {
  AArray values;
  for (const auto& [name, quality] : qualities)
    values.Append(Valued(SettingValue(name, name), "defaultQuality", quality));
  return Setting(values, defaultChoice);
}

INSTANTIATE_TEST_SUITE_P(
    Descriptions, OptionGeneratorRows,
    ::testing::Values(
        OptionCase{
            "ExplicitChoices", ADictionary(), "Generic",
            Dict({{"code-name", "Tray"},
                  {"user-name", "Paper Source"},
                  {"group-name", "Paper"},
                  {"default-choice", "Lower"},
                  {"comment", "The trays"},
                  {"choices", AArray{Choice("Upper", "Upper Tray", "<</Tray 1>>"),
                                     Valued(Choice("Lower", "Lower Tray", "<</Tray 2>>"), "comment", "Tray 2")}}}),
            "[Paper] % The trays; Tray/Paper Source: PickOne; default Lower; Upper/Upper Tray: \"<</Tray 1>>\"; "
            "% Tray 2; Lower/Lower Tray: \"<</Tray 2>>\""},
        // Neither choices nor a setting name: the setting "", whose name is not taken.
        OptionCase{"SettingValuesOfTheEmptyName", Settings({{"", Valued(kOffOn, "userName", "Not used")}}), "Generic",
                   Dict({{"code-name", "Feature"}, {"choice-generic-code", "x"}}),
                   "[General] Feature: PickOne; default Off; Off/Off: \"x\"; On/On: \"x\""},
        // The default is still the first entry's id, whichever choice now comes first.
        OptionCase{"SameChoiceTwiceLeavesTheSecond", ADictionary(), "Generic",
                   Dict({{"code-name", "Mode"},
                         {"choices", AArray{Choice("Fast", "Fast", "1"), Choice("Best", "Best", "2"),
                                            Choice("Fast", "Faster", "3")}}}),
                   "[General] Mode: PickOne; default Fast; Best/Best: \"2\"; Fast/Faster: \"3\""},
        // Nothing is rolled back: the option keeps the choices added before.
        OptionCase{"MalformedChoice", ADictionary(), "Generic",
                   Dict({{"code-name", "Mode"}, {"choices", AArray{Choice("Fast", "Fast", "1"), "Best"}}}),
                   "RKPPDGeneration/1: Cannot add PPD choice Best to option Mode => [General] Mode: PickOne; "
                   "default Fast; Fast/Fast: \"1\""},
        // From CUPS 1.2 on the first "None" is left out, and RGB (else Gray) is the default.
        OptionCase{"ColorModel", kColorModels, "ColorModel", kColorModel,
                   "[Color] ColorModel/Color Model: PickOne; default RGB; RGB/RGB: \"0/1/8\"; Gray/Gray: \"0/3/8\""},
        OptionCase{"ColorModelBeforeCUPS12", Valued(kColorModels, "CUPSVersion", 0x11F), "ColorModel", kColorModel,
                   "[Color] ColorModel/Color Model: PickOne; default RGB; None/None: \"0/0/0\"; RGB/RGB: \"0/1/8\"; "
                   "Gray/Gray: \"0/3/8\""},
        OptionCase{"ColorModelOnlyTheFirstNone",
                   Settings({{"QVColorModel", Setting(AArray{ColorModel("None", 0, 0, 0), ColorModel("Gray", 0, 3, 8),
                                                             ColorModel("None", 1, 1, 1)})}}),
                   "ColorModel", kColorModel,
                   "[Color] ColorModel/Color Model: PickOne; default Gray; Gray/Gray: \"0/3/8\"; None/None: \"1/1/1\""},
        // With "setting-name" the generic default is the setting's own.
        OptionCase{"ColorModelWithoutRGBOrGray",
                   Settings({{"QVColorModel",
                              Setting(AArray{ColorModel("CMYK", 0, 6, 8), ColorModel("KCMY", 0, 7, 8)}, "KCMY")}}),
                   "ColorModel", Valued(kColorModel, "setting-name", "QVColorModel"),
                   "[Color] ColorModel/Color Model: PickOne; default KCMY; CMYK/CMYK: \"0/6/8\"; KCMY/KCMY: \"0/7/8\""},
        OptionCase{"ColorModelWithoutCode", kColorModels, "ColorModel", Dict({{"code-name", "ColorModel"}}),
                   "[General] ColorModel: PickOne; default RGB; RGB/RGB: \"\"; Gray/Gray: \"\""},
        OptionCase{"ResolutionWithoutSetting", ADictionary(), "Resolution", Dict({{"code-name", "Resolution"}}), "-"},
        // Media type, paper source and output mode codes take the option's keyword, then the choice's.
        OptionCase{"MediaTypeCode", Settings({{"QVPaperType", Setting(AArray{SettingValue("Plain", "Plain Paper")})}}),
                   "MediaType", Keyed("MediaType", "QVPaperType", "%@ (%@)"),
                   "[General] MediaType: PickOne; default Plain; Plain/Plain Paper: \"MediaType (Plain)\""},
        OptionCase{"PaperSourceCode", Settings({{"QVPaperSource", Setting(AArray{SettingValue("Tray1", "Tray 1")})}}),
                   "PaperSource", Keyed("InputSlot", "QVPaperSource", "%@ (%@)"),
                   "[General] InputSlot: PickOne; default Tray1; Tray1/Tray 1: \"InputSlot (Tray1)\""},
        OptionCase{"OutputModeCode",
                   Settings({{"QVOutputMode", Setting(AArray{SettingValue("Best", "Best Quality")})}}), "OutputMode",
                   Keyed("OutputMode", "QVOutputMode", "%@ (%@)"),
                   "[General] OutputMode: PickOne; default Best; Best/Best Quality: \"OutputMode (Best)\""},
        OptionCase{"PositionalKeywordCode",
                   Settings({{"QVPaperType", Setting(AArray{SettingValue("Glossy", "Glossy Paper")})}}), "MediaType",
                   Keyed("MediaType", "QVPaperType", "(%2$@)"),
                   "[General] MediaType: PickOne; default Glossy; Glossy/Glossy Paper: \"(Glossy)\""},
        // The output mode default comes from the default paper type; an unknown one gives none (the first choice).
        OptionCase{"OutputModeDefaultOfThePaperType",
                   Settings({{"QVOutputMode", kOutputModes},
                             {"QVPaperType", PaperTypes("Glossy", {{"Plain", "Normal"}, {"Glossy", "Best"}})}}),
                   "OutputMode", Keyed("OutputMode", "QVOutputMode"),
                   "[General] OutputMode: PickOne; default Best; Draft/Draft: \"\"; Normal/Normal: \"\"; Best/Best: "
                   "\"\""},
        OptionCase{
            "OutputModeOfAnUnknownPaperType",
            Settings({{"QVOutputMode", kOutputModes}, {"QVPaperType", PaperTypes("Photo", {{"Plain", "Best"}})}}),
            "OutputMode", Keyed("OutputMode", "QVOutputMode"),
            "[General] OutputMode: PickOne; default Draft; Draft/Draft: \"\"; Normal/Normal: \"\"; Best/Best: "
            "\"\""},
        // Duplex is decided by the feature alone, not by the value count.
        OptionCase{"DuplexWithoutFeature", Settings({{"QVDuplex", kOffOn}}), "Duplex",
                   Valued(Keyed("Duplex", "QVDuplex"), "min-value-count", 5), "-"},
        OptionCase{"DuplexFeatureOff",
                   Valued(Settings({{"QVDuplex", kOffOn}}), "features", Dict({{"supportsAutoDuplex", false}})),
                   "Duplex", Valued(Keyed("Duplex", "QVDuplex"), "min-value-count", 5), "-"},
        OptionCase{"DuplexFeatureOn",
                   Valued(Settings({{"QVDuplex", kOffOn}}), "features", Dict({{"supportsAutoDuplex", true}})), "Duplex",
                   Valued(Keyed("Duplex", "QVDuplex"), "min-value-count", 5),
                   "[General] Duplex: PickOne; default Off; Off/Off: \"\"; On/On: \"\""},
        // Grayscale printing needs the colour mode "grayscale", compared exactly; the generic test comes first.
        OptionCase{"GrayscaleWithoutColorMode", Settings({{"QVGrayscaleMode", kOffOn}}), "GrayscaleMode",
                   Keyed("GrayscaleMode", "QVGrayscaleMode"), "-"},
        OptionCase{"GrayscaleOtherCase",
                   Settings({{"QVGrayscaleMode", kOffOn},
                             {"QVColorMode",
                              Setting(AArray{SettingValue("color", "Color"), SettingValue("Grayscale", "Gray")})}}),
                   "GrayscaleMode", Keyed("GrayscaleMode", "QVGrayscaleMode"), "-"},
        OptionCase{"GrayscaleUnknownSetting",
                   Settings({{"QVColorMode", Setting(AArray{SettingValue("grayscale", "Gray")})}}), "GrayscaleMode",
                   Keyed("Other", "QVUnknown"), "-"},
        // An installable option needs its setting enabled.
        OptionCase{"InstallableNotEnabled", Settings({{"QVTray", kOffOn}}), "Installable", Keyed("Tray", "QVTray"),
                   "-"},
        OptionCase{"InstallableDisabled", Settings({{"QVTray", Valued(kOffOn, "enabled", false)}}), "Installable",
                   Keyed("Tray", "QVTray"), "-"},
        OptionCase{"InstallableWithoutValues", Settings({{"QVTray", Valued(Setting(AArray()), "enabled", true)}}),
                   "Installable", Keyed("Tray", "QVTray"), "-"},
        // The ICC profile option ends with "None", named Automatic, as its default; none without profiles.
        OptionCase{"ICCProfileNamedNone",
                   Dict({{"colorProfiles", AArray{Dict({{"name", "None"}, {"userName", "Nothing"}, {"path", "/n.icc"}}),
                                                  Dict({{"name", "Photo"}, {"path", "/p.icc"}})}}}),
                   "ICCProfile", Dict({{"code-name", "ColorProfile"}}),
                   "[General] ColorProfile: PickOne; default None; Photo/Photo: \"\"; None/Automatic: \"\""},
        OptionCase{"ICCProfilesNone", ADictionary(), "ICCProfile", Dict({{"code-name", "ColorProfile"}}), "-"},
        // A code that does not fit its arguments fails the option, naming it.
        OptionCase{"CodeStringForInteger", Settings({{"QVColorModel", Setting(AArray{ColorModel("RGB", 0, 1, 8)})}}),
                   "ColorModel", Dict({{"code-name", "ColorModel"}, {"choice-generic-code", "<</cupsColorOrder %@>>"}}),
                   kCode + "RGB in option ColorModel: choice-generic-code \"<</cupsColorOrder %@>>\" does not fit: "
                           "conversion \"%@\" needs a string argument, not an integer => [General]"},
        OptionCase{"CodeCString", Settings({{"QVColorModel", Setting(AArray{ColorModel("RGB", 0, 1, 8)})}}),
                   "ColorModel", Dict({{"code-name", "ColorModel"}, {"choice-generic-code", "%s"}}),
                   kCode + "RGB in option ColorModel: choice-generic-code \"%s\" does not fit: conversion \"%s\" is "
                           "not allowed (a string is written with \"%@\") => [General]"},
        OptionCase{"CodeCountOfBytes", Settings({{"QVResolution", Setting(AArray{Resolution600()})}}), "Resolution",
                   Dict({{"code-name", "Resolution"}, {"choice-generic-code", "%d%n"}}),
                   kCode + "600dpi in option Resolution: choice-generic-code \"%d%n\" does not fit: conversion \"%n\" "
                           "is not allowed => [General]"},
        OptionCase{"CodeIntegerForString", Settings({{"QVPaperType", Setting(AArray{SettingValue("Plain", "Plain")})}}),
                   "MediaType", Keyed("MediaType", "QVPaperType", "<</MediaType %d>>"),
                   kCode + "Plain in option MediaType: choice-generic-code \"<</MediaType %d>>\" does not fit: "
                           "conversion \"%d\" needs an integer argument, not a string => [General]"}),
    [](const ::testing::TestParamInfo<OptionCase>& param) { return std::string(param.param.label); });

// Description readings that the rows above do not show one by one.
TEST_F(OptionGeneratorsTest, DescriptionRules) {
  SetSetting("QVTray",
             Dict({{"userName", "Paper Source"}, {"values", AArray{SettingValue("A", "A"), SettingValue("B", "B")}}}));
  SetSetting("None", Dict({{"values", AArray()}}));
  SetSetting("NoValues", Dict({{"userName", "x"}}));
  SetSetting("WithDefault", Setting(AArray{SettingValue("A", "A"), SettingValue("B", "B")}, "B"));
  SetSetting("", Setting(AArray{SettingValue("A", "A"), SettingValue("B", "B")}, "B"));
  const auto make = [this](const ADictionary& description) {
    ADictionary entry = description;
    if (!entry.Contains("code-name")) entry.Set("code-name", "X");
    return MakeGenerator<APPDGenericOptionGenerator>("APPDGenericOptionGenerator", entry);
  };
  const AArray choices{Choice("X"), Choice("Y")};
  for (const auto& [description, source] : std::vector<std::pair<ADictionary, PPDChoiceSource>>{
           {Dict({{"choices", choices}, {"setting-name", "QVTray"}}), PPDChoiceSource::kDescription},
           {Dict({{"choices", AArray()}, {"setting-name", "QVTray"}}), PPDChoiceSource::kProductSetting},
           {Dict({{"setting-name", ""}}), PPDChoiceSource::kSettingValues},
           {Dict({}), PPDChoiceSource::kSettingValues},
           {Dict({{"choices", "A"}}), PPDChoiceSource::kSettingValues}}) {
    EXPECT_EQ(make(description)->GetChoiceSource(), source) << ValueLabel(description.GetString("setting-name"));
  }
  // "min-value-count": a number, or the number a text starts with (0 without
  // one); another type counts as 1. A product without the setting never applies.
  for (const auto& [setting, count, applies] :
       std::vector<std::tuple<const char*, AValue, bool>>{{"QVTray", AValue(), true},
                                                          {"QVTray", 2, true},
                                                          {"QVTray", 3, false},
                                                          {"QVTray", "2", true},
                                                          {"QVTray", "3", false},
                                                          {"QVTray", " 3 trays", false},
                                                          {"QVTray", "many", true},
                                                          {"QVTray", AArray{5}, true},
                                                          {"None", AValue(), false},
                                                          {"None", 0, true},
                                                          {"NoValues", AValue(), false},
                                                          {"NoValues", 0, true},
                                                          {"Unknown", AValue(), false},
                                                          {"Unknown", 0, false}}) {
    ADictionary description = Dict({{"setting-name", setting}});
    if (!count.IsNull()) description.Set("min-value-count", count);
    EXPECT_EQ(make(description)->IsApplicable(), applies) << setting << " " << ValueLabel(count);
  }
  for (const auto& [type, expected] : std::vector<std::pair<AValue, ppd_ui_e>>{{AValue(), PPD_UI_PICKONE},
                                                                               {0, PPD_UI_BOOLEAN},
                                                                               {1, PPD_UI_PICKONE},
                                                                               {2, PPD_UI_PICKMANY},
                                                                               {"Boolean", PPD_UI_BOOLEAN},
                                                                               {"boolean", PPD_UI_PICKONE},
                                                                               {"PickMany", PPD_UI_PICKONE},
                                                                               {"PickOne", PPD_UI_PICKONE},
                                                                               {"2", PPD_UI_PICKONE},
                                                                               {AArray{0}, PPD_UI_PICKONE}}) {
    EXPECT_EQ(make(type.IsNull() ? Dict({}) : Dict({{"ui-type", type}}))->GetOptionUIType(), expected)
        << ValueLabel(type);
  }
  // A group name present though empty has no fallback.
  EXPECT_EQ(make(Dict({}))->GetGroupID(), "General");
  EXPECT_EQ(make(Dict({{"group-name", ""}}))->GetGroupID(), "");
  // The setting's name only for choices from the setting.
  for (const auto& [description, name] : std::vector<std::pair<ADictionary, const char*>>{
           {Dict({{"setting-name", "QVTray"}}), "Paper Source"},
           {Dict({{"setting-name", "QVTray"}, {"user-name", "Trays"}}), "Trays"},
           {Dict({{"setting-name", "QVTray"}, {"user-name", ""}}), ""},
           {Dict({{"setting-name", "Unknown"}}), ""},
           {Dict({{"setting-name", "QVTray"}, {"choices", AArray{Choice("A")}}}), ""}}) {
    EXPECT_EQ(make(description)->GetOptionName(), name);
  }
  // The generic default (GetDefaultChoice) and the one written.
  for (const auto& [description, generic, written] : std::vector<std::tuple<ADictionary, const char*, const char*>>{
           {Dict({{"default-choice", "Y"}, {"choices", choices}}), "Y", "Y"},
           {Dict({{"choices", choices}}), "X", "X"},
           {Dict({{"default-choice", "Z"}, {"choices", AArray{Choice("X")}}}), "Z", "Z"},  // kept as given
           {Dict({{"setting-name", "WithDefault"}}), "B", "B"},
           {Dict({{"setting-name", "QVTray"}}), "", "A"},  // no product default: the first choice
           {Dict({}), "A", "A"}}) {                        // setting values: the first value, not the product default
    AScopedRef<APPDGenericOptionGenerator> generator = make(description);
    EXPECT_EQ(generator->GetDefaultChoice(nullptr), generic) << generic << written;
    ASSERT_TRUE(generator->IsApplicable() && generator->Generate(nullptr)) << generic << written;
    EXPECT_EQ(Doc()->GetOptionWithID("X")->GetDefaultChoice(), written);
  }
}

// Through the engine: each description runs the class its "generator" names
// ("" and none: the generic one); descriptions that do not apply leave
// nothing and no error.
TEST_F(OptionGeneratorsTest, TheEngineRunsTheClassNamedByTheDescription) {
  SetSetting("QVColorModel", ThreeColorModels());
  SetSetting("QVDuplex", kOffOn);
  Root().Set(
      "optionsGenerationInfo",
      AArray{Valued(kColorModel, "generator", "APPDColorModelOptionGenerator"),
             Dict({{"generator", "APPDDuplexOptionGenerator"}, {"code-name", "Duplex"}, {"setting-name", "QVDuplex"}}),
             Dict({{"generator", ""},
                   {"code-name", "Collate"},
                   {"group-name", "Color"},
                   {"ui-type", "Boolean"},
                   {"choices", AArray{Choice("True", "Yes"), Choice("False", "No")}}}),
             Dict({{"code-name", "Skipped"}, {"setting-name", "QVDuplex"}, {"min-value-count", 3}}),
             Dict({{"code-name", "Missing"}, {"setting-name", "Unknown"}}),
             Dict({{"code-name", "Mode"}, {"group-name", "Color"}, {"choices", AArray{Choice("Fast")}}})});
  AError error;
  ASSERT_TRUE(RunEngine(&error));
  EXPECT_EQ(error, AError());
  AError textError;
  EXPECT_EQ(Doc()->GetGroupWithID("Color")->GetStringRepresentation(&textError).UTF8(),
            "*OpenGroup: Color/Color\n\n"
            "*OpenUI *ColorModel/Color Model: PickOne\n*OrderDependency: 10.0 AnySetup "
            "*ColorModel\n*DefaultColorModel: RGB\n"
            "*ColorModel RGB/RGB: \"0/1/8\"\n*ColorModel Gray/Gray: \"0/3/8\"\n*CloseUI: *ColorModel\n\n"
            "*OpenUI *Collate: Boolean\n*OrderDependency: 10.0 AnySetup *Collate\n*DefaultCollate: True\n"
            "*Collate True/Yes: \"\"\n*Collate False/No: \"\"\n*CloseUI: *Collate\n\n"
            "*OpenUI *Mode: PickOne\n*OrderDependency: 10.0 AnySetup *Mode\n*DefaultMode: Fast\n*Mode Fast/Fast: \"\"\n"
            "*CloseUI: *Mode\n\n*CloseGroup: Color\n");
  EXPECT_EQ(textError, AError());
  for (const char* absent : {"Duplex", "Skipped", "Missing"})
    EXPECT_EQ(Doc()->GetOptionWithID(absent), nullptr) << absent;

  // A second description of the same keyword replaces the first, at the end of its group.
  ASSERT_TRUE(
      RunGenerator("APPDGenericOptionGenerator",
                   Dict({{"code-name", "ColorModel"}, {"group-name", "Color"}, {"choices", AArray{Choice("Best")}}}))
          .generated);
  const auto& options = Doc()->GetGroupWithID("Color")->GetOptions();
  ASSERT_EQ(options.size(), 3u);
  EXPECT_EQ(options[2]->GetID(), "ColorModel");
  EXPECT_EQ(options[2]->GetChoices().size(), 1u);
}

// The digital photo and image enhancement options need their feature and add
// the setting's pre-filter attributes that have a value.
TEST_F(OptionGeneratorsTest, ImageEnhancementNeedsItsFeatureAndAddsPreFilterAttributes) {
  for (const auto& [className, feature, option] : std::vector<std::tuple<const char*, const char*, const char*>>{
           {"APPDDigitalPhotoOptionGenerator", "supportsDigitalPhotoEnhancement", "DigitalPhoto"},
           {"APPDSimpleImageEnhancementOptionGenerator", "supportsSimpleImageEnhancement", "SimpleImageEnhancement"}}) {
    SCOPED_TRACE(className);
    SetSetting(option, Valued(kOffOn, "PDFPreFilterAttributes",
                              AArray{Dict({{"name", "APPDFPreFilter"},
                                           {"spec", option},
                                           {"value", "/usr/libexec/prefilter"},
                                           {"value-type", 1}}),
                                     Dict({{"name", "NoValueIsSkipped"}})}));
    const ADictionary entry = Dict({{"code-name", option}, {"setting-name", option}});
    EXPECT_EQ(Outcome(className, entry), "-");
    SetFeature(feature, true);
    EXPECT_EQ(Outcome(className, entry),
              std::string("[General] ") + option + ": PickOne; default Off; Off/Off: \"\"; On/On: \"\"");
    const AQVString spec(option);
    std::vector<IPPDAttribute*> attributes;
    Doc()->GetAttributesWithNameAndSpec("APPDFPreFilter", &spec, attributes);
    ASSERT_EQ(attributes.size(), 1u);
    EXPECT_EQ(attributes[0]->GetStringRepresentation(nullptr),
              "*APPDFPreFilter " + std::string(option) + ": \"/usr/libexec/prefilter\"");
    Doc()->GetAttributesWithNameAndSpec("NoValueIsSkipped", nullptr, attributes);
    EXPECT_TRUE(attributes.empty());
  }
}

}  // namespace
}  // namespace ppdforge
