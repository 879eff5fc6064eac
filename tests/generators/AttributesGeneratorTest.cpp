#include "generators/APPDGenericAttributesGenerator.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <vector>

#include "core/ASharedObject.h"
#include "engine/IPPDGenerator.h"
#include "engine/IPPDObjectGenerator.h"
#include "support/GeneratorTestSupport.h"

namespace ppdforge {
namespace {

using testing::Describe;
using testing::Dict;
using testing::FakeProductInfo;

class AttributesGeneratorTest : public testing::GeneratorTestSupport {
 protected:
  void SetUp() override {
    MakeEngine();
    ASSERT_NE(Engine(), nullptr);
    // Fails in the attributes phase (no descriptions) after making the document.
    ASSERT_FALSE(RunEngine());
    ASSERT_NE(Doc(), nullptr);
  }

  // A generator made through the registry, as the engine makes it.
  static AScopedRef<APPDGenericAttributesGenerator> Make(IPPDGenerator* engine,
                                                        const ADictionary& description) {
    return testing::CreateGenerator<APPDGenericAttributesGenerator>(
        "APPDGenericAttributesGenerator", engine, description);
  }

  std::vector<IPPDAttribute*> Attributes(const char* name) const {
    std::vector<IPPDAttribute*> out;
    Doc()->GetAttributesWithNameAndSpec(name, nullptr, out);
    return out;
  }
};

TEST_F(AttributesGeneratorTest, NameAndValueAloneGiveAQuotedAttribute) {
  auto generator = Make(Engine(), Dict({{"name", "ModelName"}, {"value", "Probe 1"}}));
  ASSERT_TRUE(generator);
  EXPECT_TRUE(generator->IsApplicable());
  AError error{"untouched", 99, "untouched"};
  EXPECT_TRUE(generator->Generate(&error));
  EXPECT_EQ(error.code, 99);
  const auto attributes = Attributes("ModelName");
  ASSERT_EQ(attributes.size(), 1u);
  EXPECT_EQ(attributes[0]->GetSpec(), "");
  EXPECT_EQ(attributes[0]->GetText(), "");
  EXPECT_EQ(attributes[0]->GetValueType(), kPPDQuotedValue);
  EXPECT_EQ(attributes[0]->GetStringRepresentation(nullptr), "*ModelName: \"Probe 1\"");
}

TEST_F(AttributesGeneratorTest, EveryKeyReachesTheAttribute) {
  auto generator = Make(Engine(), Dict({{"name", "cupsICCProfile"},
                                        {"spec", "RGB.Plain"},
                                        {"translation", "Plain Paper"},
                                        {"value", "/usr/share/p.icc"},
                                        {"comment", "Profiles"}}));
  ASSERT_TRUE(generator->Generate(nullptr));
  const auto attributes = Attributes("cupsICCProfile");
  ASSERT_EQ(attributes.size(), 1u);
  EXPECT_EQ(attributes[0]->GetStringRepresentation(nullptr),
            "*% Profiles\n*cupsICCProfile RGB.Plain/Plain Paper: \"/usr/share/p.icc\"");
}

struct ValueTypeCase {
  const char* label;
  std::optional<AValue> valueType;
  PPDValueType expected;
};

class ValueTypeTest : public AttributesGeneratorTest,
                      public ::testing::WithParamInterface<ValueTypeCase> {};

TEST_P(ValueTypeTest, ReadsNumbersAndDecimalText) {
  ADictionary description = Dict({{"name", "Probe"}, {"value", "x"}});
  if (GetParam().valueType) description.Set("value-type", *GetParam().valueType);
  auto generator = Make(Engine(), description);
  EXPECT_EQ(generator->GetAttributeValueType(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Types, ValueTypeTest,
    ::testing::Values(ValueTypeCase{"Absent", std::nullopt, kPPDQuotedValue},
                      ValueTypeCase{"Number", AValue(3), kPPDStringValue},
                      ValueTypeCase{"Text", AValue("3"), kPPDStringValue},
                      ValueTypeCase{"TextWithBlank", AValue(" 2"), kPPDSymbolValue},
                      ValueTypeCase{"NotANumber", AValue("quoted"), kPPDInvocationValue},
                      ValueTypeCase{"OutOfRange", AValue(7), 7},
                      ValueTypeCase{"Boolean", AValue(false), kPPDInvocationValue},
                      ValueTypeCase{"Array", AValue(AArray{AValue(3)}), kPPDQuotedValue}),
    [](const ::testing::TestParamInfo<ValueTypeCase>& param) { return param.param.label; });

TEST_F(AttributesGeneratorTest, NonStringEntriesReadAsEmpty) {
  auto generator = Make(Engine(), Dict({{"name", 5}, {"spec", AArray{}}, {"value", true}}));
  EXPECT_EQ(generator->GetAttributeName(), "");
  EXPECT_EQ(generator->GetAttributeSpec(), "");
  EXPECT_EQ(generator->GetAttributeValue(), "");
  EXPECT_EQ(generator->GetAttributeComment(), "");
}

TEST_F(AttributesGeneratorTest, RefusalMessageKeepsBlankAndSlash) {
  // An engine that was never run has no document, so every attribute is refused.
  AScopedRef<IPPDGenerator> bare(IPPDGenerator::Create(nullptr));
  auto generator = Make(bare.get(), Dict({{"name", "ModelName"}, {"value", "Probe"}}));
  AError error;
  EXPECT_FALSE(generator->Generate(&error));
  EXPECT_EQ(Describe(error), "RKPPDGeneration/1: Cannot add PPD attribute: *ModelName /: \"Probe\"");
  EXPECT_FALSE(generator->Generate(nullptr));

  auto full = Make(bare.get(), Dict({{"name", "N"}, {"spec", "S"}, {"translation", "T"},
                                     {"value", "V"}}));
  EXPECT_FALSE(full->Generate(&error));
  EXPECT_EQ(Describe(error), "RKPPDGeneration/1: Cannot add PPD attribute: *N S/T: \"V\"");
}

// A subclass that computes its value: the message shows the computed value.
class ComputedValueGenerator : public APPDGenericAttributesGenerator {
 public:
  AQVString GetAttributeValue() const override { return "computed"; }
};

TEST_F(AttributesGeneratorTest, SubclassGettersFeedGenerateAndTheMessage) {
  AScopedRef<APPDGenericAttributesGenerator> generator(CreateSharedObject<ComputedValueGenerator>());
  const ADictionary description = Dict({{"name", "ModelName"}, {"value", "given"}});
  generator->Initialize(Engine(), &description);
  ASSERT_TRUE(generator->Generate(nullptr));
  EXPECT_EQ(Doc()->GetAttributeValueWithNameAndSpec("ModelName", nullptr), "computed");

  AScopedRef<IPPDGenerator> bare(IPPDGenerator::Create(nullptr));
  generator->Initialize(bare.get(), nullptr);
  AError error;
  EXPECT_FALSE(generator->Generate(&error));
  EXPECT_EQ(Describe(error),
            "RKPPDGeneration/1: Cannot add PPD attribute: *ModelName /: \"computed\"");
}

TEST_F(AttributesGeneratorTest, AddAttributeObjectStoresTheObjectItself) {
  auto generator = Make(Engine(), ADictionary());
  AScopedRef<IPPDAttribute> attribute(
      IPPDAttribute::Create("Product", "", "", "(Probe)", kPPDQuotedValue, ""));
  EXPECT_TRUE(generator->AddAttribute(attribute.get()));
  const auto attributes = Attributes("Product");
  ASSERT_EQ(attributes.size(), 1u);
  EXPECT_EQ(attributes[0], attribute.get());
  EXPECT_FALSE(generator->AddAttribute(nullptr));
}

TEST_F(AttributesGeneratorTest, EntriesNamingAnotherClassAreNotHandledHere) {
  ADictionary root;
  root.Set("attributesGenerationInfo",
           AArray{Dict({{"name", "ModelName"}, {"value", "Probe"}}),
                  Dict({{"generator", "APPDCustomPageSizeGenerator"},
                        {"name", "MaxMediaWidth"},
                        {"value", "%.0f"}})});
  AScopedRef<IPPDGenerator> engine(IPPDGenerator::Create(std::make_shared<FakeProductInfo>(root)));
  // The page sizes phase fails for lack of media; the attributes phase has run.
  EXPECT_FALSE(engine->CreatePPDObjects(nullptr));
  EXPECT_EQ(engine->GetPPD()->GetAttributeValueWithNameAndSpec("ModelName", nullptr), "Probe");
  std::vector<IPPDAttribute*> width;
  engine->GetPPD()->GetAttributesWithNameAndSpec("MaxMediaWidth", nullptr, width);
  EXPECT_TRUE(width.empty());
}

TEST(GeneratorRegistryTest, AttributeAndPageSizeClassesAreRegistered) {
  const auto& factory = IPPDObjectGenerator::GetObjectFactory();
  for (const char* name : {"APPDGenericAttributesGenerator", "APPDPageSizesGenerator",
                           "APPDCustomPageSizeGenerator", "APPDPageSizeCategoryAttributeGenerator"}) {
    EXPECT_TRUE(factory.contains(name)) << name;
  }
  EXPECT_FALSE(factory.contains("appdgenericattributesgenerator"));
}

}  // namespace
}  // namespace ppdforge
