#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "core/ADictionary.h"
#include "core/AFormatter.h"
#include "core/ASharedObject.h"
#include "engine/IPPDObjectGenerator.h"
#include "generators/APPDProductNamesGenerator.h"
#include "model/IPPD.h"
#include "model/IPPDConstraint.h"
#include "support/GeneratorTestSupport.h"

namespace ppdforge {
namespace {

using testing::Dict;
using testing::GeneratorRun;

// A value, so that a one-element AArray{...} of it nests instead of copying.
AValue Pair(const char* first, const char* second) { return AArray{first, second}; }

ADictionary FullProduct() {
  return Dict({{"manufacturer", "QV"},
               {"modelName", "QV Inkjet 5000"},
               {"nickName", "QV Inkjet 5000 Series, 1.4"},
               {"version", "1.4.2"},
               {"iconPath", "/usr/share/qv/icons/inkjet5000.png"},
               {"components", Dict({{"rasterFilter", "/usr/lib/cups/filter/rastertoqv"}})},
               {"outputOrder", "Reverse"}});
}

// A product whose only data is `root`, and an empty document: the engine
// stops in the attributes phase (no descriptions) after making it.
class ProductAttributeGeneratorsTest : public testing::GeneratorTestSupport {
 protected:
  void Start(ADictionary root) {
    MakeEngine(std::move(root));
    ASSERT_NE(Engine(), nullptr);
    ASSERT_FALSE(RunEngine());
    ASSERT_NE(Doc(), nullptr);
  }
  void StartWithProduct(ADictionary product) { Start(Dict({{"product", product}})); }

