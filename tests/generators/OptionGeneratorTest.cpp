#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/ADictionary.h"
#include "core/ASharedObject.h"
#include "generators/APPDGenericOptionGenerator.h"
#include "model/IPPD.h"
#include "support/GeneratorTestSupport.h"

namespace ppdforge {
namespace {

using testing::Choice;
using testing::Dict;
using testing::SettingValue;
using testing::ValueLabel;

class OptionGeneratorTest : public testing::GeneratorTestSupport {
 protected:
  void SetUp() override {
    ASSERT_TRUE(StartEngine(testing::MinimalProductRoot()));
    // Start from a document without groups, so that every group seen was made here.
    Doc()->RemoveGroupWithID("General");
    ASSERT_TRUE(Doc()->GetGroups().empty());
  }

  AScopedRef<APPDGenericOptionGenerator> Make(const ADictionary& description) {
    return MakeGenerator<APPDGenericOptionGenerator>("APPDGenericOptionGenerator", description);
  }

  // Runs the generator as the engine does; false when not applicable or failed.
  bool Run(const ADictionary& description, AError* error = nullptr) {
    return RunGenerator("APPDGenericOptionGenerator", description, error).generated;
  }
};

TEST_F(OptionGeneratorTest, ChoicesFromDescription) {
  ADictionary second = Choice("Lower", "Lower Tray", "<</Tray 2>>setpagedevice");
  second.Set("comment", "Tray 2");
  const ADictionary description =
      Dict({{"code-name", "Tray"}, {"user-name", "Paper Source"}, {"group-name", "Paper"},
            {"default-choice", "Lower"}, {"comment", "The trays"},
            {"choices", AArray{Choice("Upper", "Upper Tray", "<</Tray 1>>setpagedevice"), second}}});
  AError error;
  ASSERT_TRUE(Run(description, &error)) << error.message.UTF8();

  EXPECT_EQ(OptionText("Tray"),
            "*% The trays\n"
            "*OpenUI *Tray/Paper Source: PickOne\n"
            "*OrderDependency: 10.0 AnySetup *Tray\n"
            "*DefaultTray: Lower\n"
            "*Tray Upper/Upper Tray: \"<</Tray 1>>setpagedevice\"\n"
            "*% Tray 2\n"
            "*Tray Lower/Lower Tray: \"<</Tray 2>>setpagedevice\"\n"
            "*CloseUI: *Tray\n");
  const IPPDGroup* group = Doc()->GetGroupWithID("Paper");
  ASSERT_NE(group, nullptr);
  EXPECT_EQ(group->GetName(), "Paper");
  ASSERT_EQ(group->GetOptions().size(), 1u);
  EXPECT_EQ(group->GetOptions()[0]->GetID(), "Tray");
}

TEST_F(OptionGeneratorTest, ChoicesFromProductSettingShareTheGenericCode) {
  SetSetting("QVTray", Dict({{"userName", "Paper Source"},
                             {"defaultChoice", "Lower"},
                             {"values", AArray{SettingValue("Upper", "Upper Tray"),
                                               SettingValue("Lower", "Lower Tray")}}}));
  // A format-like text stays as it is: the generic class formats nothing.
  const ADictionary description = Dict({{"code-name", "Tray"}, {"setting-name", "QVTray"},
                                        {"choice-generic-code", "%@ %d tray"}});
  AError error;
  ASSERT_TRUE(Run(description, &error)) << error.message.UTF8();

  EXPECT_EQ(OptionText("Tray"),
            "*OpenUI *Tray/Paper Source: PickOne\n"
            "*OrderDependency: 10.0 AnySetup *Tray\n"
            "*DefaultTray: Lower\n"
            "*Tray Upper/Upper Tray: \"%@ %d tray\"\n"
            "*Tray Lower/Lower Tray: \"%@ %d tray\"\n"
            "*CloseUI: *Tray\n");
  EXPECT_NE(Doc()->GetGroupWithID("General"), nullptr);
}

TEST_F(OptionGeneratorTest, ChoicesFromSettingValuesAskTheProductForTheEmptyName) {
  // Neither choices nor a setting name: the generic class asks for the
  // setting "", and the option gets no translation from it.
  SetSetting("", Dict({{"userName", "Not used"},
                       {"values", AArray{SettingValue("On", "On"), SettingValue("Off", "Off")}}}));
  const ADictionary description = Dict({{"code-name", "Feature"}, {"choice-generic-code", "x"}});
  AScopedRef<APPDGenericOptionGenerator> generator = Make(description);
  ASSERT_TRUE(generator);
  EXPECT_EQ(generator->GetChoiceSource(), PPDChoiceSource::kSettingValues);
  EXPECT_EQ(generator->GetOptionName(), "");
  EXPECT_EQ(generator->GetDefaultChoice(nullptr), "On");
  ASSERT_TRUE(generator->IsApplicable());
  AError error;
  ASSERT_TRUE(generator->Generate(&error)) << error.message.UTF8();

  EXPECT_EQ(OptionText("Feature"),
            "*OpenUI *Feature: PickOne\n"
            "*OrderDependency: 10.0 AnySetup *Feature\n"
            "*DefaultFeature: On\n"
            "*Feature On/On: \"x\"\n"
            "*Feature Off/Off: \"x\"\n"
            "*CloseUI: *Feature\n");
}

TEST_F(OptionGeneratorTest, ChoiceSourceTable) {
  struct Case {
    const char* label;
    ADictionary description;
    PPDChoiceSource expected;
  };
  const std::vector<Case> cases = {
      {"choices win over a setting name",
       Dict({{"choices", AArray{Choice("A", "A", "")}}, {"setting-name", "QVTray"}}),
       PPDChoiceSource::kDescription},
      {"empty choices and a setting name", Dict({{"choices", AArray()}, {"setting-name", "QVTray"}}),
       PPDChoiceSource::kProductSetting},
      {"empty setting name", Dict({{"setting-name", ""}}), PPDChoiceSource::kSettingValues},
      {"nothing", Dict({}), PPDChoiceSource::kSettingValues},
      {"choices not an array", Dict({{"choices", "A"}}), PPDChoiceSource::kSettingValues},
  };
  for (const Case& c : cases) {
    AScopedRef<APPDGenericOptionGenerator> generator = Make(c.description);
    ASSERT_TRUE(generator);
    EXPECT_EQ(generator->GetChoiceSource(), c.expected) << c.label;
  }
}

TEST_F(OptionGeneratorTest, ApplicabilityByValueCount) {
  SetSetting("Two", Dict({{"values", AArray{SettingValue("A", "A"), SettingValue("B", "B")}}}));
  SetSetting("None", Dict({{"values", AArray()}}));
  SetSetting("NoValues", Dict({{"userName", "x"}}));
  struct Case {
    const char* setting;
    AValue minValueCount;  // null: absent
    bool expected;
  };
  const std::vector<Case> cases = {
      {"Two", AValue(), true},
      {"Two", 2, true},
      {"Two", 3, false},
      {"Two", "2", true},
      {"Two", "3", false},
      {"Two", " 3 trays", false},
      {"Two", "many", true},  // no number in the text: 0
      {"Two", AArray{5}, true},  // another type: the default 1
      {"None", AValue(), false},
      {"None", 0, true},
      {"NoValues", AValue(), false},
      {"NoValues", 0, true},
      {"Unknown", AValue(), false},
      {"Unknown", 0, false},  // a product without the setting: never
  };
  for (const Case& c : cases) {
    ADictionary description = Dict({{"code-name", "X"}, {"setting-name", c.setting}});
    if (!c.minValueCount.IsNull()) description.Set("min-value-count", c.minValueCount);
    AScopedRef<APPDGenericOptionGenerator> generator = Make(description);
    ASSERT_TRUE(generator);
    EXPECT_EQ(generator->IsApplicable(), c.expected)
        << c.setting << " min " << c.minValueCount.IntegerValue();
  }
}

TEST_F(OptionGeneratorTest, SkippedOptionLeavesNothingAndNoError) {
  SetSetting("Two", Dict({{"values", AArray{SettingValue("A", "A"), SettingValue("B", "B")}}}));
  Root().Set(
      "optionsGenerationInfo",
      AArray{Dict({{"code-name", "Skipped"}, {"setting-name", "Two"}, {"min-value-count", 3}}),
             Dict({{"code-name", "Missing"}, {"setting-name", "Unknown"}}),
             Dict({{"code-name", "Kept"}, {"setting-name", "Two"}})});
  AError error;
  ASSERT_TRUE(RunEngine(&error));
  EXPECT_EQ(error, AError());
  EXPECT_EQ(Doc()->GetOptionWithID("Skipped"), nullptr);
  EXPECT_EQ(Doc()->GetOptionWithID("Missing"), nullptr);
  EXPECT_NE(Doc()->GetOptionWithID("Kept"), nullptr);
}

TEST_F(OptionGeneratorTest, UITypeTable) {
  struct Case {
    AValue uiType;  // null: absent
    ppd_ui_e expected;
  };
  const std::vector<Case> cases = {
      {AValue(), PPD_UI_PICKONE},      {0, PPD_UI_BOOLEAN},
      {1, PPD_UI_PICKONE},             {2, PPD_UI_PICKMANY},
      {"Boolean", PPD_UI_BOOLEAN},     {"boolean", PPD_UI_PICKONE},
      {"PickMany", PPD_UI_PICKONE},    {"PickOne", PPD_UI_PICKONE},
      {"2", PPD_UI_PICKONE},           {AArray{0}, PPD_UI_PICKONE},
  };
  for (const Case& c : cases) {
    ADictionary description = Dict({{"code-name", "X"}});
    if (!c.uiType.IsNull()) description.Set("ui-type", c.uiType);
    AScopedRef<APPDGenericOptionGenerator> generator = Make(description);
    ASSERT_TRUE(generator);
    EXPECT_EQ(generator->GetOptionUIType(), c.expected) << ValueLabel(c.uiType);
  }
}

TEST_F(OptionGeneratorTest, NumericPickManyIsWritten) {
  const ADictionary description =
      Dict({{"code-name", "Finish"}, {"ui-type", 2},
            {"choices", AArray{Choice("Staple", "Staple", "s"), Choice("Punch", "Punch", "p")}}});
  ASSERT_TRUE(Run(description));
  EXPECT_EQ(OptionText("Finish"),
            "*OpenUI *Finish: PickMany\n"
            "*OrderDependency: 10.0 AnySetup *Finish\n"
            "*DefaultFinish: Staple\n"
            "*Finish Staple/Staple: \"s\"\n"
            "*Finish Punch/Punch: \"p\"\n"
            "*CloseUI: *Finish\n");
}

TEST_F(OptionGeneratorTest, SameCodeNameTwiceLeavesTheSecond) {
  ASSERT_TRUE(Run(Dict({{"code-name", "Mode"}, {"group-name", "G"},
                        {"choices", AArray{Choice("Fast", "Fast", "1")}}})));
  ASSERT_TRUE(Run(Dict({{"code-name", "Other"}, {"group-name", "G"},
                        {"choices", AArray{Choice("A", "A", "a")}}})));
  ASSERT_TRUE(Run(Dict({{"code-name", "Mode"}, {"group-name", "G"}, {"user-name", "Second"},
                        {"choices", AArray{Choice("Best", "Best", "2")}}})));

  const IPPDGroup* group = Doc()->GetGroupWithID("G");
  ASSERT_NE(group, nullptr);
  ASSERT_EQ(group->GetOptions().size(), 2u);
  EXPECT_EQ(group->GetOptions()[0]->GetID(), "Other");
  EXPECT_EQ(group->GetOptions()[1]->GetID(), "Mode");
  EXPECT_EQ(OptionText("Mode"),
            "*OpenUI *Mode/Second: PickOne\n"
            "*OrderDependency: 10.0 AnySetup *Mode\n"
            "*DefaultMode: Best\n"
            "*Mode Best/Best: \"2\"\n"
            "*CloseUI: *Mode\n");
  EXPECT_EQ(Doc()->GetGroups().size(), 1u);
}

TEST_F(OptionGeneratorTest, SameChoiceIDTwiceLeavesTheSecond) {
  ASSERT_TRUE(Run(Dict({{"code-name", "Mode"},
                        {"choices", AArray{Choice("Fast", "Fast", "1"), Choice("Best", "Best", "2"),
                                           Choice("Fast", "Faster", "3")}}})));
  // The default is still the first entry's id, whichever choice now comes first.
  EXPECT_EQ(OptionText("Mode"),
            "*OpenUI *Mode: PickOne\n"
            "*OrderDependency: 10.0 AnySetup *Mode\n"
            "*DefaultMode: Fast\n"
            "*Mode Best/Best: \"2\"\n"
            "*Mode Fast/Faster: \"3\"\n"
            "*CloseUI: *Mode\n");
}

TEST_F(OptionGeneratorTest, GroupIDRules) {
  struct Case {
    ADictionary description;
    const char* expected;
  };
  const std::vector<Case> cases = {
      {Dict({}), "General"},
      {Dict({{"group-name", "Finishing"}}), "Finishing"},
      {Dict({{"group-name", ""}}), ""},  // present though empty: no fallback
  };
  for (const Case& c : cases) {
    AScopedRef<APPDGenericOptionGenerator> generator = Make(c.description);
    ASSERT_TRUE(generator);
    EXPECT_EQ(generator->GetGroupID(), c.expected);
  }
}

TEST_F(OptionGeneratorTest, NoGroupNameGoesToGeneral) {
  ASSERT_TRUE(Run(Dict({{"code-name", "A"}, {"choices", AArray{Choice("On", "On", "")}}})));
  ASSERT_TRUE(Run(Dict({{"code-name", "B"}, {"choices", AArray{Choice("On", "On", "")}}})));
  ASSERT_EQ(Doc()->GetGroups().size(), 1u);
  const IPPDGroup* general = Doc()->GetGroups()[0];
  EXPECT_EQ(general->GetID(), "General");
  EXPECT_EQ(general->GetName(), "General");
  EXPECT_EQ(general->GetOptions().size(), 2u);
  EXPECT_EQ(Doc()->GetOptionWithID("B")->GetGroup(), general);
}

TEST_F(OptionGeneratorTest, OptionNameRules) {
  SetSetting("QVTray",
             Dict({{"userName", "Paper Source"}, {"values", AArray{SettingValue("A", "A")}}}));
  struct Case {
    ADictionary description;
    const char* expected;
  };
  const std::vector<Case> cases = {
      {Dict({{"setting-name", "QVTray"}}), "Paper Source"},
      {Dict({{"setting-name", "QVTray"}, {"user-name", "Trays"}}), "Trays"},
      {Dict({{"setting-name", "QVTray"}, {"user-name", ""}}), ""},
      {Dict({{"setting-name", "Unknown"}}), ""},
      // Explicit choices: the setting's name is not consulted.
      {Dict({{"setting-name", "QVTray"}, {"choices", AArray{Choice("A", "A", "")}}}), ""},
  };
  for (const Case& c : cases) {
    AScopedRef<APPDGenericOptionGenerator> generator = Make(c.description);
    ASSERT_TRUE(generator);
    EXPECT_EQ(generator->GetOptionName(), c.expected);
  }
}

TEST_F(OptionGeneratorTest, DefaultChoiceRules) {
  SetSetting("WithDefault",
             Dict({{"defaultChoice", "B"},
                   {"values", AArray{SettingValue("A", "A"), SettingValue("B", "B")}}}));
  SetSetting("NoDefault",
             Dict({{"values", AArray{SettingValue("A", "A"), SettingValue("B", "B")}}}));
  SetSetting("", Dict({{"defaultChoice", "B"},
                       {"values", AArray{SettingValue("A", "A"), SettingValue("B", "B")}}}));
  struct Case {
    const char* label;
    ADictionary description;
    const char* generic;  // GetDefaultChoice
    const char* written;  // the option's default after Generate
  };
  const std::vector<Case> cases = {
      {"explicit default-choice",
       Dict({{"default-choice", "Y"}, {"choices", AArray{Choice("X", "X", ""), Choice("Y", "Y", "")}}}),
       "Y", "Y"},
      {"first choice id",
       Dict({{"choices", AArray{Choice("X", "X", ""), Choice("Y", "Y", "")}}}), "X", "X"},
      {"default-choice not among the choices is kept as given",
       Dict({{"default-choice", "Z"}, {"choices", AArray{Choice("X", "X", "")}}}), "Z", "Z"},
      {"product default", Dict({{"setting-name", "WithDefault"}}), "B", "B"},
      {"product without default: the first choice", Dict({{"setting-name", "NoDefault"}}), "", "A"},
      {"setting values: the first value, not the product default", Dict({}), "A", "A"},
  };
  for (const Case& c : cases) {
    ADictionary description = c.description;
    description.Set("code-name", "Opt");
    AScopedRef<APPDGenericOptionGenerator> generator = Make(description);
    ASSERT_TRUE(generator);
    EXPECT_EQ(generator->GetDefaultChoice(nullptr), c.generic) << c.label;
    ASSERT_TRUE(generator->IsApplicable()) << c.label;
    ASSERT_TRUE(generator->Generate(nullptr)) << c.label;
    EXPECT_EQ(Doc()->GetOptionWithID("Opt")->GetDefaultChoice(), c.written) << c.label;
  }
}

TEST_F(OptionGeneratorTest, MalformedChoiceEntryFailsNamingTheOption) {
  const ADictionary description =
      Dict({{"code-name", "Mode"}, {"choices", AArray{Choice("Fast", "Fast", "1"), "Best"}}});
  AError error;
  EXPECT_FALSE(Run(description, &error));
  EXPECT_EQ(error.domain, kRKPPDGenerationErrorDomain);
  EXPECT_EQ(error.code, 1);
  EXPECT_EQ(error.message, "Cannot add PPD choice Best to option Mode");
  // Nothing is rolled back: the option keeps the choices added before.
  ASSERT_NE(Doc()->GetOptionWithID("Mode"), nullptr);
  EXPECT_EQ(Doc()->GetOptionWithID("Mode")->GetChoices().size(), 1u);
}

// Hooks replaced the way the specific option generators replace them.
class PerChoiceCodeGenerator : public APPDGenericOptionGenerator {
 public:
  std::optional<AArray> GetOptionSettingValues() const override {
    return AArray{SettingValue("Draft", "Draft"), SettingValue("Bad", "Bad"),
                  SettingValue("Best", "Best")};
  }
  std::optional<AQVString> GetChoiceGenericCode(const IPPDOption* option, const ADictionary* value,
                                                const AQVString& codeName,
                                                AError* error) const override {
    std::optional<AQVString> code =
        APPDGenericOptionGenerator::GetChoiceGenericCode(option, value, codeName, error);
    if (codeName == "Bad") {
      SetError(error, 1, "bad code for " + option->GetID());
      return std::nullopt;
    }
    return *code + " " + value->GetString("name");
  }
  bool PostProcess(IPPDOption* option, AError* /*error*/) override {
    postProcessed = option;
    return true;
  }
  IPPDOption* postProcessed = nullptr;
};

class UnknownSourceGenerator : public APPDGenericOptionGenerator {
 public:
  PPDChoiceSource GetChoiceSource() const override { return static_cast<PPDChoiceSource>(7); }
};

TEST_F(OptionGeneratorTest, FailingChoiceCodeStopsWithItsOwnError) {
  AScopedRef<PerChoiceCodeGenerator> generator(CreateSharedObject<PerChoiceCodeGenerator>());
  ASSERT_TRUE(generator);
  const ADictionary description = Dict({{"code-name", "Quality"}, {"choice-generic-code", "q"}});
  generator->Initialize(Engine(), &description);
  ASSERT_TRUE(generator->IsApplicable());
  AError error;
  EXPECT_FALSE(generator->Generate(&error));
  EXPECT_EQ(error, (AError{kRKPPDGenerationErrorDomain, 1, "bad code for Quality"}));
  EXPECT_EQ(generator->postProcessed, nullptr);
  EXPECT_EQ(OptionText("Quality"),
            "*OpenUI *Quality: PickOne\n"
            "*OrderDependency: 10.0 AnySetup *Quality\n"
            "*DefaultQuality: Draft\n"
            "*Quality Draft/Draft: \"q Draft\"\n"
            "*CloseUI: *Quality\n");
}

TEST_F(OptionGeneratorTest, PostProcessGetsTheStoredOption) {
  AScopedRef<PerChoiceCodeGenerator> generator(CreateSharedObject<PerChoiceCodeGenerator>());
  ASSERT_TRUE(generator);
  // Explicit choices do not go through the code hook.
  const ADictionary description =
      Dict({{"code-name", "Quality"}, {"choices", AArray{Choice("Bad", "Bad", "b")}}});
  generator->Initialize(Engine(), &description);
  ASSERT_TRUE(generator->Generate(nullptr));
  EXPECT_EQ(generator->postProcessed, Doc()->GetOptionWithID("Quality"));
  EXPECT_NE(generator->postProcessed, nullptr);
}

TEST_F(OptionGeneratorTest, UnknownChoiceSourceIsNotApplicableAndCannotGenerate) {
  AScopedRef<UnknownSourceGenerator> generator(CreateSharedObject<UnknownSourceGenerator>());
  ASSERT_TRUE(generator);
  const ADictionary description =
      Dict({{"code-name", "Odd"}, {"choices", AArray{Choice("A", "A", "")}}});
  generator->Initialize(Engine(), &description);
  EXPECT_FALSE(generator->IsApplicable());
  AError error;
  EXPECT_FALSE(generator->Generate(&error));
  EXPECT_EQ(error, (AError{kRKPPDGenerationErrorDomain, 1,
                           "Cannot determine description of PPD choices in option Odd"}));
}

TEST_F(OptionGeneratorTest, DescriptionsThroughTheEngine) {
  SetSetting("QVColorMode", Dict({{"userName", "Color Mode"},
                                  {"defaultChoice", "color"},
                                  {"values", AArray{SettingValue("color", "Color"),
                                                    SettingValue("grayscale", "Grayscale")}}}));
  Root().Set(
      "optionsGenerationInfo",
      AArray{Dict({{"code-name", "ColorMode"},
                   {"setting-name", "QVColorMode"},
                   {"group-name", "Color"},
                   {"choice-generic-code", ""}}),
             Dict({{"generator", ""},
                   {"code-name", "Collate"},
                   {"group-name", "Color"},
                   {"ui-type", "Boolean"},
                   {"choices", AArray{Choice("True", "Yes", ""), Choice("False", "No", "")}}})});
  ASSERT_TRUE(RunEngine());
  const IPPDGroup* group = Doc()->GetGroupWithID("Color");
  ASSERT_NE(group, nullptr);
  AError textError;
  EXPECT_EQ(group->GetStringRepresentation(&textError).UTF8(),
            "*OpenGroup: Color/Color\n"
            "\n"
            "*OpenUI *ColorMode/Color Mode: PickOne\n"
            "*OrderDependency: 10.0 AnySetup *ColorMode\n"
            "*DefaultColorMode: color\n"
            "*ColorMode color/Color: \"\"\n"
            "*ColorMode grayscale/Grayscale: \"\"\n"
            "*CloseUI: *ColorMode\n"
            "\n"
            "*OpenUI *Collate: Boolean\n"
            "*OrderDependency: 10.0 AnySetup *Collate\n"
            "*DefaultCollate: True\n"
            "*Collate True/Yes: \"\"\n"
            "*Collate False/No: \"\"\n"
            "*CloseUI: *Collate\n"
            "\n"
            "*CloseGroup: Color\n");
  EXPECT_EQ(textError, AError());
}

}  // namespace
}  // namespace ppdforge
