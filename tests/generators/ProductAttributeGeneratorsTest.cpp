// The generators of attributes taken from the product's "product" data.

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "core/ASharedObject.h"
#include "engine/IPPDObjectGenerator.h"
#include "generators/APPDProductNamesGenerator.h"
#include "model/IPPD.h"
#include "support/GeneratorTestSupport.h"

namespace ppdforge {
namespace {

using testing::Dict;

ADictionary FullProduct(std::initializer_list<std::pair<const char*, AValue>> more = {}) {
  ADictionary product = Dict({{"manufacturer", "QV"},
                              {"modelName", "QV Inkjet 5000"},
                              {"nickName", "QV Inkjet 5000 Series, 1.4"},
                              {"version", "1.4.2"},
                              {"iconPath", "/usr/share/qv/icons/inkjet5000.png"},
                              {"components", Dict({{"rasterFilter", "/usr/lib/cups/filter/rastertoqv"}})},
                              {"outputOrder", "Reverse"}});
  for (const auto& [key, value] : more) product.Set(key, value);
  return product;
}

// A product whose only data is `product` (and automatic duplexing), and an
// empty document: the engine stops in the attributes phase (no descriptions)
// after making it.
class ProductAttributeGeneratorsTest : public testing::GeneratorTestSupport {
 protected:
  void Start(const ADictionary& root) {
    MakeEngine(root);
    ASSERT_FALSE(RunEngine());
    ASSERT_NE(Doc(), nullptr);
  }

