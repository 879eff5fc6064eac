#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "core/ASharedObject.h"
#include "engine/IPPDGenerator.h"
#include "engine/IPPDObjectGenerator.h"
#include "generators/APPDCustomPageSizeGenerator.h"
#include "generators/APPDPageSizeCategoryAttributeGenerator.h"
#include "generators/APPDPageSizesGenerator.h"
#include "model/IPPDGroup.h"
#include "model/IPPDPaperSize.h"
#include "support/GeneratorTestSupport.h"

namespace ppdforge {
namespace {

using testing::Describe;
using testing::Dict;
using testing::FakeProductInfo;

// A media size of `width` by `height` points with a margin of 18 points.
ADictionary Media(const char* ppdName, const char* name, double width, double height) {
  return testing::MediaSize(ppdName, name, width, height, 18);
}

ADictionary With(ADictionary media, const char* key, const AValue& value) {
  media.Set(key, value);
  return media;
}

ADictionary Product(const AArray& media, const char* defaultChoice,
                    const AArray& attributes = AArray{}) {
  ADictionary root = testing::ProductRoot(media, defaultChoice);
  root.Set("attributesGenerationInfo", attributes);
  return root;
}

class PageSizeGeneratorTest : public testing::GeneratorTestSupport {
 protected:
  // Runs the engine on `root`; the result is kept in ok_.
  void Run(const ADictionary& root) {
    MakeEngine(root);
    ASSERT_NE(Engine(), nullptr);
    ok_ = Engine()->CreatePPDObjects(&error_);
  }

  IPPDOption* Option(const char* id) const {
    IPPDGroup* general = Doc()->GetGroupWithID("General");
    return general != nullptr ? general->GetOptionWithID(id) : nullptr;
  }

