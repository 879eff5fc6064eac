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

ADictionary Media(const char* name, double width, double height, ADictionary excludes = {},
                  bool custom = false) {
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
  const AArray media{
      Media("Letter", 612, 792),
      Media("Legal", 612, 1008,
            Dict({{"Duplex", AArray{"DuplexTumble"}},
                  {"InputSlot", AArray{"Manual"}},
                  {"OutputMode", AArray{"Best"}}})),
      Media("A4", 595, 842, Dict({{"Duplex", AArray{"Bogus", "DuplexNoTumble"}}})),
      Media("Custom", 0, 0, Dict({{"Duplex", AArray{"DuplexTumble"}}}), true),
  };
  const AArray paperTypes{
      Value("Plain"),
      Value("Glossy", Dict({{"Duplex", AArray{"DuplexNoTumble", "DuplexTumble"}},
                            {"ColorModel", AArray{"Gray"}},
                            {"PageSize", AArray{"Legal"}},
                            {"InputSlot", AArray{"Manual"}},
                            {"ColorSyncColorMode", AArray{"Grayscale"}},
                            {"OutputMode", AArray{"Draft"}},
                            {"QVBorderless", AArray{"True"}},
                            {"Finisher", AArray{"Staple"}}})),
      Value("Transparency",
            Dict({{"Duplex", AArray{"DuplexTumble"}}, {"InputSlot", AArray{"Tray2"}}})),
      Value("Cardboard", Dict({{"Duplex", AArray{"DuplexTumble"}}})),
  };
  ADictionary root = testing::ProductRoot(media, "Letter");
  testing::SetNested(root, "options", "QVPaperType", Setting(paperTypes));
  testing::SetNested(root, "options", "QVAltPaperType",
                     Setting(AArray{Value("Plain", Dict({{"InputSlot", AArray{"Tray1"}}}))}));
  testing::SetNested(
      root, "options", "QVOutputMode",
      Setting(
          AArray{Value("Draft", Dict({{"SimpleImageEnhancement", AArray{"On"}}})), Value("Best")}));
  root.Set("customPageSizeExcludes", Dict({{"Duplex", AArray{"DuplexTumble", "DuplexNoTumble"}},
                                           {"InputSlot", AArray{"Manual"}}}));
  return root;
}

// Both lines of a pairwise constraint.
std::string Both(const std::string& first, const std::string& second,
                 const char* keyword = "UIConstraints") {
  return "*" + std::string(keyword) + ": " + first + " " + second + "\n*" + keyword + ": " +
         second + " " + first + "\n";
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

  void AddOption(const char* id, const std::vector<const char*>& choices) {
    AddPickOneOption("Quality", id, choices);
  }

  void AddCustomPageSize() {
    ASSERT_NE(Doc()->AddAttribute("CustomPageSize", "pop pop pop pop pop", "True", "",
                                  kPPDInvocationValue, ""),
              nullptr);
  }
};

struct RowCase {
  const char* generator;
  std::string constraints;
};

