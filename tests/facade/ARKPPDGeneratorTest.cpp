#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "facade/APlistProductInfo.h"
#include "facade/ARKPPDConcreteGenerator.h"
#include "facade/ARKPPDGenerator.h"
#include "support/GeneratorTestSupport.h"
#include "support/TemporaryDirectory.h"

namespace ppdforge {
namespace {

using testing::Dict;
using testing::SmallProduct;

std::unique_ptr<ARKPPDGenerator> Make(ADictionary root, AError* error = nullptr) {
  return ARKPPDGenerator::GeneratorWithProductInfo(std::make_shared<testing::FakeProductInfo>(std::move(root)), error);
}

// The whole text of a product file, as the reviewed golden file has it.
TEST(ARKPPDGenerator, BuildsTheConcreteClassAndRendersTheSameUTF8Text) {
  const std::string golden = std::string(PPDFORGE_SOURCE_DIR) + "/tests/golden/minimal";
  AError error;
  const std::unique_ptr<ARKPPDGenerator> generator =
      ARKPPDGenerator::GeneratorWithProductInfo(APlistProductInfo::LoadFile(golden + ".plist", &error), &error);
  ASSERT_NE(generator, nullptr);
  EXPECT_TRUE(error.domain.IsEmpty());
  const auto* concrete = dynamic_cast<ARKPPDConcreteGenerator*>(generator.get());
  ASSERT_TRUE(concrete != nullptr && concrete->GetGenerator() != nullptr);
  EXPECT_NE(concrete->GetGenerator()->GetPPD(), nullptr);
  EXPECT_EQ(generator->GeneratePPDData(&error), testing::ReadFile(golden + ".ppd"));
  EXPECT_EQ(generator->GeneratePPDData(nullptr), testing::ReadFile(golden + ".ppd"));
  EXPECT_TRUE(error.domain.IsEmpty());
}

TEST(ARKPPDGenerator, FailsWithTheEnginesErrorOrNone) {
  struct Case {
    const char* removedKey;  // null: no product at all
    AError expected;
  };
  const AError untouched{"untouched", 42, "before"};
  for (const Case& c :
       {Case{"attributesGenerationInfo", {"RKPPDGeneration", 3, "Cannot create PPD attributes XML description"}},
        Case{"optionsGenerationInfo", {"RKPPDGeneration", 3, "Cannot create PPD options XML description"}},
        // The resolver phase reports the constraints text.
        Case{"cupsUIResolversGenerationInfo", {"RKPPDGeneration", 3, "Cannot create PPD constraints XML description"}},
        Case{"constraintsGenerationInfo", {"RKPPDGeneration", 3, "Cannot create PPD constraints XML description"}},
        Case{nullptr, {"RKPPDGeneration", 2, "Product info is not available."}},
        // Without media the engine fails without a word.
        Case{"options", untouched}}) {
    ADictionary root = SmallProduct();
    AError error = untouched;
    if (c.removedKey != nullptr) root.Remove(c.removedKey);
    EXPECT_EQ(c.removedKey != nullptr ? Make(root, &error) : ARKPPDGenerator::GeneratorWithProductInfo(nullptr, &error),
              nullptr);
    EXPECT_EQ(error, c.expected) << (c.removedKey ? c.removedKey : "no product");
  }
}

TEST(ARKPPDGenerator, AnUnknownGeneratorFollowedByAGoodOneSucceedsAndKeepsTheError) {
  ADictionary root = SmallProduct();
  AArray attributes;
  root.GetArray("attributesGenerationInfo", attributes);
  root.Set("attributesGenerationInfo",
           AArray{attributes[0], Dict({{"generator", "APPDNoSuchGenerator"}, {"name", "FileVersion"}}), attributes[1]});
  AError error;
  const std::unique_ptr<ARKPPDGenerator> generator = Make(root, &error);
  ASSERT_NE(generator, nullptr);
  EXPECT_EQ(error, (AError{"RKPPDGeneration", 1, "Cannot create PPD generator with class name: APPDNoSuchGenerator"}));
  EXPECT_EQ(generator->GeneratePPDData(nullptr), testing::LibraryText(SmallProduct()));
}

// A bundle directory adds its strings; a plain file, a missing path and an
// empty one add nothing.
TEST(ARKPPDGenerator, AddsTheStringsOfBundleDirectoriesOnly) {
  testing::TemporaryDirectory directory;
  directory.Write("Strings.bundle/fr.lproj/Localizable.strings", "\"Paper Size\" = \"Taille du papier\";\n");
  const std::unique_ptr<ARKPPDGenerator> generator = Make(SmallProduct());
  ASSERT_NE(generator, nullptr);
  for (const std::string& path : {directory.Write("plain-file", "not a bundle"), directory.File("missing"),
                                  std::string(), directory.File("Strings.bundle")}) {
    generator->AddLocalizedStringsFromBundleAtPath(AQVString(path));
  }
  dynamic_cast<ARKPPDConcreteGenerator&>(*generator).GetGenerator()->SetSupportedLocales({"en", "fr"});
  const std::string text = generator->GeneratePPDData(nullptr).value_or("");
  const std::size_t start = text.find("*OpenUI *PageSize");
  EXPECT_EQ(text.substr(start, text.find("*CloseUI: *PageSize") - start),
            "*OpenUI *PageSize/Paper Size: PickOne\n"
            "*fr.Translation PageSize/Taille du papier: \"\"\n"
            "*OrderDependency: 10.0 AnySetup *PageSize\n"
            "*DefaultPageSize: A4\n"
            "*PageSize A4/A4: \"<</PageSize[595.00 842.00] /ImagingBBox null>> setpagedevice\"\n"
            "*fr.PageSize A4/A4: \"\"\n");
}

}  // namespace
}  // namespace ppdforge
