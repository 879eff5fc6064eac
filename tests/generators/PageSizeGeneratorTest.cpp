// Page sizes, the custom page size attributes and the page size categories
// (their whole text in a product is the golden file page-sizes.ppd).

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "core/ASharedObject.h"
#include "core/AWorkerPool.h"
#include "engine/IPPDGenerator.h"
#include "engine/IPPDObjectGenerator.h"
#include "generators/APPDCustomPageSizeGenerator.h"
#include "model/IPPDGroup.h"
#include "model/IPPDPaperSize.h"
#include "support/GeneratorTestSupport.h"

namespace ppdforge {
namespace {

using testing::Describe;
using testing::Dict;

// A media size of `width` by `height` points with a margin of 18 points.
ADictionary Media(const char* ppdName, const char* name, double width, double height) {
  return testing::MediaSize(ppdName, name, width, height, 18);
}

ADictionary With(ADictionary media, const char* key, const AValue& value) {
  media.Set(key, value);
  return media;
}

class PageSizeGeneratorTest : public testing::GeneratorTestSupport {
 protected:
  // Runs the engine on a product of `media`; the result is kept in ok_.
  void Run(const AArray& media, const char* defaultChoice = "", const AArray& attributes = AArray{}) {
    Run(With(testing::ProductRoot(media, defaultChoice), "attributesGenerationInfo", attributes));
  }
  void Run(const ADictionary& root) {
    MakeEngine(root);
    ok_ = Engine()->CreatePPDObjects(&error_);
  }

  IPPDOption* Option(const char* id) const {
    IPPDGroup* general = Doc()->GetGroupWithID("General");
    return general != nullptr ? general->GetOptionWithID(id) : nullptr;
  }
  std::string Code(std::size_t choice) const { return Option("PageSize")->GetChoices().at(choice)->GetCode().UTF8(); }
  std::vector<std::string> Attributes(const char* name) const {
    std::vector<IPPDAttribute*> found;
    Doc()->GetAttributesWithNameAndSpec(name, nullptr, found);
    std::vector<std::string> lines;
    for (const IPPDAttribute* attribute : found) lines.push_back(attribute->GetStringRepresentation(nullptr).UTF8());
    return lines;
  }

