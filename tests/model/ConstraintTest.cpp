#include <gtest/gtest.h>

#include <string>

#include "core/ASharedObject.h"
#include "model/APPDCommentable.h"
#include "model/IPPDConstraint.h"

namespace ppdforge {
namespace {

TEST(ConstraintTest, WritesTheThreeForms) {
  const struct {
    AArray options;
    AArray choices;
    const char* resolver;
    bool cups;
    bool nonUI;
    const char* expected;
  } cases[] = {
      {{"Duplex", "PageSize"}, {"DuplexNoTumble", "Env10"}, "", false, false,
       "*UIConstraints: *Duplex DuplexNoTumble *PageSize Env10\n"
       "*UIConstraints: *PageSize Env10 *Duplex DuplexNoTumble"},
      {{"Duplex", "InputSlot"}, {"", "Manual"}, "", false, true,
       "*NonUIConstraints: *Duplex *InputSlot Manual\n"
       "*NonUIConstraints: *InputSlot Manual *Duplex"},
      {{"Duplex", "InputSlot"}, {"", ""}, "", false, false, "*UIConstraints: *Duplex *InputSlot"},
      {{"A", "B", "C"}, {"1", "2", "3"}, "", false, false,
       "*UIConstraints: *A 1 *B 2\n*UIConstraints: *B 2 *A 1"},
      {{"A", "B", "C"}, {"1", "", "3"}, "Fix", true, false, "*cupsUIConstraints Fix: \"*A 1 *B *C 3\""},
      {{"A", "B"}, {"1", "2"}, "", true, true, "*cupsUIConstraints: \"*A 1 *B 2\""},
  };
  for (const auto& c : cases) {
    AScopedRef<IPPDConstraint> constraint(
        IPPDConstraint::Create(c.options, c.choices, c.resolver, c.cups, c.nonUI, ""));
    AError error;
    EXPECT_EQ(constraint->GetStringRepresentation(&error), c.expected);
    EXPECT_EQ(error.code, 0);
  }
}

TEST(ConstraintTest, InvalidConstraintsWriteNothing) {
  const std::string keyword41(41, 'K');
  const std::string keyword42(42, 'K');
  const struct {
    AArray options;
    AArray choices;
    std::string resolver;
    bool valid;
  } cases[] = {
      {{"A"}, {"1"}, "", false},
      {{}, {}, "", false},
      {{"A", ""}, {"1", "2"}, "", false},
      {{"A", keyword42.c_str()}, {"1", "2"}, "", false},
      {{"A", keyword41.c_str()}, {"1", "2"}, "", true},
      {{"A", "B"}, {"1", keyword42.c_str()}, "", false},
      {{"A", "B"}, {"1"}, "", false},
      {{"A", "B"}, {"1", "2", "3"}, "", false},
      {{"A", "B"}, {"1", "2"}, keyword42, false},
      {{"A", "B"}, {"1", "2"}, keyword41, true},
      {{"A", 5}, {"1", "2"}, "", false},
  };
  for (const auto& c : cases) {
    AScopedRef<IPPDConstraint> constraint(
        IPPDConstraint::Create(c.options, c.choices, c.resolver, false, false, ""));
    EXPECT_EQ(constraint->IsValid(), c.valid) << c.options.Count();
    AError error;
    const AQVString text = constraint->GetStringRepresentation(&error);
    EXPECT_EQ(text.IsEmpty(), !c.valid);
    EXPECT_EQ(error.code, 0);
  }
}

TEST(ConstraintTest, ValidResolverCanStillBreakTheKeywordLimit) {
  // 41 characters pass the constraint's own check but not the statement's.
  const std::string resolver(41, 'R');
  AScopedRef<IPPDConstraint> constraint(
      IPPDConstraint::Create({"A", "B"}, {"1", "2"}, resolver, true, false, ""));
  EXPECT_TRUE(constraint->IsValid());
  AError error;
  EXPECT_EQ(constraint->GetStringRepresentation(&error), "");
  EXPECT_EQ(error.code, 4);
  EXPECT_EQ(error.message,
            "Option keyword is longer then the maximum allowed (40 characters): " + resolver);
}

TEST(ConstraintTest, CommentComesFirst) {
  AScopedRef<IPPDConstraint> constraint(
      IPPDConstraint::Create({"A", "B"}, {"1", ""}, "", false, false, "no A with B"));
  EXPECT_EQ(constraint->GetStringRepresentation(nullptr),
            "*% no A with B\n*UIConstraints: *A 1 *B\n*UIConstraints: *B *A 1");
  AScopedRef<IPPDConstraint> invalid(IPPDConstraint::Create({"A"}, {""}, "", false, false, "x"));
  EXPECT_EQ(invalid->GetStringRepresentation(nullptr), "");
}

TEST(ConstraintTest, StatementErrorIsPassedOn) {
  AScopedRef<IPPDConstraint> constraint(
      IPPDConstraint::Create({"A", "B"}, {"1/2", ""}, "", false, false, ""));
  AError error;
  EXPECT_EQ(constraint->GetStringRepresentation(&error), "");
  EXPECT_EQ(error.code, 4);
  EXPECT_EQ(error.message, "Value contains invalid characters: *A 1/2 *B");
}

TEST(ConstraintTest, SetAtIndexPadsWithEmptyStrings) {
  AScopedRef<IPPDConstraint> constraint(IPPDConstraint::Create({}, {}, "", false, false, ""));
  constraint->SetChoiceAtIndex("Env10", 3);
  EXPECT_EQ(constraint->GetChoices(), (AArray{"", "", "", "Env10"}));
  constraint->SetChoiceAtIndex("A4", 1);
  EXPECT_EQ(constraint->GetChoices(), (AArray{"", "A4", "", "Env10"}));
  constraint->SetOptionAtIndex("PageSize", 0);
  EXPECT_EQ(constraint->GetOptions(), (AArray{"PageSize"}));
  EXPECT_EQ(constraint->GetOptionAtIndex(5), "");
  EXPECT_EQ(constraint->GetChoiceAtIndex(1), "A4");
}

TEST(ConstraintTest, ManyOptionValue) {
  EXPECT_EQ(IPPDConstraint::MakeValueFromOptionsAndChoices({"A", "B", "C"}, {"", "2", ""}),
            "*A *B 2 *C");
  EXPECT_EQ(IPPDConstraint::MakeValueFromOptionsAndChoices({"A", "B"}, {"1"}), "");
  EXPECT_EQ(IPPDConstraint::MakeValueFromOptionsAndChoices({}, {}), "");
}

TEST(ConstraintTest, EqualityAndCopy) {
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
  AScopedRef<APPDCommentable> commentable(copy->QueryPPDCommentable());
  EXPECT_EQ(commentable->GetComment(), "x");
  EXPECT_EQ(copy->QueryPPDLocalizable(), nullptr);
}

}  // namespace
}  // namespace ppdforge
