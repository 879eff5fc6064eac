#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/ADictionary.h"
#include "core/ASharedObject.h"
#include "generators/APPDGenericConstraintsGenerator.h"
#include "model/IPPD.h"
#include "support/GeneratorTestSupport.h"

namespace ppdforge {
namespace {

using testing::Choice;
using testing::Dict;
using testing::Strings;
using testing::ValueLabel;

class ConstraintsGeneratorTest : public testing::GeneratorTestSupport {
 protected:
  void SetUp() override {
    ASSERT_TRUE(StartEngine(testing::MinimalProductRoot()));
    ASSERT_TRUE(Doc()->GetConstraints().empty());
    AddPickOneOption("Setup", "Duplex", {"None", "DuplexNoTumble"});
    AddPickOneOption("Setup", "MediaType", {"Plain", "Transparency"});
    AddPickOneOption("Setup", "InputSlot", {"Upper", "Manual"});
  }

  void AddResolver(const char* name) {
    ASSERT_NE(Doc()->AddAttribute("cupsUIResolver", "*Duplex None", name, "", kPPDQuotedValue, ""),
              nullptr);
  }

  AScopedRef<APPDGenericConstraintsGenerator> Make(const ADictionary& description) {
    return MakeGenerator<APPDGenericConstraintsGenerator>("APPDGenericConstraintsGenerator",
                                                          description);
  }

  // Generates whether applicable or not (Generate does not check).
  bool Generate(const ADictionary& description, AError* error = nullptr) {
    return GenerateAnyway("APPDGenericConstraintsGenerator", description, error);
  }