TEST_F(PairedConstraintGeneratorsTest, EachRowPairsItsFirstSideWithItsSecondOption) {
  const std::string legal = "*PageSize Legal";
  const std::string glossy = "*MediaType Glossy";
  const std::string custom = "*CustomPageSize True";
  const std::vector<RowCase> rows = {
      {"APPDDuplexOnPaperSizeConstraintsGenerator",
       Both(legal, "*Duplex DuplexTumble") + Both("*PageSize A4", "*Duplex DuplexNoTumble")},
      {"APPDDuplexOnCustomPaperSizeConstraintsGenerator",
       Both(custom, "*Duplex DuplexTumble") + Both(custom, "*Duplex DuplexNoTumble")},
      {"APPDDuplexOnPaperTypeConstraintsGenerator",
       Both(glossy, "*Duplex DuplexNoTumble") + Both(glossy, "*Duplex DuplexTumble") +
           Both("*MediaType Transparency", "*Duplex DuplexTumble")},
      {"APPDGrayscaleModeOnPaperTypeConstraintsGenerator", Both(glossy, "*ColorModel Gray")},
      {"APPDPaperSizeOnPaperTypeConstraintsGenerator", Both(glossy, "*PageSize Legal")},
      {"APPDPaperSrcOnCustomSizeConstraintsGenerator", Both(custom, "*InputSlot Manual")},
      {"APPDPaperSrcOnPaperSizeConstraintsGenerator", Both(legal, "*InputSlot Manual")},
      {"APPDPaperSrcOnPaperTypeConstraintsGenerator", Both(glossy, "*InputSlot Manual")},
      {"APPDPaperTypeOnColorSyncColorModeConstraintsGenerator",
       Both(glossy, "*ColorSyncColorMode Grayscale")},
      {"APPDQualityOnPaperSizeConstraintsGenerator", Both(legal, "*OutputMode Best")},
      {"APPDQualityOnPaperTypeConstraintsGenerator", Both(glossy, "*OutputMode Draft")},
      {"APPDOutputModeOnImageEnhancementConstraintsGenerator",
       Both("*OutputMode Draft", "*SimpleImageEnhancement On")},
  };
  for (const RowCase& row : rows) {
    SCOPED_TRACE(row.generator);
    SetUp();
    AddCustomPageSize();
    EXPECT_TRUE(IsApplicable(row.generator));
    AError error;
    EXPECT_TRUE(GenerateAnyway(row.generator, {}, &error)) << error.message.UTF8();
    EXPECT_EQ(ConstraintsText(), row.constraints);
  }
}

TEST_F(PairedConstraintGeneratorsTest, CustomPageSizeSideNeedsTheCustomPageSizeAttribute) {
  EXPECT_FALSE(IsApplicable("APPDDuplexOnCustomPaperSizeConstraintsGenerator"));
  EXPECT_FALSE(IsApplicable("APPDPaperSrcOnCustomSizeConstraintsGenerator"));
  AddCustomPageSize();
  EXPECT_TRUE(IsApplicable("APPDDuplexOnCustomPaperSizeConstraintsGenerator"));
  EXPECT_TRUE(IsApplicable("APPDPaperSrcOnCustomSizeConstraintsGenerator"));
}

TEST_F(PairedConstraintGeneratorsTest, NotApplicableWithoutEitherOption) {
  EXPECT_FALSE(
      IsApplicable("APPDDuplexOnPaperTypeConstraintsGenerator", Dict({{"option-2", "Finisher"}})));
  EXPECT_FALSE(
      IsApplicable("APPDDuplexOnPaperTypeConstraintsGenerator", Dict({{"option-1", "PaperType"}})));
  EXPECT_FALSE(
      IsApplicable("APPDOwnSelfConstraintsGenerator", Dict({{"setting-name", "QVPaperType"}})));
  EXPECT_TRUE(IsApplicable("APPDOwnSelfConstraintsGenerator",
                           Dict({{"setting-name", "QVPaperType"}, {"option-1", "MediaType"}})));
}

TEST_F(PairedConstraintGeneratorsTest, OwnSelfTakesEveryExcludedOptionTheDocumentHas) {
  const ADictionary entry = Dict({{"setting-name", "QVPaperType"}, {"option-1", "MediaType"}});
  EXPECT_TRUE(GenerateAnyway("APPDOwnSelfConstraintsGenerator", entry));
  const std::string glossy = "*MediaType Glossy";
  // Keys in order; "Finisher" and "QVBorderless" are not options, Tray2 no choice.
  EXPECT_EQ(ConstraintsText(),
            Both(glossy, "*ColorModel Gray") + Both(glossy, "*ColorSyncColorMode Grayscale") +
                Both(glossy, "*Duplex DuplexNoTumble") + Both(glossy, "*Duplex DuplexTumble") +
                Both(glossy, "*InputSlot Manual") + Both(glossy, "*OutputMode Draft") +
                Both(glossy, "*PageSize Legal") +
                Both("*MediaType Transparency", "*Duplex DuplexTumble"));
}

