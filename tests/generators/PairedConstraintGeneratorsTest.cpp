#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/ADictionary.h"
#include "core/ASharedObject.h"
#include "generators/APPDDuplexOnPaperTypeConstraintsGenerator.h"
#include "model/IPPD.h"
#include "support/GeneratorTestSupport.h"

namespace ppdforge {
namespace {

using testing::Dict;
using testing::Setting;

ADictionary Media(const char* name, double width, double height, ADictionary excludes = {}, bool custom = false) {
  ADictionary media = testing::MediaSize(name, name, width, height, 12);
  if (!excludes.IsEmpty()) media.Set("excludes", excludes);
  if (custom) media.Set("isCustomMediaSize", true);
  return media;
}

ADictionary Value(const char* name, ADictionary excludes = {}) {
  ADictionary value = testing::SettingValue(name, name);
  if (!excludes.IsEmpty()) value.Set("excludes", excludes);
  return value;
}

// Exclusions on every kind of first side; some name choices, values or
// options that the document does not have.
ADictionary Product() {
  ADictionary root =
      testing::ProductRoot(AArray{Media("Letter", 612, 792),
                                  Media("Legal", 612, 1008,
                                        Dict({{"Duplex", AArray{"DuplexTumble"}},
                                              {"InputSlot", AArray{"Manual"}},
                                              {"OutputMode", AArray{"Best"}}})),
                                  Media("A4", 595, 842, Dict({{"Duplex", AArray{"Bogus", "DuplexNoTumble"}}})),
                                  Media("Custom", 0, 0, Dict({{"Duplex", AArray{"DuplexTumble"}}}), true)},
                           "Letter");
  root = testing::WithValue(
      root, "options.QVPaperType",
      Setting(AArray{Value("Plain"),
                     Value("Glossy", Dict({{"Duplex", AArray{"DuplexNoTumble", "DuplexTumble"}},
                                           {"ColorModel", AArray{"Gray"}},
                                           {"PageSize", AArray{"Legal"}},
                                           {"InputSlot", AArray{"Manual"}},
                                           {"ColorSyncColorMode", AArray{"Grayscale"}},
                                           {"OutputMode", AArray{"Draft"}},
                                           {"QVBorderless", AArray{"True"}},
                                           {"Finisher", AArray{"Staple"}}})),
                     Value("Transparency", Dict({{"Duplex", AArray{"DuplexTumble"}}, {"InputSlot", AArray{"Tray2"}}})),
                     Value("Cardboard", Dict({{"Duplex", AArray{"DuplexTumble"}}}))}));
  root = testing::WithValue(root, "options.QVAltPaperType",
                            Setting(AArray{Value("Plain", Dict({{"InputSlot", AArray{"Tray1"}}}))}));
  root = testing::WithValue(
      root, "options.QVOutputMode",
      Setting(AArray{Value("Draft", Dict({{"SimpleImageEnhancement", AArray{"On"}}})), Value("Best")}));
  root.Set("customPageSizeExcludes",
           Dict({{"Duplex", AArray{"DuplexTumble", "DuplexNoTumble"}}, {"InputSlot", AArray{"Manual"}}}));
  return root;
}

// Both lines of a pairwise constraint.
std::string Both(const std::string& first, const std::string& second, const char* keyword = "UIConstraints") {
  return "*" + std::string(keyword) + ": " + first + " " + second + "\n*" + keyword + ": " + second + " " + first +
         "\n";
}

class PairedConstraintGeneratorsTest : public testing::GeneratorTestSupport {
 protected:
  void SetUp() override {
    ASSERT_TRUE(StartEngine(Product()));
    AddOption("MediaType", {"Plain", "Glossy", "Transparency"});
    AddOption("Duplex", {"None", "DuplexNoTumble", "DuplexTumble"});
    AddOption("InputSlot", {"Auto", "Tray1", "Manual"});
    AddOption("OutputMode", {"Draft", "Normal", "Best"});
    AddOption("ColorModel", {"RGB", "Gray"});
    AddOption("ColorSyncColorMode", {"Standard", "Grayscale"});
    AddOption("SimpleImageEnhancement", {"None", "On"});
  }

  void AddOption(const char* id, const std::vector<const char*>& choices) { AddPickOneOption("Quality", id, choices); }

