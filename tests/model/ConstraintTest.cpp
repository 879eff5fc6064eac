#include <gtest/gtest.h>

#include <string>

#include "model/APPDCommentable.h"
#include "model/IPPDConstraint.h"
#include "model/ModelTestSupport.h"

namespace ppdforge {
namespace {

using testing::Code4;

TEST(ConstraintTest, WritesTheThreeFormsOrNothingWhenInvalid) {
  const std::string k41(41, 'K'), k42(42, 'K');
  const struct {
    AArray options;
    AArray choices;
    std::string resolver;
    bool cups;
    bool nonUI;
    const char* comment;
    bool valid;
    std::string expected;
    std::string error;
  } cases[] = {
      {{"Duplex", "PageSize"}, {"DuplexNoTumble", "Env10"}, "", false, false, "", true,
       "*UIConstraints: *Duplex DuplexNoTumble *PageSize Env10\n*UIConstraints: *PageSize Env10 *Duplex DuplexNoTumble",
       ""},
      {{"Duplex", "InputSlot"}, {"", "Manual"}, "", false, true, "", true,
       "*NonUIConstraints: *Duplex *InputSlot Manual\n*NonUIConstraints: *InputSlot Manual *Duplex", ""},
      // A pair of options without choices is written once.
      {{"Duplex", "InputSlot"}, {"", ""}, "", false, false, "", true, "*UIConstraints: *Duplex *InputSlot", ""},
      {{"A", "B", "C"}, {"1", "2", "3"}, "", false, false, "", true, "*UIConstraints: *A 1 *B 2\n*UIConstraints: *B 2 *A 1",
       ""},
      {{"A", "B", "C"}, {"1", "", "3"}, "Fix", true, false, "", true, "*cupsUIConstraints Fix: \"*A 1 *B *C 3\"", ""},
      {{"A", "B"}, {"1", "2"}, "", true, true, "", true, "*cupsUIConstraints: \"*A 1 *B 2\"", ""},
      {{"A", "B"}, {"1", ""}, "", false, false, "no A with B", true,
       "*% no A with B\n*UIConstraints: *A 1 *B\n*UIConstraints: *B *A 1", ""},
      {{"A", k41.c_str()}, {"1", "2"}, "", false, false, "", true,
       "*UIConstraints: *A 1 *" + k41 + " 2\n*UIConstraints: *" + k41 + " 2 *A 1", ""},
      // 41 characters pass the constraint's own check but not the statement's.
      {{"A", "B"}, {"1", "2"}, k41, true, false, "", true, "",
       "Option keyword is longer then the maximum allowed (40 characters): " + k41},
      {{"A", "B"}, {"1/2", ""}, "", false, false, "", true, "", "Value contains invalid characters: *A 1/2 *B"},
      {{"A"}, {"1"}, "", false, false, "x", false, "", ""},
      {{}, {}, "", false, false, "", false, "", ""},
      {{"A", ""}, {"1", "2"}, "", false, false, "", false, "", ""},
      {{"A", k42.c_str()}, {"1", "2"}, "", false, false, "", false, "", ""},
      {{"A", "B"}, {"1", k42.c_str()}, "", false, false, "", false, "", ""},
      {{"A", "B"}, {"1"}, "", false, false, "", false, "", ""},
      {{"A", "B"}, {"1", "2", "3"}, "", false, false, "", false, "", ""},
      {{"A", "B"}, {"1", "2"}, k42, false, false, "", false, "", ""},
      {{"A", 5}, {"1", "2"}, "", false, false, "", false, "", ""},
  };
  for (const auto& c : cases) {
    const std::string row = IPPDConstraint::MakeValueFromOptionsAndChoices(c.options, c.choices).UTF8() + " " +
                            std::to_string(c.options.Count()) + " " + c.resolver;
    SCOPED_TRACE(row);
    AScopedRef<IPPDConstraint> constraint(
        IPPDConstraint::Create(c.options, c.choices, c.resolver, c.cups, c.nonUI, c.comment));
    EXPECT_EQ(constraint->IsValid(), c.valid);
    AError error;
    EXPECT_EQ(constraint->GetStringRepresentation(&error), c.expected);
    EXPECT_EQ(error, Code4(c.error));
  }
}

TEST(ConstraintTest, SetAtIndexPadsAndTheValueNeedsAChoicePerOption) {
  AScopedRef<IPPDConstraint> constraint(IPPDConstraint::Create({}, {}, "", false, false, ""));
  constraint->SetChoiceAtIndex("Env10", 3);
  EXPECT_EQ(constraint->GetChoices(), (AArray{"", "", "", "Env10"}));
  constraint->SetChoiceAtIndex("A4", 1);
  EXPECT_EQ(constraint->GetChoices(), (AArray{"", "A4", "", "Env10"}));
  constraint->SetOptionAtIndex("PageSize", 0);
  EXPECT_EQ(constraint->GetOptions(), (AArray{"PageSize"}));
  EXPECT_EQ(constraint->GetOptionAtIndex(5), "");
  EXPECT_EQ(IPPDConstraint::MakeValueFromOptionsAndChoices({"A", "B", "C"}, {"", "2", ""}), "*A *B 2 *C");
  EXPECT_EQ(IPPDConstraint::MakeValueFromOptionsAndChoices({"A", "B"}, {"1"}), "");
  EXPECT_EQ(IPPDConstraint::MakeValueFromOptionsAndChoices({}, {}), "");
}

TEST(ConstraintTest, EqualityIgnoresTheCommentAndCopiesKeepIt) {
  AScopedRef<IPPDConstraint> a(IPPDConstraint::Create({"A", "B"}, {"1", "2"}, "R", true, false, "x"));
  AScopedRef<IPPDConstraint> b(IPPDConstraint::Create({"A", "B"}, {"1", "2"}, "R", true, false, "y"));
  EXPECT_TRUE(*a.get() == *b.get());
  b->SetNonUI(true);
  EXPECT_TRUE(*a.get() != *b.get());
  b->SetNonUI(false);
  b->SetResolver("r");
  EXPECT_TRUE(*a.get() != *b.get());
  AScopedRef<IPPDConstraint> copy(a->Clone());
  EXPECT_TRUE(*copy.get() == *a.get());
  EXPECT_EQ(AScopedRef<APPDCommentable>(copy->QueryPPDCommentable())->GetComment(), "x");
  EXPECT_EQ(copy->QueryPPDLocalizable(), nullptr);
}

}  // namespace
}  // namespace ppdforge