  // As the engine runs one description: Generate only when applicable.
  bool Run(const char* className, const ADictionary& entry, AError* error = nullptr) {
    const GeneratorRun run = RunGenerator(className, entry, error);
    return run.made && (!run.applicable || run.generated);
  }
};

struct DatumCase {
  const char* generator;
  ADictionary entry;
  const char* text;  // the attribute section of the document
};

TEST_F(ProductAttributeGeneratorsTest, DatumFillsTheValueOrItsOnePlaceholder) {
  const std::vector<DatumCase> cases = {
      {"APPDFileVersionGenerator", Dict({{"name", "FileVersion"}}), "*FileVersion: \"1.4.2\"\n"},
      {"APPDFileVersionGenerator", Dict({{"name", "FileVersion"}, {"value", "%@"}}),
       "*FileVersion: \"1.4.2\"\n"},
      {"APPDProductNamesGenerator", Dict({{"name", "ModelName"}}),
       "*ModelName: \"QV Inkjet 5000\"\n"},
      {"APPDProductNamesGenerator", Dict({{"name", "NickName"}, {"value", "%@, driver"}}),
       "*NickName: \"QV Inkjet 5000 Series, 1.4, driver\"\n"},
      {"APPDProductNamesGenerator", Dict({{"name", "Manufacturer"}}), "*Manufacturer: \"QV\"\n"},
      {"APPDProductNamesGenerator", Dict({{"name", "ShortNickName"}}),
       "*ShortNickName: \"QV Inkjet 5000\"\n"},
      {"APPDProductNamesGenerator", Dict({{"name", "QVProductName"}, {"comment", "Model"}}),
       "*% Model\n*QVProductName: \"QV Inkjet 5000\"\n"},
      {"APPDDriverComponentsGenerator",
       Dict({{"name", "cupsFilter"},
             {"component", "rasterFilter"},
             {"value", "application/vnd.cups-raster 0 %@"}}),
       "*cupsFilter: \"application/vnd.cups-raster 0 /usr/lib/cups/filter/rastertoqv\"\n"},
      {"APPDPrinterIconPathGenerator", Dict({{"name", "APPrinterIconPath"}}),
       "*APPrinterIconPath: \"/usr/share/qv/icons/inkjet5000.png\"\n"},
      {"APPDDefaultOutputOrderGenerator", Dict({{"name", "DefaultOutputOrder"}, {"value-type", 3}}),
       "*DefaultOutputOrder: Reverse\n"},
      {"APPDDefaultOutputOrderGenerator",
       Dict({{"name", "DefaultOutputOrder"}, {"value", "%@"}, {"value-type", "3"}}),
       "*DefaultOutputOrder: Reverse\n"},
  };
  for (const DatumCase& c : cases) {
    SCOPED_TRACE(std::string(c.generator) + " " + c.text);
    StartWithProduct(FullProduct());
    AError error;
    EXPECT_TRUE(IsApplicable(c.generator, c.entry));
    EXPECT_TRUE(Run(c.generator, c.entry, &error)) << error.message.UTF8();
    EXPECT_EQ(RenderDocument(), std::string(c.text) + "\n\n");
  }
}

TEST_F(ProductAttributeGeneratorsTest, OutputOrderIsNormalWhenTheProductDoesNotSay) {
  StartWithProduct(Dict({{"modelName", "QV Inkjet 5000"}}));
  const ADictionary entry = Dict({{"name", "DefaultOutputOrder"}, {"value-type", 3}});
  EXPECT_TRUE(IsApplicable("APPDDefaultOutputOrderGenerator", entry));
  EXPECT_TRUE(Run("APPDDefaultOutputOrderGenerator", entry));
  EXPECT_EQ(RenderDocument(), "*DefaultOutputOrder: Normal\n\n\n");
}

TEST_F(ProductAttributeGeneratorsTest, WithoutItsDatumAGeneratorWritesAndReportsNothing) {
  const std::vector<std::pair<const char*, ADictionary>> cases = {
      {"APPDFileVersionGenerator", Dict({{"name", "FileVersion"}, {"value", "%@"}})},
      {"APPDProductNamesGenerator", Dict({{"name", "ModelName"}})},
      {"APPDProductNamesGenerator", Dict({{"name", "ShortNickName"}})},
      {"APPDProductNamesGenerator", Dict({{"name", "Manufacturer"}})},
      {"APPDProductGenerator", Dict({{"name", "Product"}})},
      {"APPDDriverComponentsGenerator", Dict({{"name", "cupsFilter"}, {"component", "pdfFilter"}})},
      {"APPDDriverComponentsGenerator", Dict({{"name", "cupsFilter"}})},
      {"APPDPrinterIconPathGenerator", Dict({{"name", "APPrinterIconPath"}})},
      {"APPDPrinterPresetsGenerator", ADictionary()},
      {"APPDMarkerAttributesGenerator", ADictionary()},
      {"APPDIPPReasonAttributesGenerator", ADictionary()},
      {"APPDPreFilterAttributesGenerator", ADictionary()},
      {"APPDDuplexAttributesGenerator", ADictionary()},
  };
  // Without the key, with an empty string or list, and without any "product" at all.
  const std::vector<ADictionary> roots = {
      Dict({{"product", Dict({{"components", Dict({{"rasterFilter", "/x"}})}})}}),
      Dict({{"product", Dict({{"modelName", ""},
                              {"version", ""},
                              {"presets", AArray()},
                              {"markers", AArray()},
                              {"ippReasons", AArray()},
                              {"preFilterAttributes", AArray()},
                              {"productNames", AArray()}})}}),
      ADictionary(),
  };
  for (const ADictionary& root : roots) {
    for (const auto& [generator, entry] : cases) {
      SCOPED_TRACE(generator);
      Start(root);
      EXPECT_FALSE(IsApplicable(generator, entry));
      AError error{"sentinel", 99, "untouched"};
      AScopedRef<IPPDObjectGenerator> made = MakeGenerator(generator, entry);
      ASSERT_TRUE(made);
      EXPECT_TRUE(made->Generate(&error));
      EXPECT_EQ(error, (AError{"sentinel", 99, "untouched"}));
      EXPECT_EQ(RenderDocument(), "\n\n");
    }
  }
}

TEST_F(ProductAttributeGeneratorsTest, AValueThatDoesNotTakeOneStringFailsNamingTheAttribute) {
  for (const char* format : {"%d", "%@ and %@", "%s"}) {
    SCOPED_TRACE(format);
    StartWithProduct(FullProduct());
    AQVString unused;
    AQVString problem;
    ASSERT_FALSE(AFormatter::Format(format, {AQVString("1.4.2")}, unused, &problem));
    AError error;
    EXPECT_FALSE(Run("APPDFileVersionGenerator", Dict({{"name", "FileVersion"}, {"value", format}}),
                     &error));
    EXPECT_EQ(error.domain, "RKPPDGeneration");
    EXPECT_EQ(error.code, 1);
    EXPECT_EQ(error.message.UTF8(),
              "Cannot format the value of PPD attribute *FileVersion with \"" +
                  std::string(format) + "\": " + problem.UTF8());
    EXPECT_EQ(RenderDocument(), "\n\n");
  }
}

TEST_F(ProductAttributeGeneratorsTest, AValueWithoutPlaceholderIsWrittenAsItStands) {
  StartWithProduct(FullProduct());
  EXPECT_TRUE(Run("APPDPrinterIconPathGenerator",
                  Dict({{"name", "APPrinterIconPath"}, {"value", "/fixed/100%% icon.png"}})));
  EXPECT_EQ(RenderDocument(), "*APPrinterIconPath: \"/fixed/100% icon.png\"\n\n\n");
}

struct CutCase {
  std::string modelName;
  std::string expected;
};

TEST_F(ProductAttributeGeneratorsTest, ShortNickNameCutsTheModelNameAtACharacterBoundary) {
  const std::string a29(29, 'A');
  const std::vector<CutCase> cases = {
      {std::string(31, 'A'), std::string(31, 'A')},
      {std::string(32, 'A'), std::string(31, 'A')},
      {a29 + "\xC3\xA9", a29 + "\xC3\xA9"},  // é ends at byte 31
      {a29 + "A\xC3\xA9", a29 + "A"},        // é would end at byte 32
      {a29 + "\xE2\x82\xAC", a29},           // € would end at byte 32
      {std::string(28, 'A') + "\xE2\x82\xAC" + "B", std::string(28, 'A') + "\xE2\x82\xAC"},
      {a29 + "\xF0\x9F\x96\xA8", a29},  // a 4-byte character
      {"QV Inkjet Photo Professional 5000 Series", "QV Inkjet Photo Professional 50"},
  };
  for (const CutCase& c : cases) {
    SCOPED_TRACE(c.modelName);
    StartWithProduct(Dict({{"modelName", AQVString(c.modelName)}}));
    EXPECT_TRUE(Run("APPDProductNamesGenerator", Dict({{"name", "ShortNickName"}})));
    EXPECT_EQ(RenderDocument(), "*ShortNickName: \"" + c.expected + "\"\n\n\n");
    EXPECT_EQ(APPDProductNamesGenerator::CutAtCharacterBoundary(AQVString(c.modelName), 31).UTF8(),
              c.expected);
  }
}

TEST_F(ProductAttributeGeneratorsTest, AGivenShortNickNameIsTakenAsItStands) {
  StartWithProduct(Dict({{"modelName", "QV Inkjet 5000"},
                         {"shortNickName", "QV Inkjet Photo Professional 5000 Series"}}));
  EXPECT_TRUE(Run("APPDProductNamesGenerator", Dict({{"name", "ShortNickName"}})));
  EXPECT_EQ(RenderDocument(), "*ShortNickName: \"QV Inkjet Photo Professional 5000 Series\"\n\n\n");
}

TEST_F(ProductAttributeGeneratorsTest, ProductWritesOneAttributePerNameWithTheCommentOnTheFirst) {
  ADictionary product = FullProduct();
  product.Set("productNames", AArray{"QV Inkjet 5000", "QV Inkjet 5000 Series"});
  StartWithProduct(product);
  EXPECT_TRUE(Run("APPDProductGenerator", Dict({{"comment", "Product names"}})));
  EXPECT_EQ(RenderDocument(),
            "*% Product names\n"
            "*Product: \"(QV Inkjet 5000)\"\n"
            "*Product: \"(QV Inkjet 5000 Series)\"\n\n\n");
}

TEST_F(ProductAttributeGeneratorsTest, ProductDefaultsToTheModelNameAndFormatsTheName) {
  StartWithProduct(FullProduct());
  EXPECT_TRUE(Run("APPDProductGenerator", ADictionary()));
  EXPECT_TRUE(
      Run("APPDProductGenerator", Dict({{"name", "QVProduct"}, {"value", "(%@ Printer)"}})));
  EXPECT_EQ(RenderDocument(),
            "*Product: \"(QV Inkjet 5000)\"\n"
            "*QVProduct: \"(QV Inkjet 5000 Printer)\"\n\n\n");
}

TEST_F(ProductAttributeGeneratorsTest, PresetValueListsSettingsThenPresetValuesAndEndsWithEnd) {
  StartWithProduct(Dict(
      {{"presets",
        AArray{
            Dict({{"name", "Photo_on_Glossy"},
                  {"userName", "Photo on Glossy Paper"},
                  {"settings", AArray{Pair("MediaType", "Glossy"), Pair("OutputMode", "Best")}},
                  {"presetValues", AArray{Pair("com.apple.print.preset.graphicsType", "Photo")}}}),
            Dict({{"name", "Draft"},
                  {"userName", "Fast Draft"},
                  {"settings", AArray{Pair("OutputMode", "Draft")}}})}}}));
  EXPECT_TRUE(Run("APPDPrinterPresetsGenerator", Dict({{"comment", "Presets"}})));
  EXPECT_EQ(RenderDocument(),
            "*% Presets\n"
            "*APPrinterPreset Photo_on_Glossy/Photo on Glossy Paper: \"*MediaType Glossy\n"
            "*OutputMode Best\n"
            "com.apple.print.preset.graphicsType Photo\"\n"
            "*End\n"
            "*APPrinterPreset Draft/Fast Draft: \"*OutputMode Draft\"\n\n\n");
}

struct DuplexCase {
  ADictionary duplex;
  const char* text;
};

TEST_F(ProductAttributeGeneratorsTest, DuplexAttributesFollowTheBackSide) {
  const std::vector<DuplexCase> cases = {
      {Dict({{"backSide", "Normal"}}), "*cupsBackSide: Normal\n"},
      {Dict({{"backSide", "ManualTumble"}}), "*cupsBackSide: ManualTumble\n"},
      {Dict({{"backSide", "Rotated"}}), "*cupsBackSide: Rotated\n*cupsFlipDuplex: true\n"},
      {Dict({{"backSide", "Flipped"}, {"requiresFlippedMargin", true}}),
       "*cupsBackSide: Flipped\n*cupsFlipDuplex: true\n*APDuplexRequiresFlippedMargin: true\n"},
      {Dict({{"requiresFlippedMargin", false}}), "*APDuplexRequiresFlippedMargin: false\n"},
      {ADictionary(), ""},
  };
  for (const DuplexCase& c : cases) {
    SCOPED_TRACE(c.text);
    Start(Dict({{"product", Dict({{"duplex", c.duplex}})},
                {"features", Dict({{"supportsAutoDuplex", true}})}}));
    EXPECT_TRUE(IsApplicable("APPDDuplexAttributesGenerator", ADictionary()));
    EXPECT_TRUE(Run("APPDDuplexAttributesGenerator", ADictionary()));
    EXPECT_EQ(RenderDocument(), std::string(c.text) + "\n\n");
  }
}

TEST_F(ProductAttributeGeneratorsTest, DuplexAttributesNeedAutomaticDuplexing) {
  Start(Dict({{"product", Dict({{"duplex", Dict({{"backSide", "Rotated"}})}})},
              {"features", Dict({{"supportsAutoDuplex", false}})}}));
  EXPECT_FALSE(IsApplicable("APPDDuplexAttributesGenerator", ADictionary()));
}

TEST_F(ProductAttributeGeneratorsTest, MarkersNameEachSupplyThenTheNotice) {
  StartWithProduct(Dict({{"markers", AArray{Dict({{"name", "cyan"}, {"userName", "Cyan Ink"}}),
                                            Dict({{"name", "black"}, {"userName", "Black Ink"}})}},
                         {"markerNotice", "Ink levels are approximate."}}));
  EXPECT_TRUE(Run("APPDMarkerAttributesGenerator", Dict({{"comment", "Supplies"}})));
  EXPECT_EQ(RenderDocument(),
            "*% Supplies\n"
            "*cupsMarkerName cyan/Cyan Ink: \"\"\n"
            "*cupsMarkerName black/Black Ink: \"\"\n"
            "*cupsMarkerNotice: \"Ink levels are approximate.\"\n\n\n");
}

TEST_F(ProductAttributeGeneratorsTest, IPPReasonsReachTheEndOfTheFileAfterTheConstraints) {
  ADictionary product = FullProduct();
  product.Set("ippReasons",
              AArray{Dict({{"reason", "com.qv-ink-low-warning"}, {"message", "Ink is low."}}),
                     Dict({{"reason", "com.qv-jam-error"},
                           {"message", "Paper jam: open the cover."},
                           {"value", "Paper jam"}})});
  StartWithProduct(product);
  EXPECT_TRUE(Run("APPDIPPReasonAttributesGenerator", Dict({{"comment", "Status messages"}})));
  EXPECT_TRUE(Run("APPDFileVersionGenerator", Dict({{"name", "FileVersion"}})));
  AScopedRef<IPPDConstraint> constraint(IPPDConstraint::Create(
      AArray{"Duplex", "MediaType"}, AArray{"DuplexTumble", "Glossy"}, "", false, false, ""));
  ASSERT_NE(Doc()->AddConstraint(constraint.get(), false), nullptr);
  EXPECT_EQ(RenderDocument(),
            "*FileVersion: \"1.4.2\"\n"
            "\n"
            "*UIConstraints: *Duplex DuplexTumble *MediaType Glossy\n"
            "*UIConstraints: *MediaType Glossy *Duplex DuplexTumble\n"
            "*% Status messages\n"
            "*cupsIPPReason com.qv-ink-low-warning: \"text:Ink%20is%20low.\"\n"
            "*cupsIPPReason com.qv-jam-error: \"text:Paper%20jam%3A%20open%20the%20cover.\"\n"
            "\n");
}

TEST_F(ProductAttributeGeneratorsTest, PreFilterAttributesAreAddedAsDescribed) {
  StartWithProduct(
      Dict({{"preFilterAttributes",
             AArray{Dict({{"name", "cupsPreFilter"}, {"value", "application/pdf 0 qvpdfenhance"}}),
                    Dict({{"name", "QVPreFilterMode"},
                          {"spec", "Photo"},
                          {"value", "vivid"},
                          {"value-type", 3},
                          {"comment", "Enhancement"}}),
                    Dict({{"name", "QVNoValue"}})}}}));
  EXPECT_TRUE(Run("APPDPreFilterAttributesGenerator", ADictionary()));
  EXPECT_EQ(RenderDocument(),
            "*cupsPreFilter: \"application/pdf 0 qvpdfenhance\"\n"
            "*% Enhancement\n"
            "*QVPreFilterMode Photo: vivid\n\n\n");
}

struct InvalidCase {
  const char* generator;
  ADictionary product;
  const char* message;
};

TEST_F(ProductAttributeGeneratorsTest, WrongProductDataFailsNamingTheKeyAndWritesNothing) {
  const std::vector<InvalidCase> cases = {
      {"APPDFileVersionGenerator", Dict({{"version", 3}}),
       "Invalid product description: product.version must be a string"},
      {"APPDFileVersionGenerator", Dict({{"version", "1.4b"}}),
       "Invalid product description: product.version must be digits and dots"},
      {"APPDDefaultOutputOrderGenerator", Dict({{"outputOrder", "Backwards"}}),
       "Invalid product description: product.outputOrder must be \"Normal\" or \"Reverse\""},
      {"APPDDriverComponentsGenerator", Dict({{"components", "rastertoqv"}}),
       "Invalid product description: product.components must be a dictionary"},
      {"APPDProductGenerator", Dict({{"productNames", AArray{"QV Inkjet 5000", 5}}}),
       "Invalid product description: product.productNames[1] must be a non-empty string"},
      {"APPDPrinterPresetsGenerator",
       Dict({{"presets", AArray{Dict({{"name", "Draft"},
                                      {"settings", AArray{AValue(AArray{"OutputMode"})}}})}}}),
       "Invalid product description: product.presets[0].settings[0] must be an array of two "
       "non-empty strings"},
      {"APPDPrinterPresetsGenerator", Dict({{"presets", AArray{Dict({{"userName", "Draft"}})}}}),
       "Invalid product description: product.presets[0].name must be a non-empty string"},
      {"APPDMarkerAttributesGenerator", Dict({{"markers", AArray{Dict({{"userName", "Cyan"}})}}}),
       "Invalid product description: product.markers[0].name must be a non-empty string"},
      {"APPDIPPReasonAttributesGenerator",
       Dict({{"ippReasons", AArray{Dict({{"reason", "com.qv-jam-error"}})}}}),
       "Invalid product description: product.ippReasons[0].message must be a non-empty string"},
      {"APPDPreFilterAttributesGenerator",
       Dict({{"preFilterAttributes", AArray{Dict({{"name", "A"}, {"value", "b"}}), "c"}}}),
       "Invalid product description: product.preFilterAttributes[1] must be a dictionary"},
      {"APPDDuplexAttributesGenerator", Dict({{"duplex", Dict({{"backSide", "Sideways"}})}}),
       "Invalid product description: product.duplex.backSide must be \"Normal\", "
       "\"ManualTumble\", \"Rotated\" or \"Flipped\""},
      {"APPDDuplexAttributesGenerator",
       Dict({{"duplex", Dict({{"backSide", "Rotated"}, {"requiresFlippedMargin", "yes"}})}}),
       "Invalid product description: product.duplex.requiresFlippedMargin must be a boolean"},
  };
  const ADictionary entry = Dict({{"name", "FileVersion"}, {"component", "rasterFilter"}});
  for (const InvalidCase& c : cases) {
    SCOPED_TRACE(c.message);
    Start(Dict({{"product", c.product}, {"features", Dict({{"supportsAutoDuplex", true}})}}));
    AError error;
    EXPECT_FALSE(Run(c.generator, entry, &error));
    EXPECT_EQ(error, (AError{"RKPPDGeneration", 1, c.message}));
    EXPECT_EQ(RenderDocument(), "\n\n");
  }
}

TEST(ProductGeneratorRegistryTest, HoldsExactlyTheFortyThreeClassNames) {
  const std::set<std::string> expected = {
      "APPDGenericAttributesGenerator",
      "APPDGenericOptionGenerator",
      "APPDGenericConstraintsGenerator",
      "APPDDuplexOnCustomPaperSizeConstraintsGenerator",
      "APPDDuplexOnPaperSizeConstraintsGenerator",
      "APPDDuplexOnPaperTypeConstraintsGenerator",
      "APPDGrayscaleModeOnPaperTypeConstraintsGenerator",
      "APPDOwnSelfConstraintsGenerator",
      "APPDPaperSizeOnPaperTypeConstraintsGenerator",
      "APPDPaperSrcOnCustomSizeConstraintsGenerator",
      "APPDPaperSrcOnPaperSizeConstraintsGenerator",
      "APPDPaperSrcOnPaperTypeConstraintsGenerator",
      "APPDPaperTypeOnColorSyncColorModeConstraintsGenerator",
      "APPDQualityOnPaperSizeConstraintsGenerator",
      "APPDQualityOnPaperTypeConstraintsGenerator",
      "APPDOutputModeOnImageEnhancementConstraintsGenerator",
      "APPDPageSizesGenerator",
      "APPDCustomPageSizeGenerator",
      "APPDPageSizeCategoryAttributeGenerator",
      "APPDCUPSUIResolverGenerator",
      "APPDFileVersionGenerator",
      "APPDProductGenerator",
      "APPDProductNamesGenerator",
      "APPDDriverComponentsGenerator",
      "APPDPrinterIconPathGenerator",
      "APPDPrinterPresetsGenerator",
      "APPDDefaultOutputOrderGenerator",
      "APPDDuplexAttributesGenerator",
      "APPDMarkerAttributesGenerator",
      "APPDIPPReasonAttributesGenerator",
      "APPDPreFilterAttributesGenerator",
      "APPDColorModelOptionGenerator",
      "APPDDigitalPhotoOptionGenerator",
      "APPDDuplexOptionGenerator",
      "APPDGrayscaleModeOptionGenerator",
      "APPDICCProfileOptionGenerator",
      "APPDInstallableOptionGenerator",
      "APPDMediaTypeOptionGenerator",
      "APPDOutputModeOptionGenerator",
      "APPDPaperSourceOptionGenerator",
      "APPDResolutionOptionGenerator",
      "APPDSimpleImageEnhancementOptionGenerator",
      "APPDICCProfilesAttributesGenerator",
  };
  ASSERT_EQ(expected.size(), 43u);
  std::set<std::string> registered;
  for (const auto& entry : IPPDObjectGenerator::GetObjectFactory()) registered.insert(entry.first);
  EXPECT_EQ(registered, expected);
}

}  // namespace
}  // namespace ppdforge
