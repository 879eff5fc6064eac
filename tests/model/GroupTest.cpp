#include <gtest/gtest.h>

#include <vector>

#include "core/ASharedObject.h"
#include "model/APPDLocalizable.h"
#include "model/IPPD.h"
#include "model/IPPDChoice.h"
#include "model/IPPDGroup.h"
#include "model/IPPDLocalizer.h"
#include "model/IPPDOption.h"

namespace ppdforge {
namespace {

// A one-choice option: *OpenUI *ID ... *ID On: "" ... *CloseUI.
IPPDOption* MakeOption(const AQVString& id) {
  AScopedRef<IPPDChoice> on(IPPDChoice::Create("On", "", "", ""));
  return IPPDOption::Create(id, "", "", PPD_UI_BOOLEAN, {on.get()}, "");
}

AQVString OptionText(const AQVString& id) {
  return "*OpenUI *" + id + ": Boolean\n*OrderDependency: 10.0 AnySetup *" + id + "\n*Default" +
         id + ": On\n*" + id + " On: \"\"\n*CloseUI: *" + id + "\n";
}

IPPD* MakeDocument(const AQVString& languages) {
  IPPD* ppd = IPPD::Create();
  AScopedRef<IPPDLocalizer> localizer(IPPDLocalizer::Create());
  ppd->SetLocalizer(localizer.get());
  ppd->AddAttribute("LanguageVersion", "English", "", "", kPPDStringValue, "");
  ppd->AddAttribute("cupsLanguages", languages, "", "", kPPDQuotedValue, "");
  return ppd;
}

TEST(GroupTest, GeneralWritesItsOptionsBare) {
  AScopedRef<IPPD> ppd(MakeDocument("de"));
  AScopedRef<IPPDOption> a(MakeOption("A"));
  AScopedRef<IPPDGroup> made(IPPDGroup::Create("General", "General", {a.get()}, {}, ""));
  IPPDGroup* general = ppd->AddGroup(made.get(), false);
  EXPECT_EQ(general->GetStringRepresentation(nullptr), OptionText("A") + "\n");
}

TEST(GroupTest, WritesHeadingTranslationsBlankLineAndClose) {
  AScopedRef<IPPD> ppd(MakeDocument("de fr"));
  AScopedRef<IPPDOption> a(MakeOption("A"));
  AScopedRef<IPPDGroup> made(IPPDGroup::Create("Finishing", "Finishing Options", {a.get()}, {}, "Last steps"));
  IPPDGroup* group = ppd->AddGroup(made.get(), false);
  AScopedRef<APPDLocalizable> localizable(group->QueryPPDLocalizable());
  localizable->SetLocalizedString("Endbearbeitung", "de");

  AError error;
  EXPECT_EQ(group->GetStringRepresentation(&error),
            "*% Last steps\n"
            "*OpenGroup: Finishing/Finishing Options\n"
            "*de.Translation Finishing/Endbearbeitung: \"\"\n"
            "*fr.Translation Finishing/Finishing Options: \"\"\n"
            "\n" +
                OptionText("A") + "\n*CloseGroup: Finishing\n");
  EXPECT_EQ(error.code, 0);
}

TEST(GroupTest, EmptyGroupWritesNothingEvenWithAComment) {
  AScopedRef<IPPDGroup> group(IPPDGroup::Create("G", "G", {}, {}, "comment"));
  AError error;
  EXPECT_EQ(group->GetStringRepresentation(&error), "");
  EXPECT_EQ(error.code, 0);
}

TEST(GroupTest, SubGroupsComeFirstAndUseTheSubKeywords) {
  AScopedRef<IPPDOption> a(MakeOption("A"));
  AScopedRef<IPPDOption> b(MakeOption("B"));
  AScopedRef<IPPDGroup> top(IPPDGroup::Create("Top", "", {a.get()}, {}, ""));
  AScopedRef<IPPDGroup> sub(IPPDGroup::Create("Sub", "", {b.get()}, {}, ""));
  EXPECT_EQ(sub->GetStringRepresentation(nullptr),
            "*OpenGroup: Sub\n\n" + OptionText("B") + "\n*CloseGroup: Sub\n");

  IPPDGroup* held = top->AddSubGroup(sub.get(), true);
  EXPECT_TRUE(held->IsSubGroup());
  EXPECT_FALSE(sub->IsSubGroup());
  EXPECT_EQ(top->GetStringRepresentation(nullptr),
            "*OpenGroup: Top\n\n"
            "*OpenSubGroup: Sub\n\n" +
                OptionText("B") + "\n*CloseSubGroup: Sub\n\n" + OptionText("A") +
                "\n*CloseGroup: Top\n");
}

TEST(GroupTest, GroupWithOnlySubGroupsIsWritten) {
  AScopedRef<IPPDOption> b(MakeOption("B"));
  AScopedRef<IPPDGroup> sub(IPPDGroup::Create("Sub", "", {b.get()}, {}, ""));
  AScopedRef<IPPDGroup> top(IPPDGroup::Create("Top", "", {}, {sub.get()}, ""));
  EXPECT_EQ(top->GetStringRepresentation(nullptr),
            "*OpenGroup: Top\n\n*OpenSubGroup: Sub\n\n" + OptionText("B") +
                "\n*CloseSubGroup: Sub\n\n*CloseGroup: Top\n");
}

TEST(GroupTest, AddOptionReplacesByIDAndMovesToEnd) {
  AScopedRef<IPPDOption> a(MakeOption("A"));
  AScopedRef<IPPDOption> b(MakeOption("B"));
  AScopedRef<IPPDGroup> group(IPPDGroup::Create("G", "G", {}, {}, ""));
  IPPDOption* oldA = group->AddOption(a.get(), false);
  group->AddOption(b.get(), false);
  AScopedRef<IPPDOption> newA(MakeOption("A"));
  EXPECT_EQ(group->AddOption(newA.get(), false), newA.get());
  ASSERT_EQ(group->GetOptions().size(), 2U);
  EXPECT_EQ(group->GetOptions()[0], b.get());
  EXPECT_EQ(group->GetOptions()[1], newA.get());
  EXPECT_EQ(oldA->GetGroup(), nullptr);
  EXPECT_EQ(newA->GetGroup(), group.get());
  EXPECT_EQ(group->AddOption(nullptr, true), nullptr);
}

TEST(GroupTest, RemoveOptionByIdentityElseEquality) {
  AScopedRef<IPPDOption> a(MakeOption("A"));
  AScopedRef<IPPDGroup> group(IPPDGroup::Create("G", "G", {a.get()}, {}, ""));
  IPPDOption* held = group->GetOptionWithID("A");
  held->Retain();
  AScopedRef<IPPDOption> keep(held);
  group->RemoveOption(a.get());  // an equal copy, not the held object
  EXPECT_TRUE(group->GetOptions().empty());
  EXPECT_EQ(held->GetGroup(), nullptr);
  EXPECT_EQ(group->GetOptionWithID("A"), nullptr);
}

TEST(GroupTest, DocumentReachesSubGroupsButNotTheirSubGroups) {
  AScopedRef<IPPD> ppd(MakeDocument("de"));
  AScopedRef<IPPDOption> c(MakeOption("C"));
  AScopedRef<IPPDGroup> inner(IPPDGroup::Create("Inner", "Inner", {c.get()}, {}, ""));
  AScopedRef<IPPDGroup> middle(IPPDGroup::Create("Middle", "Middle", {}, {inner.get()}, ""));
  AScopedRef<IPPDGroup> top(IPPDGroup::Create("Top", "Top", {}, {middle.get()}, ""));
  IPPDGroup* held = ppd->AddGroup(top.get(), false);
  IPPDGroup* heldMiddle = held->GetSubGroupWithID("Middle");
  IPPDGroup* heldInner = heldMiddle->GetSubGroupWithID("Inner");
  EXPECT_EQ(held->GetPPD(), ppd.get());
  EXPECT_EQ(heldMiddle->GetPPD(), ppd.get());
  EXPECT_EQ(heldInner->GetPPD(), nullptr);
  EXPECT_EQ(heldInner->GetLocalizer(), nullptr);
  EXPECT_NE(heldMiddle->GetLocalizer(), nullptr);

  // Inner writes without languages, Middle with them.
  EXPECT_EQ(heldInner->GetStringRepresentation(nullptr),
            "*OpenSubGroup: Inner/Inner\n\n" + OptionText("C") + "\n*CloseSubGroup: Inner\n");
  const AQVString middleText = heldMiddle->GetStringRepresentation(nullptr);
  EXPECT_EQ(middleText.GetSubString(0, middleText.Find("\n\n")),
            "*OpenSubGroup: Middle/Middle\n*de.Translation Middle/Middle: \"\"");

  ppd->RemoveGroup(held);
  EXPECT_EQ(top->GetPPD(), nullptr);
  EXPECT_EQ(top->GetSubGroupWithID("Middle")->GetPPD(), nullptr);
}

TEST(GroupTest, AddSubGroupHandsDownTheDocumentAndReplacesByID) {
  AScopedRef<IPPD> ppd(MakeDocument("de"));
  AScopedRef<IPPDGroup> made(IPPDGroup::Create("Top", "Top", {}, {}, ""));
  IPPDGroup* top = ppd->AddGroup(made.get(), false);
  AScopedRef<IPPDGroup> first(IPPDGroup::Create("S", "one", {}, {}, ""));
  AScopedRef<IPPDGroup> other(IPPDGroup::Create("T", "", {}, {}, ""));
  AScopedRef<IPPDGroup> second(IPPDGroup::Create("S", "two", {}, {}, ""));
  top->AddSubGroup(first.get(), false);
  top->AddSubGroup(other.get(), false);
  EXPECT_EQ(first->GetPPD(), ppd.get());
  top->AddSubGroup(second.get(), false);
  ASSERT_EQ(top->GetSubGroups().size(), 2U);
  EXPECT_EQ(top->GetSubGroups()[0], other.get());
  EXPECT_EQ(top->GetSubGroups()[1], second.get());
  EXPECT_EQ(first->GetPPD(), nullptr);
  EXPECT_EQ(second->GetPPD(), ppd.get());

  top->RemoveSubGroupWithID("T");
  EXPECT_EQ(other->GetPPD(), nullptr);
  EXPECT_EQ(top->GetSubGroups().size(), 1U);
}

TEST(GroupTest, CopyIsTopLevelWithoutDocument) {
  AScopedRef<IPPD> ppd(MakeDocument("de"));
  AScopedRef<IPPDOption> a(MakeOption("A"));
  AScopedRef<IPPDGroup> sub(IPPDGroup::Create("Sub", "Sub", {a.get()}, {}, ""));
  AScopedRef<IPPDGroup> made(IPPDGroup::Create("Top", "Top", {}, {sub.get()}, "note"));
  IPPDGroup* top = ppd->AddGroup(made.get(), false);
  IPPDGroup* heldSub = top->GetSubGroupWithID("Sub");

  AScopedRef<IPPDGroup> copy(heldSub->Clone());
  EXPECT_FALSE(copy->IsSubGroup());
  EXPECT_EQ(copy->GetPPD(), nullptr);
  EXPECT_TRUE(*copy.get() == *heldSub);
  EXPECT_NE(copy->GetOptions()[0], heldSub->GetOptions()[0]);
  EXPECT_EQ(copy->GetOptions()[0]->GetGroup(), copy.get());
}

TEST(GroupTest, EqualityIgnoresOrderCommentAndFlag) {
  AScopedRef<IPPDOption> a(MakeOption("A"));
  AScopedRef<IPPDOption> b(MakeOption("B"));
  AScopedRef<IPPDGroup> first(IPPDGroup::Create("G", "N", {a.get(), b.get()}, {}, "x"));
  AScopedRef<IPPDGroup> second(IPPDGroup::Create("G", "N", {b.get(), a.get()}, {}, "y"));
  second->SetSubGroup(true);
  EXPECT_TRUE(*first.get() == *second.get());
  second->RemoveOptionWithID("B");
  EXPECT_TRUE(*first.get() != *second.get());
  AScopedRef<IPPDOption> other(MakeOption("B"));
  other->SetName("changed");
  second->AddOption(other.get(), false);
  EXPECT_TRUE(*first.get() != *second.get());
}

TEST(GroupTest, StatementErrorsStopTheWriting) {
  AScopedRef<IPPDOption> a(MakeOption("A"));
  AScopedRef<IPPDOption> bad(MakeOption("Bad Option"));
  AScopedRef<IPPDGroup> group(IPPDGroup::Create("G", "", {a.get(), bad.get()}, {}, ""));
  AError error;
  EXPECT_EQ(group->GetStringRepresentation(&error), "*OpenGroup: G\n\n" + OptionText("A") + "\n");
  EXPECT_EQ(error.code, 4);
  EXPECT_EQ(error.message, "Option keyword contains invalid characters: *Bad Option");

  group->SetID("Bad/Group");
  AError heading;
  EXPECT_EQ(group->GetStringRepresentation(&heading), "");
  EXPECT_EQ(heading.code, 4);
  EXPECT_EQ(heading.message, "Value contains invalid characters: Bad/Group");
}

}  // namespace
}  // namespace ppdforge