  bool Applicable(const ADictionary& description) {
    return IsApplicable("APPDGenericConstraintsGenerator", description);
  }
};

TEST_F(ConstraintsGeneratorTest, NumberedListEndsAtTheFirstGap) {
  const ADictionary description =
      Dict({{"option-1", "Duplex"}, {"choice-1", "DuplexNoTumble"}, {"option-2", "MediaType"},
            {"option-4", "InputSlot"}, {"choice-4", "Manual"}});
  AScopedRef<APPDGenericConstraintsGenerator> generator = Make(description);
  ASSERT_TRUE(generator);
  AArray options{"stale"};
  AArray choices{"stale"};
  generator->GetOptionsAndChoices(options, choices);
  EXPECT_EQ(Strings(options), (std::vector<std::string>{"Duplex", "MediaType"}));
  EXPECT_EQ(Strings(choices), (std::vector<std::string>{"DuplexNoTumble", ""}));

  ASSERT_TRUE(generator->IsApplicable());
  ASSERT_TRUE(generator->Generate(nullptr));
  ASSERT_EQ(Doc()->GetConstraints().size(), 1u);
  EXPECT_EQ(Doc()->GetConstraints()[0]->GetOptions().Count(), 2u);
  EXPECT_EQ(ConstraintsText(),
            "*UIConstraints: *Duplex DuplexNoTumble *MediaType\n"
            "*UIConstraints: *MediaType *Duplex DuplexNoTumble\n");
}

TEST_F(ConstraintsGeneratorTest, NonUIFlagTable) {
  struct Case {
    AValue value;  // null: absent
    bool expected;
  };
  const std::vector<Case> cases = {
      {AValue(), false}, {"true", true},  {"True", false}, {"TRUE", false}, {"yes", false},
      {true, true},      {false, false},  {1, false},      {"1", false},
  };
  for (const Case& c : cases) {
    ADictionary description;
    if (!c.value.IsNull()) description.Set("non-ui", c.value);
    AScopedRef<APPDGenericConstraintsGenerator> generator = Make(description);
    ASSERT_TRUE(generator);
    EXPECT_EQ(generator->IsConstraintNonUI(), c.expected) << ValueLabel(c.value);
  }
}

TEST_F(ConstraintsGeneratorTest, CUPSFlagTable) {
  struct Case {
    AValue value;  // null: absent
    bool expected;
  };
  const std::vector<Case> cases = {
      {AValue(), false}, {"true", true}, {"True", false}, {true, true},
      {false, false},    {1, true},      {0, false},      {"1", false},
  };
  for (const Case& c : cases) {
    ADictionary description;
    if (!c.value.IsNull()) description.Set("cupsUIConstraint", c.value);
    AScopedRef<APPDGenericConstraintsGenerator> generator = Make(description);
    ASSERT_TRUE(generator);
    EXPECT_EQ(generator->IsCUPSUIConstraint(), c.expected) << ValueLabel(c.value);
  }
}

TEST_F(ConstraintsGeneratorTest, CUPSConstraintNeedsExactlyOneResolver) {
  AddResolver("Twice");
  AddResolver("Twice");
  AddResolver("Once");
  const ADictionary base = Dict({{"cupsUIConstraint", true}, {"option-1", "Duplex"},
                                 {"choice-1", "DuplexNoTumble"}, {"option-2", "MediaType"},
                                 {"choice-2", "Transparency"}, {"option-3", "InputSlot"}});
  struct Case {
    const char* resolver;  // null: no "resolver" key
    bool expected;
  };
  const std::vector<Case> cases = {
      {"Once", true}, {"Twice", false}, {"Missing", false}, {"once", false}, {"", true},
      {nullptr, true},
  };
  for (const Case& c : cases) {
    ADictionary description = base;
    if (c.resolver != nullptr) description.Set("resolver", c.resolver);
    EXPECT_EQ(Applicable(description), c.expected) << (c.resolver ? c.resolver : "(none)");
  }
}

TEST_F(ConstraintsGeneratorTest, CUPSConstraintChecksEveryOptionAndChoice) {
  struct Case {
    const char* label;
    ADictionary description;
    bool expected;
  };
  const std::vector<Case> cases = {
      {"all present", Dict({{"option-1", "Duplex"}, {"choice-1", "None"}, {"option-2", "MediaType"},
                            {"option-3", "InputSlot"}, {"choice-3", "Manual"}}),
       true},
      {"third option unknown", Dict({{"option-1", "Duplex"}, {"option-2", "MediaType"},
                                     {"option-3", "Staple"}}),
       false},
      {"third choice unknown", Dict({{"option-1", "Duplex"}, {"option-2", "MediaType"},
                                     {"option-3", "InputSlot"}, {"choice-3", "Lower"}}),
       false},
      {"no options", Dict({}), true},
  };
  for (const Case& c : cases) {
    ADictionary description = c.description;
    description.Set("cupsUIConstraint", "true");
    EXPECT_EQ(Applicable(description), c.expected) << c.label;
  }
}

TEST_F(ConstraintsGeneratorTest, WritesTheCUPSConstraintWithItsResolver) {
  AddResolver("Res");
  const ADictionary description =
      Dict({{"cupsUIConstraint", "true"}, {"resolver", "Res"}, {"comment", "No duplex"},
            {"option-1", "Duplex"}, {"choice-1", "DuplexNoTumble"}, {"option-2", "MediaType"},
            {"option-3", "InputSlot"}, {"choice-3", "Manual"}});
  ASSERT_TRUE(Applicable(description));
  AError error;
  ASSERT_TRUE(Generate(description, &error)) << error.message.UTF8();
  EXPECT_EQ(ConstraintsText(),
            "*% No duplex\n"
            "*cupsUIConstraints Res: \"*Duplex DuplexNoTumble *MediaType *InputSlot Manual\"\n");
}

TEST_F(ConstraintsGeneratorTest, PairwiseApplicability) {
  ASSERT_NE(Doc()->AddAttribute("APDuplexRequiresFlippedMargin", "True", "", "", kPPDStringValue, ""),
            nullptr);
  struct Case {
    const char* label;
    ADictionary description;
    bool expected;
  };
  const std::vector<Case> cases = {
      {"both options", Dict({{"option-1", "Duplex"}, {"option-2", "MediaType"}}), true},
      {"both choices", Dict({{"option-1", "Duplex"}, {"choice-1", "None"},
                             {"option-2", "MediaType"}, {"choice-2", "Plain"}}),
       true},
      {"first option unknown", Dict({{"option-1", "Staple"}, {"option-2", "MediaType"}}), false},
      {"second option unknown", Dict({{"option-1", "Duplex"}, {"option-2", "Staple"}}), false},
      {"first choice unknown", Dict({{"option-1", "Duplex"}, {"choice-1", "Long"},
                                     {"option-2", "MediaType"}}),
       false},
      {"second choice unknown", Dict({{"option-1", "Duplex"}, {"option-2", "MediaType"},
                                      {"choice-2", "Photo"}}),
       false},
      {"second side an attribute, not an option",
       Dict({{"option-1", "Duplex"}, {"option-2", "APDuplexRequiresFlippedMargin"}}), false},
      {"non-UI: second side an attribute, its choice unchecked",
       Dict({{"non-ui", true}, {"option-1", "Duplex"}, {"choice-1", "DuplexNoTumble"},
             {"option-2", "APDuplexRequiresFlippedMargin"}, {"choice-2", "Anything"}}),
       true},
      {"non-UI: second side an option, not an attribute",
       Dict({{"non-ui", "true"}, {"option-1", "Duplex"}, {"option-2", "MediaType"}}), false},
      {"non-UI: first choice still checked",
       Dict({{"non-ui", true}, {"option-1", "Duplex"}, {"choice-1", "Long"},
             {"option-2", "APDuplexRequiresFlippedMargin"}}),
       false},
      {"third option is not looked at",
       Dict({{"option-1", "Duplex"}, {"option-2", "MediaType"}, {"option-3", "Staple"}}), true},
  };
  for (const Case& c : cases) EXPECT_EQ(Applicable(c.description), c.expected) << c.label;
}

TEST_F(ConstraintsGeneratorTest, NonUIConstraintOnAnAttribute) {
  ASSERT_NE(Doc()->AddAttribute("APDuplexRequiresFlippedMargin", "True", "", "", kPPDStringValue, ""),
            nullptr);
  const ADictionary description =
      Dict({{"non-ui", true}, {"option-1", "Duplex"}, {"choice-1", "DuplexNoTumble"},
            {"option-2", "APDuplexRequiresFlippedMargin"}, {"choice-2", "False"}});
  ASSERT_TRUE(Applicable(description));
  ASSERT_TRUE(Generate(description));
  EXPECT_EQ(ConstraintsText(),
            "*NonUIConstraints: *Duplex DuplexNoTumble *APDuplexRequiresFlippedMargin False\n"
            "*NonUIConstraints: *APDuplexRequiresFlippedMargin False *Duplex DuplexNoTumble\n");
}

TEST_F(ConstraintsGeneratorTest, LaterDescriptionOnTheSameOptionsReplacesTheEarlier) {
  ASSERT_TRUE(Generate(Dict({{"option-1", "Duplex"}, {"choice-1", "DuplexNoTumble"},
                             {"option-2", "MediaType"}, {"choice-2", "Transparency"},
                             {"comment", "first"}})));
  // Different choices on the same options: a constraint of its own.
  ASSERT_TRUE(Generate(Dict({{"option-1", "Duplex"}, {"choice-1", "DuplexNoTumble"},
                             {"option-2", "MediaType"}, {"choice-2", "Plain"}})));
  // The same pairs in the other order and non-UI: replaces the first.
  ASSERT_TRUE(Generate(Dict({{"non-ui", true}, {"option-1", "MediaType"},
                             {"choice-1", "Transparency"}, {"option-2", "Duplex"},
                             {"choice-2", "DuplexNoTumble"}, {"comment", "second"}})));
  EXPECT_EQ(ConstraintsText(),
            "*UIConstraints: *Duplex DuplexNoTumble *MediaType Plain\n"
            "*UIConstraints: *MediaType Plain *Duplex DuplexNoTumble\n"
            "*% second\n"
            "*NonUIConstraints: *MediaType Transparency *Duplex DuplexNoTumble\n"
            "*NonUIConstraints: *Duplex DuplexNoTumble *MediaType Transparency\n");
}

TEST_F(ConstraintsGeneratorTest, ReplacementComparesOptionsChoicesAndCount) {
  AScopedRef<APPDGenericConstraintsGenerator> generator = Make(Dict({}));
  ASSERT_TRUE(generator);
  ASSERT_TRUE(generator->AddConstraint(AArray{"Duplex", "MediaType", "InputSlot"},
                                       AArray{"None", "", "Manual"}, "Res", true, false, ""));
  struct Case {
    const char* label;
    AArray options;
    AArray choices;
    bool removes;
  };
  const std::vector<Case> cases = {
      {"two of the three options", AArray{"Duplex", "MediaType"}, AArray{"None", ""}, false},
      {"another choice", AArray{"InputSlot", "Duplex", "MediaType"}, AArray{"Manual", "None", "Plain"},
       false},
      {"same pairs, rotated", AArray{"InputSlot", "Duplex", "MediaType"}, AArray{"Manual", "None", ""},
       true},
  };
  for (const Case& c : cases) {
    generator->RemoveConstraintsForOptionsAndChoices(c.options, c.choices);
    EXPECT_EQ(Doc()->GetConstraints().empty(), c.removes) << c.label;
  }
}

TEST_F(ConstraintsGeneratorTest, PairFormTakesOptionsFirstThenChoices) {
  AScopedRef<APPDGenericConstraintsGenerator> generator =
      Make(Dict({{"resolver", "Res"}, {"cupsUIConstraint", "true"}, {"non-ui", true}}));
  ASSERT_TRUE(generator);
  ASSERT_TRUE(generator->AddConstraint("Duplex", "MediaType", "DuplexNoTumble", "Transparency",
                                       false, "pair"));
  ASSERT_EQ(Doc()->GetConstraints().size(), 1u);
  const IPPDConstraint* constraint = Doc()->GetConstraints()[0];
  EXPECT_EQ(Strings(constraint->GetOptions()), (std::vector<std::string>{"Duplex", "MediaType"}));
  EXPECT_EQ(Strings(constraint->GetChoices()),
            (std::vector<std::string>{"DuplexNoTumble", "Transparency"}));
  // Resolver and CUPS flag come from the description, the non-UI flag from the call.
  EXPECT_EQ(constraint->GetResolver(), "Res");
  EXPECT_TRUE(constraint->IsCUPSUIConstraint());
  EXPECT_FALSE(constraint->IsNonUI());
}

class RefusingConstraintsGenerator : public APPDGenericConstraintsGenerator {
 public:
  using APPDGenericConstraintsGenerator::AddConstraint;
  bool AddConstraint(const AArray& /*options*/, const AArray& /*choices*/,
                     const AQVString& /*resolver*/, bool /*cupsUIConstraint*/, bool /*nonUI*/,
                     const AQVString& /*comment*/) override {
    return false;
  }
};

TEST_F(ConstraintsGeneratorTest, RefusedConstraintReportsTheError) {
  AScopedRef<RefusingConstraintsGenerator> generator(
      CreateSharedObject<RefusingConstraintsGenerator>());
  ASSERT_TRUE(generator);
  const ADictionary description = Dict({{"option-1", "Duplex"}, {"option-2", "MediaType"}});
  generator->Initialize(Engine(), &description);
  AError error;
  EXPECT_FALSE(generator->Generate(&error));
  EXPECT_EQ(error, (AError{kRKPPDGenerationErrorDomain, 1, "Cannot add PPD constraint."}));
  EXPECT_FALSE(generator->Generate(nullptr));
}

TEST_F(ConstraintsGeneratorTest, ThroughTheEngineAfterOptionsAndResolvers) {
  Root().Set("optionsGenerationInfo",
             AArray{Dict({{"code-name", "Duplex"},
                          {"choices", AArray{Choice("None"), Choice("DuplexTumble")}}}),
                    Dict({{"code-name", "MediaType"},
                          {"choices", AArray{Choice("Plain"), Choice("Transparency")}}})});
  Root().Set(
      "cupsUIResolversGenerationInfo",
      AArray{Dict({{"resolver-name", "NoDuplex"}, {"option-1", "Duplex"}, {"choice-1", "None"}})});
  Root().Set("constraintsGenerationInfo", AArray{Dict({{"option-1", "Duplex"},
                                                       {"choice-1", "DuplexTumble"},
                                                       {"option-2", "MediaType"},
                                                       {"choice-2", "Transparency"}}),
                                                 Dict({{"generator", ""},
                                                       {"cupsUIConstraint", true},
                                                       {"resolver", "NoDuplex"},
                                                       {"option-1", "Duplex"},
                                                       {"choice-1", "DuplexTumble"},
                                                       {"option-2", "MediaType"},
                                                       {"choice-2", "Transparency"}}),
                                                 Dict({{"cupsUIConstraint", true},
                                                       {"resolver", "Missing"},
                                                       {"option-1", "Duplex"},
                                                       {"option-2", "MediaType"}})});
  ASSERT_TRUE(RunEngine());
  // The CUPS description names the same pairs, so it replaces the pairwise one.
  EXPECT_EQ(ConstraintsText(),
            "*cupsUIConstraints NoDuplex: \"*Duplex DuplexTumble *MediaType Transparency\"\n");
}

}  // namespace
}  // namespace ppdforge
