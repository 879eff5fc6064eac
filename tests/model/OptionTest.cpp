#include <gtest/gtest.h>

#include <vector>

#include "core/ASharedObject.h"
#include "model/IPPD.h"
#include "model/IPPDChoice.h"
#include "model/IPPDGroup.h"
#include "model/IPPDLocalizer.h"
#include "model/IPPDOption.h"
#include "model/APPDCommentable.h"
#include "model/APPDLocalizable.h"

namespace ppdforge {
namespace {

// A document with "LanguageVersion" and "cupsLanguages" and a group "Setup"
// that receives the options under test.
struct LocalizedSetup {
  explicit LocalizedSetup(const AQVString& languages) {
    AScopedRef<IPPDLocalizer> localizer(IPPDLocalizer::Create());
    ppd->SetLocalizer(localizer.get());
    ppd->AddAttribute("LanguageVersion", "English", "", "", kPPDStringValue, "");
    if (!languages.IsEmpty()) {
      ppd->AddAttribute("cupsLanguages", languages, "", "", kPPDQuotedValue, "");
    }
    AScopedRef<IPPDGroup> made(IPPDGroup::Create("Setup", "Setup", {}, {}, ""));
    group = ppd->AddGroup(made.get(), false);
  }
  // Adds `option` to the group without copying; returns it.
  IPPDOption* Adopt(IPPDOption* option) { return group->AddOption(option, false); }