TEST_F(PairedConstraintGeneratorsTest, EntryOverridesSettingAndOptionsAndCommentsTheFirst) {
  EXPECT_TRUE(GenerateAnyway("APPDDuplexOnPaperTypeConstraintsGenerator",
                             Dict({{"setting-name", "QVAltPaperType"},
                                   {"option-2", "InputSlot"},
                                   {"comment", "Plain paper feeds"}})));
  EXPECT_TRUE(GenerateAnyway("APPDQualityOnPaperTypeConstraintsGenerator",
                             Dict({{"option-2", "Duplex"}, {"comment", "Glossy paper"}})));
  EXPECT_EQ(ConstraintsText(),
            "*% Plain paper feeds\n" + Both("*MediaType Plain", "*InputSlot Tray1") +
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
  ASSERT_TRUE(generator);
  const ADictionary entry;
  generator->Initialize(Engine(), &entry);
  AError error;
  EXPECT_FALSE(generator->Generate(&error));
  EXPECT_EQ(error, (AError{"RKPPDGeneration", 1,
                           "Cannot add PPD constraint: *MediaType Glossy *Duplex DuplexNoTumble"}));
  EXPECT_EQ(ConstraintsText(), "");
}

struct BadExcludesCase {
  const char* generator;
  const char* setting;  // null: the custom page size
  AValue excludes;
  const char* message;
};

TEST_F(PairedConstraintGeneratorsTest, MalformedExcludesFailBeforeAnythingIsAdded) {
  const std::vector<BadExcludesCase> cases = {
      {"APPDDuplexOnPaperTypeConstraintsGenerator", "QVPaperType", "Duplex",
       "Invalid product description: options.QVPaperType.values[2].excludes must be a dictionary "
       "from option keyword to an array of choice keywords"},
      {"APPDDuplexOnPaperTypeConstraintsGenerator", "QVPaperType",
       Dict({{"Duplex", "DuplexTumble"}}),
       "Invalid product description: options.QVPaperType.values[2].excludes.Duplex must be an "
       "array of choice keywords"},
      {"APPDDuplexOnPaperTypeConstraintsGenerator", "QVPaperType", Dict({{"Duplex", AArray{1}}}),
       "Invalid product description: options.QVPaperType.values[2].excludes.Duplex[0] must be a "
       "choice keyword"},
      {"APPDDuplexOnPaperSizeConstraintsGenerator", "QVPaperInfo", AArray{"Duplex"},
       "Invalid product description: options.QVPaperInfo.values[2].excludes must be a dictionary "
       "from option keyword to an array of choice keywords"},
      {"APPDDuplexOnCustomPaperSizeConstraintsGenerator", nullptr, Dict({{"Duplex", "None"}}),
       "Invalid product description: customPageSizeExcludes.Duplex must be an array of choice "
       "keywords"},
  };
  for (const BadExcludesCase& c : cases) {
    SCOPED_TRACE(c.message);
    SetUp();
    AddCustomPageSize();
    ADictionary& root = Root();
    if (c.setting == nullptr) {
      ADictionary excludes;
      ASSERT_TRUE(c.excludes.GetDictionary(excludes));
      root.Set("customPageSizeExcludes", excludes);
    } else {
      ADictionary options;
      ADictionary setting;
      AArray values;
      ASSERT_TRUE(root.GetDictionary("options", options));
      ASSERT_TRUE(options.GetDictionary(c.setting, setting));
      ASSERT_TRUE(setting.GetArray("values", values));
      ADictionary third;
      ASSERT_TRUE(values[2].GetDictionary(third));
      third.Set("excludes", c.excludes);
      values.Set(2, third);
      setting.Set("values", values);
      options.Set(c.setting, setting);
      root.Set("options", options);
    }
    AError error;
    EXPECT_FALSE(GenerateAnyway(c.generator, {}, &error));
    EXPECT_EQ(error, (AError{"RKPPDGeneration", 1, c.message}));
    EXPECT_EQ(ConstraintsText(), "");
  }
}

}  // namespace
}  // namespace ppdforge
