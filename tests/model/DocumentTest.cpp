#include <gtest/gtest.h>

#include <vector>

#include "core/ASharedObject.h"
#include "model/IPPD.h"
#include "model/IPPDChoice.h"
#include "model/IPPDConstraint.h"
#include "model/IPPDGroup.h"
#include "model/IPPDLocalizer.h"
#include "model/IPPDOption.h"
#include "model/IPPDPaperSize.h"

namespace ppdforge {
namespace {

void AddString(IPPD* ppd, const AQVString& name, const AQVString& value) {
  ASSERT_NE(ppd->AddAttribute(name, value, "", "", kPPDStringValue, ""), nullptr);
}

// A "PageSize" option with one choice per size, the first being the default.
IPPDOption* MakePageSize(const std::vector<AQVString>& sizes) {
  std::vector<AScopedRef<IPPDChoice>> choices;
  std::vector<IPPDChoice*> raw;
  for (const AQVString& size : sizes) {
    choices.emplace_back(IPPDChoice::Create(size, "", "", ""));
    raw.push_back(choices.back().get());
  }
  return IPPDOption::Create("PageSize", "", "", PPD_UI_PICKONE, raw, "");
}

IPPDGroup* AddGroup(IPPD* ppd, const AQVString& id, IPPDOption* option) {
  std::vector<IPPDOption*> options;
  if (option != nullptr) options.push_back(option);
  AScopedRef<IPPDGroup> group(IPPDGroup::Create(id, "", options, {}, ""));
  return ppd->AddGroup(group.get(), false);
}

IPPDPaperSize* AddSize(IPPD* ppd, const AQVString& id, double width, double height) {
  AScopedRef<IPPDPaperSize> size(IPPDPaperSize::Create(
      id, "", RKMediaSizeRectMake(0, 0, height, width), RKMediaSizeRectMake(10, 10, height - 10, width - 10),
      "ImageableArea"));
  return ppd->AddPaperSize(size.get(), false);
}

IPPDConstraint* Pair(const AQVString& o0, const AQVString& c0, const AQVString& o1,
                     const AQVString& c1) {
  return IPPDConstraint::Create({o0, o1}, {c0, c1}, "", false, false, "");
}

const char* const kPageSizeOption =
    "*OpenUI *PageSize: PickOne\n"
    "*OrderDependency: 10.0 AnySetup *PageSize\n"
    "*DefaultPageSize: A4\n"
    "*PageSize A4: \"\"\n"
    "*PageSize Letter: \"\"\n"
    "*CloseUI: *PageSize\n";

TEST(DocumentTest, EmptyDocumentIsTwoLineFeeds) {
  AScopedRef<IPPD> ppd(IPPD::Create());
  AError error;
  EXPECT_EQ(ppd->GetStringRepresentation(&error), "\n\n");
  EXPECT_EQ(error.code, 0);
}

TEST(DocumentTest, RemovedNameKeepsItsFirstPlace) {
  AScopedRef<IPPD> ppd(IPPD::Create());
  AddString(ppd.get(), "A", "1");
  AddString(ppd.get(), "B", "2");
  ppd->RemoveAttributesWithNameAndSpec("A", nullptr);
  EXPECT_EQ(ppd->GetStringRepresentation(nullptr), "*B: 2\n\n\n");
  AddString(ppd.get(), "A", "3");
  AddString(ppd.get(), "B", "4");
  EXPECT_EQ(ppd->GetStringRepresentation(nullptr), "*A: 3\n*B: 2\n*B: 4\n\n\n");
}

TEST(DocumentTest, AttributeLookupAndRemovalBySpec) {
  AScopedRef<IPPD> ppd(IPPD::Create());
  IPPDAttribute* first = ppd->AddAttribute("cupsFilter", "one", "x", "", kPPDQuotedValue, "");
  ppd->AddAttribute("cupsFilter", "two", "y", "", kPPDQuotedValue, "");
  ppd->AddAttribute("cupsFilter", "three", "x", "", kPPDQuotedValue, "");
  EXPECT_EQ(first->GetPPD(), ppd.get());

  std::vector<IPPDAttribute*> found{first};
  const AQVString x("x");
  ppd->GetAttributesWithNameAndSpec("cupsFilter", &x, found);
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found[1]->GetValue(), "three");
  ppd->GetAttributesWithNameAndSpec("cupsFilter", nullptr, found);
  EXPECT_EQ(found.size(), 3U);
  ppd->GetAttributesWithNameAndSpec("Missing", nullptr, found);
  EXPECT_TRUE(found.empty());

