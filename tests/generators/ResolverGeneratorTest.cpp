#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/ADictionary.h"
#include "core/ASharedObject.h"
#include "generators/APPDCUPSUIResolverGenerator.h"
#include "model/IPPD.h"
#include "support/GeneratorTestSupport.h"

namespace ppdforge {
namespace {

using testing::Choice;
using testing::Dict;
using testing::Strings;

class ResolverGeneratorTest : public testing::GeneratorTestSupport {
 protected:
  void SetUp() override {
    ASSERT_TRUE(StartEngine(testing::MinimalProductRoot()));
    AddPickOneOption("Setup", "Duplex", {"None", "DuplexNoTumble", "DuplexTumble"},
                     "DuplexNoTumble");
    AddPickOneOption("Setup", "InputSlot", {"Upper", "Lower"});
    AddPickOneOption("Setup", "Empty", {});
  }

  AScopedRef<APPDCUPSUIResolverGenerator> Make(const ADictionary& description) {
    return MakeGenerator<APPDCUPSUIResolverGenerator>("APPDCUPSUIResolverGenerator", description);
  }

  // Runs the generator as the engine does; false when not applicable or failed.
  bool Run(const ADictionary& description, AError* error = nullptr) {
    return RunGenerator("APPDCUPSUIResolverGenerator", description, error).generated;
  }