  AError error_{"untouched", 99, "untouched"};
  bool ok_ = false;
};

TEST_F(PageSizeGeneratorTest, CodeWithoutBorderlessSuffix) {
  Run(Product(AArray{Media("Letter", "US Letter", 612, 792)}, "US Letter"));
  ASSERT_TRUE(ok_);
  IPPDOption* pageSize = Option("PageSize");
  ASSERT_NE(pageSize, nullptr);
  ASSERT_EQ(pageSize->GetChoices().size(), 1u);
  const IPPDChoice* choice = pageSize->GetChoices()[0];
  EXPECT_EQ(choice->GetID(), "Letter");
  EXPECT_EQ(choice->GetName(), "US Letter");
  EXPECT_EQ(choice->GetCode().UTF8(), "<</PageSize[612.00 792.00] /ImagingBBox null>> setpagedevice");
}

TEST_F(PageSizeGeneratorTest, BorderlessSuffixFollowsNullDirectly) {
  ADictionary media = Media("A4.FB", "A4 (borderless)", 595.3, 841.9);
  media.Set("supportsFullBleed", true);
  media.Set("oversprayScaleFactor", 1.05);
  ADictionary ignored = With(Media("A5", "A5", 420, 595), "oversprayScaleFactor", 1.2);
  Run(Product(AArray{media, ignored}, ""));
  ASSERT_TRUE(ok_);
  const auto& choices = Option("PageSize")->GetChoices();
  ASSERT_EQ(choices.size(), 2u);
  EXPECT_EQ(choices[0]->GetCode().UTF8(),
            "<</PageSize[595.30 841.90] /ImagingBBox null/cupsBorderlessScalingFactor 1.05>> "
            "setpagedevice");
  EXPECT_EQ(choices[1]->GetCode().UTF8(),
            "<</PageSize[420.00 595.00] /ImagingBBox null>> setpagedevice");
}

TEST_F(PageSizeGeneratorTest, SizeIsRightMinusLeftByBottomMinusTop) {
  ADictionary media = Media("Odd", "Odd", 0, 0);
  media.Set("paperRectTop", 10.0);
  media.Set("paperRectLeft", 5.0);
  media.Set("paperRectBottom", 852.0);
  media.Set("paperRectRight", 600.0);
  media.Set("pageRectTop", 500.0);  // never read
  media.Set("pageRectLeft", 17.0);
  media.Set("pageRectBottom", 840.0);
  media.Set("pageRectRight", 588.0);
  Run(Product(AArray{media}, ""));
  ASSERT_TRUE(ok_);
  EXPECT_EQ(Option("PageSize")->GetChoices()[0]->GetCode().UTF8(),
            "<</PageSize[595.00 842.00] /ImagingBBox null>> setpagedevice");
  ASSERT_EQ(Doc()->GetPaperSizes().size(), 1u);
  const IPPDPaperSize* paper = Doc()->GetPaperSizes()[0];
  EXPECT_EQ(paper->GetID(), "Odd");
  EXPECT_EQ(paper->GetName(), "Odd");
  EXPECT_TRUE(RKMediaSizeRectIsEqualToRect(paper->GetPaperSizeRect(),
                                           RKMediaSizeRectMake(0, 0, 842, 595)));
  // Bottom margin, left margin, the raw paper bottom, right edge from the paper's left.
  EXPECT_TRUE(RKMediaSizeRectIsEqualToRect(paper->GetImageableRect(),
                                           RKMediaSizeRectMake(12, 12, 852, 583)));
}

TEST_F(PageSizeGeneratorTest, MissingNumbersReadAsZero) {
  Run(Product(AArray{Dict({{"name", "Bare"}, {"PPDName", "Bare"}})}, ""));
  ASSERT_TRUE(ok_);
  EXPECT_EQ(Option("PageSize")->GetChoices()[0]->GetCode().UTF8(),
            "<</PageSize[0.00 0.00] /ImagingBBox null>> setpagedevice");
  EXPECT_TRUE(RKMediaSizeRectIsEqualToRect(Doc()->GetPaperSizes()[0]->GetImageableRect(),
                                           RKMediaSizeRectMake(0, 0, 0, 0)));
}

TEST_F(PageSizeGeneratorTest, DefaultIsMatchedByNameAndTheLastMatchWins) {
  Run(Product(AArray{Media("A4", "A4", 595, 842), Media("Letter", "Letter", 612, 792),
                     Media("LetterSmall", "Letter", 612, 792)},
              "Letter"));
  ASSERT_TRUE(ok_);
  EXPECT_EQ(Option("PageSize")->GetDefaultChoice(), "LetterSmall");
  EXPECT_EQ(Option("PageRegion")->GetDefaultChoice(), "LetterSmall");
}

TEST_F(PageSizeGeneratorTest, DefaultNamingAPPDNameSetsNoDefault) {
  Run(Product(AArray{Media("A4", "ISO A4", 595, 842), Media("Letter", "US Letter", 612, 792)},
              "Letter"));
  ASSERT_TRUE(ok_);
  // Without an explicit default an option reports its first choice.
  EXPECT_EQ(Option("PageSize")->GetDefaultChoice(), "A4");
  EXPECT_EQ(Option("PageRegion")->GetDefaultChoice(), "A4");
}

TEST_F(PageSizeGeneratorTest, PageRegionHoldsTheChoicesPageSizeCopied) {
  Run(Product(AArray{Media("A4", "A4", 595, 842), Media("A5", "A5", 420, 595)}, "A5"));
  ASSERT_TRUE(ok_);
  IPPDOption* pageSize = Option("PageSize");
  IPPDOption* pageRegion = Option("PageRegion");
  ASSERT_NE(pageSize, nullptr);
  ASSERT_NE(pageRegion, nullptr);
  EXPECT_EQ(pageSize->GetName(), "Paper Size");
  EXPECT_EQ(pageRegion->GetName(), "PageRegion");
  EXPECT_EQ(pageSize->GetUIType(), PPD_UI_PICKONE);
  EXPECT_EQ(pageRegion->GetUIType(), PPD_UI_PICKONE);
  ASSERT_EQ(pageSize->GetChoices().size(), 2u);
  ASSERT_EQ(pageRegion->GetChoices().size(), 2u);
  for (std::size_t i = 0; i < 2; ++i) {
    EXPECT_NE(pageSize->GetChoices()[i], pageRegion->GetChoices()[i]);
    EXPECT_TRUE(*pageSize->GetChoices()[i] == *pageRegion->GetChoices()[i]);
    EXPECT_EQ(pageSize->GetChoices()[i]->GetOption(), pageSize);
    EXPECT_EQ(pageRegion->GetChoices()[i]->GetOption(), pageRegion);
  }
  const auto& options = Doc()->GetGroupWithID("General")->GetOptions();
  ASSERT_EQ(options.size(), 2u);
  EXPECT_EQ(options[0], pageSize);
  EXPECT_EQ(options[1], pageRegion);
}

TEST_F(PageSizeGeneratorTest, CustomSizesAreSkipped) {
  Run(Product(AArray{With(Media("Custom", "Custom", 0, 0), "isCustomMediaSize", true),
                     Media("A4", "A4", 595, 842)},
              "Custom"));
  ASSERT_TRUE(ok_);
  ASSERT_EQ(Option("PageSize")->GetChoices().size(), 1u);
  EXPECT_EQ(Option("PageSize")->GetChoices()[0]->GetID(), "A4");
  ASSERT_EQ(Doc()->GetPaperSizes().size(), 1u);
}

TEST_F(PageSizeGeneratorTest, OnlyCustomSizesGiveTwoEmptyOptions) {
  Run(Product(AArray{With(Media("Custom", "Custom", 0, 0), "isCustomMediaSize", true)}, ""));
  ASSERT_TRUE(ok_);
  ASSERT_EQ(Doc()->GetGroups().size(), 1u);
  const auto& options = Doc()->GetGroupWithID("General")->GetOptions();
  ASSERT_EQ(options.size(), 2u);
  EXPECT_EQ(options[0]->GetID(), "PageSize");
  EXPECT_EQ(options[1]->GetID(), "PageRegion");
  EXPECT_TRUE(options[0]->GetChoices().empty());
  EXPECT_TRUE(options[1]->GetChoices().empty());
  EXPECT_TRUE(Doc()->GetPaperSizes().empty());
}

struct NoMediaCase {
  const char* label;
  ADictionary root;
};

class NoMediaTest : public PageSizeGeneratorTest,
                    public ::testing::WithParamInterface<NoMediaCase> {};

TEST_P(NoMediaTest, FailsWithoutAnError) {
  Run(GetParam().root);
  EXPECT_FALSE(ok_);
  EXPECT_EQ(error_.code, 99);
  EXPECT_TRUE(Doc()->GetGroups().empty());
}

ADictionary WithoutPaperInfo() {
  ADictionary root = Product(AArray{}, "");
  root.Remove("options");
  return root;
}

INSTANTIATE_TEST_SUITE_P(
    Products, NoMediaTest,
    ::testing::Values(NoMediaCase{"EmptyList", Product(AArray{}, "")},
                      NoMediaCase{"NoPaperInfo", WithoutPaperInfo()},
                      NoMediaCase{"ValuesNotAnArray",
                                  Dict({{"attributesGenerationInfo", AArray{}},
                                        {"options", Dict({{"QVPaperInfo",
                                                           Dict({{"values", "A4"}})}})}})}),
    [](const ::testing::TestParamInfo<NoMediaCase>& param) { return param.param.label; });

TEST_F(PageSizeGeneratorTest, RunningAgainReusesTheGeneralGroup) {
  Run(Product(AArray{Media("A4", "A4", 595, 842)}, "A4"));
  ASSERT_TRUE(ok_);
  AScopedRef<IPPDObjectGenerator> again(
      IPPDObjectGenerator::Create("APPDPageSizesGenerator", Engine(), nullptr));
  ASSERT_TRUE(again);
  EXPECT_TRUE(again->IsApplicable());
  EXPECT_TRUE(again->Generate(nullptr));
  ASSERT_EQ(Doc()->GetGroups().size(), 1u);
  EXPECT_EQ(Doc()->GetGroupWithID("General")->GetOptions().size(), 2u);
  EXPECT_EQ(Doc()->GetPaperSizes().size(), 1u);
}

TEST_F(PageSizeGeneratorTest, ManyMediaSizes) {
  AArray media;
  for (int i = 0; i < 2000; ++i) {
    const std::string id = "Size" + std::to_string(i);
    media.Append(Media(id.c_str(), id.c_str(), 100 + i, 200 + i));
  }
  Run(Product(media, "Size1999"));
  ASSERT_TRUE(ok_);
  EXPECT_EQ(Option("PageSize")->GetChoices().size(), 2000u);
  EXPECT_EQ(Option("PageRegion")->GetChoices().size(), 2000u);
  EXPECT_EQ(Doc()->GetPaperSizes().size(), 2000u);
  EXPECT_EQ(Option("PageSize")->GetDefaultChoice(), "Size1999");
}

TEST_F(PageSizeGeneratorTest, SmallDocumentText) {
  const AArray attributes{Dict({{"name", "FormatVersion"}, {"value", "4.3"}}),
                          Dict({{"name", "ModelName"}, {"value", "Probe"}, {"comment", "Model"}})};
  ADictionary a4 = Media("A4", "A4", 595, 842);
  ADictionary borderless = With(With(Media("Letter.FB", "US Letter (borderless)", 612, 792),
                                     "supportsFullBleed", true),
                                "oversprayScaleFactor", 1.03);
  Run(Product(AArray{a4, borderless}, "A4", attributes));
  ASSERT_TRUE(ok_);
  AError error = error_;
  const AQVString text = Doc()->GetStringRepresentation(&error);
  EXPECT_EQ(error.code, 99) << Describe(error);
  EXPECT_EQ(text.UTF8(),
            "*FormatVersion: \"4.3\"\n"
            "*% Model\n"
            "*ModelName: \"Probe\"\n"
            "\n"
            "*OpenUI *PageSize/Paper Size: PickOne\n"
            "*OrderDependency: 10.0 AnySetup *PageSize\n"
            "*DefaultPageSize: A4\n"
            "*PageSize A4/A4: \"<</PageSize[595.00 842.00] /ImagingBBox null>> setpagedevice\"\n"
            "*PageSize Letter.FB/US Letter (borderless): \"<</PageSize[612.00 792.00] "
            "/ImagingBBox null/cupsBorderlessScalingFactor 1.03>> setpagedevice\"\n"
            "*CloseUI: *PageSize\n"
            "\n"
            "*OpenUI *PageRegion/PageRegion: PickOne\n"
            "*OrderDependency: 10.0 AnySetup *PageRegion\n"
            "*DefaultPageRegion: A4\n"
            "*PageRegion A4/A4: \"<</PageSize[595.00 842.00] /ImagingBBox null>> setpagedevice\"\n"
            "*PageRegion Letter.FB/US Letter (borderless): \"<</PageSize[612.00 792.00] "
            "/ImagingBBox null/cupsBorderlessScalingFactor 1.03>> setpagedevice\"\n"
            "*CloseUI: *PageRegion\n"
            "\n"
            "\n"
            "*DefaultImageableArea: A4\n"
            "*ImageableArea A4/A4: \"18.00 18.00 577.00 842.00\"\n"
            "*ImageableArea Letter.FB/US Letter (borderless): \"18.00 18.00 594.00 792.00\"\n"
            "\n"
            "*DefaultPaperDimension: A4\n"
            "*PaperDimension A4/A4: \"595.00 842.00\"\n"
            "*PaperDimension Letter.FB/US Letter (borderless): \"612.00 792.00\"\n"
            "\n"
            "\n");
}

// Custom page size attributes.

ADictionary CustomProduct(bool supported) {
  ADictionary root = Product(AArray{Media("A4", "A4", 595, 842)}, "A4");
  root.Set("features", Dict({{"supportsCustomPageSize", supported}}));
  // Margins top, left, bottom, right; limits min height, min width, max height, max width.
  root.Set("customPageSizeMargins", AArray{1.5, 2.0, 3.0, 4.0});
  root.Set("customPageSizeConstraints", AArray{144.0, 72.0, 1296.0, 612.0});
  return root;
}

AScopedRef<APPDCustomPageSizeGenerator> MakeCustom(IPPDGenerator* engine,
                                                   const ADictionary& description) {
  return testing::CreateGenerator<APPDCustomPageSizeGenerator>("APPDCustomPageSizeGenerator",
                                                               engine, description);
}

struct CustomValueCase {
  const char* label;
  const char* name;
  const char* spec;
  const char* format;
  const char* expected;
};

class CustomValueTest : public PageSizeGeneratorTest,
                        public ::testing::WithParamInterface<CustomValueCase> {};

TEST_P(CustomValueTest, FillsTheDescriptionFormat) {
  Run(CustomProduct(true));
  ASSERT_TRUE(ok_);
  auto generator = MakeCustom(
      Engine(),
      Dict({{"name", GetParam().name}, {"spec", GetParam().spec}, {"value", GetParam().format}}));
  ASSERT_TRUE(generator);
  EXPECT_EQ(generator->GetAttributeValue().UTF8(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Attributes, CustomValueTest,
    ::testing::Values(
        CustomValueCase{"Margins", "HWMargins", "", "%.1f %.1f %.1f %.1f", "2.0 3.0 4.0 1.5"},
        CustomValueCase{"Width", "ParamCustomPageSize", "Width", "1 points %.0f %.0f",
                        "1 points 72 612"},
        CustomValueCase{"Height", "ParamCustomPageSize", "Height", "2 points %.0f %.0f",
                        "2 points 144 1296"},
        CustomValueCase{"OtherSpec", "ParamCustomPageSize", "WidthOffset", "3 points %.0f",
                        "3 points %.0f"},
        CustomValueCase{"MaxWidth", "MaxMediaWidth", "", "%.0f", "612"},
        CustomValueCase{"MaxHeight", "MaxMediaHeight", "", "%.0f", "1296"},
        CustomValueCase{"OtherName", "CustomPageSize", "True", "%.0f", "%.0f"},
        CustomValueCase{"NameIsCaseSensitive", "maxmediawidth", "", "%.0f", "%.0f"},
        CustomValueCase{"NoPlaceholders", "MaxMediaWidth", "", "612", "612"},
        CustomValueCase{"StringPlaceholder", "MaxMediaWidth", "", "%@", "%@"},
        CustomValueCase{"CStringPlaceholder", "MaxMediaWidth", "", "%s", "%s"},
        CustomValueCase{"TooManyPlaceholders", "MaxMediaWidth", "", "%.0f %.0f", "%.0f %.0f"},
        CustomValueCase{"IntegerPlaceholder", "HWMargins", "", "%d %d %d %d", "%d %d %d %d"}),
    [](const ::testing::TestParamInfo<CustomValueCase>& param) { return param.param.label; });

TEST_F(PageSizeGeneratorTest, CustomSizeAttributesFollowTheFeature) {
  const AArray attributes{Dict({{"generator", "APPDCustomPageSizeGenerator"},
                                {"name", "MaxMediaWidth"},
                                {"value", "%.0f"}}),
                          Dict({{"generator", "APPDCustomPageSizeGenerator"},
                                {"name", "HWMargins"},
                                {"value", "%.0f %.0f %.0f %.0f"},
                                {"value-type", 3}})};
  ADictionary root = CustomProduct(true);
  root.Set("attributesGenerationInfo", attributes);
  Run(root);
  ASSERT_TRUE(ok_);
  std::vector<IPPDAttribute*> found;
  Doc()->GetAttributesWithNameAndSpec("MaxMediaWidth", nullptr, found);
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0]->GetStringRepresentation(nullptr), "*MaxMediaWidth: \"612\"");
  Doc()->GetAttributesWithNameAndSpec("HWMargins", nullptr, found);
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0]->GetStringRepresentation(nullptr), "*HWMargins: 2 3 4 2");

