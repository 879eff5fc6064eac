#include "facade/ARKPPDGenerator.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include <unistd.h>

#include "facade/ARKPPDConcreteGenerator.h"
#include "support/FakeProductInfo.h"

namespace ppdforge {
namespace {

using testing::FakeProductInfo;

ADictionary Attribute(const char* name, const char* value, int valueType) {
  ADictionary entry;
  entry.Set("name", name);
  entry.Set("value", value);
  entry.Set("value-type", valueType);
  return entry;
}

ADictionary Media(const char* ppdName, const char* name, double width, double height) {
  ADictionary media;
  media.Set("name", name);
  media.Set("PPDName", ppdName);
  media.Set("paperRectBottom", height);
  media.Set("paperRectRight", width);
  media.Set("pageRectBottom", height);
  media.Set("pageRectRight", width);
  return media;
}

// A small complete product: two header attributes, one media size, one option.
ADictionary SmallProduct() {
  ADictionary root;
  root.Set("attributesGenerationInfo",
           AArray{Attribute("PPD-Adobe", "4.3", 1), Attribute("LanguageVersion", "English", 3)});
  ADictionary paperInfo;
  paperInfo.Set("values", AArray{Media("A4", "A4", 595, 842)});
  ADictionary choice;
  choice.Set("id", "Plain");
  choice.Set("name", "Plain Paper");
  ADictionary option;
  option.Set("code-name", "MediaType");
  option.Set("user-name", "Media Type");
  option.Set("choices", AArray{choice});
  ADictionary settings;
  settings.Set("QVPaperInfo", paperInfo);
  root.Set("options", settings);
  root.Set("optionsGenerationInfo", AArray{option});
  root.Set("cupsUIResolversGenerationInfo", AArray{});
  root.Set("constraintsGenerationInfo", AArray{});
  root.Set("CUPSVersion", 0x120);
  return root;
}

std::shared_ptr<FakeProductInfo> Product(ADictionary root) {
  return std::make_shared<FakeProductInfo>(std::move(root));
}

const char* const kSmallProductText =
    "*PPD-Adobe: \"4.3\"\n"
    "*LanguageVersion: English\n"
    "\n"
    "*OpenUI *PageSize/Paper Size: PickOne\n"
    "*OrderDependency: 10.0 AnySetup *PageSize\n"
    "*DefaultPageSize: A4\n"
    "*PageSize A4/A4: \"<</PageSize[595.00 842.00] /ImagingBBox null>> setpagedevice\"\n"
    "*CloseUI: *PageSize\n"
    "\n"
    "*OpenUI *PageRegion/PageRegion: PickOne\n"
    "*OrderDependency: 10.0 AnySetup *PageRegion\n"
    "*DefaultPageRegion: A4\n"
    "*PageRegion A4/A4: \"<</PageSize[595.00 842.00] /ImagingBBox null>> setpagedevice\"\n"
    "*CloseUI: *PageRegion\n"
    "\n"
    "*OpenUI *MediaType/Media Type: PickOne\n"
    "*OrderDependency: 10.0 AnySetup *MediaType\n"
    "*DefaultMediaType: Plain\n"
    "*MediaType Plain/Plain Paper: \"\"\n"
    "*CloseUI: *MediaType\n"
    "\n"
    "\n"
    "*DefaultImageableArea: A4\n"
    "*ImageableArea A4/A4: \"0.00 0.00 595.00 842.00\"\n"
    "\n"
    "*DefaultPaperDimension: A4\n"
    "*PaperDimension A4/A4: \"595.00 842.00\"\n"
    "\n"
    "\n";

TEST(ARKPPDGenerator, BuildsTheDocumentAndRendersItAsUTF8) {
  AError error;
  std::unique_ptr<ARKPPDGenerator> generator =
      ARKPPDGenerator::GeneratorWithProductInfo(Product(SmallProduct()), &error);
  ASSERT_NE(generator, nullptr);
  EXPECT_TRUE(error.domain.IsEmpty());
  const std::optional<std::string> data = generator->GeneratePPDData(&error);
  ASSERT_TRUE(data.has_value());
  EXPECT_EQ(*data, kSmallProductText);
}

TEST(ARKPPDGenerator, AlwaysBuildsTheConcreteClass) {
  std::unique_ptr<ARKPPDGenerator> generator =
      ARKPPDGenerator::GeneratorWithProductInfo(Product(SmallProduct()), nullptr);
  auto* concrete = dynamic_cast<ARKPPDConcreteGenerator*>(generator.get());
  ASSERT_NE(concrete, nullptr);
  ASSERT_NE(concrete->GetGenerator(), nullptr);
  EXPECT_NE(concrete->GetGenerator()->GetPPD(), nullptr);
}

TEST(ARKPPDGenerator, RendersTheSameBytesEveryTime) {
  std::unique_ptr<ARKPPDGenerator> generator =
      ARKPPDGenerator::GeneratorWithProductInfo(Product(SmallProduct()), nullptr);
  ASSERT_NE(generator, nullptr);
  const std::optional<std::string> first = generator->GeneratePPDData(nullptr);
  const std::optional<std::string> second = generator->GeneratePPDData(nullptr);
  ASSERT_TRUE(first.has_value());
  EXPECT_EQ(first, second);
}

struct InitFailure {
  const char* name;
  const char* removedKey;
  long code;
  const char* message;
};

class ARKPPDGeneratorInitFailure : public ::testing::TestWithParam<InitFailure> {};

TEST_P(ARKPPDGeneratorInitFailure, ReturnsNullWithTheEnginesError) {
  ADictionary root = SmallProduct();
  root.Remove(GetParam().removedKey);
  AError error;
  EXPECT_EQ(ARKPPDGenerator::GeneratorWithProductInfo(Product(root), &error), nullptr);
  EXPECT_EQ(error.domain, "RKPPDGeneration");
  EXPECT_EQ(error.code, GetParam().code);
  EXPECT_EQ(error.message, GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(
    Phases, ARKPPDGeneratorInitFailure,
    ::testing::Values(
        InitFailure{"Attributes", "attributesGenerationInfo", 3,
                    "Cannot create PPD attributes XML description"},
        InitFailure{"Options", "optionsGenerationInfo", 3,
                    "Cannot create PPD options XML description"},
        // The resolver phase reports the constraints text.
        InitFailure{"Resolvers", "cupsUIResolversGenerationInfo", 3,
                    "Cannot create PPD constraints XML description"},
        InitFailure{"Constraints", "constraintsGenerationInfo", 3,
                    "Cannot create PPD constraints XML description"}),
    [](const ::testing::TestParamInfo<InitFailure>& param) { return param.param.name; });

TEST(ARKPPDGenerator, WithoutProductInfoFailsWithCode2) {
  AError error;
  EXPECT_EQ(ARKPPDGenerator::GeneratorWithProductInfo(nullptr, &error), nullptr);
  EXPECT_EQ(error, (AError{"RKPPDGeneration", 2, "Product info is not available."}));
}

TEST(ARKPPDGenerator, WithoutMediaFailsAndLeavesTheErrorAlone) {
  ADictionary root = SmallProduct();
  root.Remove("options");
  AError error{"untouched", 42, "before"};
  EXPECT_EQ(ARKPPDGenerator::GeneratorWithProductInfo(Product(root), &error), nullptr);
  EXPECT_EQ(error, (AError{"untouched", 42, "before"}));
}

TEST(ARKPPDGenerator, AnUnknownGeneratorFollowedByAGoodOneSucceedsAndKeepsTheError) {
  ADictionary root = SmallProduct();
  ADictionary unknown = Attribute("FileVersion", "1.0", 1);
  unknown.Set("generator", "APPDNoSuchGenerator");
  root.Set("attributesGenerationInfo",
           AArray{Attribute("PPD-Adobe", "4.3", 1), unknown, Attribute("LanguageVersion", "English", 3)});
  AError error;
  std::unique_ptr<ARKPPDGenerator> generator =
      ARKPPDGenerator::GeneratorWithProductInfo(Product(root), &error);
  ASSERT_NE(generator, nullptr);
  EXPECT_EQ(error, (AError{"RKPPDGeneration", 1,
                           "Cannot create PPD generator with class name: APPDNoSuchGenerator"}));
  const std::optional<std::string> data = generator->GeneratePPDData(nullptr);
  ASSERT_TRUE(data.has_value());
  EXPECT_EQ(*data, kSmallProductText);
}

TEST(ARKPPDGenerator, AStatementThatBreaksTheRulesYieldsNoDataAndCode4) {
  ADictionary root = SmallProduct();
  // A quoted value without blanks cannot be wrapped below 255 bytes.
  const std::string longValue(300, 'x');
  root.Set("attributesGenerationInfo",
           AArray{Attribute("PPD-Adobe", "4.3", 1), Attribute("ModelName", longValue.c_str(), 1)});
  std::unique_ptr<ARKPPDGenerator> generator =
      ARKPPDGenerator::GeneratorWithProductInfo(Product(root), nullptr);
  ASSERT_NE(generator, nullptr);
  AError error;
  EXPECT_FALSE(generator->GeneratePPDData(&error).has_value());
  EXPECT_EQ(error, (AError{"RKPPDGeneration", 4,
                           "Line longer then the maximum allowed: 255 characters in statement: "
                           "*ModelName: \"" + longValue + "\""}));
  EXPECT_FALSE(generator->GeneratePPDData(nullptr).has_value());
}

class ARKPPDGeneratorBundles : public ::testing::Test {
 protected:
  void SetUp() override {
    directory_ = std::filesystem::path(::testing::TempDir()) /
                 ("ppdforge-facade-" + std::to_string(::getpid()));
    std::filesystem::create_directories(directory_ / "Strings.bundle" / "fr.lproj");
    std::ofstream(directory_ / "Strings.bundle" / "fr.lproj" / "Localizable.strings")
        << "\"Media Type\" = \"Type de support\";\n\"Plain Paper\" = \"Papier ordinaire\";\n";
    std::ofstream(directory_ / "plain-file") << "not a bundle";
  }
  void TearDown() override { std::filesystem::remove_all(directory_); }

  // The MediaType block of the PPD rendered in English and French.
  static std::string MediaTypeBlock(ARKPPDGenerator& generator) {
    auto& concrete = dynamic_cast<ARKPPDConcreteGenerator&>(generator);
    concrete.GetGenerator()->SetSupportedLocales({"en", "fr"});
    const std::string text = generator.GeneratePPDData(nullptr).value_or("");
    const std::size_t start = text.find("*OpenUI *MediaType");
    const std::size_t end = text.find("*CloseUI: *MediaType");
    return start == std::string::npos || end == std::string::npos ? "" : text.substr(start, end - start);
  }

  std::filesystem::path directory_;
};

TEST_F(ARKPPDGeneratorBundles, AddsTheStringsOfABundleDirectory) {
  std::unique_ptr<ARKPPDGenerator> generator =
      ARKPPDGenerator::GeneratorWithProductInfo(Product(SmallProduct()), nullptr);
  ASSERT_NE(generator, nullptr);
  generator->AddLocalizedStringsFromBundleAtPath(AQVString((directory_ / "Strings.bundle").string()));
  EXPECT_EQ(MediaTypeBlock(*generator),
            "*OpenUI *MediaType/Media Type: PickOne\n"
            "*fr.Translation MediaType/Type de support: \"\"\n"
            "*OrderDependency: 10.0 AnySetup *MediaType\n"
            "*DefaultMediaType: Plain\n"
            "*MediaType Plain/Plain Paper: \"\"\n"
            "*fr.MediaType Plain/Papier ordinaire: \"\"\n");
}

TEST_F(ARKPPDGeneratorBundles, IgnoresAPlainFileAndAMissingPath) {
  std::unique_ptr<ARKPPDGenerator> generator =
      ARKPPDGenerator::GeneratorWithProductInfo(Product(SmallProduct()), nullptr);
  ASSERT_NE(generator, nullptr);
  generator->AddLocalizedStringsFromBundleAtPath(AQVString((directory_ / "plain-file").string()));
  generator->AddLocalizedStringsFromBundleAtPath(AQVString((directory_ / "missing").string()));
  generator->AddLocalizedStringsFromBundleAtPath(AQVString(""));
  EXPECT_EQ(MediaTypeBlock(*generator),
            "*OpenUI *MediaType/Media Type: PickOne\n"
            "*fr.Translation MediaType/Media Type: \"\"\n"
            "*OrderDependency: 10.0 AnySetup *MediaType\n"
            "*DefaultMediaType: Plain\n"
            "*MediaType Plain/Plain Paper: \"\"\n"
            "*fr.MediaType Plain/Plain Paper: \"\"\n");
}

}  // namespace
}  // namespace ppdforge
