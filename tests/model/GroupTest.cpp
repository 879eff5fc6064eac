#include <gtest/gtest.h>

#include <vector>

#include "model/APPDLocalizable.h"
#include "model/IPPDChoice.h"
#include "model/IPPDGroup.h"
#include "model/IPPDOption.h"
#include "model/ModelTestSupport.h"

namespace ppdforge {
namespace {

using testing::Code4;
using testing::MakeDocument;

// A one-choice option: *OpenUI *ID ... *ID On: "" ... *CloseUI.
IPPDOption* MakeOption(const AQVString& id) {
  AScopedRef<IPPDChoice> on(IPPDChoice::Create("On", "", "", ""));
  return IPPDOption::Create(id, "", "", PPD_UI_BOOLEAN, {on.get()}, "");
}

AQVString OptionText(const AQVString& id) {
  return "*OpenUI *" + id + ": Boolean\n*OrderDependency: 10.0 AnySetup *" + id + "\n*Default" + id + ": On\n*" + id +
         " On: \"\"\n*CloseUI: *" + id + "\n";
}

TEST(GroupTest, WritesHeadingTranslationsSubGroupsFirstAndClose) {
  AScopedRef<IPPD> ppd(MakeDocument("de fr"));
  AScopedRef<IPPDOption> a(MakeOption("A"));
  AScopedRef<IPPDOption> b(MakeOption("B"));
  AScopedRef<IPPDGroup> general(IPPDGroup::Create("General", "General", {a.get()}, {}, ""));
  EXPECT_EQ(ppd->AddGroup(general.get(), false)->GetStringRepresentation(nullptr), OptionText("A") + "\n");

  AScopedRef<IPPDGroup> made(IPPDGroup::Create("Finishing", "Finishing Options", {a.get()}, {}, "Last steps"));
  IPPDGroup* group = ppd->AddGroup(made.get(), false);
  AScopedRef<APPDLocalizable>(group->QueryPPDLocalizable())->SetLocalizedString("Endbearbeitung", "de");
  AError error;
  EXPECT_EQ(group->GetStringRepresentation(&error),
            "*% Last steps\n"
            "*OpenGroup: Finishing/Finishing Options\n"
            "*de.Translation Finishing/Endbearbeitung: \"\"\n"
            "*fr.Translation Finishing/Finishing Options: \"\"\n"
            "\n" +
                OptionText("A") + "\n*CloseGroup: Finishing\n");
  EXPECT_EQ(error, AError());

  // Outside a document: no translations; an empty group writes nothing.
  AScopedRef<IPPDGroup> top(IPPDGroup::Create("Top", "", {a.get()}, {}, ""));
  AScopedRef<IPPDGroup> sub(IPPDGroup::Create("Sub", "", {b.get()}, {}, ""));
  EXPECT_EQ(sub->GetStringRepresentation(nullptr), "*OpenGroup: Sub\n\n" + OptionText("B") + "\n*CloseGroup: Sub\n");
  IPPDGroup* heldSub = top->AddSubGroup(sub.get(), true);
  EXPECT_TRUE(heldSub->IsSubGroup());
  EXPECT_FALSE(sub->IsSubGroup());
  const AQVString subText = "*OpenSubGroup: Sub\n\n" + OptionText("B") + "\n*CloseSubGroup: Sub\n\n";
  EXPECT_EQ(top->GetStringRepresentation(nullptr),
            "*OpenGroup: Top\n\n" + subText + OptionText("A") + "\n*CloseGroup: Top\n");
  top->RemoveOptionWithID("A");
  EXPECT_EQ(top->GetStringRepresentation(nullptr), "*OpenGroup: Top\n\n" + subText + "*CloseGroup: Top\n");
  AScopedRef<IPPDGroup> empty(IPPDGroup::Create("G", "G", {}, {}, "comment"));
  EXPECT_EQ(empty->GetStringRepresentation(&error), "");
  EXPECT_EQ(error, AError());
}

TEST(GroupTest, StatementErrorsStopTheWriting) {
  AScopedRef<IPPDOption> a(MakeOption("A"));
  AScopedRef<IPPDOption> bad(MakeOption("Bad Option"));
  AScopedRef<IPPDGroup> group(IPPDGroup::Create("G", "", {a.get(), bad.get()}, {}, ""));
  AError error;
  EXPECT_EQ(group->GetStringRepresentation(&error), "*OpenGroup: G\n\n" + OptionText("A") + "\n");
  EXPECT_EQ(error, Code4("Option keyword contains invalid characters: *Bad Option"));
  group->SetID("Bad/Group");
  EXPECT_EQ(group->GetStringRepresentation(&error), "");
  EXPECT_EQ(error, Code4("Value contains invalid characters: Bad/Group"));
}

TEST(GroupTest, OptionsAndSubGroupsAreReplacedByIDAndMovedToTheEnd) {
  AScopedRef<IPPDOption> a(MakeOption("A"));
  AScopedRef<IPPDOption> b(MakeOption("B"));
  AScopedRef<IPPDGroup> group(IPPDGroup::Create("G", "G", {}, {}, ""));
  IPPDOption* oldA = group->AddOption(a.get(), false);
  group->AddOption(b.get(), false);
  AScopedRef<IPPDOption> newA(MakeOption("A"));
  EXPECT_EQ(group->AddOption(newA.get(), false), newA.get());
  EXPECT_EQ(group->GetOptions(), (std::vector<IPPDOption*>{b.get(), newA.get()}));
  EXPECT_EQ(oldA->GetGroup(), nullptr);
  EXPECT_EQ(newA->GetGroup(), group.get());
  EXPECT_EQ(group->AddOption(nullptr, true), nullptr);
  // Removal takes the held object, else an equal one.
  AScopedRef<IPPDOption> lookalike(MakeOption("A"));
  group->RemoveOption(lookalike.get());
  EXPECT_EQ(group->GetOptions(), (std::vector<IPPDOption*>{b.get()}));
  EXPECT_EQ(newA->GetGroup(), nullptr);
  EXPECT_EQ(group->GetOptionWithID("A"), nullptr);

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
  EXPECT_EQ(top->GetSubGroups(), (std::vector<IPPDGroup*>{other.get(), second.get()}));
  EXPECT_EQ(first->GetPPD(), nullptr);
  EXPECT_EQ(second->GetPPD(), ppd.get());
  top->RemoveSubGroupWithID("T");
  EXPECT_EQ(other->GetPPD(), nullptr);
  EXPECT_EQ(top->GetSubGroups(), (std::vector<IPPDGroup*>{second.get()}));
}

TEST(GroupTest, DocumentReachesSubGroupsButNotTheirSubGroupsAndCopiesAreTopLevel) {
  AScopedRef<IPPD> ppd(MakeDocument("de"));
  AScopedRef<IPPDOption> c(MakeOption("C"));
  AScopedRef<IPPDGroup> inner(IPPDGroup::Create("Inner", "Inner", {c.get()}, {}, ""));
  AScopedRef<IPPDGroup> middle(IPPDGroup::Create("Middle", "Middle", {}, {inner.get()}, ""));
  AScopedRef<IPPDGroup> top(IPPDGroup::Create("Top", "Top", {}, {middle.get()}, "note"));
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

  AScopedRef<IPPDGroup> copy(heldMiddle->Clone());
  EXPECT_FALSE(copy->IsSubGroup());
  EXPECT_EQ(copy->GetPPD(), nullptr);
  EXPECT_TRUE(*copy.get() == *heldMiddle);
  const IPPDGroup* copiedInner = copy->GetSubGroupWithID("Inner");
  EXPECT_NE(copiedInner, heldInner);
  EXPECT_EQ(copiedInner->GetOptions()[0]->GetGroup(), copiedInner);

  ppd->RemoveGroup(held);
  EXPECT_EQ(top->GetPPD(), nullptr);
  EXPECT_EQ(top->GetSubGroupWithID("Middle")->GetPPD(), nullptr);
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

}  // namespace
}  // namespace ppdforge