  const AQVString y("y");
  EXPECT_EQ(ppd->GetAttributeValueWithNameAndSpec("cupsFilter", &y), "two");
  EXPECT_EQ(ppd->GetAttributeValueWithNameAndSpec("cupsFilter", nullptr), "one");
  EXPECT_EQ(ppd->GetAttributeValueWithNameAndSpec("Missing", nullptr), "");

  first->Retain();
  AScopedRef<IPPDAttribute> keep(first);
  ppd->RemoveAttributesWithNameAndSpec("cupsFilter", &x);
  EXPECT_EQ(first->GetPPD(), nullptr);
  ppd->GetAttributesWithNameAndSpec("cupsFilter", nullptr, found);
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0]->GetValue(), "two");
}

TEST(DocumentTest, AddAttributeCopyAndNull) {
  AScopedRef<IPPD> ppd(IPPD::Create());
  AScopedRef<IPPDAttribute> attribute(IPPDAttribute::Create("A", "", "", "v", kPPDStringValue, ""));
  EXPECT_EQ(ppd->AddAttribute(nullptr, true), nullptr);
  IPPDAttribute* copy = ppd->AddAttribute(attribute.get(), true);
  EXPECT_NE(copy, attribute.get());
  EXPECT_EQ(attribute->GetPPD(), nullptr);
  EXPECT_EQ(ppd->AddAttribute(attribute.get(), false), attribute.get());
  EXPECT_EQ(attribute->GetPPD(), ppd.get());
}

TEST(DocumentTest, LanguagesComeFromTheAttributes) {
  AScopedRef<IPPD> ppd(IPPD::Create());
  std::vector<AQVString> languages{"stale"};
  ppd->GetAdditionalLanguages(languages);
  EXPECT_TRUE(languages.empty());
  EXPECT_EQ(ppd->GetMainLanguage(), "");
  AddString(ppd.get(), "LanguageVersion", "English");
  ppd->AddAttribute("cupsLanguages", " de  fr ja", "", "", kPPDQuotedValue, "");
  EXPECT_EQ(ppd->GetMainLanguage(), "English");
  ppd->GetAdditionalLanguages(languages);
  EXPECT_EQ(languages, (std::vector<AQVString>{"de", "fr", "ja"}));
}

TEST(DocumentTest, WritesEverythingInFileOrder) {
  AScopedRef<IPPD> ppd(IPPD::Create());
  ppd->AddAttribute("cupsIPPReason", "text:Jam", "com.example-jam-error", "", kPPDQuotedValue, "");
  ppd->AddAttribute("PPD-Adobe", "4.3", "", "", kPPDQuotedValue, "");
  AScopedRef<IPPDOption> pageSize(MakePageSize({"A4", "Letter"}));
  AScopedRef<IPPDChoice> on(IPPDChoice::Create("On", "", "", ""));
  AScopedRef<IPPDOption> flag(IPPDOption::Create("Flag", "", "", PPD_UI_BOOLEAN, {on.get()}, ""));
  AddGroup(ppd.get(), "Extra", flag.get());
  AddGroup(ppd.get(), "General", pageSize.get());
  AScopedRef<IPPDGroup> empty(IPPDGroup::Create("Empty", "", {}, {}, ""));
  ppd->AddGroup(empty.get(), false);
  AddSize(ppd.get(), "A4", 595, 842);
  AddSize(ppd.get(), "Letter", 612, 792);
  AScopedRef<IPPDConstraint> constraint(Pair("Flag", "On", "PageSize", "Letter"));
  ppd->AddConstraint(constraint.get(), false);

  AError error;
  EXPECT_EQ(ppd->GetStringRepresentation(&error),
            AQVString("*PPD-Adobe: \"4.3\"\n"
                      "\n"
                      "*OpenGroup: Extra\n"
                      "\n"
                      "*OpenUI *Flag: Boolean\n"
                      "*OrderDependency: 10.0 AnySetup *Flag\n"
                      "*DefaultFlag: On\n"
                      "*Flag On: \"\"\n"
                      "*CloseUI: *Flag\n"
                      "\n"
                      "*CloseGroup: Extra\n"
                      "\n") +
                kPageSizeOption +
                "\n"
                "\n"
                "*DefaultImageableArea: A4\n"
                "*ImageableArea A4/A4: \"10.00 10.00 585.00 832.00\"\n"
                "*ImageableArea Letter/Letter: \"10.00 10.00 602.00 782.00\"\n"
                "\n"
                "*DefaultPaperDimension: A4\n"
                "*PaperDimension A4/A4: \"595.00 842.00\"\n"
                "*PaperDimension Letter/Letter: \"612.00 792.00\"\n"
                "\n"
                "*UIConstraints: *Flag On *PageSize Letter\n"
                "*UIConstraints: *PageSize Letter *Flag On\n"
                "*cupsIPPReason com.example-jam-error: \"text:Jam\"\n"
                "\n");
  EXPECT_EQ(error.code, 0);
  EXPECT_EQ(ppd->GetPaperSizeWithID("A4")->GetSizeType(), "PaperDimension");
}