  // Generates `entry` whether applicable or not: "- " when it is not, the
  // error and " => " when Generate fails, then the document's text.
  std::string Outcome(const char* className, const ADictionary& entry) const {
    AError error{"sentinel", 99, "untouched"};
    std::string outcome = IsApplicable(className, entry) ? "" : "- ";
    if (!GenerateAnyway(className, entry, &error)) outcome += testing::Describe(error) + " => ";
    EXPECT_TRUE(error == (AError{"sentinel", 99, "untouched"}) || outcome.find(" => ") != std::string::npos);
    return outcome + RenderDocument();
  }
};

struct AttributeCase {
  const char* label;
  ADictionary product;
  const char* className;  // after "APPD", before "Generator"
  ADictionary entry;
  std::string outcome;
};

void PrintTo(const AttributeCase& row, std::ostream* out) { *out << row.label; }

class ProductAttributeRows : public ProductAttributeGeneratorsTest,
                             public ::testing::WithParamInterface<AttributeCase> {};

TEST_P(ProductAttributeRows, WriteTheAttributes) {
  Start(Dict({{"product", GetParam().product}, {"features", Dict({{"supportsAutoDuplex", true}})}}));
  EXPECT_EQ(Outcome(("APPD" + std::string(GetParam().className) + "Generator").c_str(), GetParam().entry),
            GetParam().outcome);
}

const std::string kFormat = "RKPPDGeneration/1: Cannot format the value of PPD attribute *FileVersion with ";
const std::string kInvalid = "RKPPDGeneration/1: Invalid product description: product.";

ADictionary Entry(const char* name, const char* value = nullptr) {
  return value != nullptr ? Dict({{"name", name}, {"value", value}}) : Dict({{"name", name}});
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ProductAttributeRows,
    ::testing::Values(
        // The datum fills the value, or its one placeholder (the common cases
        // are in the golden file product-data.ppd).
        AttributeCase{"FileVersionFormat", FullProduct(), "FileVersion", Entry("FileVersion", "%@"),
                      "*FileVersion: \"1.4.2\"\n\n\n"},
        AttributeCase{"ShortNickName", FullProduct(), "ProductNames", Entry("ShortNickName"),
                      "*ShortNickName: \"QV Inkjet 5000\"\n\n\n"},
        AttributeCase{"GivenShortNickName",
                      FullProduct({{"shortNickName", "QV Inkjet Photo Professional 5000 Series"}}), "ProductNames",
                      Entry("ShortNickName"), "*ShortNickName: \"QV Inkjet Photo Professional 5000 Series\"\n\n\n"},
        AttributeCase{"OtherNameIsTheModel", FullProduct(), "ProductNames",
                      Dict({{"name", "QVProductName"}, {"comment", "Model"}}),
                      "*% Model\n*QVProductName: \"QV Inkjet 5000\"\n\n\n"},
        AttributeCase{"IconPathWithoutPlaceholder", FullProduct(), "PrinterIconPath",
                      Entry("APPrinterIconPath", "/fixed/100%% icon.png"),
                      "*APPrinterIconPath: \"/fixed/100% icon.png\"\n\n\n"},
        AttributeCase{"OutputOrder", FullProduct(), "DefaultOutputOrder",
                      Dict({{"name", "DefaultOutputOrder"}, {"value", "%@"}, {"value-type", "3"}}),
                      "*DefaultOutputOrder: Reverse\n\n\n"},
        AttributeCase{"OutputOrderNormalWhenNotSaid", Dict({{"modelName", "M"}}), "DefaultOutputOrder",
                      Dict({{"name", "DefaultOutputOrder"}, {"value-type", 3}}), "*DefaultOutputOrder: Normal\n\n\n"},
        // A value that does not take one string fails, naming the attribute.
        AttributeCase{"FormatInteger", FullProduct(), "FileVersion", Entry("FileVersion", "%d"),
                      kFormat + "\"%d\": conversion \"%d\" needs an integer argument, not a string => \n\n"},
        AttributeCase{"FormatTwoStrings", FullProduct(), "FileVersion", Entry("FileVersion", "%@ and %@"),
                      kFormat + "\"%@ and %@\": conversion \"%@\" needs argument 2, but 1 argument was passed => \n\n"},
        AttributeCase{"FormatCString", FullProduct(), "FileVersion", Entry("FileVersion", "%s"),
                      kFormat + "\"%s\": conversion \"%s\" is not allowed (a string is written with \"%@\") => \n\n"},
        // Without product names *Product is the model name.
        AttributeCase{"ProductModelName", FullProduct(), "Product", ADictionary(),
                      "*Product: \"(QV Inkjet 5000)\"\n\n\n"},
        AttributeCase{"ProductFormat", FullProduct(), "Product", Entry("QVProduct", "(%@ Printer)"),
                      "*QVProduct: \"(QV Inkjet 5000 Printer)\"\n\n\n"},
        // The duplex attributes follow the back side.
        AttributeCase{"DuplexNormal", Dict({{"duplex", Dict({{"backSide", "Normal"}})}}), "DuplexAttributes",
                      ADictionary(), "*cupsBackSide: Normal\n\n\n"},
        AttributeCase{"DuplexManualTumble", Dict({{"duplex", Dict({{"backSide", "ManualTumble"}})}}),
                      "DuplexAttributes", ADictionary(), "*cupsBackSide: ManualTumble\n\n\n"},
        AttributeCase{"DuplexFlipped",
                      Dict({{"duplex", Dict({{"backSide", "Flipped"}, {"requiresFlippedMargin", true}})}}),
                      "DuplexAttributes", ADictionary(),
                      "*cupsBackSide: Flipped\n*cupsFlipDuplex: true\n*APDuplexRequiresFlippedMargin: true\n\n\n"},
        AttributeCase{"DuplexMarginOnly", Dict({{"duplex", Dict({{"requiresFlippedMargin", false}})}}),
                      "DuplexAttributes", ADictionary(), "*APDuplexRequiresFlippedMargin: false\n\n\n"},
        AttributeCase{"DuplexEmpty", Dict({{"duplex", ADictionary()}}), "DuplexAttributes", ADictionary(), "\n\n"},
        // Pre-filter attributes without a value are left out.
        AttributeCase{"PreFilters",
                      Dict({{"preFilterAttributes", AArray{Entry("cupsPreFilter", "application/pdf 0 qvpdfenhance"),
                                                           Dict({{"name", "QVPreFilterMode"},
                                                                 {"spec", "Photo"},
                                                                 {"value", "vivid"},
                                                                 {"value-type", 3},
                                                                 {"comment", "Enhancement"}}),
                                                           Entry("QVNoValue")}}}),
                      "PreFilterAttributes", ADictionary(),
                      "*cupsPreFilter: \"application/pdf 0 qvpdfenhance\"\n*% Enhancement\n*QVPreFilterMode Photo: "
                      "vivid\n\n\n"}),
    [](const ::testing::TestParamInfo<AttributeCase>& param) { return std::string(param.param.label); });

// Wrong product data fails naming the key, and writes nothing.
TEST_F(ProductAttributeGeneratorsTest, WrongProductDataFailsNamingTheKey) {
  struct Case {
    const char* generator;  // after "APPD", before "Generator"
    ADictionary product;
    const char* message;  // after "Invalid product description: product."
  };
  for (const Case& c : std::vector<Case>{
           {"FileVersion", Dict({{"version", 3}}), "version must be a string"},
           {"FileVersion", Dict({{"version", "1.4b"}}), "version must be digits and dots"},
           {"DefaultOutputOrder", Dict({{"outputOrder", "Backwards"}}),
            "outputOrder must be \"Normal\" or \"Reverse\""},
           {"DriverComponents", Dict({{"components", "rastertoqv"}}), "components must be a dictionary"},
           {"Product", Dict({{"productNames", AArray{"QV Inkjet 5000", 5}}}),
            "productNames[1] must be a non-empty string"},
           {"PrinterPresets",
            Dict({{"presets", AArray{Dict({{"name", "Draft"}, {"settings", AArray{AValue(AArray{"OutputMode"})}}})}}}),
            "presets[0].settings[0] must be an array of two non-empty strings"},
           {"PrinterPresets", Dict({{"presets", AArray{Dict({{"userName", "Draft"}})}}}),
            "presets[0].name must be a non-empty string"},
           {"MarkerAttributes", Dict({{"markers", AArray{Dict({{"userName", "Cyan"}})}}}),
            "markers[0].name must be a non-empty string"},
           {"IPPReasonAttributes", Dict({{"ippReasons", AArray{Dict({{"reason", "com.qv-jam-error"}})}}}),
            "ippReasons[0].message must be a non-empty string"},
           {"PreFilterAttributes", Dict({{"preFilterAttributes", AArray{Entry("A", "b"), "c"}}}),
            "preFilterAttributes[1] must be a dictionary"},
           {"DuplexAttributes", Dict({{"duplex", Dict({{"backSide", "Sideways"}})}}),
            "duplex.backSide must be \"Normal\", \"ManualTumble\", \"Rotated\" or \"Flipped\""},
           {"DuplexAttributes", Dict({{"duplex", Dict({{"backSide", "Rotated"}, {"requiresFlippedMargin", "yes"}})}}),
            "duplex.requiresFlippedMargin must be a boolean"}}) {
    Start(Dict({{"product", c.product}, {"features", Dict({{"supportsAutoDuplex", true}})}}));
    EXPECT_EQ(Outcome(("APPD" + std::string(c.generator) + "Generator").c_str(),
                      Dict({{"name", "FileVersion"}, {"component", "rasterFilter"}})),
              kInvalid + c.message + " => \n\n");
  }
}

// Without its datum (no key, an empty string or list, no "product" at all)
// a generator does not apply, and run anyway it writes and reports nothing.
TEST_F(ProductAttributeGeneratorsTest, WithoutItsDatumAGeneratorWritesAndReportsNothing) {
  const std::vector<std::pair<const char*, ADictionary>> cases = {
      {"APPDFileVersionGenerator", Entry("FileVersion", "%@")},
      {"APPDProductNamesGenerator", Entry("ModelName")},
      {"APPDProductNamesGenerator", Entry("ShortNickName")},
      {"APPDProductNamesGenerator", Entry("Manufacturer")},
      {"APPDProductGenerator", Entry("Product")},
      {"APPDDriverComponentsGenerator", Dict({{"name", "cupsFilter"}, {"component", "pdfFilter"}})},
      {"APPDDriverComponentsGenerator", Entry("cupsFilter")},
      {"APPDPrinterIconPathGenerator", Entry("APPrinterIconPath")},
      {"APPDPrinterPresetsGenerator", {}},
      {"APPDMarkerAttributesGenerator", {}},
      {"APPDIPPReasonAttributesGenerator", {}},
      {"APPDPreFilterAttributesGenerator", {}},
      {"APPDDuplexAttributesGenerator", {}},
  };
  for (const ADictionary& root : {Dict({{"product", Dict({{"components", Dict({{"rasterFilter", "/x"}})}})}}),
                                  Dict({{"product", Dict({{"modelName", ""},
                                                          {"version", ""},
                                                          {"presets", AArray()},
                                                          {"markers", AArray()},
                                                          {"ippReasons", AArray()},
                                                          {"preFilterAttributes", AArray()},
                                                          {"productNames", AArray()}})}}),
                                  ADictionary()}) {
    for (const auto& [generator, entry] : cases) {
      Start(root);
      EXPECT_EQ(Outcome(generator, entry), "- \n\n") << generator;
    }
  }
  // Duplex attributes need automatic duplexing.
  Start(Dict({{"product", Dict({{"duplex", Dict({{"backSide", "Rotated"}})}})},
              {"features", Dict({{"supportsAutoDuplex", false}})}}));
  EXPECT_FALSE(IsApplicable("APPDDuplexAttributesGenerator"));
}

TEST_F(ProductAttributeGeneratorsTest, ShortNickNameCutsTheModelNameAtACharacterBoundary) {
  const std::string a29(29, 'A');
  for (const auto& [modelName, expected] : std::vector<std::pair<std::string, std::string>>{
           {std::string(31, 'A'), std::string(31, 'A')},
           {std::string(32, 'A'), std::string(31, 'A')},
           {a29 + "\xC3\xA9", a29 + "\xC3\xA9"},  // é ends at byte 31
           {a29 + "A\xC3\xA9", a29 + "A"},        // é would end at byte 32
           {a29 + "\xE2\x82\xAC", a29},           // € would end at byte 32
           {std::string(28, 'A') + "\xE2\x82\xAC" + "B", std::string(28, 'A') + "\xE2\x82\xAC"},
           {a29 + "\xF0\x9F\x96\xA8", a29},  // a 4-byte character
           {"QV Inkjet Photo Professional 5000 Series", "QV Inkjet Photo Professional 50"}}) {
    Start(Dict({{"product", Dict({{"modelName", AQVString(modelName)}})}}));
    EXPECT_EQ(Outcome("APPDProductNamesGenerator", Entry("ShortNickName")),
              "*ShortNickName: \"" + expected + "\"\n\n\n");
    EXPECT_EQ(APPDProductNamesGenerator::CutAtCharacterBoundary(AQVString(modelName), 31).UTF8(), expected);
  }
}

TEST(ProductGeneratorRegistryTest, HoldsExactlyTheFortyThreeClassNames) {
  std::set<std::string> expected;
  for (const char* name : {"GenericAttributes",
                           "GenericOption",
                           "GenericConstraints",
                           "DuplexOnCustomPaperSizeConstraints",
                           "DuplexOnPaperSizeConstraints",
                           "DuplexOnPaperTypeConstraints",
                           "GrayscaleModeOnPaperTypeConstraints",
                           "OwnSelfConstraints",
                           "PaperSizeOnPaperTypeConstraints",
                           "PaperSrcOnCustomSizeConstraints",
                           "PaperSrcOnPaperSizeConstraints",
                           "PaperSrcOnPaperTypeConstraints",
                           "PaperTypeOnColorSyncColorModeConstraints",
                           "QualityOnPaperSizeConstraints",
                           "QualityOnPaperTypeConstraints",
                           "OutputModeOnImageEnhancementConstraints",
                           "PageSizes",
                           "CustomPageSize",
                           "PageSizeCategoryAttribute",
                           "CUPSUIResolver",
                           "FileVersion",
                           "Product",
                           "ProductNames",
                           "DriverComponents",
                           "PrinterIconPath",
                           "PrinterPresets",
                           "DefaultOutputOrder",
                           "DuplexAttributes",
                           "MarkerAttributes",
                           "IPPReasonAttributes",
                           "PreFilterAttributes",
                           "ColorModelOption",
                           "DigitalPhotoOption",
                           "DuplexOption",
                           "GrayscaleModeOption",
                           "ICCProfileOption",
                           "InstallableOption",
                           "MediaTypeOption",
                           "OutputModeOption",
                           "PaperSourceOption",
                           "ResolutionOption",
                           "SimpleImageEnhancementOption",
                           "ICCProfilesAttributes"}) {
    expected.insert("APPD" + std::string(name) + "Generator");
  }
  ASSERT_EQ(expected.size(), 43u);
  std::set<std::string> registered;
  for (const auto& entry : IPPDObjectGenerator::GetObjectFactory()) registered.insert(entry.first);
  EXPECT_EQ(registered, expected);
}

}  // namespace
}  // namespace ppdforge