  // Every resolver line of the document, one per line.
  std::string ResolverText() const {
    std::vector<IPPDAttribute*> resolvers;
    Doc()->GetAttributesWithNameAndSpec("cupsUIResolver", nullptr, resolvers);
    std::string text;
    for (const IPPDAttribute* resolver : resolvers) {
      AError error;
      text += resolver->GetStringRepresentation(&error).UTF8() + error.message.UTF8() + "\n";
    }
    return text;
  }
};

TEST_F(ResolverGeneratorTest, WritesTheOptionChoicePairs) {
  const ADictionary description =
      Dict({{"resolver-name", "DuplexRes"}, {"comment", "Turn duplex off"},
            {"option-1", "Duplex"}, {"choice-1", "None"},
            {"option-2", "InputSlot"}, {"choice-2", "Lower"}});
  AError error;
  ASSERT_TRUE(Run(description, &error)) << error.message.UTF8();
  EXPECT_EQ(ResolverText(),
            "*% Turn duplex off\n"
            "*cupsUIResolver DuplexRes: \"*Duplex None *InputSlot Lower\"\n");
}

TEST_F(ResolverGeneratorTest, NumberedListEndsAtTheFirstGap) {
  const ADictionary description =
      Dict({{"resolver-name", "Res"}, {"option-1", "Duplex"}, {"choice-1", "None"},
            {"option-3", "InputSlot"}, {"choice-3", "Upper"}});
  AScopedRef<APPDCUPSUIResolverGenerator> generator = Make(description);
  ASSERT_TRUE(generator);
  AArray options{"stale"};
  AArray choices{"stale"};
  generator->GetOptionsAndChoices(options, choices);
  EXPECT_EQ(Strings(options), (std::vector<std::string>{"Duplex"}));
  EXPECT_EQ(Strings(choices), (std::vector<std::string>{"None"}));
  ASSERT_TRUE(generator->IsApplicable());
  ASSERT_TRUE(generator->Generate(nullptr));
  EXPECT_EQ(ResolverText(), "*cupsUIResolver Res: \"*Duplex None\"\n");
}

TEST_F(ResolverGeneratorTest, NoOptionsGivesAnEmptyApplicableResolver) {
  ASSERT_TRUE(Run(Dict({{"resolver-name", "Nothing"}, {"option-2", "Duplex"}})));
  EXPECT_EQ(ResolverText(), "*cupsUIResolver Nothing: \"\"\n");
}

TEST_F(ResolverGeneratorTest, MissingChoiceTakesTheOptionsCurrentDefault) {
  // Duplex has the explicit default DuplexNoTumble; InputSlot none, so its first choice.
  ASSERT_TRUE(Run(Dict({{"resolver-name", "Res"}, {"option-1", "Duplex"},
                        {"option-2", "InputSlot"}})));
  EXPECT_EQ(ResolverText(), "*cupsUIResolver Res: \"*Duplex DuplexNoTumble *InputSlot Upper\"\n");
}

TEST_F(ResolverGeneratorTest, EmptyChoiceIsNotApplicable) {
  struct Case {
    const char* label;
    ADictionary description;
  };
  const std::vector<Case> cases = {
      {"option without choices and no choice key", Dict({{"option-1", "Empty"}})},
      {"explicit empty choice", Dict({{"option-1", "Duplex"}, {"choice-1", ""}})},
      {"unknown option", Dict({{"option-1", "Duplex"}, {"choice-1", "None"},
                               {"option-2", "Staple"}, {"choice-2", "On"}})},
      {"unknown option without choice key", Dict({{"option-1", "Staple"}})},
      {"unknown choice", Dict({{"option-1", "Duplex"}, {"choice-1", "Long"}})},
      {"choice differs in case", Dict({{"option-1", "Duplex"}, {"choice-1", "none"}})},
  };
  for (const Case& c : cases) {
    ADictionary description = c.description;
    description.Set("resolver-name", "Res");
    AScopedRef<APPDCUPSUIResolverGenerator> generator = Make(description);
    ASSERT_TRUE(generator);
    EXPECT_FALSE(generator->IsApplicable()) << c.label;
  }
  // An empty choice of an option that exists contributes the keyword alone.
  AScopedRef<APPDCUPSUIResolverGenerator> generator = Make(Dict({}));
  ASSERT_TRUE(generator);
  EXPECT_EQ(generator->MakeValueFromOptionsAndChoices(AArray{"Empty", "Duplex", "InputSlot"},
                                                      AArray{"", "None", ""}),
            "*Empty *Duplex None *InputSlot");
}

TEST_F(ResolverGeneratorTest, FirstResolverOfANameWins) {
  ASSERT_TRUE(Run(Dict({{"resolver-name", "Res"}, {"option-1", "Duplex"}, {"choice-1", "None"}})));
  ASSERT_TRUE(Run(Dict({{"resolver-name", "Other"}, {"option-1", "Duplex"},
                        {"choice-1", "DuplexTumble"}})));
  AError error;
  EXPECT_TRUE(Run(Dict({{"resolver-name", "Res"}, {"option-1", "InputSlot"},
                        {"choice-1", "Lower"}}),
                  &error));
  EXPECT_EQ(error, AError());
  EXPECT_EQ(ResolverText(),
            "*cupsUIResolver Res: \"*Duplex None\"\n"
            "*cupsUIResolver Other: \"*Duplex DuplexTumble\"\n");
}

TEST_F(ResolverGeneratorTest, ThroughTheEngineAfterTheOptions) {
  Root().Set("optionsGenerationInfo",
             AArray{Dict({{"code-name", "Duplex"},
                          {"default-choice", "DuplexTumble"},
                          {"choices", AArray{Choice("None"), Choice("DuplexTumble")}}})});
  Root().Set(
      "cupsUIResolversGenerationInfo",
      AArray{Dict({{"resolver-name", "NoDuplex"}, {"option-1", "Duplex"}, {"choice-1", "None"}}),
             Dict({{"generator", ""}, {"resolver-name", "Default"}, {"option-1", "Duplex"}}),
             Dict({{"resolver-name", "Skipped"}, {"option-1", "InputSlot"}})});
  ASSERT_TRUE(RunEngine());
  EXPECT_EQ(ResolverText(),
            "*cupsUIResolver NoDuplex: \"*Duplex None\"\n"
            "*cupsUIResolver Default: \"*Duplex DuplexTumble\"\n");
}

}  // namespace
}  // namespace ppdforge