TEST(DocumentTest, PaperBlocksNeedPageSizeAndGeneral) {
  const struct {
    const char* groupID;
    bool withPageSize;
    bool blocks;
  } cases[] = {{"General", true, true}, {"General", false, false}, {"Paper", true, false}};
  for (const auto& c : cases) {
    AScopedRef<IPPD> ppd(IPPD::Create());
    AScopedRef<IPPDOption> option(c.withPageSize ? MakePageSize({"A4", "Letter"})
                                                 : MakePageSize({"A4"}));
    if (!c.withPageSize) option->SetID("MediaType");
    AddGroup(ppd.get(), c.groupID, option.get());
    AddSize(ppd.get(), "A4", 595, 842);
    const AQVString text = ppd->GetStringRepresentation(nullptr);
    EXPECT_EQ(text.Contains("ImageableArea"), c.blocks) << c.groupID;
    EXPECT_EQ(text.Contains("PaperDimension"), c.blocks) << c.groupID;
  }
}

TEST(DocumentTest, PageSizeWithoutDefaultWritesNoDefaultLines) {
  AScopedRef<IPPD> ppd(IPPD::Create());
  AScopedRef<IPPDOption> option(MakePageSize({}));
  AddGroup(ppd.get(), "General", option.get());
  AddSize(ppd.get(), "A4", 595, 842);
  EXPECT_EQ(ppd->GetStringRepresentation(nullptr),
            "\n"
            "*ImageableArea A4/A4: \"10.00 10.00 585.00 832.00\"\n"
            "\n"
            "*PaperDimension A4/A4: \"595.00 842.00\"\n"
            "\n"
            "\n");
}

TEST(DocumentTest, GroupWithSameIDReplacesAndMovesToEnd) {
  AScopedRef<IPPD> ppd(IPPD::Create());
  IPPDGroup* first = AddGroup(ppd.get(), "A", nullptr);
  first->Retain();
  AScopedRef<IPPDGroup> keep(first);
  AddGroup(ppd.get(), "B", nullptr);
  IPPDGroup* second = AddGroup(ppd.get(), "A", nullptr);
  second->Retain();
  AScopedRef<IPPDGroup> keepSecond(second);
  ASSERT_EQ(ppd->GetGroups().size(), 2U);
  EXPECT_EQ(ppd->GetGroups()[0]->GetID(), "B");
  EXPECT_EQ(ppd->GetGroups()[1], second);
  EXPECT_EQ(first->GetPPD(), nullptr);
  EXPECT_EQ(ppd->GetGroupWithID("A"), second);

  ppd->RemoveGroupWithID("A");
  EXPECT_EQ(second->GetPPD(), nullptr);
  EXPECT_EQ(ppd->GetGroups().size(), 1U);
  EXPECT_EQ(ppd->AddGroup(nullptr, true), nullptr);
}

