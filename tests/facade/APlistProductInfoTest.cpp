#include "facade/APlistProductInfo.h"

#include <gtest/gtest.h>
#include <plist/plist.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

namespace ppdforge {
namespace {

ADictionary Dictionary(std::initializer_list<std::pair<const char*, AValue>> entries) {
  ADictionary dictionary;
  for (const auto& [key, value] : entries) dictionary.Set(key, value);
  return dictionary;
}

// A description that uses every known root key correctly.
ADictionary CompleteProduct() {
  ADictionary media = Dictionary({{"name", "A4"}, {"PPDName", "A4"}, {"paperRectBottom", 842},
                                  {"paperRectRight", 595.0}, {"supportsFullBleed", true},
                                  {"oversprayScaleFactor", 1.05}, {"mediaSizeCategory", "ISO"}});
  return Dictionary({
      {"attributesGenerationInfo",
       AArray{Dictionary({{"name", "PPD-Adobe"}, {"value", "4.3"}, {"value-type", 1}}),
              Dictionary({{"name", "cupsVersion"}, {"value", "2.4"}, {"value-type", "3"}})}},
      {"optionsGenerationInfo",
       AArray{Dictionary({{"code-name", "Duplex"}, {"ui-type", "PickOne"}, {"min-value-count", 2},
                          {"choices", AArray{Dictionary({{"id", "None"}, {"name", "Off"}})}}})}},
      {"cupsUIResolversGenerationInfo",
       AArray{Dictionary({{"resolver-name", "R"}, {"option-1", "Duplex"}, {"choice-1", "None"}})}},
      {"constraintsGenerationInfo",
       AArray{Dictionary({{"option-1", "Duplex"}, {"option-2", "MediaType"}, {"non-ui", "true"},
                          {"cupsUIConstraint", 1}})}},
      {"CUPSVersion", 0x120},
      {"options", Dictionary({{"QVPaperInfo", Dictionary({{"defaultChoice", "A4"},
                                                          {"values", AArray{media}}})}})},
      {"features", Dictionary({{"supportsCustomPageSize", true}, {"anything", "goes"}})},
      {"customPageSizeMargins", AArray{1, 2, 3.5, 4}},
      {"customPageSizeConstraints", AArray{10, 20, 30, 40}},
      {"colorProfiles", AArray{Dictionary({{"name", "Plain"}, {"path", "plain.icc"}, {"default", true}})}},
      {"product",
       Dictionary({{"modelName", "Model"},
                   {"productNames", AArray{"A", "B"}},
                   {"components", Dictionary({{"PDE", "x.plugin"}})},
                   {"duplex", Dictionary({{"backSide", "Rotated"}, {"requiresFlippedMargin", false}})},
                   {"presets", AArray{Dictionary({{"name", "Photo"},
                                                  {"settings", AArray{AArray{"MediaType", "Glossy"}}}})}}})},
      {"customPageSizeExcludes", Dictionary({{"MediaType", AArray{"Envelope"}}})},
  });
}

TEST(APlistProductInfo, AnswersFromTheDescription) {
  AError error;
  const auto product = APlistProductInfo::FromDictionary(CompleteProduct(), "product.plist", &error);
  ASSERT_NE(product, nullptr) << error.message.UTF8();
  EXPECT_TRUE(product->GetWarnings().empty());
  EXPECT_EQ(product->CUPSVersion(), 0x120);
  ASSERT_TRUE(product->AttributesGenerationInfo().has_value());
  EXPECT_EQ(product->AttributesGenerationInfo()->Count(), 2u);
  EXPECT_EQ(product->ConstraintsGenerationInfo()->Count(), 1u);
  ASSERT_TRUE(product->InfoForOptionWithName("QVPaperInfo").has_value());
  EXPECT_EQ(product->InfoForOptionWithName("QVPaperInfo")->GetString("defaultChoice"), "A4");
  EXPECT_FALSE(product->InfoForOptionWithName("QVPaperType").has_value());
  EXPECT_TRUE(product->ProductFeatureForKey("supportsCustomPageSize").BoolValue());
  EXPECT_TRUE(product->ProductFeatureForKey("missing").IsNull());
  EXPECT_TRUE(RKMediaSizeRectIsEqualToRect(product->CustomPageSizeMargins(),
                                           RKMediaSizeRectMake(1, 2, 3.5, 4)));
  EXPECT_TRUE(RKMediaSizeRectIsEqualToRect(product->CustomPageSizeConstraints(),
                                           RKMediaSizeRectMake(10, 20, 30, 40)));
  EXPECT_EQ(product->ColorProfiles()->Count(), 1u);
  EXPECT_EQ(product->ProductData()->GetString("modelName"), "Model");
  EXPECT_TRUE(product->CustomPageSizeExcludes()->Contains("MediaType"));
}

TEST(APlistProductInfo, AbsentKeysGiveNothingAndZeros) {
  const auto product = APlistProductInfo::FromDictionary(ADictionary(), "empty.plist", nullptr);
  ASSERT_NE(product, nullptr);
  EXPECT_FALSE(product->AttributesGenerationInfo().has_value());
  EXPECT_FALSE(product->OptionsGenerationInfo().has_value());
  EXPECT_FALSE(product->CUPSUIResolversGenerationInfo().has_value());
  EXPECT_FALSE(product->ConstraintsGenerationInfo().has_value());
  EXPECT_EQ(product->CUPSVersion(), 0);
  EXPECT_FALSE(product->InfoForOptionWithName("QVPaperInfo").has_value());
  EXPECT_TRUE(RKMediaSizeRectIsEqualToRect(product->CustomPageSizeMargins(), ARKMediaSizeRect{}));
  EXPECT_FALSE(product->ColorProfiles().has_value());
  EXPECT_FALSE(product->ProductData().has_value());
  EXPECT_FALSE(product->CustomPageSizeExcludes().has_value());
}

TEST(APlistProductInfo, UnknownRootKeysAreWarningsInKeyOrder) {
  ADictionary root = CompleteProduct();
  root.Set("zebra", 1);
  root.Set("colour", "blue");
  AError error;
  const auto product = APlistProductInfo::FromDictionary(root, "p.plist", &error);
  ASSERT_NE(product, nullptr);
  EXPECT_TRUE(error.domain.IsEmpty());
  ASSERT_EQ(product->GetWarnings().size(), 2u);
  EXPECT_EQ(product->GetWarnings()[0], "p.plist: unknown key \"colour\"");
  EXPECT_EQ(product->GetWarnings()[1], "p.plist: unknown key \"zebra\"");
}

// One way to spoil the complete description and the message that names it.
struct WrongInput {
  const char* name;
  std::function<void(ADictionary&)> spoil;
  const char* message;
};

// Replaces the value at root[key] by what `change` makes of it.
void Change(ADictionary& root, const char* key, const std::function<AValue(const AValue&)>& change) {
  root.Set(key, change(*root.Get(key)));
}

AValue SetInDictionary(const AValue& value, const char* key, const AValue& newValue) {
  ADictionary dictionary;
  value.GetDictionary(dictionary);
  dictionary.Set(key, newValue);
  return dictionary;
}

AValue SetInArray(const AValue& value, std::size_t index, const AValue& newValue) {
  AArray array;
  value.GetArray(array);
  array.Set(index, newValue);
  return array;
}

AValue Element(const AValue& value, std::size_t index) {
  AArray array;
  value.GetArray(array);
  return array[index];
}

AValue Member(const AValue& value, const char* key) {
  ADictionary dictionary;
  value.GetDictionary(dictionary);
  return *dictionary.Get(key);
}

class APlistProductInfoWrongInput : public ::testing::TestWithParam<WrongInput> {};

TEST_P(APlistProductInfoWrongInput, IsAnInputErrorNamingFileAndKey) {
  ADictionary root = CompleteProduct();
  GetParam().spoil(root);
  AError error;
  EXPECT_EQ(APlistProductInfo::FromDictionary(root, "product.tiff", &error), nullptr);
  EXPECT_EQ(error, (AError{"RKPPDGeneration", 5, GetParam().message}));
}

INSTANTIATE_TEST_SUITE_P(
    Keys, APlistProductInfoWrongInput,
    ::testing::Values(
        WrongInput{"GenerationInfoNotArray",
                   [](ADictionary& r) { r.Set("attributesGenerationInfo", "PPD-Adobe"); },
                   "product.tiff: attributesGenerationInfo is a string, expected an array of dictionaries"},
        WrongInput{"GenerationInfoElementNotDictionary",
                   [](ADictionary& r) {
                     Change(r, "optionsGenerationInfo", [](const AValue& v) {
                       AValue list = SetInArray(v, 1, Element(v, 0));
                       list = SetInArray(list, 2, Element(v, 0));
                       return SetInArray(list, 3, "Duplex");
                     });
                   },
                   "product.tiff: optionsGenerationInfo[3] is a string, expected a dictionary"},
        WrongInput{"ResolverElementNotDictionary",
                   [](ADictionary& r) {
                     Change(r, "cupsUIResolversGenerationInfo", [](const AValue& v) { return SetInArray(v, 0, 7); });
                   },
                   "product.tiff: cupsUIResolversGenerationInfo[0] is an integer, expected a dictionary"},
        WrongInput{"AttributeValueNotString",
                   [](ADictionary& r) {
                     Change(r, "attributesGenerationInfo", [](const AValue& v) {
                       return SetInArray(v, 1, SetInDictionary(Element(v, 1), "value", 2.4));
                     });
                   },
                   "product.tiff: attributesGenerationInfo[1].value is a real number, expected a string"},
        WrongInput{"ChoiceNotDictionary",
                   [](ADictionary& r) {
                     Change(r, "optionsGenerationInfo", [](const AValue& v) {
                       return SetInArray(v, 0, SetInDictionary(Element(v, 0), "choices", AArray{"None"}));
                     });
                   },
                   "product.tiff: optionsGenerationInfo[0].choices[0] is a string, expected a dictionary"},
        WrongInput{"UITypeBoolean",
                   [](ADictionary& r) {
                     Change(r, "optionsGenerationInfo", [](const AValue& v) {
                       return SetInArray(v, 0, SetInDictionary(Element(v, 0), "ui-type", true));
                     });
                   },
                   "product.tiff: optionsGenerationInfo[0].ui-type is a boolean, expected a number or a string"},
        WrongInput{"NumberedOptionNotString",
                   [](ADictionary& r) {
                     Change(r, "constraintsGenerationInfo", [](const AValue& v) {
                       return SetInArray(v, 0, SetInDictionary(Element(v, 0), "option-12", 12));
                     });
                   },
                   "product.tiff: constraintsGenerationInfo[0].option-12 is an integer, expected a string"},
        WrongInput{"NonUINumber",
                   [](ADictionary& r) {
                     Change(r, "constraintsGenerationInfo", [](const AValue& v) {
                       return SetInArray(v, 0, SetInDictionary(Element(v, 0), "non-ui", 1));
                     });
                   },
                   "product.tiff: constraintsGenerationInfo[0].non-ui is an integer, expected a boolean or a string"},
        WrongInput{"CUPSVersionString",
                   [](ADictionary& r) { r.Set("CUPSVersion", "0x120"); },
                   "product.tiff: CUPSVersion is a string, expected an integer"},
        WrongInput{"CUPSVersionReal",
                   [](ADictionary& r) { r.Set("CUPSVersion", 288.0); },
                   "product.tiff: CUPSVersion is a real number, expected an integer"},
        WrongInput{"SettingNotDictionary",
                   [](ADictionary& r) {
                     Change(r, "options", [](const AValue& v) { return SetInDictionary(v, "QVPaperType", AArray{}); });
                   },
                   "product.tiff: options.QVPaperType is an array, expected a dictionary"},
        WrongInput{"MediaNumberIsString",
                   [](ADictionary& r) {
                     Change(r, "options", [](const AValue& v) {
                       AValue paper = Member(v, "QVPaperInfo");
                       AValue values = Member(paper, "values");
                       values = SetInArray(values, 0, SetInDictionary(Element(values, 0), "paperRectTop", "0"));
                       return SetInDictionary(v, "QVPaperInfo", SetInDictionary(paper, "values", values));
                     });
                   },
                   "product.tiff: options.QVPaperInfo.values[0].paperRectTop is a string, expected a number"},
        WrongInput{"FeaturesArray",
                   [](ADictionary& r) { r.Set("features", AArray{"supportsCustomPageSize"}); },
                   "product.tiff: features is an array, expected a dictionary"},
        WrongInput{"MarginsThreeNumbers",
                   [](ADictionary& r) { r.Set("customPageSizeMargins", AArray{1, 2, 3}); },
                   "product.tiff: customPageSizeMargins has 3 elements, expected 4"},
        WrongInput{"ConstraintsNotNumber",
                   [](ADictionary& r) {
                     Change(r, "customPageSizeConstraints", [](const AValue& v) { return SetInArray(v, 2, "30"); });
                   },
                   "product.tiff: customPageSizeConstraints[2] is a string, expected a number"},
        WrongInput{"ColorProfileWithoutPath",
                   [](ADictionary& r) {
                     Change(r, "colorProfiles", [](const AValue& v) {
                       AValue list = SetInArray(v, 1, Dictionary({{"name", "B"}, {"path", "b.icc"}}));
                       return SetInArray(list, 2, Dictionary({{"name", "Glossy"}}));
                     });
                   },
                   "product.tiff: colorProfiles[2]: missing \"path\""},
        WrongInput{"ColorProfileDefaultString",
                   [](ADictionary& r) {
                     Change(r, "colorProfiles", [](const AValue& v) {
                       return SetInArray(v, 0, SetInDictionary(Element(v, 0), "default", "yes"));
                     });
                   },
                   "product.tiff: colorProfiles[0].default is a string, expected a boolean"},
        WrongInput{"ProductNotDictionary",
                   [](ADictionary& r) { r.Set("product", "QV Inkjet"); },
                   "product.tiff: product is a string, expected a dictionary"},
        WrongInput{"ProductNamesNotStrings",
                   [](ADictionary& r) {
                     Change(r, "product", [](const AValue& v) { return SetInDictionary(v, "productNames", AArray{"A", 2}); });
                   },
                   "product.tiff: product.productNames[1] is an integer, expected a string"},
        WrongInput{"ComponentNotString",
                   [](ADictionary& r) {
                     Change(r, "product", [](const AValue& v) {
                       return SetInDictionary(v, "components", Dictionary({{"PDE", AArray{}}}));
                     });
                   },
                   "product.tiff: product.components.PDE is an array, expected a string"},
        WrongInput{"DuplexFlagString",
                   [](ADictionary& r) {
                     Change(r, "product", [](const AValue& v) {
                       return SetInDictionary(v, "duplex", Dictionary({{"requiresFlippedMargin", "true"}}));
                     });
                   },
                   "product.tiff: product.duplex.requiresFlippedMargin is a string, expected a boolean"},
        WrongInput{"PresetPairOfThree",
                   [](ADictionary& r) {
                     Change(r, "product", [](const AValue& v) {
                       AValue preset = Dictionary(
                           {{"name", "P"}, {"settings", AArray{AArray{"A", "B"}, AArray{"A", "B", "C"}}}});
                       return SetInDictionary(v, "presets", AArray{preset});
                     });
                   },
                   "product.tiff: product.presets[0].settings[1] has 3 elements, expected 2"},
        WrongInput{"IPPReasonMessageNumber",
                   [](ADictionary& r) {
                     Change(r, "product", [](const AValue& v) {
                       return SetInDictionary(v, "ippReasons", AArray{Dictionary({{"reason", "r"}, {"message", 1}})});
                     });
                   },
                   "product.tiff: product.ippReasons[0].message is an integer, expected a string"},
        WrongInput{"ExcludesNotArray",
                   [](ADictionary& r) {
                     Change(r, "customPageSizeExcludes", [](const AValue& v) { return SetInDictionary(v, "Duplex", "None"); });
                   },
                   "product.tiff: customPageSizeExcludes.Duplex is a string, expected an array of strings"}),
    [](const ::testing::TestParamInfo<WrongInput>& param) { return std::string(param.param.name); });

class APlistProductInfoFiles : public ::testing::Test {
 protected:
  void SetUp() override {
    directory_ = std::filesystem::path(::testing::TempDir()) /
                 ("ppdforge-product-" + std::to_string(::getpid()));
    std::filesystem::create_directories(directory_);
  }
  void TearDown() override { std::filesystem::remove_all(directory_); }