  root = CustomProduct(false);
  root.Set("attributesGenerationInfo", attributes);
  Run(root);
  ASSERT_TRUE(ok_);
  Doc()->GetAttributesWithNameAndSpec("MaxMediaWidth", nullptr, found);
  EXPECT_TRUE(found.empty());

  root.Remove("features");
  Run(root);
  auto generator = MakeCustom(Engine(), ADictionary());
  EXPECT_FALSE(generator->IsApplicable());
}

TEST_F(PageSizeGeneratorTest, CustomSizeMessageShowsTheFilledValue) {
  AScopedRef<IPPDGenerator> bare(IPPDGenerator::Create(nullptr));
  auto generator = MakeCustom(bare.get(), Dict({{"name", "MaxMediaHeight"}, {"value", "%.0f"}}));
  // Without a product every number is 0.
  EXPECT_FALSE(generator->IsApplicable());
  AError error;
  EXPECT_FALSE(generator->Generate(&error));
  EXPECT_EQ(Describe(error),
            "RKPPDGeneration/1: Cannot add PPD attribute: *MaxMediaHeight /: \"0\"");
}

// Page size categories.

AScopedRef<IPPDObjectGenerator> MakeCategories(IPPDGenerator* engine,
                                               const ADictionary& description) {
  return testing::CreateGenerator("APPDPageSizeCategoryAttributeGenerator", engine, description);
}

