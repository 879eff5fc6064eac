#include <gtest/gtest.h>

#include <vector>

#include "model/IPPDChoice.h"
#include "model/IPPDConstraint.h"
#include "model/IPPDGroup.h"
#include "model/IPPDOption.h"
#include "model/IPPDPaperSize.h"
#include "model/ModelTestSupport.h"

namespace ppdforge {
namespace {

using testing::Code4;
using testing::Hold;

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

IPPDConstraint* AddPair(IPPD* ppd, const AQVString& o0, const AQVString& c0, const AQVString& o1,
                        const AQVString& c1) {
  AScopedRef<IPPDConstraint> constraint(IPPDConstraint::Create({o0, o1}, {c0, c1}, "", false, false, ""));
  return ppd->AddConstraint(constraint.get(), false);
}

TEST(DocumentTest, WritesEverythingInFileOrder) {
  AScopedRef<IPPD> ppd(IPPD::Create());
  EXPECT_EQ(ppd->GetStringRepresentation(nullptr), "\n\n");
  ppd->AddAttribute("cupsIPPReason", "text:Jam", "com.example-jam-error", "", kPPDQuotedValue, "");
  ppd->AddAttribute("PPD-Adobe", "4.3", "", "", kPPDQuotedValue, "");
  AScopedRef<IPPDOption> pageSize(MakePageSize({"A4", "Letter"}));
  AScopedRef<IPPDChoice> on(IPPDChoice::Create("On", "", "", ""));
  AScopedRef<IPPDOption> flag(IPPDOption::Create("Flag", "", "", PPD_UI_BOOLEAN, {on.get()}, ""));
  AddGroup(ppd.get(), "Extra", flag.get());
  AddGroup(ppd.get(), "General", pageSize.get());
  AddGroup(ppd.get(), "Empty", nullptr);
  AddSize(ppd.get(), "A4", 595, 842);
  AddSize(ppd.get(), "Letter", 612, 792);
  AddPair(ppd.get(), "Flag", "On", "PageSize", "Letter");
  AError error;
  EXPECT_EQ(ppd->GetStringRepresentation(&error),
            std::string("*PPD-Adobe: \"4.3\"\n"
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
                        "\n"
                        "*OpenUI *PageSize: PickOne\n"
                        "*OrderDependency: 10.0 AnySetup *PageSize\n"
                        "*DefaultPageSize: A4\n"
                        "*PageSize A4: \"\"\n"
                        "*PageSize Letter: \"\"\n"
                        "*CloseUI: *PageSize\n"
                        "\n"
                        "\n"
                        "*DefaultImageableArea: A4\n"
                        "*ImageableArea A4/A4: \"10.00 10.00 585.00 832.00\"\n") +
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
  EXPECT_EQ(error, AError());
  EXPECT_EQ(ppd->GetPaperSizeWithID("A4")->GetSizeType(), "PaperDimension");
}

TEST(DocumentTest, PaperBlocksNeedAPageSizeOptionInGeneral) {
  const struct {
    const char* groupID;
    bool withPageSize;
    bool blocks;
  } cases[] = {{"General", true, true}, {"General", false, false}, {"Paper", true, false}};
  for (const auto& c : cases) {
    AScopedRef<IPPD> ppd(IPPD::Create());
    AScopedRef<IPPDOption> option(MakePageSize({"A4", "Letter"}));
    if (!c.withPageSize) option->SetID("MediaType");
    AddGroup(ppd.get(), c.groupID, option.get());
    AddSize(ppd.get(), "A4", 595, 842);
    const AQVString text = ppd->GetStringRepresentation(nullptr);
    EXPECT_EQ(text.Contains("ImageableArea"), c.blocks) << c.groupID;
    EXPECT_EQ(text.Contains("PaperDimension"), c.blocks) << c.groupID;
  }
  // A PageSize without choices has no default, so no default lines.
  AScopedRef<IPPD> ppd(IPPD::Create());
  AScopedRef<IPPDOption> option(MakePageSize({}));
  AddGroup(ppd.get(), "General", option.get());
  AddSize(ppd.get(), "A4", 595, 842);
  EXPECT_EQ(ppd->GetStringRepresentation(nullptr),
            "\n*ImageableArea A4/A4: \"10.00 10.00 585.00 832.00\"\n\n*PaperDimension A4/A4: \"595.00 842.00\"\n\n\n");
}

TEST(DocumentTest, LanguagesComeFromTheAttributes) {
  AScopedRef<IPPD> ppd(testing::MakeDocument(" de  fr ja", nullptr));
  std::vector<AQVString> languages{"stale"};
  ppd->GetAdditionalLanguages(languages);
  EXPECT_EQ(languages, (std::vector<AQVString>{"de", "fr", "ja"}));
  EXPECT_EQ(ppd->GetMainLanguage(), "English");
}

TEST(DocumentTest, AttributesAreFoundBySpecAndARemovedNameKeepsItsFirstPlace) {
  AScopedRef<IPPD> ppd(IPPD::Create());
  AddString(ppd.get(), "A", "1");
  IPPDAttribute* first = ppd->AddAttribute("cupsFilter", "one", "x", "", kPPDQuotedValue, "");
  ppd->AddAttribute("cupsFilter", "two", "y", "", kPPDQuotedValue, "");
  ppd->AddAttribute("cupsFilter", "three", "x", "", kPPDQuotedValue, "");
  EXPECT_EQ(first->GetPPD(), ppd.get());
  std::vector<IPPDAttribute*> found{first};
  const AQVString x("x");
  const AQVString y("y");
  ppd->GetAttributesWithNameAndSpec("cupsFilter", &x, found);
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found[1]->GetValue(), "three");
  ppd->GetAttributesWithNameAndSpec("Missing", nullptr, found);
  EXPECT_TRUE(found.empty());
  EXPECT_EQ(ppd->GetAttributeValueWithNameAndSpec("cupsFilter", &y), "two");
  EXPECT_EQ(ppd->GetAttributeValueWithNameAndSpec("cupsFilter", nullptr), "one");
  EXPECT_EQ(ppd->GetAttributeValueWithNameAndSpec("Missing", nullptr), "");

  AScopedRef<IPPDAttribute> kept = Hold(first);
  ppd->RemoveAttributesWithNameAndSpec("cupsFilter", &x);
  EXPECT_EQ(first->GetPPD(), nullptr);
  ppd->GetAttributesWithNameAndSpec("cupsFilter", nullptr, found);
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0]->GetValue(), "two");