  std::filesystem::path Write(const char* name, const std::string& bytes) const {
    const std::filesystem::path path = directory_ / name;
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
  }

  std::filesystem::path directory_;
};

const char* const kXMLHeader =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";

TEST_F(APlistProductInfoFiles, ReadsAnXMLFile) {
  const auto path = Write("p.plist", std::string(kXMLHeader) +
                                         "<dict><key>CUPSVersion</key><integer>288</integer>"
                                         "<key>extra</key><true/></dict></plist>\n");
  AError error;
  const auto product = APlistProductInfo::LoadFile(path, &error);
  ASSERT_NE(product, nullptr) << error.message.UTF8();
  EXPECT_EQ(product->CUPSVersion(), 288);
  EXPECT_EQ(product->GetSourceName(), AQVString(path.string()));
  ASSERT_EQ(product->GetWarnings().size(), 1u);
  EXPECT_EQ(product->GetWarnings()[0], AQVString(path.string() + ": unknown key \"extra\""));
}

TEST_F(APlistProductInfoFiles, ReadsABinaryFile) {
  plist_t root = plist_new_dict();
  plist_dict_set_item(root, "CUPSVersion", plist_new_uint(528));
  plist_t attributes = plist_new_array();
  plist_t entry = plist_new_dict();
  plist_dict_set_item(entry, "name", plist_new_string("PPD-Adobe"));
  plist_array_append_item(attributes, entry);
  plist_dict_set_item(root, "attributesGenerationInfo", attributes);
  char* bytes = nullptr;
  uint32_t length = 0;
  plist_to_bin(root, &bytes, &length);
  plist_free(root);
  ASSERT_NE(bytes, nullptr);
  const std::string binary(bytes, length);
  std::free(bytes);
  ASSERT_EQ(binary.substr(0, 6), "bplist");

  AError error;
  const auto product = APlistProductInfo::LoadFile(Write("p.bin", binary), &error);
  ASSERT_NE(product, nullptr) << error.message.UTF8();
  EXPECT_EQ(product->CUPSVersion(), 528);
  ASSERT_TRUE(product->AttributesGenerationInfo().has_value());
  ADictionary first;
  ASSERT_TRUE(product->AttributesGenerationInfo()->At(0).GetDictionary(first));
  EXPECT_EQ(first.GetString("name"), "PPD-Adobe");
}

TEST_F(APlistProductInfoFiles, ARootThatIsNotADictionaryIsAnInputError) {
  const auto path = Write("array.plist", std::string(kXMLHeader) + "<array><string>x</string></array></plist>\n");
  AError error;
  EXPECT_EQ(APlistProductInfo::LoadFile(path, &error), nullptr);
  EXPECT_EQ(error, (AError{"RKPPDGeneration", 5,
                           path.string() + ": the root is an array, expected a dictionary"}));
}

TEST_F(APlistProductInfoFiles, InvalidUTF8IsAnInputError) {
  const auto path = Write("latin1.plist", std::string(kXMLHeader) +
                                              "<dict><key>x</key><string>caf\xE9</string></dict></plist>\n");
  AError error;
  EXPECT_EQ(APlistProductInfo::LoadFile(path, &error), nullptr);
  EXPECT_EQ(error.code, 5);
  EXPECT_EQ(error.message.UTF8().rfind(path.string() + ": cannot read the product description: ", 0), 0u)
      << error.message.UTF8();
}

struct UnreadableCase {
  const char* name;
  const char* file;
  const char* reason;
};

class APlistProductInfoUnreadable : public APlistProductInfoFiles,
                                    public ::testing::WithParamInterface<UnreadableCase> {};

TEST_P(APlistProductInfoUnreadable, NamesTheFileAndTheReason) {
  Write("text.plist", "this is not a property list");
  std::filesystem::create_directories(directory_ / "folder.plist");
  const std::filesystem::path path = directory_ / GetParam().file;
  AError error;
  EXPECT_EQ(APlistProductInfo::LoadFile(path, &error), nullptr);
  EXPECT_EQ(error, (AError{"RKPPDGeneration", 5,
                           path.string() + ": cannot read the product description: " + GetParam().reason}));
}

INSTANTIATE_TEST_SUITE_P(
    Files, APlistProductInfoUnreadable,
    ::testing::Values(UnreadableCase{"Missing", "missing.plist", "no such file"},
                      UnreadableCase{"Directory", "folder.plist", "it is a directory"},
                      UnreadableCase{"NotAPropertyList", "text.plist", "the data is not a property list"}),
    [](const ::testing::TestParamInfo<UnreadableCase>& param) { return std::string(param.param.name); });

}  // namespace
}  // namespace ppdforge