TEST_F(PageSizeGeneratorTest, CategoriesInTextOrderWithTheCommentOnTheFirst) {
  const AArray media{
      With(Media("B1", "B1", 100, 100), "mediaSizeCategory", "B"),
      With(Media("A1", "A1", 100, 100), "mediaSizeCategory", "A"),
      Media("None", "None", 100, 100),
      With(Media("E1", "E1", 100, 100), "mediaSizeCategory", ""),
      With(With(Media("C1", "C1", 0, 0), "mediaSizeCategory", "B"), "isCustomMediaSize", true),
      With(Media("B2", "B2", 100, 100), "mediaSizeCategory", "B"),
  };
  Run(Product(media, "A1"));
  ASSERT_TRUE(ok_);
  auto generator = MakeCategories(
      Engine(),
      Dict({{"name", "cupsPageSizeCategory"}, {"value-type", 0}, {"comment", "Size categories"}}));
  ASSERT_TRUE(generator);
  ASSERT_TRUE(generator->IsApplicable());
  ASSERT_TRUE(generator->Generate(nullptr));
  std::vector<IPPDAttribute*> found;
  Doc()->GetAttributesWithNameAndSpec("cupsPageSizeCategory", nullptr, found);
  ASSERT_EQ(found.size(), 2u);
  EXPECT_EQ(found[0]->GetStringRepresentation(nullptr),
            "*% Size categories\n*cupsPageSizeCategory A/A: \"A1\"");
  EXPECT_EQ(found[1]->GetStringRepresentation(nullptr), "*cupsPageSizeCategory B/B: \"B1 B2\"");
}