  ppd->RemoveAttributesWithNameAndSpec("A", nullptr);
  AddString(ppd.get(), "B", "2");
  EXPECT_EQ(ppd->GetStringRepresentation(nullptr), "*cupsFilter y: \"two\"\n*B: 2\n\n\n");
  AddString(ppd.get(), "A", "3");
  ppd->AddAttribute("cupsFilter", "four", "", "", kPPDQuotedValue, "");
  EXPECT_EQ(ppd->GetStringRepresentation(nullptr), "*A: 3\n*cupsFilter y: \"two\"\n*cupsFilter: \"four\"\n*B: 2\n\n\n");

  // An added object is held as it is; a copy leaves the caller's alone.
  AScopedRef<IPPDAttribute> attribute(IPPDAttribute::Create("C", "", "", "v", kPPDStringValue, ""));
  EXPECT_EQ(ppd->AddAttribute(nullptr, true), nullptr);
  EXPECT_NE(ppd->AddAttribute(attribute.get(), true), attribute.get());
  EXPECT_EQ(attribute->GetPPD(), nullptr);
  EXPECT_EQ(ppd->AddAttribute(attribute.get(), false), attribute.get());
  EXPECT_EQ(attribute->GetPPD(), ppd.get());
}

TEST(DocumentTest, GroupsAndSizesWithTheSameIDReplaceAndMoveToTheEnd) {
  AScopedRef<IPPD> ppd(IPPD::Create());
  AScopedRef<IPPDGroup> firstGroup = Hold(AddGroup(ppd.get(), "A", nullptr));
  AddGroup(ppd.get(), "B", nullptr);
  AScopedRef<IPPDGroup> secondGroup = Hold(AddGroup(ppd.get(), "A", nullptr));
  EXPECT_EQ(ppd->GetGroups(), (std::vector<IPPDGroup*>{ppd->GetGroupWithID("B"), secondGroup.get()}));
  EXPECT_EQ(firstGroup->GetPPD(), nullptr);
  EXPECT_EQ(ppd->GetGroupWithID("A"), secondGroup.get());
  ppd->RemoveGroupWithID("A");
  EXPECT_EQ(secondGroup->GetPPD(), nullptr);
  EXPECT_EQ(ppd->GetGroups().size(), 1U);
  EXPECT_EQ(ppd->AddGroup(nullptr, true), nullptr);

  AScopedRef<IPPDPaperSize> firstSize = Hold(AddSize(ppd.get(), "A4", 595, 842));
  IPPDPaperSize* letter = AddSize(ppd.get(), "Letter", 612, 792);
  IPPDPaperSize* secondSize = AddSize(ppd.get(), "A4", 594, 841);
  EXPECT_EQ(ppd->GetPaperSizes(), (std::vector<IPPDPaperSize*>{letter, secondSize}));
  EXPECT_EQ(firstSize->GetPPD(), nullptr);
  EXPECT_EQ(ppd->GetPaperSizeWithID("A4"), secondSize);
  // Re-adding the held object itself only moves it.
  EXPECT_EQ(ppd->AddPaperSize(letter, false), letter);
  EXPECT_EQ(ppd->GetPaperSizes(), (std::vector<IPPDPaperSize*>{secondSize, letter}));
  // A renamed size is found under its new ID.
  secondSize->SetID("A4Small");
  EXPECT_EQ(ppd->GetPaperSizeWithID("A4"), nullptr);
  EXPECT_EQ(ppd->GetPaperSizeWithID("A4Small"), secondSize);
  ppd->RemovePaperSizeWithID("A4Small");
  EXPECT_EQ(ppd->GetPaperSizes(), (std::vector<IPPDPaperSize*>{letter}));
  AScopedRef<IPPDPaperSize> lookalike(letter->Clone());
  ppd->RemovePaperSize(lookalike.get());
  EXPECT_TRUE(ppd->GetPaperSizes().empty());
}

