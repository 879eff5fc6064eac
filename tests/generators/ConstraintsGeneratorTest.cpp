// The generic constraints generator (which descriptions apply, and the
// constraints they leave: pairwise, non-UI or CUPS with a resolver) and the
// resolver generator (one *cupsUIResolver line of option and choice pairs).

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/ASharedObject.h"
#include "generators/APPDCUPSUIResolverGenerator.h"
#include "generators/APPDGenericConstraintsGenerator.h"
#include "model/IPPD.h"
#include "support/GeneratorTestSupport.h"

namespace ppdforge {
namespace {

using testing::Choice;
using testing::Dict;
using testing::Strings;
using testing::ValueLabel;

constexpr const char* kGeneric = "APPDGenericConstraintsGenerator";
constexpr const char* kResolver = "APPDCUPSUIResolverGenerator";

// A description whose "option-N" and "choice-N" (N from 1) are the `sides`,
// each "Option Choice" or "Option" alone ("Option " for an empty choice),
// with the other `entries`.
ADictionary Sides(std::initializer_list<const char*> sides, testing::Entries entries = {}) {
  ADictionary description = Dict(entries);
  int number = 0;
  for (const std::string side : sides) {
    const std::string suffix = "-" + std::to_string(++number);
    const std::size_t blank = side.find(' ');
    description.Set(AQVString("option" + suffix), AQVString(side.substr(0, blank)));
    if (blank != std::string::npos) description.Set(AQVString("choice" + suffix), AQVString(side.substr(blank + 1)));
  }
  return description;
}

class ConstraintsGeneratorTest : public testing::GeneratorTestSupport {
 protected:
  void SetUp() override {
    ASSERT_TRUE(StartEngine(testing::MinimalProductRoot()));
    AddPickOneOption("Setup", "Duplex", {"None", "DuplexNoTumble", "DuplexTumble"}, "DuplexNoTumble");
    AddPickOneOption("Setup", "MediaType", {"Plain", "Transparency"});
    AddPickOneOption("Setup", "InputSlot", {"Upper", "Lower", "Manual"});
    AddPickOneOption("Setup", "Empty", {});
    ASSERT_NE(Doc()->AddAttribute("APDuplexRequiresFlippedMargin", "True", "", "", kPPDStringValue, ""), nullptr);
  }