  AScopedRef<IPPD> ppd{IPPD::Create()};
  IPPDGroup* group = nullptr;
};

void SetTranslation(IPPDObject* object, const AQVString& text, const AQVString& localeID) {
  AScopedRef<APPDLocalizable> localizable(object->QueryPPDLocalizable());
  localizable->SetLocalizedString(text, localeID);
}

IPPDOption* MakeQuality() {
  AScopedRef<IPPDChoice> draft(IPPDChoice::Create("Draft", "Draft", "", ""));
  AScopedRef<IPPDChoice> normal(IPPDChoice::Create("Normal", "Normal", "<</Q 1>>setpagedevice", ""));
  return IPPDOption::Create("Quality", "Print Quality", "", PPD_UI_PICKONE,
                            {draft.get(), normal.get()}, "");
}

TEST(ChoiceTest, OutsideAnOptionUsesTheDummyKeyword) {
  AScopedRef<IPPDChoice> choice(IPPDChoice::Create("Plain", "Plain Paper", "pop", "Cheap paper"));
  AError error;
  EXPECT_EQ(choice->GetStringRepresentation(&error),
            "*% Cheap paper\n*DummySettingName Plain/Plain Paper: \"pop\"");
  EXPECT_EQ(error.code, 0);
}

TEST(ChoiceTest, EqualityIgnoresCommentAndOwner) {
  AScopedRef<IPPDChoice> a(IPPDChoice::Create("A", "Name", "code", "one"));
  AScopedRef<IPPDChoice> b(IPPDChoice::Create("A", "Name", "code", "two"));
  AScopedRef<IPPDChoice> c(IPPDChoice::Create("A", "Name", "other", ""));
  AScopedRef<IPPDOption> option(IPPDOption::Create("O", "O", "", PPD_UI_PICKONE, {}, ""));
  option->AddChoice(b.get(), false);
  EXPECT_TRUE(*a.get() == *b.get());
  EXPECT_TRUE(*a.get() != *c.get());
}

TEST(ChoiceTest, CopyDropsOwnerAndTranslations) {
  LocalizedSetup setup("de");
  AScopedRef<IPPDOption> made(MakeQuality());
  IPPDOption* option = setup.Adopt(made.get());
  IPPDChoice* draft = option->GetChoiceWithID("Draft");
  SetTranslation(draft, "Entwurf", "de");
  ASSERT_NE(draft->GetLocalizer(), nullptr);

  AScopedRef<IPPDChoice> copy(draft->Clone());
  EXPECT_EQ(copy->GetOption(), nullptr);
  EXPECT_EQ(copy->GetLocalizer(), nullptr);
  AScopedRef<APPDLocalizable> localizable(copy->QueryPPDLocalizable());
  EXPECT_TRUE(localizable->GetLocalizations().empty());
  EXPECT_TRUE(*copy.get() == *draft);
}

TEST(OptionTest, WritesTheWholeBlock) {
  AScopedRef<IPPDOption> option(MakeQuality());
  AScopedRef<APPDCommentable>(option->QueryPPDCommentable())->SetComment("Quality of print");
  AError error;
  EXPECT_EQ(option->GetStringRepresentation(&error),
            "*% Quality of print\n"
            "*OpenUI *Quality/Print Quality: PickOne\n"
            "*OrderDependency: 10.0 AnySetup *Quality\n"
            "*DefaultQuality: Draft\n"
            "*Quality Draft/Draft: \"\"\n"
            "*Quality Normal/Normal: \"<</Q 1>>setpagedevice\"\n"
            "*CloseUI: *Quality\n");
  EXPECT_EQ(error.code, 0);
}

TEST(OptionTest, UITypeNames) {
  const struct {
    ppd_ui_e type;
    const char* name;
  } cases[] = {{PPD_UI_BOOLEAN, "Boolean"}, {PPD_UI_PICKONE, "PickOne"}, {PPD_UI_PICKMANY, "PickMany"}};
  for (const auto& c : cases) {
    AScopedRef<IPPDChoice> choice(IPPDChoice::Create("True", "", "", ""));
    AScopedRef<IPPDOption> option(IPPDOption::Create("Flag", "", "True", c.type, {choice.get()}, ""));
    const AQVString text = option->GetStringRepresentation(nullptr);
    EXPECT_EQ(text.GetSubString(0, text.Find("\n")), AQVString("*OpenUI *Flag: ") + c.name);
  }
}

TEST(OptionTest, DefaultIsTheStoredOneElseTheFirstChoice) {
  AScopedRef<IPPDOption> option(MakeQuality());
  EXPECT_EQ(option->GetDefaultChoice(), "Draft");
  option->SetDefaultChoice("Normal");
  EXPECT_EQ(option->GetDefaultChoice(), "Normal");
  option->SetDefaultChoice("Missing");
  EXPECT_EQ(option->GetDefaultChoice(), "Missing");

  AScopedRef<IPPDOption> empty(IPPDOption::Create("E", "E", "", PPD_UI_PICKONE, {}, ""));
  EXPECT_EQ(empty->GetDefaultChoice(), "");
}

TEST(OptionTest, WithoutChoicesWritesNothing) {
  AScopedRef<IPPDOption> option(IPPDOption::Create("Empty", "Empty", "X", PPD_UI_PICKONE, {}, "c"));
  AError error;
  EXPECT_EQ(option->GetStringRepresentation(&error), "");
  EXPECT_EQ(error.code, 0);
}

TEST(OptionTest, AddChoiceReplacesByIDMovesToEndAndDetaches) {
  AScopedRef<IPPDOption> option(MakeQuality());
  IPPDChoice* oldDraft = option->GetChoiceWithID("Draft");
  oldDraft->Retain();
  AScopedRef<IPPDChoice> keepOld(oldDraft);

  AScopedRef<IPPDChoice> newDraft(IPPDChoice::Create("Draft", "Fast", "fast", ""));
  IPPDChoice* stored = option->AddChoice(newDraft.get(), false);
  EXPECT_EQ(stored, newDraft.get());
  ASSERT_EQ(option->GetChoices().size(), 2U);
  EXPECT_EQ(option->GetChoices()[0]->GetID(), "Normal");
  EXPECT_EQ(option->GetChoices()[1], newDraft.get());
  EXPECT_EQ(oldDraft->GetOption(), nullptr);
  EXPECT_EQ(newDraft->GetOption(), option.get());
  EXPECT_EQ(option->GetChoiceWithID("Draft"), newDraft.get());
}

TEST(OptionTest, ReaddingTheHeldChoiceMovesItToTheEnd) {
  AScopedRef<IPPDOption> option(MakeQuality());
  IPPDChoice* draft = option->GetChoiceWithID("Draft");
  EXPECT_EQ(option->AddChoice(draft, false), draft);
  ASSERT_EQ(option->GetChoices().size(), 2U);
  EXPECT_EQ(option->GetChoices()[1], draft);
  EXPECT_EQ(draft->GetOption(), option.get());
}

TEST(OptionTest, AddNullChoiceChangesNothing) {
  AScopedRef<IPPDOption> option(MakeQuality());
  EXPECT_EQ(option->AddChoice(nullptr, true), nullptr);
  EXPECT_EQ(option->AddChoice(nullptr, false), nullptr);
  EXPECT_EQ(option->GetChoices().size(), 2U);
}

TEST(OptionTest, CopyKeepsTheCallersChoiceApart) {
  AScopedRef<IPPDOption> option(IPPDOption::Create("O", "O", "", PPD_UI_PICKONE, {}, ""));
  AScopedRef<IPPDChoice> copied(IPPDChoice::Create("A", "A", "a", ""));
  AScopedRef<IPPDChoice> shared(IPPDChoice::Create("B", "B", "b", ""));
  IPPDChoice* storedCopy = option->AddChoice(copied.get(), true);
  IPPDChoice* storedShared = option->AddChoice(shared.get(), false);
  EXPECT_NE(storedCopy, copied.get());
  EXPECT_EQ(copied->GetOption(), nullptr);
  EXPECT_EQ(storedShared, shared.get());

  copied->SetCode("changed");
  shared->SetCode("changed");
  EXPECT_EQ(option->GetChoiceWithID("A")->GetCode(), "a");
  EXPECT_EQ(option->GetChoiceWithID("B")->GetCode(), "changed");
}

TEST(OptionTest, CreateCopiesTheGivenChoices) {
  AScopedRef<IPPDChoice> choice(IPPDChoice::Create("A", "A", "a", ""));
  AScopedRef<IPPDOption> option(IPPDOption::Create("O", "O", "", PPD_UI_PICKONE, {choice.get()}, ""));
  EXPECT_NE(option->GetChoices()[0], choice.get());
  EXPECT_EQ(choice->GetOption(), nullptr);
  EXPECT_EQ(option->GetChoices()[0]->GetOption(), option.get());
}

TEST(OptionTest, RemoveByIdentityElseEquality) {
  AScopedRef<IPPDOption> option(MakeQuality());
  AScopedRef<IPPDChoice> lookalike(IPPDChoice::Create("Draft", "Draft", "", "other comment"));
  option->RemoveChoice(lookalike.get());
  ASSERT_EQ(option->GetChoices().size(), 1U);
  EXPECT_EQ(option->GetChoices()[0]->GetID(), "Normal");

  option->RemoveChoiceWithID("normal");
  EXPECT_EQ(option->GetChoices().size(), 1U);
  option->RemoveChoiceWithID("Normal");
  EXPECT_TRUE(option->GetChoices().empty());
}

TEST(OptionTest, LookupIsCaseSensitiveAndFollowsRenames) {
  AScopedRef<IPPDOption> option(MakeQuality());
  EXPECT_EQ(option->GetChoiceWithID("draft"), nullptr);
  IPPDChoice* draft = option->GetChoiceWithID("Draft");
  draft->SetID("Fast");
  EXPECT_EQ(option->GetChoiceWithID("Draft"), nullptr);
  EXPECT_EQ(option->GetChoiceWithID("Fast"), draft);

  AScopedRef<IPPDChoice> replacement(IPPDChoice::Create("Fast", "F", "", ""));
  option->AddChoice(replacement.get(), false);
  ASSERT_EQ(option->GetChoices().size(), 2U);
  EXPECT_EQ(option->GetChoices()[0]->GetID(), "Normal");
}

TEST(OptionTest, ClearChoicesDetachesEveryChoice) {
  AScopedRef<IPPDOption> option(MakeQuality());
  IPPDChoice* draft = option->GetChoiceWithID("Draft");
  draft->Retain();
  AScopedRef<IPPDChoice> keep(draft);
  option->ClearChoices();
  EXPECT_TRUE(option->GetChoices().empty());
  EXPECT_EQ(draft->GetOption(), nullptr);
  EXPECT_EQ(option->GetChoiceWithID("Draft"), nullptr);
}

TEST(OptionTest, EqualityIgnoresChoiceOrderCommentAndGroup) {
  AScopedRef<IPPDChoice> a(IPPDChoice::Create("A", "A", "a", ""));
  AScopedRef<IPPDChoice> b(IPPDChoice::Create("B", "B", "b", ""));
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

TEST(OptionTest, CloneCopiesChoicesAndLeavesTheGroup) {
  LocalizedSetup setup("");
  AScopedRef<IPPDOption> made(MakeQuality());
  IPPDOption* option = setup.Adopt(made.get());
  AScopedRef<IPPDOption> copy(option->Clone());
  EXPECT_EQ(copy->GetGroup(), nullptr);
  EXPECT_TRUE(*copy.get() == *option);
  ASSERT_EQ(copy->GetChoices().size(), 2U);
  EXPECT_NE(copy->GetChoices()[0], option->GetChoices()[0]);
  EXPECT_EQ(copy->GetChoices()[0]->GetOption(), copy.get());
}

TEST(OptionTest, TranslationLinesFollowTheAdditionalLanguages) {
  LocalizedSetup setup("de fr");
  AScopedRef<IPPDOption> made(MakeQuality());
  IPPDOption* option = setup.Adopt(made.get());
  SetTranslation(option, "Druckqualit\xC3\xA4t", "de");
  SetTranslation(option->GetChoiceWithID("Draft"), "Entwurf", "de");
  option->RemoveChoiceWithID("Normal");

  AError error;
  EXPECT_EQ(option->GetStringRepresentation(&error),
            "*OpenUI *Quality/Print Quality: PickOne\n"
            "*de.Translation Quality/Druckqualit\xC3\xA4t: \"\"\n"
            "*fr.Translation Quality/Print Quality: \"\"\n"
            "*OrderDependency: 10.0 AnySetup *Quality\n"
            "*DefaultQuality: Draft\n"
            "*Quality Draft/Draft: \"\"\n"
            "*de.Quality Draft/Entwurf: \"\"\n"
            "*fr.Quality Draft/Draft: \"\"\n"
            "*CloseUI: *Quality\n");
  EXPECT_EQ(error.code, 0);
}

TEST(OptionTest, NonPlainMainTranslationMovesToATranslationLine) {
  LocalizedSetup setup("de");
  AScopedRef<IPPDChoice> choice(IPPDChoice::Create("Best", "Tr\xC3\xA8s bien", "", ""));
  AScopedRef<IPPDOption> made(
      IPPDOption::Create("Quality", "Qualit\xC3\xA9: 1", "", PPD_UI_PICKONE, {choice.get()}, ""));
  IPPDOption* option = setup.Adopt(made.get());

  EXPECT_EQ(option->GetStringRepresentation(nullptr),
            "*OpenUI *Quality: PickOne\n"
            "*en.Translation Quality/Qualit\xC3\xA9<3A> 1: \"\"\n"
            "*de.Translation Quality/Qualit\xC3\xA9<3A> 1: \"\"\n"
            "*OrderDependency: 10.0 AnySetup *Quality\n"
            "*DefaultQuality: Best\n"
            "*Quality Best: \"\"\n"
            "*en.Quality Best/Tr\xC3\xA8s bien: \"\"\n"
            "*de.Quality Best/Tr\xC3\xA8s bien: \"\"\n"
            "*CloseUI: *Quality\n");
}

TEST(OptionTest, NoAdditionalLanguagesNoTranslationLines) {
  LocalizedSetup setup("");
  AScopedRef<IPPDOption> made(MakeQuality());
  IPPDOption* option = setup.Adopt(made.get());
  SetTranslation(option, "Qualit\xC3\xA4t", "de");
  option->RemoveChoiceWithID("Normal");
  EXPECT_EQ(option->GetStringRepresentation(nullptr),
            "*OpenUI *Quality/Print Quality: PickOne\n"
            "*OrderDependency: 10.0 AnySetup *Quality\n"
            "*DefaultQuality: Draft\n"
            "*Quality Draft/Draft: \"\"\n"
            "*CloseUI: *Quality\n");
}

TEST(OptionTest, EmptyNamesWriteNoTranslationLines) {
  LocalizedSetup setup("de");
  AScopedRef<IPPDChoice> choice(IPPDChoice::Create("On", "", "", ""));
  AScopedRef<IPPDOption> made(IPPDOption::Create("Flag", "", "", PPD_UI_BOOLEAN, {choice.get()}, ""));
  IPPDOption* option = setup.Adopt(made.get());
  EXPECT_EQ(option->GetStringRepresentation(nullptr),
            "*OpenUI *Flag: Boolean\n"
            "*OrderDependency: 10.0 AnySetup *Flag\n"
            "*DefaultFlag: On\n"
            "*Flag On: \"\"\n"
            "*CloseUI: *Flag\n");
}

TEST(OptionTest, StatementErrorsStopTheWriting) {
  AScopedRef<IPPDOption> option(MakeQuality());
  AScopedRef<IPPDChoice> bad(IPPDChoice::Create("Bad ID", "Bad", "", ""));
  option->AddChoice(bad.get(), false);
  AError error;
  EXPECT_EQ(option->GetStringRepresentation(&error),
            "*OpenUI *Quality/Print Quality: PickOne\n"
            "*OrderDependency: 10.0 AnySetup *Quality\n"
            "*DefaultQuality: Draft\n"
            "*Quality Draft/Draft: \"\"\n"
            "*Quality Normal/Normal: \"<</Q 1>>setpagedevice\"\n");
  EXPECT_EQ(error.domain, "RKPPDGeneration");
  EXPECT_EQ(error.code, 4);
  EXPECT_EQ(error.message, "Option keyword contains invalid characters: Bad ID");

  option->SetID("Bad Option");
  AError second;
  EXPECT_EQ(option->GetStringRepresentation(&second), "");
  EXPECT_EQ(second.code, 4);
  EXPECT_EQ(second.message, "Option keyword contains invalid characters: *Bad Option");
  // Without a place for the error the text still stops.
  EXPECT_EQ(option->GetStringRepresentation(nullptr), "");
}

}  // namespace
}  // namespace ppdforge
