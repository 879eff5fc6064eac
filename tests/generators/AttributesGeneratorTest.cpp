#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "core/ASharedObject.h"
#include "engine/IPPDGenerator.h"
#include "generators/APPDGenericAttributesGenerator.h"
#include "support/GeneratorTestSupport.h"

namespace ppdforge {
namespace {

using testing::Describe;
using testing::Dict;

class AttributesGeneratorTest : public testing::GeneratorTestSupport {
 protected:
  void SetUp() override {
    MakeEngine();
    // Fails in the attributes phase (no descriptions) after making the document.
    ASSERT_FALSE(RunEngine());
    ASSERT_NE(Doc(), nullptr);
  }

  // A generator made through the registry, as the engine makes it.
  static AScopedRef<APPDGenericAttributesGenerator> Make(IPPDGenerator* engine, const ADictionary& description) {
    return testing::CreateGenerator<APPDGenericAttributesGenerator>("APPDGenericAttributesGenerator", engine,
                                                                    description);
  }

  std::vector<IPPDAttribute*> Attributes(const char* name) const {
    std::vector<IPPDAttribute*> out;
    Doc()->GetAttributesWithNameAndSpec(name, nullptr, out);
    return out;
  }
};

TEST_F(AttributesGeneratorTest, EveryKeyReachesTheAttribute) {
  for (const auto& [description, line] : std::vector<std::pair<ADictionary, const char*>>{
           {Dict({{"name", "ModelName"}, {"value", "Probe 1"}}), "*ModelName: \"Probe 1\""},
           {Dict({{"name", "cupsICCProfile"},
                  {"spec", "RGB.Plain"},
                  {"translation", "Plain Paper"},
                  {"value", "/usr/share/p.icc"},
                  {"comment", "Profiles"}}),
            "*% Profiles\n*cupsICCProfile RGB.Plain/Plain Paper: \"/usr/share/p.icc\""}}) {
    auto generator = Make(Engine(), description);
    EXPECT_TRUE(generator->IsApplicable());
    AError error{"untouched", 99, "untouched"};
    EXPECT_TRUE(generator->Generate(&error));
    EXPECT_EQ(error.code, 99);
    const auto attributes = Attributes(description.GetString("name").CString());
    ASSERT_EQ(attributes.size(), 1u);
    EXPECT_EQ(attributes[0]->GetStringRepresentation(nullptr), line);
  }
}

// "value-type": a number, or decimal text; without one the value is quoted.
TEST_F(AttributesGeneratorTest, ValueTypeReadsNumbersAndDecimalText) {
  for (const auto& [valueType, expected] :
       std::vector<std::pair<AValue, PPDValueType>>{{AValue(), kPPDQuotedValue},
                                                    {3, kPPDStringValue},
                                                    {"3", kPPDStringValue},
                                                    {" 2", kPPDSymbolValue},
                                                    {"quoted", kPPDInvocationValue},
                                                    {7, 7},
                                                    {false, kPPDInvocationValue},
                                                    {AArray{AValue(3)}, kPPDQuotedValue}}) {
    ADictionary description = Dict({{"name", "Probe"}, {"value", "x"}});
    if (!valueType.IsNull()) description.Set("value-type", valueType);
    EXPECT_EQ(Make(Engine(), description)->GetAttributeValueType(), expected) << testing::ValueLabel(valueType);
  }
  // Entries of other types read as empty.
  auto generator = Make(Engine(), Dict({{"name", 5}, {"spec", AArray{}}, {"value", true}}));
  EXPECT_EQ(generator->GetAttributeName() + generator->GetAttributeSpec() + generator->GetAttributeValue() +
                generator->GetAttributeComment(),
            "");
}

TEST_F(AttributesGeneratorTest, RefusalMessageKeepsBlankAndSlash) {
  // An engine that was never run has no document, so every attribute is refused.
  AScopedRef<IPPDGenerator> bare(IPPDGenerator::Create(nullptr));
  auto generator = Make(bare.get(), Dict({{"name", "ModelName"}, {"value", "Probe"}}));
  AError error;
  EXPECT_FALSE(generator->Generate(&error));
  EXPECT_EQ(Describe(error), "RKPPDGeneration/1: Cannot add PPD attribute: *ModelName /: \"Probe\"");
  EXPECT_FALSE(generator->Generate(nullptr));
  EXPECT_FALSE(
      Make(bare.get(), Dict({{"name", "N"}, {"spec", "S"}, {"translation", "T"}, {"value", "V"}}))->Generate(&error));
  EXPECT_EQ(Describe(error), "RKPPDGeneration/1: Cannot add PPD attribute: *N S/T: \"V\"");
}

TEST_F(AttributesGeneratorTest, EntriesNamingAnotherClassAreNotHandledHere) {
  MakeEngine(Dict(
      {{"attributesGenerationInfo",
        AArray{Dict({{"name", "ModelName"}, {"value", "Probe"}}),
               Dict({{"generator", "APPDCustomPageSizeGenerator"}, {"name", "MaxMediaWidth"}, {"value", "%.0f"}})}}}));
  // The page sizes phase fails for lack of media; the attributes phase has run.
  EXPECT_FALSE(RunEngine());
  EXPECT_EQ(Doc()->GetAttributeValueWithNameAndSpec("ModelName", nullptr), "Probe");
  EXPECT_TRUE(Attributes("MaxMediaWidth").empty());
}

}  // namespace
}  // namespace ppdforge