TEST_F(PageSizeGeneratorTest, NoCategoriesIsSuccess) {
  Run(Product(AArray{Media("A4", "A4", 595, 842)}, "A4"));
  ASSERT_TRUE(ok_);
  auto generator = MakeCategories(Engine(), Dict({{"name", "cupsPageSizeCategory"}}));
  EXPECT_TRUE(generator->Generate(nullptr));
  std::vector<IPPDAttribute*> found;
  Doc()->GetAttributesWithNameAndSpec("cupsPageSizeCategory", nullptr, found);
  EXPECT_TRUE(found.empty());

  AScopedRef<IPPDGenerator> bare(IPPDGenerator::Create(nullptr));
  EXPECT_TRUE(MakeCategories(bare.get(), ADictionary())->Generate(nullptr));
}

TEST_F(PageSizeGeneratorTest, CategoryRefusalNamesTheCategory) {
  // The product has media but the engine was never run, so there is no document.
  ADictionary root = Product(AArray{With(Media("A1", "A1", 1, 1), "mediaSizeCategory", "A"),
                                    With(Media("A2", "A2", 1, 1), "mediaSizeCategory", "A")},
                             "");
  AScopedRef<IPPDGenerator> bare(IPPDGenerator::Create(std::make_shared<FakeProductInfo>(root)));
  auto generator = MakeCategories(bare.get(), Dict({{"name", "cupsPageSizeCategory"}}));
  AError error;
  EXPECT_FALSE(generator->Generate(&error));
  EXPECT_EQ(Describe(error),
            "RKPPDGeneration/1: Cannot add PPD attribute: *cupsPageSizeCategory A/A: \"A1 A2\"");
}

}  // namespace
}  // namespace ppdforge