  void AddCustomPageSize() {
    ASSERT_NE(Doc()->AddAttribute("CustomPageSize", "pop pop pop pop pop", "True", "", kPPDInvocationValue, ""),
              nullptr);
  }
};

// The custom page size side needs the CustomPageSize attribute.
TEST_F(PairedConstraintGeneratorsTest, EachRowPairsItsFirstSideWithItsSecondOption) {
  const std::string legal = "*PageSize Legal";
  const std::string glossy = "*MediaType Glossy";
  const std::string custom = "*CustomPageSize True";
  const std::vector<std::pair<const char*, std::string>> rows = {
      {"APPDDuplexOnPaperSizeConstraintsGenerator",
       Both(legal, "*Duplex DuplexTumble") + Both("*PageSize A4", "*Duplex DuplexNoTumble")},
      {"APPDDuplexOnCustomPaperSizeConstraintsGenerator",
       Both(custom, "*Duplex DuplexTumble") + Both(custom, "*Duplex DuplexNoTumble")},
      {"APPDDuplexOnPaperTypeConstraintsGenerator", Both(glossy, "*Duplex DuplexNoTumble") +
                                                        Both(glossy, "*Duplex DuplexTumble") +
                                                        Both("*MediaType Transparency", "*Duplex DuplexTumble")},
      {"APPDGrayscaleModeOnPaperTypeConstraintsGenerator", Both(glossy, "*ColorModel Gray")},
      {"APPDPaperSizeOnPaperTypeConstraintsGenerator", Both(glossy, "*PageSize Legal")},
      {"APPDPaperSrcOnCustomSizeConstraintsGenerator", Both(custom, "*InputSlot Manual")},
      {"APPDPaperSrcOnPaperSizeConstraintsGenerator", Both(legal, "*InputSlot Manual")},
      {"APPDPaperSrcOnPaperTypeConstraintsGenerator", Both(glossy, "*InputSlot Manual")},
      {"APPDPaperTypeOnColorSyncColorModeConstraintsGenerator", Both(glossy, "*ColorSyncColorMode Grayscale")},
      {"APPDQualityOnPaperSizeConstraintsGenerator", Both(legal, "*OutputMode Best")},
      {"APPDQualityOnPaperTypeConstraintsGenerator", Both(glossy, "*OutputMode Draft")},
      {"APPDOutputModeOnImageEnhancementConstraintsGenerator", Both("*OutputMode Draft", "*SimpleImageEnhancement On")},
  };
  for (const auto& [generator, constraints] : rows) {
    SCOPED_TRACE(generator);
    SetUp();
    EXPECT_FALSE(IsApplicable(generator) && std::string(generator).find("Custom") != std::string::npos);
    AddCustomPageSize();
    EXPECT_TRUE(IsApplicable(generator));
    AError error;
    EXPECT_TRUE(GenerateAnyway(generator, {}, &error)) << error.message.UTF8();
    EXPECT_EQ(ConstraintsText(), constraints);
  }
}

TEST_F(PairedConstraintGeneratorsTest, NotApplicableWithoutEitherOption) {
  EXPECT_FALSE(IsApplicable("APPDDuplexOnPaperTypeConstraintsGenerator", Dict({{"option-2", "Finisher"}})));
  EXPECT_FALSE(IsApplicable("APPDDuplexOnPaperTypeConstraintsGenerator", Dict({{"option-1", "PaperType"}})));
  EXPECT_FALSE(IsApplicable("APPDOwnSelfConstraintsGenerator", Dict({{"setting-name", "QVPaperType"}})));
  EXPECT_TRUE(IsApplicable("APPDOwnSelfConstraintsGenerator",
                           Dict({{"setting-name", "QVPaperType"}, {"option-1", "MediaType"}})));
}

TEST_F(PairedConstraintGeneratorsTest, OwnSelfTakesEveryExcludedOptionTheDocumentHas) {
  const ADictionary entry = Dict({{"setting-name", "QVPaperType"}, {"option-1", "MediaType"}});
  EXPECT_TRUE(GenerateAnyway("APPDOwnSelfConstraintsGenerator", entry));
  const std::string glossy = "*MediaType Glossy";
  // Keys in order; "Finisher" and "QVBorderless" are not options, Tray2 no choice.
  EXPECT_EQ(ConstraintsText(), Both(glossy, "*ColorModel Gray") + Both(glossy, "*ColorSyncColorMode Grayscale") +
                                   Both(glossy, "*Duplex DuplexNoTumble") + Both(glossy, "*Duplex DuplexTumble") +
                                   Both(glossy, "*InputSlot Manual") + Both(glossy, "*OutputMode Draft") +
                                   Both(glossy, "*PageSize Legal") +
                                   Both("*MediaType Transparency", "*Duplex DuplexTumble"));
}

TEST_F(PairedConstraintGeneratorsTest, EntryOverridesSettingAndOptionsAndCommentsTheFirst) {
  EXPECT_TRUE(GenerateAnyway(
      "APPDDuplexOnPaperTypeConstraintsGenerator",
      Dict({{"setting-name", "QVAltPaperType"}, {"option-2", "InputSlot"}, {"comment", "Plain paper feeds"}})));
  EXPECT_TRUE(GenerateAnyway("APPDQualityOnPaperTypeConstraintsGenerator",
                             Dict({{"option-2", "Duplex"}, {"comment", "Glossy paper"}})));
  EXPECT_EQ(ConstraintsText(), "*% Plain paper feeds\n" + Both("*MediaType Plain", "*InputSlot Tray1") +
                                   "*% Glossy paper\n" + Both("*MediaType Glossy", "*Duplex DuplexNoTumble") +
                                   Both("*MediaType Glossy", "*Duplex DuplexTumble") +
                                   Both("*MediaType Transparency", "*Duplex DuplexTumble"));
}

TEST_F(PairedConstraintGeneratorsTest, NonUISecondSideIsAnAttributeWhoseChoicesAreNotChecked) {
  const ADictionary entry = Dict({{"option-2", "QVBorderless"}, {"non-ui", true}});
  EXPECT_FALSE(IsApplicable("APPDPaperSrcOnPaperTypeConstraintsGenerator", entry));
  ASSERT_NE(Doc()->AddAttribute("QVBorderless", "False", "", "", kPPDStringValue, ""), nullptr);
  EXPECT_TRUE(IsApplicable("APPDPaperSrcOnPaperTypeConstraintsGenerator", entry));
  EXPECT_TRUE(GenerateAnyway("APPDPaperSrcOnPaperTypeConstraintsGenerator", entry));
  EXPECT_EQ(ConstraintsText(), Both("*MediaType Glossy", "*QVBorderless True", "NonUIConstraints"));
}

// Refuses every pair, as a document that cannot take another constraint would.
class RefusingGenerator : public APPDDuplexOnPaperTypeConstraintsGenerator {
 public:
  using APPDDuplexOnPaperTypeConstraintsGenerator::AddConstraint;
  bool AddConstraint(const AQVString&, const AQVString&, const AQVString&, const AQVString&, bool,
                     const AQVString&) override {
    return false;
  }
};

TEST_F(PairedConstraintGeneratorsTest, ARefusedPairFailsNamingBothSides) {
  AScopedRef<RefusingGenerator> generator(CreateSharedObject<RefusingGenerator>());
  const ADictionary entry;
  generator->Initialize(Engine(), &entry);
  AError error;
  EXPECT_FALSE(generator->Generate(&error));
  EXPECT_EQ(error,
            (AError{"RKPPDGeneration", 1, "Cannot add PPD constraint: *MediaType Glossy *Duplex DuplexNoTumble"}));
  EXPECT_EQ(ConstraintsText(), "");
}

TEST_F(PairedConstraintGeneratorsTest, MalformedExcludesFailBeforeAnythingIsAdded) {
  const std::string kInvalid = "Invalid product description: ";
  const std::string kNotDictionary = " must be a dictionary from option keyword to an array of choice keywords";
  struct Case {
    const char* generator;
    const char* path;
    AValue excludes;
    std::string message;
  };
  for (const Case& c : std::vector<Case>{
           {"APPDDuplexOnPaperTypeConstraintsGenerator", "options.QVPaperType.values[2].excludes", "Duplex",
            kInvalid + "options.QVPaperType.values[2].excludes" + kNotDictionary},
           {"APPDDuplexOnPaperTypeConstraintsGenerator", "options.QVPaperType.values[2].excludes",
            Dict({{"Duplex", "DuplexTumble"}}),
            kInvalid + "options.QVPaperType.values[2].excludes.Duplex must be an array of choice keywords"},
           {"APPDDuplexOnPaperTypeConstraintsGenerator", "options.QVPaperType.values[2].excludes",
            Dict({{"Duplex", AArray{1}}}),
            kInvalid + "options.QVPaperType.values[2].excludes.Duplex[0] must be a choice keyword"},
           {"APPDDuplexOnPaperSizeConstraintsGenerator", "options.QVPaperInfo.values[2].excludes", AArray{"Duplex"},
            kInvalid + "options.QVPaperInfo.values[2].excludes" + kNotDictionary},
           {"APPDDuplexOnCustomPaperSizeConstraintsGenerator", "customPageSizeExcludes", Dict({{"Duplex", "None"}}),
            kInvalid + "customPageSizeExcludes.Duplex must be an array of choice keywords"}}) {
    SCOPED_TRACE(c.message);
    SetUp();
    AddCustomPageSize();
    Root() = testing::WithValue(Root(), c.path, c.excludes);
    AError error;
    EXPECT_FALSE(GenerateAnyway(c.generator, {}, &error));
    EXPECT_EQ(error, (AError{"RKPPDGeneration", 1, c.message}));
    EXPECT_EQ(ConstraintsText(), "");
  }
}

}  // namespace
}  // namespace ppdforge