TEST(DocumentTest, PaperSizeWithSameIDReplacesAndMovesToEnd) {
  AScopedRef<IPPD> ppd(IPPD::Create());
  IPPDPaperSize* first = AddSize(ppd.get(), "A4", 595, 842);
  first->Retain();
  AScopedRef<IPPDPaperSize> keep(first);
  AddSize(ppd.get(), "Letter", 612, 792);
  IPPDPaperSize* second = AddSize(ppd.get(), "A4", 594, 841);
  ASSERT_EQ(ppd->GetPaperSizes().size(), 2U);
  EXPECT_EQ(ppd->GetPaperSizes()[0]->GetID(), "Letter");
  EXPECT_EQ(ppd->GetPaperSizes()[1], second);
  EXPECT_EQ(first->GetPPD(), nullptr);
  EXPECT_EQ(ppd->GetPaperSizeWithID("A4"), second);

  // Re-adding the held object itself only moves it.
  EXPECT_EQ(ppd->AddPaperSize(ppd->GetPaperSizeWithID("Letter"), false)->GetID(), "Letter");
  EXPECT_EQ(ppd->GetPaperSizes()[1]->GetID(), "Letter");
  EXPECT_EQ(ppd->GetPaperSizes().size(), 2U);

  // A renamed size is found under its new ID.
  second->SetID("A4Small");
  EXPECT_EQ(ppd->GetPaperSizeWithID("A4"), nullptr);
  EXPECT_EQ(ppd->GetPaperSizeWithID("A4Small"), second);
  ppd->RemovePaperSizeWithID("A4Small");
  EXPECT_EQ(ppd->GetPaperSizes().size(), 1U);

  AScopedRef<IPPDPaperSize> lookalike(ppd->GetPaperSizeWithID("Letter")->Clone());
  ppd->RemovePaperSize(lookalike.get());
  EXPECT_TRUE(ppd->GetPaperSizes().empty());
}

TEST(DocumentTest, EqualConstraintReturnsThePresentOne) {
  AScopedRef<IPPD> ppd(IPPD::Create());
  AScopedRef<IPPDConstraint> first(Pair("A", "1", "B", "2"));
  AScopedRef<IPPDConstraint> equal(Pair("A", "1", "B", "2"));
  IPPDConstraint* stored = ppd->AddConstraint(first.get(), true);
  ASSERT_NE(stored, nullptr);
  EXPECT_NE(stored, first.get());
  EXPECT_EQ(ppd->AddConstraint(equal.get(), false), stored);
  EXPECT_EQ(ppd->GetConstraints().size(), 1U);
  EXPECT_EQ(equal->GetPPD(), nullptr);

  // A held constraint changed afterwards is compared by its new content.
  stored->SetChoiceAtIndex("3", 1);
  EXPECT_EQ(ppd->AddConstraint(equal.get(), false), equal.get());
  EXPECT_EQ(ppd->GetConstraints().size(), 2U);
  AScopedRef<IPPDConstraint> changed(Pair("A", "1", "B", "3"));
  EXPECT_EQ(ppd->AddConstraint(changed.get(), true), stored);
  EXPECT_EQ(ppd->AddConstraint(nullptr, true), nullptr);
}

TEST(DocumentTest, ConstraintLookupAndRemovalByOption) {
  AScopedRef<IPPD> ppd(IPPD::Create());
  AScopedRef<IPPDConstraint> c1(Pair("Duplex", "On", "PageSize", "Env10"));
  AScopedRef<IPPDConstraint> c2(Pair("MediaType", "Glossy", "Duplex", "On"));
  AScopedRef<IPPDConstraint> c3(Pair("MediaType", "Glossy", "Quality", "Draft"));
  for (IPPDConstraint* c : {c1.get(), c2.get(), c3.get()}) ppd->AddConstraint(c, false);

  std::vector<IPPDConstraint*> found{c3.get()};
  ppd->GetConstraintsWithOptionAndChoice("Duplex", "On", found);
  EXPECT_EQ(found, (std::vector<IPPDConstraint*>{c1.get(), c2.get()}));
  ppd->GetConstraintsWithOptionAndChoice("Duplex", "Off", found);
  EXPECT_TRUE(found.empty());

  ppd->RemoveConstraintsForOption("Duplex");
  EXPECT_EQ(ppd->GetConstraints(), (std::vector<IPPDConstraint*>{c3.get()}));
  EXPECT_EQ(c1->GetPPD(), nullptr);
  EXPECT_EQ(c3->GetPPD(), ppd.get());

  ppd->RemoveConstraint(c3.get());
  EXPECT_TRUE(ppd->GetConstraints().empty());
  EXPECT_EQ(c3->GetPPD(), nullptr);
}