TEST(DocumentTest, AnEqualConstraintIsNotAddedTwice) {
  AScopedRef<IPPD> ppd(IPPD::Create());
  AScopedRef<IPPDConstraint> first(IPPDConstraint::Create({"A", "B"}, {"1", "2"}, "", false, false, ""));
  AScopedRef<IPPDConstraint> equal(IPPDConstraint::Create({"A", "B"}, {"1", "2"}, "", false, false, ""));
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
  AScopedRef<IPPDConstraint> changed(IPPDConstraint::Create({"A", "B"}, {"1", "3"}, "", false, false, ""));
  EXPECT_EQ(ppd->AddConstraint(changed.get(), true), stored);
  EXPECT_EQ(ppd->AddConstraint(nullptr, true), nullptr);
}

TEST(DocumentTest, ConstraintLookupAndRemovalByOption) {
  AScopedRef<IPPD> ppd(IPPD::Create());
  IPPDConstraint* c1 = AddPair(ppd.get(), "Duplex", "On", "PageSize", "Env10");
  IPPDConstraint* c2 = AddPair(ppd.get(), "MediaType", "Glossy", "Duplex", "On");
  AScopedRef<IPPDConstraint> c3 = Hold(AddPair(ppd.get(), "MediaType", "Glossy", "Quality", "Draft"));
  AScopedRef<IPPDConstraint> keep = Hold(c1);
  std::vector<IPPDConstraint*> found{c3.get()};
  ppd->GetConstraintsWithOptionAndChoice("Duplex", "On", found);
  EXPECT_EQ(found, (std::vector<IPPDConstraint*>{c1, c2}));
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

TEST(DocumentTest, StopsAtTheFirstError) {
  AScopedRef<IPPD> ppd(IPPD::Create());
  AddString(ppd.get(), "A", "1");
  AddString(ppd.get(), "Bad Name", "2");
  AddString(ppd.get(), "C", "3");
  AError error;
  EXPECT_EQ(ppd->GetStringRepresentation(&error), "*A: 1\n");
  EXPECT_EQ(error, Code4("Main keyword contains invalid characters: Bad Name"));
  ppd->RemoveAttributesWithNameAndSpec("Bad Name", nullptr);
  AddPair(ppd.get(), "A", "1/2", "B", "");
  EXPECT_EQ(ppd->GetStringRepresentation(&error), "*A: 1\n*C: 3\n\n");
  EXPECT_EQ(error, Code4("Value contains invalid characters: *A 1/2 *B"));
}

// Many groups in three languages, the General group with the page sizes;
// `badGroup` (when below the count) holds a choice that breaks the rules.
IPPD* MakeLargeDocument(const testing::TestBundle& bundle, int badGroup) {
  AScopedRef<IPPDLocalizer> localizer(testing::MakeLocalizer(bundle));
  IPPD* ppd = testing::MakeDocument("fr de", localizer.get());
  AScopedRef<IPPDOption> pageSize(MakePageSize({"A4", "Letter"}));
  AddGroup(ppd, "General", pageSize.get());
  AddSize(ppd, "A4", 595, 842);
  AddSize(ppd, "Letter", 612, 792);
  for (int g = 0; g < 24; ++g) {
    const std::string n = std::to_string(g);
    std::vector<AScopedRef<IPPDChoice>> choices;
    std::vector<IPPDChoice*> raw;
    for (int c = 0; c < 6; ++c) {
      const std::string id = g == badGroup && c == 3 ? "Bad Choice" : "C" + std::to_string(c);
      choices.emplace_back(IPPDChoice::Create(AQVString(id), AQVString("Choice " + id), "", ""));
      raw.push_back(choices.back().get());
    }
    AScopedRef<IPPDOption> option(
        IPPDOption::Create(AQVString("Option" + n), AQVString("Option " + n), "C0", PPD_UI_PICKONE, raw, ""));
    AddGroup(ppd, AQVString("Group" + n), option.get());
  }
  return ppd;
}

TEST(DocumentTest, WritesTheSameTextOnSeveralThreads) {
  testing::TestBundle bundle;
  bundle.WriteTable("fr", "\"Choice C1\" = \"Choix 1\";\n\"Group3\" = \"Groupe 3\";\n");
  bundle.WriteTable("de", "\"Choice C1\" = \"Auswahl 1\";\n\"Option 5\" = \"Option fünf\";\n");
  for (const int badGroup : {-1, 0, 13, 23}) {
    SCOPED_TRACE(badGroup);
    AScopedRef<IPPD> serial(MakeLargeDocument(bundle, badGroup));
    AScopedRef<IPPD> parallel(MakeLargeDocument(bundle, badGroup));
    parallel->SetRenderThreads(4);
    AError serialError;
    AError parallelError;
    const AQVString expected = serial->GetStringRepresentation(&serialError);
    EXPECT_EQ(parallel->GetStringRepresentation(&parallelError), expected);
    EXPECT_EQ(parallelError, serialError);
    EXPECT_EQ(serialError.code != 0, badGroup >= 0);
    EXPECT_EQ(expected.Contains("*fr.Option1 C1/Choix 1: \"\""), badGroup != 0 && badGroup != 1);
    EXPECT_EQ(expected.Contains("Option fünf"), badGroup < 0 || badGroup > 5);
  }
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

TEST(DocumentTest, CloneIsDeepAndEqual) {
  AScopedRef<IPPDLocalizer> localizer(IPPDLocalizer::Create());
  AScopedRef<IPPD> ppd(testing::MakeDocument("", localizer.get()));
  AddString(ppd.get(), "A", "1");
  AddString(ppd.get(), "B", "2");
  ppd->RemoveAttributesWithNameAndSpec("A", nullptr);
  AScopedRef<IPPDOption> pageSize(MakePageSize({"A4", "Letter"}));
  AddGroup(ppd.get(), "General", pageSize.get());
  AddSize(ppd.get(), "A4", 595, 842);
  AddPair(ppd.get(), "A", "1", "B", "2");

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
  EXPECT_TRUE(copy->GetStringRepresentation(nullptr).StartsWith("*LanguageVersion: English\n*A: 3\n*B: 2\n"));
  EXPECT_TRUE(*copy.get() == *ppd.get());
}

TEST(DocumentTest, EqualityComparesAttributesInOrderAndTheRestAsSets) {
  auto build = [](bool swapped) {
    IPPD* ppd = IPPD::Create();
    AddString(ppd, swapped ? "B" : "A", "1");
    AddString(ppd, swapped ? "A" : "B", "1");
    AddPair(ppd, "X", swapped ? "3" : "1", "Y", swapped ? "4" : "2");
    AddPair(ppd, "X", swapped ? "1" : "3", "Y", swapped ? "2" : "4");
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
