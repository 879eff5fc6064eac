#include <gtest/gtest.h>

#include <string>

#include "facade/APlistProductInfo.h"
#include "support/GeneratorTestSupport.h"
#include "support/TemporaryDirectory.h"

namespace ppdforge {
namespace {

using testing::Dict;

// A description that uses every known root key correctly (wrong ones are
// the hostile input tests').
ADictionary CompleteProduct() {
  ADictionary root = testing::SmallProduct();
  root.Set("optionsGenerationInfo", AArray{Dict({{"code-name", "Duplex"},
                                                 {"ui-type", "PickOne"},
                                                 {"min-value-count", 2},
                                                 {"choices", AArray{Dict({{"id", "None"}})}}})});
  root.Set("constraintsGenerationInfo",
           AArray{Dict({{"option-1", "Duplex"}, {"non-ui", "true"}, {"cupsUIConstraint", 1}})});
  root.Set("features", Dict({{"supportsCustomPageSize", true}, {"anything", "goes"}}));
  root.Set("customPageSizeMargins", AArray{1, 2, 3.5, 4});
  root.Set("customPageSizeConstraints", AArray{10, 20, 30, 40});
  root.Set("colorProfiles", AArray{Dict({{"name", "Plain"}, {"path", "plain.icc"}, {"default", true}})});
  root.Set("product", Dict({{"modelName", "Model"},
                            {"presets", AArray{Dict({{"name", "Photo"}, {"settings", AArray{AArray{"A", "B"}}}})}}}));
  root.Set("customPageSizeExcludes", Dict({{"MediaType", AArray{"Envelope"}}}));
  return root;
}

TEST(APlistProductInfo, AnswersFromTheDescription) {
  AError error;
  const auto product = APlistProductInfo::FromDictionary(CompleteProduct(), "product.plist", &error);
  ASSERT_NE(product, nullptr) << error.message.UTF8();
  EXPECT_TRUE(product->GetWarnings().empty());
  EXPECT_EQ(product->CUPSVersion(), 0x120);
  EXPECT_EQ(product->AttributesGenerationInfo()->Count(), 2u);
  EXPECT_EQ(product->ConstraintsGenerationInfo()->Count(), 1u);
  EXPECT_EQ(product->InfoForOptionWithName("QVPaperInfo")->GetString("defaultChoice"), "");
  EXPECT_FALSE(product->InfoForOptionWithName("QVPaperType").has_value());
  EXPECT_TRUE(product->ProductFeatureForKey("supportsCustomPageSize").BoolValue());
  EXPECT_TRUE(product->ProductFeatureForKey("missing").IsNull());
  EXPECT_TRUE(RKMediaSizeRectIsEqualToRect(product->CustomPageSizeMargins(), RKMediaSizeRectMake(1, 2, 3.5, 4)));
  EXPECT_TRUE(RKMediaSizeRectIsEqualToRect(product->CustomPageSizeConstraints(), RKMediaSizeRectMake(10, 20, 30, 40)));
  EXPECT_EQ(product->ColorProfiles()->Count(), 1u);
  EXPECT_EQ(product->ProductData()->GetString("modelName"), "Model");
  EXPECT_TRUE(product->CustomPageSizeExcludes()->Contains("MediaType"));
}

TEST(APlistProductInfo, AbsentKeysGiveNothingAndZeros) {
  const auto product = APlistProductInfo::FromDictionary(ADictionary(), "empty.plist", nullptr);
  ASSERT_NE(product, nullptr);
  EXPECT_FALSE(product->AttributesGenerationInfo() || product->OptionsGenerationInfo() ||
               product->CUPSUIResolversGenerationInfo() || product->ConstraintsGenerationInfo() ||
               product->InfoForOptionWithName("QVPaperInfo") || product->ColorProfiles() || product->ProductData() ||
               product->CustomPageSizeExcludes());
  EXPECT_EQ(product->CUPSVersion(), 0);
  EXPECT_TRUE(RKMediaSizeRectIsEqualToRect(product->CustomPageSizeMargins(), ARKMediaSizeRect{}));
}

// Unknown root keys are warnings, in key order; XML and binary files read alike.
TEST(APlistProductInfo, ReadsXMLAndBinaryFilesAndWarnsOfUnknownKeys) {
  ADictionary root = CompleteProduct();
  root.Set("zebra", 1);
  root.Set("colour", "blue");
  testing::TemporaryDirectory directory;
  for (const bool binary : {false, true}) {
    const std::string path = directory.Write(binary ? "p.bplist" : "p.plist", testing::PropertyListBytes(root, binary));
    AError error;
    const auto product = APlistProductInfo::LoadFile(path, &error);
    ASSERT_NE(product, nullptr) << error.message.UTF8();
    EXPECT_TRUE(error.domain.IsEmpty());
    EXPECT_EQ(product->GetSourceName(), AQVString(path));
    EXPECT_EQ(product->CUPSVersion(), 0x120);
    EXPECT_EQ(product->AttributesGenerationInfo()->At(0), AValue(Dict({{"name", "PPD-Adobe"}, {"value", "4.3"}})));
    ASSERT_EQ(product->GetWarnings().size(), 2u);
    EXPECT_EQ(product->GetWarnings()[0], AQVString(path + ": unknown key \"colour\""));
    EXPECT_EQ(product->GetWarnings()[1], AQVString(path + ": unknown key \"zebra\""));
  }
}

TEST(APlistProductInfo, ARootThatIsNotADictionaryIsAnInputError) {
  testing::TemporaryDirectory directory;
  const std::string path = directory.Write("array.plist", testing::PropertyListBytes(AArray{"x"}, false));
  AError error;
  EXPECT_EQ(APlistProductInfo::LoadFile(path, &error), nullptr);
  EXPECT_EQ(error, (AError{"RKPPDGeneration", 5, path + ": the root is an array, expected a dictionary"}));
}

}  // namespace
}  // namespace ppdforge