TEST(DocumentTest, IPPReasonsComeAfterConstraints) {
  AScopedRef<IPPD> ppd(IPPD::Create());
  ppd->AddAttribute("cupsIPPReason", "text:A", "a-error", "", kPPDQuotedValue, "");
  AddString(ppd.get(), "ColorDevice", "True");
  ppd->AddAttribute("cupsIPPReason", "text:B", "b-error", "", kPPDQuotedValue, "");
  AScopedRef<IPPDConstraint> constraint(Pair("A", "", "B", ""));
  ppd->AddConstraint(constraint.get(), false);
  EXPECT_EQ(ppd->GetStringRepresentation(nullptr),
            "*ColorDevice: True\n"
            "\n"
            "*UIConstraints: *A *B\n"
            "*cupsIPPReason a-error: \"text:A\"\n"
            "*cupsIPPReason b-error: \"text:B\"\n"
            "\n");
}

TEST(DocumentTest, StopsAtTheFirstError) {
  AScopedRef<IPPD> ppd(IPPD::Create());
  AddString(ppd.get(), "A", "1");
  AddString(ppd.get(), "Bad Name", "2");
  AddString(ppd.get(), "C", "3");
  AError error;
  EXPECT_EQ(ppd->GetStringRepresentation(&error), "*A: 1\n");
  EXPECT_EQ(error.code, 4);
  EXPECT_EQ(error.message, "Main keyword contains invalid characters: Bad Name");

  ppd->RemoveAttributesWithNameAndSpec("Bad Name", nullptr);
  AScopedRef<IPPDConstraint> constraint(Pair("A", "1/2", "B", ""));
  ppd->AddConstraint(constraint.get(), false);
  AError second;
  EXPECT_EQ(ppd->GetStringRepresentation(&second), "*A: 1\n*C: 3\n\n");
  EXPECT_EQ(second.message, "Value contains invalid characters: *A 1/2 *B");
}

TEST(DocumentTest, LocalizerIsRetainedBeforeTheOldIsReleased) {
  AScopedRef<IPPD> ppd(IPPD::Create());
  IPPDLocalizer* localizer = IPPDLocalizer::Create();
  ppd->SetLocalizer(localizer);
  localizer->Release();  // the document's reference is now the only one
  ppd->SetLocalizer(localizer);
  EXPECT_EQ(ppd->GetLocalizer(), localizer);
  ppd->SetLocalizer(nullptr);
  EXPECT_EQ(ppd->GetLocalizer(), nullptr);
}

TEST(DocumentTest, TranslatedDocumentUsesTheLanguagesEverywhere) {
  AScopedRef<IPPD> ppd(IPPD::Create());
  AScopedRef<IPPDLocalizer> localizer(IPPDLocalizer::Create());
  ppd->SetLocalizer(localizer.get());
  AddString(ppd.get(), "LanguageVersion", "English");
  ppd->AddAttribute("cupsLanguages", "de", "", "", kPPDQuotedValue, "");
  AScopedRef<IPPDOption> pageSize(MakePageSize({"A4"}));
  pageSize->SetName("Paper Size");
  AddGroup(ppd.get(), "General", pageSize.get());
  AddSize(ppd.get(), "A4", 595, 842);
  EXPECT_EQ(ppd->GetStringRepresentation(nullptr),
            "*LanguageVersion: English\n"
            "*cupsLanguages: \"de\"\n"
            "\n"
            "*OpenUI *PageSize/Paper Size: PickOne\n"
            "*de.Translation PageSize/Paper Size: \"\"\n"
            "*OrderDependency: 10.0 AnySetup *PageSize\n"
            "*DefaultPageSize: A4\n"
            "*PageSize A4: \"\"\n"
            "*CloseUI: *PageSize\n"
            "\n"
            "\n"
            "*DefaultImageableArea: A4\n"
            "*ImageableArea A4/A4: \"10.00 10.00 585.00 832.00\"\n"
            "*de.ImageableArea A4/A4: \"\"\n"
            "\n"
            "*DefaultPaperDimension: A4\n"
            "*PaperDimension A4/A4: \"595.00 842.00\"\n"
            "*de.PaperDimension A4/A4: \"\"\n"
            "\n"
            "\n");
}

