#include <gtest/gtest.h>

#include <vector>

#include "model/APPDCommentable.h"
#include "model/APPDLocalizable.h"
#include "model/IPPDChoice.h"
#include "model/IPPDGroup.h"
#include "model/IPPDOption.h"
#include "model/ModelTestSupport.h"

namespace ppdforge {
namespace {

using testing::Code4;
using testing::Hold;
using testing::MakeDocument;

void SetTranslation(IPPDObject* object, const AQVString& text, const AQVString& localeID) {
  AScopedRef<APPDLocalizable>(object->QueryPPDLocalizable())->SetLocalizedString(text, localeID);
}

IPPDOption* MakeQuality() {
  AScopedRef<IPPDChoice> draft(IPPDChoice::Create("Draft", "Draft", "", ""));
  AScopedRef<IPPDChoice> normal(IPPDChoice::Create("Normal", "Normal", "<</Q 1>>setpagedevice", ""));
  return IPPDOption::Create("Quality", "Print Quality", "", PPD_UI_PICKONE, {draft.get(), normal.get()}, "");
}

// The IDs of the option's choices in order, each with its option's ID when
// it points back to one.
std::vector<std::string> Choices(const IPPDOption& option) {
  std::vector<std::string> ids;
  for (const IPPDChoice* choice : option.GetChoices()) {
    ids.push_back(choice->GetID().UTF8() + (choice->GetOption() == &option ? "" : "(detached)"));
  }
  return ids;
}

const char* const kDraftBlock =
    "*OrderDependency: 10.0 AnySetup *Quality\n"
    "*DefaultQuality: Draft\n"
    "*Quality Draft/Draft: \"\"\n";

TEST(OptionTest, WritesTheBlockWithATranslationLinePerAdditionalLanguage) {
  AScopedRef<IPPDChoice> loose(IPPDChoice::Create("Plain", "Plain Paper", "pop", "Cheap paper"));
  EXPECT_EQ(loose->GetStringRepresentation(nullptr), "*% Cheap paper\n*DummySettingName Plain/Plain Paper: \"pop\"");

  AScopedRef<IPPDOption> option(MakeQuality());
  AScopedRef<APPDCommentable>(option->QueryPPDCommentable())->SetComment("Quality of print");
  AError error;
  EXPECT_EQ(option->GetStringRepresentation(&error),
            std::string("*% Quality of print\n*OpenUI *Quality/Print Quality: PickOne\n") + kDraftBlock +
                "*Quality Normal/Normal: \"<</Q 1>>setpagedevice\"\n*CloseUI: *Quality\n");
  EXPECT_EQ(error, AError());

  const struct {
    const char* languages;
    const char* expected;
  } cases[] = {
      {"de fr",
       "*OpenUI *Quality/Print Quality: PickOne\n"
       "*de.Translation Quality/Druckqualit\xC3\xA4t: \"\"\n"
       "*fr.Translation Quality/Print Quality: \"\"\n"
       "*OrderDependency: 10.0 AnySetup *Quality\n"
       "*DefaultQuality: Draft\n"
       "*Quality Draft/Draft: \"\"\n"
       "*de.Quality Draft/Entwurf: \"\"\n"
       "*fr.Quality Draft/Draft: \"\"\n"
       "*CloseUI: *Quality\n"},
      {"", "*OpenUI *Quality/Print Quality: PickOne\n*OrderDependency: 10.0 AnySetup *Quality\n"
           "*DefaultQuality: Draft\n*Quality Draft/Draft: \"\"\n*CloseUI: *Quality\n"},
  };
  for (const auto& c : cases) {
    AScopedRef<IPPD> ppd(MakeDocument(c.languages));
    AScopedRef<IPPDGroup> group(IPPDGroup::Create("Setup", "Setup", {}, {}, ""));
    ppd->AddGroup(group.get(), false);
    AScopedRef<IPPDOption> made(MakeQuality());
    IPPDOption* held = group->AddOption(made.get(), false);
    SetTranslation(held, "Druckqualit\xC3\xA4t", "de");
    SetTranslation(held->GetChoiceWithID("Draft"), "Entwurf", "de");
    held->RemoveChoiceWithID("Normal");
    EXPECT_EQ(held->GetStringRepresentation(&error), c.expected) << c.languages;
  }
}

TEST(OptionTest, StatementErrorsStopTheWriting) {
  AScopedRef<IPPDOption> option(MakeQuality());
  AScopedRef<IPPDChoice> bad(IPPDChoice::Create("Bad ID", "Bad", "", ""));
  option->AddChoice(bad.get(), false);
  AError error;
  EXPECT_EQ(option->GetStringRepresentation(&error),
            std::string("*OpenUI *Quality/Print Quality: PickOne\n") + kDraftBlock +
                "*Quality Normal/Normal: \"<</Q 1>>setpagedevice\"\n");
  EXPECT_EQ(error, Code4("Option keyword contains invalid characters: Bad ID"));
  option->SetID("Bad Option");
  EXPECT_EQ(option->GetStringRepresentation(&error), "");
  EXPECT_EQ(error, Code4("Option keyword contains invalid characters: *Bad Option"));
  // Without a place for the error the text still stops.
  EXPECT_EQ(option->GetStringRepresentation(nullptr), "");
  // Without choices nothing is written, and that is no error.
  option->ClearChoices();
  option->SetID("Empty");
  EXPECT_EQ(option->GetStringRepresentation(&error), "");
  EXPECT_EQ(error, Code4("Option keyword contains invalid characters: *Bad Option"));
}

TEST(OptionTest, DefaultIsTheStoredOneElseTheFirstChoice) {
  AScopedRef<IPPDOption> option(MakeQuality());
  EXPECT_EQ(option->GetDefaultChoice(), "Draft");
  option->SetDefaultChoice("Missing");
  EXPECT_EQ(option->GetDefaultChoice(), "Missing");
  EXPECT_EQ(AScopedRef<IPPDOption>(IPPDOption::Create("E", "E", "", PPD_UI_PICKONE, {}, ""))->GetDefaultChoice(), "");
}

TEST(OptionTest, ChoicesAreReplacedByIDMovedToTheEndAndDetached) {
  AScopedRef<IPPDOption> option(MakeQuality());
  AScopedRef<IPPDChoice> oldDraft = Hold(option->GetChoiceWithID("Draft"));
  AScopedRef<IPPDChoice> newDraft(IPPDChoice::Create("Draft", "Fast", "fast", ""));
  EXPECT_EQ(option->AddChoice(newDraft.get(), false), newDraft.get());
  EXPECT_EQ(Choices(*option.get()), (std::vector<std::string>{"Normal", "Draft"}));
  EXPECT_EQ(oldDraft->GetOption(), nullptr);
  EXPECT_EQ(option->GetChoiceWithID("Draft"), newDraft.get());
  // Re-adding the held choice only moves it.
  IPPDChoice* normal = option->GetChoiceWithID("Normal");
  EXPECT_EQ(option->AddChoice(normal, false), normal);
  EXPECT_EQ(Choices(*option.get()), (std::vector<std::string>{"Draft", "Normal"}));
  EXPECT_EQ(option->AddChoice(nullptr, true), nullptr);
  EXPECT_EQ(option->AddChoice(nullptr, false), nullptr);

  // Lookups are case-sensitive and follow renames.
  EXPECT_EQ(option->GetChoiceWithID("draft"), nullptr);
  newDraft->SetID("Fast");
  EXPECT_EQ(option->GetChoiceWithID("Draft"), nullptr);
  EXPECT_EQ(option->GetChoiceWithID("Fast"), newDraft.get());
  AScopedRef<IPPDChoice> fast(IPPDChoice::Create("Fast", "F", "", ""));
  option->AddChoice(fast.get(), false);
  EXPECT_EQ(Choices(*option.get()), (std::vector<std::string>{"Normal", "Fast"}));
  EXPECT_EQ(newDraft->GetOption(), nullptr);

  // Removal takes the held object, else an equal one, else the exact ID.
  AScopedRef<IPPDChoice> lookalike(IPPDChoice::Create("Fast", "F", "", "other comment"));
  option->RemoveChoice(lookalike.get());
  option->RemoveChoiceWithID("normal");
  EXPECT_EQ(Choices(*option.get()), (std::vector<std::string>{"Normal"}));
  EXPECT_EQ(fast->GetOption(), nullptr);
  AScopedRef<IPPDChoice> last = Hold(option->GetChoiceWithID("Normal"));
  option->ClearChoices();
  EXPECT_TRUE(option->GetChoices().empty());
  EXPECT_EQ(last->GetOption(), nullptr);
  EXPECT_EQ(option->GetChoiceWithID("Normal"), nullptr);
}

TEST(OptionTest, CopiesKeepTheCallersChoicesApart) {
  AScopedRef<IPPDChoice> given(IPPDChoice::Create("A", "A", "a", ""));
  AScopedRef<IPPDOption> option(IPPDOption::Create("O", "O", "", PPD_UI_PICKONE, {given.get()}, ""));
  EXPECT_NE(option->GetChoices()[0], given.get());
  EXPECT_EQ(given->GetOption(), nullptr);
  AScopedRef<IPPDChoice> copied(IPPDChoice::Create("B", "B", "b", ""));
  AScopedRef<IPPDChoice> shared(IPPDChoice::Create("C", "C", "c", ""));
  EXPECT_NE(option->AddChoice(copied.get(), true), copied.get());
  EXPECT_EQ(option->AddChoice(shared.get(), false), shared.get());
  EXPECT_EQ(Choices(*option.get()), (std::vector<std::string>{"A", "B", "C"}));
  EXPECT_EQ(copied->GetOption(), nullptr);
  copied->SetCode("changed");
  shared->SetCode("changed");
  EXPECT_EQ(option->GetChoiceWithID("B")->GetCode(), "b");
  EXPECT_EQ(option->GetChoiceWithID("C")->GetCode(), "changed");

  AScopedRef<IPPD> ppd(MakeDocument("de"));
  AScopedRef<IPPDGroup> group(IPPDGroup::Create("Setup", "Setup", {option.get()}, {}, ""));
  IPPDOption* held = ppd->AddGroup(group.get(), false)->GetOptionWithID("O");
  SetTranslation(held->GetChoiceWithID("A"), "Entwurf", "de");
  ASSERT_NE(held->GetChoiceWithID("A")->GetLocalizer(), nullptr);
  // A copy has no owner, no localizer and no translations, but is equal.
  AScopedRef<IPPDChoice> choiceCopy(held->GetChoiceWithID("A")->Clone());
  EXPECT_EQ(choiceCopy->GetOption(), nullptr);
  EXPECT_EQ(choiceCopy->GetLocalizer(), nullptr);
  EXPECT_TRUE(AScopedRef<APPDLocalizable>(choiceCopy->QueryPPDLocalizable())->GetLocalizations().empty());
  EXPECT_TRUE(*choiceCopy.get() == *held->GetChoiceWithID("A"));
  AScopedRef<IPPDOption> optionCopy(held->Clone());
  EXPECT_EQ(optionCopy->GetGroup(), nullptr);
  EXPECT_TRUE(*optionCopy.get() == *held);
  EXPECT_NE(optionCopy->GetChoices()[0], held->GetChoices()[0]);
  EXPECT_EQ(Choices(*optionCopy.get()), (std::vector<std::string>{"A", "B", "C"}));
}

TEST(OptionTest, EqualityIgnoresChoiceOrderCommentsAndOwners) {
  AScopedRef<IPPDChoice> a(IPPDChoice::Create("A", "A", "a", "one"));
  AScopedRef<IPPDChoice> b(IPPDChoice::Create("B", "B", "b", ""));
  EXPECT_TRUE(*a.get() == *AScopedRef<IPPDChoice>(IPPDChoice::Create("A", "A", "a", "two")).get());
  EXPECT_TRUE(*a.get() != *AScopedRef<IPPDChoice>(IPPDChoice::Create("A", "A", "other", "")).get());
  AScopedRef<IPPDOption> first(IPPDOption::Create("O", "O", "", PPD_UI_PICKONE, {a.get(), b.get()}, "x"));
  AScopedRef<IPPDOption> second(IPPDOption::Create("O", "O", "A", PPD_UI_PICKONE, {b.get(), a.get()}, "y"));
  AScopedRef<IPPDGroup> group(IPPDGroup::Create("G", "G", {}, {}, ""));
  group->AddOption(second.get(), false);
  // The first option's effective default is "A", the second's stored one.
  EXPECT_TRUE(*first.get() == *second.get());
  second->SetDefaultChoice("B");
  EXPECT_TRUE(*first.get() != *second.get());
  second->SetDefaultChoice("A");
  second->SetUIType(PPD_UI_PICKMANY);
  EXPECT_TRUE(*first.get() != *second.get());
  second->SetUIType(PPD_UI_PICKONE);
  second->GetChoiceWithID("B")->SetCode("other");
  EXPECT_TRUE(*first.get() != *second.get());
}

}  // namespace
}  // namespace ppdforge