  AError error_{"untouched", 99, "untouched"};
  bool ok_ = false;
};

// The size is right minus left by bottom minus top; the imageable area takes
// the bottom and left margins, the raw paper bottom and the right edge from
// the paper's left. Missing numbers read as 0; the overspray factor counts
// only for full-bleed sizes.
TEST_F(PageSizeGeneratorTest, SizesAndCodesFromThePaperRectangles) {
  ADictionary odd = Dict({{"name", "Odd"},
                          {"PPDName", "Odd"},
                          {"paperRectTop", 10.0},
                          {"paperRectLeft", 5.0},
                          {"paperRectBottom", 852.0},
                          {"paperRectRight", 600.0},
                          {"pageRectTop", 500.0},
                          {"pageRectLeft", 17.0},
                          {"pageRectBottom", 840.0},
                          {"pageRectRight", 588.0}});
  Run(AArray{odd, Dict({{"name", "Bare"}, {"PPDName", "Bare"}}),
             With(With(Media("A4.FB", "A4 (borderless)", 595.3, 841.9), "supportsFullBleed", true),
                  "oversprayScaleFactor", 1.05),
             With(Media("A5", "A5", 420, 595), "oversprayScaleFactor", 1.2)});
  ASSERT_TRUE(ok_);
  EXPECT_EQ(Code(0), "<</PageSize[595.00 842.00] /ImagingBBox null>> setpagedevice");
  EXPECT_EQ(Code(1), "<</PageSize[0.00 0.00] /ImagingBBox null>> setpagedevice");
  EXPECT_EQ(Code(2), "<</PageSize[595.30 841.90] /ImagingBBox null/cupsBorderlessScalingFactor 1.05>> setpagedevice");
  EXPECT_EQ(Code(3), "<</PageSize[420.00 595.00] /ImagingBBox null>> setpagedevice");
  const IPPDPaperSize* paper = Doc()->GetPaperSizes()[0];
  EXPECT_EQ(paper->GetID(), "Odd");
  EXPECT_TRUE(RKMediaSizeRectIsEqualToRect(paper->GetPaperSizeRect(), RKMediaSizeRectMake(0, 0, 842, 595)));
  EXPECT_TRUE(RKMediaSizeRectIsEqualToRect(paper->GetImageableRect(), RKMediaSizeRectMake(12, 12, 852, 583)));
  EXPECT_TRUE(
      RKMediaSizeRectIsEqualToRect(Doc()->GetPaperSizes()[1]->GetImageableRect(), RKMediaSizeRectMake(0, 0, 0, 0)));
}

// The default is matched by name, the last match winning; a PPD name
// matches nothing, and an option without a default reports its first choice.
// Long lists are made in blocks on the pool's threads; the sizes keep their
// order, the custom size and entries that are not dictionaries are skipped
// wherever they stand, and the last name that matches the default wins.
TEST_F(PageSizeGeneratorTest, LongListsKeepTheirOrderOnSeveralThreads) {
  AWorkerPool::Shared().Reserve(4);
  AArray media;
  std::vector<std::string> expected;
  for (int i = 0; i < 70; ++i) {
    const std::string id = "S" + std::to_string(i);
    if (i == 17) media.Append(AValue("not a size"));
    if (i == 33) media.Append(With(Media("Custom", "Custom", 0, 0), "isCustomMediaSize", true));
    const char* name = i % 20 == 5 ? "Pick" : id.c_str();
    media.Append(Media(id.c_str(), name, 100 + i, 200 + i));
    expected.push_back(id);
  }
  Run(media, "Pick");
  ASSERT_TRUE(ok_);
  std::vector<std::string> choices, papers;
  for (const IPPDChoice* choice : Option("PageRegion")->GetChoices()) choices.push_back(choice->GetID().UTF8());
  for (const IPPDPaperSize* paper : Doc()->GetPaperSizes()) papers.push_back(paper->GetID().UTF8());
  EXPECT_EQ(choices, expected);
  EXPECT_EQ(papers, expected);
  EXPECT_EQ(Option("PageSize")->GetDefaultChoice(), "S65");
  EXPECT_EQ(Code(69), "<</PageSize[169.00 269.00] /ImagingBBox null>> setpagedevice");
}

TEST_F(PageSizeGeneratorTest, DefaultIsMatchedByName) {
  Run(AArray{Media("A4", "A4", 595, 842), Media("Letter", "Letter", 612, 792),
             Media("LetterSmall", "Letter", 612, 792)},
      "Letter");
  ASSERT_TRUE(ok_);
  EXPECT_EQ(Option("PageSize")->GetDefaultChoice(), "LetterSmall");
  EXPECT_EQ(Option("PageRegion")->GetDefaultChoice(), "LetterSmall");
  Run(AArray{Media("A4", "ISO A4", 595, 842), Media("Letter", "US Letter", 612, 792)}, "Letter");
  ASSERT_TRUE(ok_);
  EXPECT_EQ(Option("PageSize")->GetDefaultChoice(), "A4");
  EXPECT_EQ(Option("PageRegion")->GetDefaultChoice(), "A4");
}

TEST_F(PageSizeGeneratorTest, PageRegionHoldsCopiesOfThePageSizeChoices) {
  Run(AArray{Media("A4", "A4", 595, 842), Media("A5", "A5", 420, 595)}, "A5");
  ASSERT_TRUE(ok_);
  IPPDOption* pageSize = Option("PageSize");
  IPPDOption* pageRegion = Option("PageRegion");
  ASSERT_TRUE(pageSize != nullptr && pageRegion != nullptr);
  EXPECT_EQ(pageSize->GetName(), "Paper Size");
  EXPECT_EQ(pageRegion->GetName(), "PageRegion");
  EXPECT_EQ(pageRegion->GetUIType(), PPD_UI_PICKONE);
  ASSERT_EQ(pageRegion->GetChoices().size(), 2u);
  for (std::size_t i = 0; i < 2; ++i) {
    EXPECT_NE(pageSize->GetChoices()[i], pageRegion->GetChoices()[i]);
    EXPECT_TRUE(*pageSize->GetChoices()[i] == *pageRegion->GetChoices()[i]);
    EXPECT_EQ(pageRegion->GetChoices()[i]->GetOption(), pageRegion);
  }
  EXPECT_EQ(Doc()->GetGroupWithID("General")->GetOptions(), (std::vector<IPPDOption*>{pageSize, pageRegion}));

  // Running again reuses the group and replaces the options.
  AScopedRef<IPPDObjectGenerator> again(IPPDObjectGenerator::Create("APPDPageSizesGenerator", Engine(), nullptr));
  EXPECT_TRUE(again->IsApplicable() && again->Generate(nullptr));
  ASSERT_EQ(Doc()->GetGroups().size(), 1u);
  EXPECT_EQ(Doc()->GetGroupWithID("General")->GetOptions().size(), 2u);
  EXPECT_EQ(Doc()->GetPaperSizes().size(), 2u);
}

TEST_F(PageSizeGeneratorTest, OnlyCustomSizesGiveTwoEmptyOptions) {
  Run(AArray{With(Media("Custom", "Custom", 0, 0), "isCustomMediaSize", true)});
  ASSERT_TRUE(ok_);
  ASSERT_EQ(Doc()->GetGroups().size(), 1u);
  const auto& options = Doc()->GetGroupWithID("General")->GetOptions();
  ASSERT_EQ(options.size(), 2u);
  EXPECT_EQ(options[0]->GetID(), "PageSize");
  EXPECT_EQ(options[1]->GetID(), "PageRegion");
  EXPECT_TRUE(options[0]->GetChoices().empty() && options[1]->GetChoices().empty());
  EXPECT_TRUE(Doc()->GetPaperSizes().empty());
}

TEST_F(PageSizeGeneratorTest, NoMediaFailsWithoutAnError) {
  ADictionary noPaperInfo = testing::ProductRoot(AArray{});
  noPaperInfo.Remove("options");
  for (const ADictionary& root : {testing::ProductRoot(AArray{}), noPaperInfo,
                                  Dict({{"attributesGenerationInfo", AArray{}},
                                        {"options", Dict({{"QVPaperInfo", Dict({{"values", "A4"}})}})}})}) {
    Run(root);
    EXPECT_FALSE(ok_);
    EXPECT_EQ(error_.code, 99);
    EXPECT_TRUE(Doc()->GetGroups().empty());
  }
}

// Custom page size attributes.

ADictionary CustomProduct(bool supported, const AArray& attributes = AArray{}) {
  ADictionary root =
      With(testing::ProductRoot(AArray{Media("A4", "A4", 595, 842)}, "A4"), "attributesGenerationInfo", attributes);
  root.Set("features", Dict({{"supportsCustomPageSize", supported}}));
  // Margins top, left, bottom, right; limits min height, min width, max height, max width.
  root.Set("customPageSizeMargins", AArray{1.5, 2.0, 3.0, 4.0});
  root.Set("customPageSizeConstraints", AArray{144.0, 72.0, 1296.0, 612.0});
  return root;
}

AScopedRef<APPDCustomPageSizeGenerator> MakeCustom(IPPDGenerator* engine, const ADictionary& description) {
  return testing::CreateGenerator<APPDCustomPageSizeGenerator>("APPDCustomPageSizeGenerator", engine, description);
}

struct CustomValueCase {
  const char* label;
  const char* name;
  const char* spec;
  const char* format;
  const char* expected;
};

class CustomValueTest : public PageSizeGeneratorTest, public ::testing::WithParamInterface<CustomValueCase> {};

TEST_P(CustomValueTest, FillsTheDescriptionFormat) {
  Run(CustomProduct(true));
  ASSERT_TRUE(ok_);
  auto generator =
      MakeCustom(Engine(), Dict({{"name", GetParam().name}, {"spec", GetParam().spec}, {"value", GetParam().format}}));
  ASSERT_TRUE(generator);
  EXPECT_EQ(generator->GetAttributeValue().UTF8(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Attributes, CustomValueTest,
    ::testing::Values(
        CustomValueCase{"Margins", "HWMargins", "", "%.1f %.1f %.1f %.1f", "2.0 3.0 4.0 1.5"},
        CustomValueCase{"Width", "ParamCustomPageSize", "Width", "1 points %.0f %.0f", "1 points 72 612"},
        CustomValueCase{"Height", "ParamCustomPageSize", "Height", "2 points %.0f %.0f", "2 points 144 1296"},
        CustomValueCase{"OtherSpec", "ParamCustomPageSize", "WidthOffset", "3 points %.0f", "3 points %.0f"},
        CustomValueCase{"MaxWidth", "MaxMediaWidth", "", "%.0f", "612"},
        CustomValueCase{"MaxHeight", "MaxMediaHeight", "", "%.0f", "1296"},
        CustomValueCase{"OtherName", "CustomPageSize", "True", "%.0f", "%.0f"},
        CustomValueCase{"NameIsCaseSensitive", "maxmediawidth", "", "%.0f", "%.0f"},
        // Formats that do not fit are written as they stand (the hostile input tests show more).
        CustomValueCase{"NoPlaceholders", "MaxMediaWidth", "", "612", "612"},
        CustomValueCase{"IntegerPlaceholders", "HWMargins", "", "%d %d %d %d", "%d %d %d %d"}),
    [](const ::testing::TestParamInfo<CustomValueCase>& param) { return param.param.label; });

TEST_F(PageSizeGeneratorTest, CustomSizeAttributesFollowTheFeature) {
  const AArray attributes{
      Dict({{"generator", "APPDCustomPageSizeGenerator"}, {"name", "MaxMediaWidth"}, {"value", "%.0f"}}),
      Dict({{"generator", "APPDCustomPageSizeGenerator"},
            {"name", "HWMargins"},
            {"value", "%.0f %.0f %.0f %.0f"},
            {"value-type", 3}})};
  Run(CustomProduct(true, attributes));
  ASSERT_TRUE(ok_);
  EXPECT_EQ(Attributes("MaxMediaWidth"), std::vector<std::string>{"*MaxMediaWidth: \"612\""});
  EXPECT_EQ(Attributes("HWMargins"), std::vector<std::string>{"*HWMargins: 2 3 4 2"});
  Run(CustomProduct(false, attributes));
  ASSERT_TRUE(ok_);
  EXPECT_TRUE(Attributes("MaxMediaWidth").empty());
  ADictionary root = CustomProduct(false, attributes);
  root.Remove("features");
  Run(root);
  EXPECT_FALSE(MakeCustom(Engine(), ADictionary())->IsApplicable());

  // Without a product every number is 0, and the refusal shows the filled value.
  AScopedRef<IPPDGenerator> bare(IPPDGenerator::Create(nullptr));
  auto generator = MakeCustom(bare.get(), Dict({{"name", "MaxMediaHeight"}, {"value", "%.0f"}}));
  EXPECT_FALSE(generator->IsApplicable());
  AError error;
  EXPECT_FALSE(generator->Generate(&error));
  EXPECT_EQ(Describe(error), "RKPPDGeneration/1: Cannot add PPD attribute: *MaxMediaHeight /: \"0\"");
}

// Page size categories: in text order, the comment on the first; sizes
// without a category, with an empty one or custom are left out.
TEST_F(PageSizeGeneratorTest, Categories) {
  const AArray media{
      With(Media("B1", "B1", 100, 100), "mediaSizeCategory", "B"),
      With(Media("A1", "A1", 100, 100), "mediaSizeCategory", "A"),
      Media("None", "None", 100, 100),
      With(Media("E1", "E1", 100, 100), "mediaSizeCategory", ""),
      With(With(Media("C1", "C1", 0, 0), "mediaSizeCategory", "B"), "isCustomMediaSize", true),
      With(Media("B2", "B2", 100, 100), "mediaSizeCategory", "B"),
  };
  Run(media, "A1");
  ASSERT_TRUE(ok_);
  const ADictionary entry = Dict({{"name", "cupsPageSizeCategory"}, {"value-type", 0}, {"comment", "Size categories"}});
  EXPECT_TRUE(IsApplicable("APPDPageSizeCategoryAttributeGenerator", entry));
  ASSERT_TRUE(GenerateAnyway("APPDPageSizeCategoryAttributeGenerator", entry));
  EXPECT_EQ(Attributes("cupsPageSizeCategory"),
            (std::vector<std::string>{"*% Size categories\n*cupsPageSizeCategory A/A: \"A1\"",
                                      "*cupsPageSizeCategory B/B: \"B1 B2\""}));
  // No categories: success without an attribute, also without a product.
  Run(AArray{Media("A4", "A4", 595, 842)}, "A4");
  EXPECT_TRUE(GenerateAnyway("APPDPageSizeCategoryAttributeGenerator", entry));
  EXPECT_TRUE(Attributes("cupsPageSizeCategory").empty());
  AScopedRef<IPPDGenerator> bare(IPPDGenerator::Create(nullptr));
  EXPECT_TRUE(testing::CreateGenerator("APPDPageSizeCategoryAttributeGenerator", bare.get(), {})->Generate(nullptr));
  // An engine that never ran has no document: the refusal names the category.
  AScopedRef<IPPDGenerator> unrun(IPPDGenerator::Create(std::make_shared<testing::FakeProductInfo>(
      testing::ProductRoot(AArray{With(Media("A1", "A1", 1, 1), "mediaSizeCategory", "A"),
                                  With(Media("A2", "A2", 1, 1), "mediaSizeCategory", "A")}))));
  AError error;
  EXPECT_FALSE(testing::CreateGenerator("APPDPageSizeCategoryAttributeGenerator", unrun.get(),
                                        Dict({{"name", "cupsPageSizeCategory"}}))
                   ->Generate(&error));
  EXPECT_EQ(Describe(error), "RKPPDGeneration/1: Cannot add PPD attribute: *cupsPageSizeCategory A/A: \"A1 A2\"");
}

}  // namespace
}  // namespace ppdforge