TEST(DocumentTest, CloneIsDeepAndEqual) {
  AScopedRef<IPPD> ppd(IPPD::Create());
  AScopedRef<IPPDLocalizer> localizer(IPPDLocalizer::Create());
  ppd->SetLocalizer(localizer.get());
  AddString(ppd.get(), "A", "1");
  AddString(ppd.get(), "B", "2");
  ppd->RemoveAttributesWithNameAndSpec("A", nullptr);
  AScopedRef<IPPDOption> pageSize(MakePageSize({"A4", "Letter"}));
  AddGroup(ppd.get(), "General", pageSize.get());
  AddSize(ppd.get(), "A4", 595, 842);
  AScopedRef<IPPDConstraint> constraint(Pair("A", "1", "B", "2"));
  ppd->AddConstraint(constraint.get(), false);

  AScopedRef<IPPD> copy(ppd->Clone());
  ASSERT_TRUE(copy);
  EXPECT_TRUE(*copy.get() == *ppd.get());
  EXPECT_EQ(copy->GetLocalizer(), localizer.get());
  EXPECT_NE(copy->GetGroups()[0], ppd->GetGroups()[0]);
  EXPECT_EQ(copy->GetGroups()[0]->GetPPD(), copy.get());
  EXPECT_EQ(copy->GetPaperSizes()[0]->GetPPD(), copy.get());
  EXPECT_EQ(copy->GetConstraints()[0]->GetPPD(), copy.get());
  EXPECT_EQ(copy->GetStringRepresentation(nullptr), ppd->GetStringRepresentation(nullptr));

  // The removed name keeps its place in the copy too.
  AddString(copy.get(), "A", "3");
  AddString(ppd.get(), "A", "3");
  EXPECT_TRUE(copy->GetStringRepresentation(nullptr).StartsWith("*A: 3\n*B: 2\n"));
  EXPECT_TRUE(*copy.get() == *ppd.get());
}

TEST(DocumentTest, EqualityComparesAttributesInOrderAndTheRestAsSets) {
  auto build = [](bool swapped) {
    IPPD* ppd = IPPD::Create();
    AddString(ppd, swapped ? "B" : "A", "1");
    AddString(ppd, swapped ? "A" : "B", "1");
    AScopedRef<IPPDConstraint> c1(Pair("X", "1", "Y", "2"));
    AScopedRef<IPPDConstraint> c2(Pair("X", "3", "Y", "4"));
    ppd->AddConstraint(swapped ? c2.get() : c1.get(), true);
    ppd->AddConstraint(swapped ? c1.get() : c2.get(), true);
    AddSize(ppd, swapped ? "Letter" : "A4", 600, 800);
    AddSize(ppd, swapped ? "A4" : "Letter", 600, 800);
    AddGroup(ppd, swapped ? "G2" : "G1", nullptr);
    AddGroup(ppd, swapped ? "G1" : "G2", nullptr);
    return ppd;
  };
  AScopedRef<IPPD> first(build(false));
  AScopedRef<IPPD> second(build(false));
  AScopedRef<IPPD> swapped(build(true));
  EXPECT_TRUE(*first.get() == *second.get());
  EXPECT_TRUE(*first.get() != *swapped.get());

  // Only the attribute order differs: everything else compares as a set.
  swapped->RemoveAttributesWithNameAndSpec("B", nullptr);
  AddString(swapped.get(), "B", "1");
  EXPECT_TRUE(*first.get() != *swapped.get());
  first->RemoveAttributesWithNameAndSpec("A", nullptr);
  swapped->RemoveAttributesWithNameAndSpec("A", nullptr);
  EXPECT_TRUE(*first.get() == *swapped.get());

  second->GetPaperSizeWithID("A4")->SetName("other");
  EXPECT_TRUE(*first.get() != *second.get());
}

}  // namespace
}  // namespace ppdforge