  void AddResolvers(const std::vector<const char*>& names) {
    for (const char* name : names) {
      ASSERT_NE(Doc()->AddAttribute("cupsUIResolver", "*Duplex None", name, "", kPPDQuotedValue, ""), nullptr);
    }
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

  AScopedRef<APPDGenericConstraintsGenerator> Make(const ADictionary& description) const {
    return MakeGenerator<APPDGenericConstraintsGenerator>(kGeneric, description);
  }
};

TEST_F(ConstraintsGeneratorTest, NumberedListEndsAtTheFirstGap) {
  AScopedRef<APPDGenericConstraintsGenerator> generator = Make(Dict({{"option-1", "Duplex"},
                                                                     {"choice-1", "DuplexNoTumble"},
                                                                     {"option-2", "MediaType"},
                                                                     {"option-4", "InputSlot"},
                                                                     {"choice-4", "Manual"}}));
  AArray options{"stale"};
  AArray choices{"stale"};
  generator->GetOptionsAndChoices(options, choices);
  EXPECT_EQ(Strings(options), (std::vector<std::string>{"Duplex", "MediaType"}));
  EXPECT_EQ(Strings(choices), (std::vector<std::string>{"DuplexNoTumble", ""}));
  ASSERT_TRUE(generator->IsApplicable() && generator->Generate(nullptr));
  EXPECT_EQ(ConstraintsText(),
            "*UIConstraints: *Duplex DuplexNoTumble *MediaType\n*UIConstraints: *MediaType *Duplex DuplexNoTumble\n");
}

TEST_F(ConstraintsGeneratorTest, FlagsAreReadStrictly) {
  struct Case {
    AValue value;  // null: absent
    bool nonUI;
    bool cups;
  };
  for (const Case& c : std::vector<Case>{{AValue(), false, false},
                                         {"true", true, true},
                                         {"True", false, false},
                                         {"TRUE", false, false},
                                         {"yes", false, false},
                                         {true, true, true},
                                         {false, false, false},
                                         {1, false, true},
                                         {0, false, false},
                                         {"1", false, false}}) {
    ADictionary nonUI, cups;
    if (!c.value.IsNull()) nonUI.Set("non-ui", c.value);
    if (!c.value.IsNull()) cups.Set("cupsUIConstraint", c.value);
    EXPECT_EQ(Make(nonUI)->IsConstraintNonUI(), c.nonUI) << ValueLabel(c.value);
    EXPECT_EQ(Make(cups)->IsCUPSUIConstraint(), c.cups) << ValueLabel(c.value);
  }
}

TEST_F(ConstraintsGeneratorTest, Applicability) {
  AddResolvers({"Twice", "Twice", "Once"});
  const auto cups = [](const char* resolver, const char* third = "InputSlot") {
    ADictionary description =
        Sides({"Duplex DuplexNoTumble", "MediaType Transparency", third}, {{"cupsUIConstraint", true}});
    if (resolver != nullptr) description.Set("resolver", resolver);
    return description;
  };
  const char* const kFlipped = "APDuplexRequiresFlippedMargin";
  struct Case {
    const char* label;
    ADictionary description;
    bool applies;
  };
  for (const Case& c : std::vector<Case>{
           // A CUPS constraint needs exactly one resolver of its name (or none named).
           {"resolver once", cups("Once"), true},
           {"resolver twice", cups("Twice"), false},
           {"resolver missing", cups("Missing"), false},
           {"resolver differs in case", cups("once"), false},
           {"empty resolver", cups(""), true},
           {"no resolver", cups(nullptr), true},
           // ... and every option and choice it names.
           {"third option unknown", cups(nullptr, "Staple"), false},
           {"third choice unknown", cups(nullptr, "InputSlot Tray9"), false},
           {"no options", Dict({{"cupsUIConstraint", "true"}}), true},
           // A pairwise one looks at the first two sides only.
           {"both options", Sides({"Duplex", "MediaType"}), true},
           {"both choices", Sides({"Duplex None", "MediaType Plain"}), true},
           {"first option unknown", Sides({"Staple", "MediaType"}), false},
           {"second option unknown", Sides({"Duplex", "Staple"}), false},
           {"first choice unknown", Sides({"Duplex Long", "MediaType"}), false},
           {"second choice unknown", Sides({"Duplex", "MediaType Photo"}), false},
           {"second side an attribute", Sides({"Duplex", kFlipped}), false},
           {"third option not looked at", Sides({"Duplex", "MediaType", "Staple"}), true},
           // A non-UI one: the second side an attribute, its choice unchecked.
           {"non-UI on an attribute",
            Sides({"Duplex DuplexNoTumble", "APDuplexRequiresFlippedMargin Anything"}, {{"non-ui", true}}), true},
           {"non-UI on an option", Sides({"Duplex", "MediaType"}, {{"non-ui", "true"}}), false},
           {"non-UI first choice checked", Sides({"Duplex Long", kFlipped}, {{"non-ui", true}}), false}}) {
    EXPECT_EQ(IsApplicable(kGeneric, c.description), c.applies) << c.label;
  }
}

TEST_F(ConstraintsGeneratorTest, WrittenConstraints) {
  struct Case {
    std::vector<ADictionary> descriptions;
    std::string text;
  };
  for (const Case& c : std::vector<Case>{
           {{Sides({"Duplex DuplexNoTumble", "MediaType", "InputSlot Manual"},
                   {{"cupsUIConstraint", "true"}, {"resolver", "Once"}, {"comment", "No duplex"}})},
            "*% No duplex\n*cupsUIConstraints Once: \"*Duplex DuplexNoTumble *MediaType *InputSlot Manual\"\n"},
           {{Sides({"Duplex DuplexNoTumble", "APDuplexRequiresFlippedMargin False"}, {{"non-ui", true}})},
            "*NonUIConstraints: *Duplex DuplexNoTumble *APDuplexRequiresFlippedMargin False\n"
            "*NonUIConstraints: *APDuplexRequiresFlippedMargin False *Duplex DuplexNoTumble\n"},
           // Other choices on the same options make a constraint of their own; the
           // same pairs in another order replace the earlier one.
           {{Sides({"Duplex DuplexNoTumble", "MediaType Transparency"}, {{"comment", "first"}}),
             Sides({"Duplex DuplexNoTumble", "MediaType Plain"}),
             Sides({"MediaType Transparency", "Duplex DuplexNoTumble"}, {{"non-ui", true}, {"comment", "second"}})},
            "*UIConstraints: *Duplex DuplexNoTumble *MediaType Plain\n"
            "*UIConstraints: *MediaType Plain *Duplex DuplexNoTumble\n"
            "*% second\n*NonUIConstraints: *MediaType Transparency *Duplex DuplexNoTumble\n"
            "*NonUIConstraints: *Duplex DuplexNoTumble *MediaType Transparency\n"}}) {
    SetUp();
    AddResolvers({"Once"});
    for (const ADictionary& description : c.descriptions) {
      AError error;
      EXPECT_TRUE(GenerateAnyway(kGeneric, description, &error)) << error.message.UTF8();
    }
    EXPECT_EQ(ConstraintsText(), c.text);
  }
}

TEST_F(ConstraintsGeneratorTest, ReplacementComparesOptionsChoicesAndCount) {
  AScopedRef<APPDGenericConstraintsGenerator> generator = Make(Dict({}));
  ASSERT_TRUE(generator->AddConstraint(AArray{"Duplex", "MediaType", "InputSlot"}, AArray{"None", "", "Manual"}, "Res",
                                       true, false, ""));
  struct Case {
    AArray options;
    AArray choices;
    bool removes;
  };
  for (const Case& c : std::vector<Case>{
           {AArray{"Duplex", "MediaType"}, AArray{"None", ""}, false},  // two of the three options
           {AArray{"InputSlot", "Duplex", "MediaType"}, AArray{"Manual", "None", "Plain"}, false},  // another choice
           {AArray{"InputSlot", "Duplex", "MediaType"}, AArray{"Manual", "None", ""},
            true}}) {  // the same pairs, rotated
    generator->RemoveConstraintsForOptionsAndChoices(c.options, c.choices);
    EXPECT_EQ(Doc()->GetConstraints().empty(), c.removes) << Strings(c.options).size();
  }
}

class RefusingConstraintsGenerator : public APPDGenericConstraintsGenerator {
 public:
  using APPDGenericConstraintsGenerator::AddConstraint;
  bool AddConstraint(const AArray&, const AArray&, const AQVString&, bool, bool, const AQVString&) override {
    return false;
  }
};

TEST_F(ConstraintsGeneratorTest, RefusedConstraintReportsTheError) {
  AScopedRef<RefusingConstraintsGenerator> generator(CreateSharedObject<RefusingConstraintsGenerator>());
  const ADictionary description = Sides({"Duplex", "MediaType"});
  generator->Initialize(Engine(), &description);
  AError error;
  EXPECT_FALSE(generator->Generate(&error));
  EXPECT_EQ(error, (AError{kRKPPDGenerationErrorDomain, 1, "Cannot add PPD constraint."}));
  EXPECT_FALSE(generator->Generate(nullptr));
}

// Through the engine, after the options and the resolvers: the CUPS
// description names the same pairs, so it replaces the pairwise one.
TEST_F(ConstraintsGeneratorTest, ThroughTheEngineAfterOptionsAndResolvers) {
  Root().Set("optionsGenerationInfo",
             AArray{Dict({{"code-name", "Duplex"}, {"choices", AArray{Choice("None"), Choice("DuplexTumble")}}}),
                    Dict({{"code-name", "MediaType"}, {"choices", AArray{Choice("Plain"), Choice("Transparency")}}})});
  Root().Set("cupsUIResolversGenerationInfo", AArray{Sides({"Duplex None"}, {{"resolver-name", "NoDuplex"}})});
  const auto pair = [](testing::Entries entries) {
    return Sides({"Duplex DuplexTumble", "MediaType Transparency"}, entries);
  };
  Root().Set("constraintsGenerationInfo",
             AArray{pair({}), pair({{"generator", ""}, {"cupsUIConstraint", true}, {"resolver", "NoDuplex"}}),
                    Sides({"Duplex", "MediaType"}, {{"cupsUIConstraint", true}, {"resolver", "Missing"}})});
  ASSERT_TRUE(RunEngine());
  EXPECT_EQ(ConstraintsText(), "*cupsUIConstraints NoDuplex: \"*Duplex DuplexTumble *MediaType Transparency\"\n");
}

TEST_F(ConstraintsGeneratorTest, WrittenResolvers) {
  struct Case {
    std::vector<ADictionary> descriptions;
    std::string text;
  };
  for (const Case& c : std::vector<Case>{
           {{Sides({"Duplex None", "InputSlot Lower"},
                   {{"resolver-name", "DuplexRes"}, {"comment", "Turn duplex off"}})},
            "*% Turn duplex off\n*cupsUIResolver DuplexRes: \"*Duplex None *InputSlot Lower\"\n"},
           // No options: an empty resolver.
           {{Dict({{"resolver-name", "Nothing"}, {"option-2", "Duplex"}})}, "*cupsUIResolver Nothing: \"\"\n"},
           // A missing choice takes the option's current default (else its first choice).
           {{Sides({"Duplex", "InputSlot"}, {{"resolver-name", "Res"}})},
            "*cupsUIResolver Res: \"*Duplex DuplexNoTumble *InputSlot Upper\"\n"},
           // The first resolver of a name wins, without an error.
           {{Sides({"Duplex None"}, {{"resolver-name", "Res"}}),
             Sides({"Duplex DuplexTumble"}, {{"resolver-name", "Other"}}),
             Sides({"InputSlot Lower"}, {{"resolver-name", "Res"}})},
            "*cupsUIResolver Res: \"*Duplex None\"\n*cupsUIResolver Other: \"*Duplex DuplexTumble\"\n"}}) {
    SetUp();
    for (const ADictionary& description : c.descriptions) {
      AError error;
      EXPECT_TRUE(RunGenerator(kResolver, description, &error).generated);
      EXPECT_EQ(error, AError());
    }
    EXPECT_EQ(ResolverText(), c.text);
  }
}

TEST_F(ConstraintsGeneratorTest, ResolverListEndsAtTheFirstGap) {
  AScopedRef<APPDCUPSUIResolverGenerator> generator =
      MakeGenerator<APPDCUPSUIResolverGenerator>(kResolver, Dict({{"resolver-name", "Res"},
                                                                  {"option-1", "Duplex"},
                                                                  {"choice-1", "None"},
                                                                  {"option-3", "InputSlot"},
                                                                  {"choice-3", "Upper"}}));
  AArray options{"stale"};
  AArray choices{"stale"};
  generator->GetOptionsAndChoices(options, choices);
  EXPECT_EQ(Strings(options), (std::vector<std::string>{"Duplex"}));
  EXPECT_EQ(Strings(choices), (std::vector<std::string>{"None"}));
  ASSERT_TRUE(generator->IsApplicable() && generator->Generate(nullptr));
  EXPECT_EQ(ResolverText(), "*cupsUIResolver Res: \"*Duplex None\"\n");
}

TEST_F(ConstraintsGeneratorTest, EmptyOrUnknownChoicesAreNotApplicable) {
  // An option without choices and no choice key, an empty choice, an unknown option or choice.
  for (const ADictionary& description : {Sides({"Empty"}), Sides({"Duplex "}), Sides({"Duplex None", "Staple On"}),
                                         Sides({"Staple"}), Sides({"Duplex Long"}), Sides({"Duplex none"})}) {
    EXPECT_FALSE(IsApplicable(kResolver, testing::WithValue(description, "resolver-name", "Res")))
        << description.GetString("option-1").UTF8() << " " << description.GetString("choice-1").UTF8();
  }
  // An empty choice of an option that exists contributes the keyword alone.
  EXPECT_EQ(MakeGenerator<APPDCUPSUIResolverGenerator>(kResolver, {})
                ->MakeValueFromOptionsAndChoices(AArray{"Empty", "Duplex", "InputSlot"}, AArray{"", "None", ""}),
            "*Empty *Duplex None *InputSlot");
}

TEST_F(ConstraintsGeneratorTest, ResolversThroughTheEngineAfterTheOptions) {
  Root().Set("optionsGenerationInfo", AArray{Dict({{"code-name", "Duplex"},
                                                   {"default-choice", "DuplexTumble"},
                                                   {"choices", AArray{Choice("None"), Choice("DuplexTumble")}}})});
  Root().Set("cupsUIResolversGenerationInfo",
             AArray{Dict({{"resolver-name", "NoDuplex"}, {"option-1", "Duplex"}, {"choice-1", "None"}}),
                    Dict({{"generator", ""}, {"resolver-name", "Default"}, {"option-1", "Duplex"}}),
                    Dict({{"resolver-name", "Skipped"}, {"option-1", "InputSlot"}})});
  ASSERT_TRUE(RunEngine());
  EXPECT_EQ(ResolverText(),
            "*cupsUIResolver NoDuplex: \"*Duplex None\"\n*cupsUIResolver Default: \"*Duplex DuplexTumble\"\n");
}

}  // namespace
}  // namespace ppdforge
