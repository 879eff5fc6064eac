#include "engine/APPDObjectGenerator.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "core/ASharedObject.h"
#include "engine/IPPDGenerator.h"
#include "engine/IPPDObjectGenerator.h"
#include "support/FakeProductInfo.h"

namespace ppdforge {
namespace {

using testing::FakeProductInfo;

std::string Describe(const AError& error) {
  return error.domain.UTF8() + "/" + std::to_string(error.code) + ": " + error.message.UTF8();
}

ADictionary Dict(std::initializer_list<std::pair<const char*, AValue>> items) {
  ADictionary dictionary;
  for (const auto& [key, value] : items) dictionary.Set(key, value);
  return dictionary;
}

// Opens the base class's helpers to the tests.
class OpenGenerator : public APPDObjectGenerator {
 public:
  bool Generate(AError*) override { return true; }
  bool IsApplicable() const override { return true; }
  using APPDObjectGenerator::AddAttributesFromArray;
  using APPDObjectGenerator::GetParams;
  using APPDObjectGenerator::GetPPDGenerator;
};

class OtherGenerator : public OpenGenerator {};

IPPDObjectGenerator* CreateNothing() { return nullptr; }

constexpr const char* kTestName = "FrameworkTestGenerator";

class APPDObjectGeneratorTest : public ::testing::Test {
 protected:
  void SetUp() override {
    engine_ = IPPDGenerator::Create(std::make_shared<FakeProductInfo>());
    ASSERT_NE(engine_, nullptr);
    IPPDObjectGenerator::GetObjectFactory().erase(kTestName);
  }
  void TearDown() override {
    IPPDObjectGenerator::GetObjectFactory().erase(kTestName);
    ReleaseObject(engine_);
  }

  // The engine's count, read without changing it.
  std::int32_t EngineCount() const {
    engine_->Retain();
    return engine_->Release();
  }

  IPPDGenerator* engine_ = nullptr;
};

TEST_F(APPDObjectGeneratorTest, CreateInitialisesWithEngineAndDescription) {
  APPDObjectGeneratorRegistration<OpenGenerator> registration(kTestName);
  const ADictionary description = Dict({{"name", "ModelName"}});
  IPPDObjectGenerator* created = IPPDObjectGenerator::Create(kTestName, engine_, &description);
  ASSERT_NE(created, nullptr);
  auto* generator = static_cast<OpenGenerator*>(created);
  EXPECT_EQ(generator->GetPPDGenerator(), engine_);
  EXPECT_TRUE(generator->GetParams() == description);
  EXPECT_EQ(EngineCount(), 2);
  EXPECT_EQ(created->Release(), 0);
  EXPECT_EQ(EngineCount(), 1);
}

TEST_F(APPDObjectGeneratorTest, NullDescriptionGivesEmptyParams) {
  APPDObjectGeneratorRegistration<OpenGenerator> registration(kTestName);
  AScopedRef<IPPDObjectGenerator> created(IPPDObjectGenerator::Create(kTestName, engine_, nullptr));
  ASSERT_TRUE(created);
  EXPECT_TRUE(static_cast<OpenGenerator*>(created.get())->GetParams().IsEmpty());
}

TEST_F(APPDObjectGeneratorTest, LookupIsExact) {
  APPDObjectGeneratorRegistration<OpenGenerator> registration(kTestName);
  for (const char* name : {"frameworktestgenerator", "FrameworkTestGenerator ", "FrameworkTest", ""}) {
    EXPECT_EQ(IPPDObjectGenerator::Create(name, engine_, nullptr), nullptr) << name;
  }
  EXPECT_EQ(EngineCount(), 1);
}

TEST_F(APPDObjectGeneratorTest, FirstRegistrationWins) {
  APPDObjectGeneratorRegistration<OpenGenerator> first(kTestName);
  const IPPDObjectGenerator::Creator creator = IPPDObjectGenerator::GetObjectFactory().at(kTestName);
  APPDObjectGeneratorRegistration<OtherGenerator> second(kTestName);
  EXPECT_EQ(IPPDObjectGenerator::GetObjectFactory().at(kTestName), creator);
}

TEST_F(APPDObjectGeneratorTest, FailingCreatorGivesNull) {
  IPPDObjectGenerator::GetObjectFactory().emplace(kTestName, &CreateNothing);
  EXPECT_EQ(IPPDObjectGenerator::Create(kTestName, engine_, nullptr), nullptr);
}

TEST_F(APPDObjectGeneratorTest, GeneratorReferenceCounting) {
  IPPDObjectGenerator* generator = CreateRootSharedObject<IPPDObjectGenerator, OpenGenerator>();
  ASSERT_NE(generator, nullptr);
  EXPECT_EQ(generator->Retain(), 2);
  EXPECT_EQ(generator->Release(), 1);
  EXPECT_EQ(generator->Release(), 0);
}

TEST_F(APPDObjectGeneratorTest, InitialiseAgainMovesTheEngineReference) {
  AScopedRef<IPPDGenerator> other(IPPDGenerator::Create(nullptr));
  AScopedRef<OpenGenerator> generator(CreateSharedObject<OpenGenerator>());
  const ADictionary description = Dict({{"value", "1"}});
  generator->Initialize(engine_, &description);
  generator->Initialize(engine_, nullptr);
  EXPECT_EQ(EngineCount(), 2);
  // A null description keeps the copy already held.
  EXPECT_TRUE(generator->GetParams() == description);
  generator->Initialize(other.get(), nullptr);
  EXPECT_EQ(EngineCount(), 1);
  EXPECT_EQ(generator->GetPPDGenerator(), other.get());
}

class AddAttributesFromArrayTest : public APPDObjectGeneratorTest {
 protected:
  void SetUp() override {
    APPDObjectGeneratorTest::SetUp();
    ASSERT_FALSE(engine_->CreatePPDObjects(nullptr));  // resets the document; no phases
    generator_.reset(CreateSharedObject<OpenGenerator>());
    generator_->Initialize(engine_, nullptr);
  }
  void TearDown() override {
    generator_.reset();
    APPDObjectGeneratorTest::TearDown();
  }

  std::vector<IPPDAttribute*> Attributes(const char* name) const {
    std::vector<IPPDAttribute*> out;
    engine_->GetPPD()->GetAttributesWithNameAndSpec(name, nullptr, out);
    return out;
  }

  struct Releaser {
    void operator()(OpenGenerator* generator) const { ReleaseObject(generator); }
  };
  std::unique_ptr<OpenGenerator, Releaser> generator_;
};

TEST_F(AddAttributesFromArrayTest, NullOrEmptyIsSuccess) {
  EXPECT_TRUE(generator_->AddAttributesFromArray(nullptr, nullptr));
  const AArray empty;
  EXPECT_TRUE(generator_->AddAttributesFromArray(&empty, nullptr));
}

TEST_F(AddAttributesFromArrayTest, SkipsIncompleteElementsAndReadsTheRest) {
  const AArray attributes{
      Dict({{"name", "NoValue"}}),
      Dict({{"name", "EmptyValue"}, {"value", ""}}),
      Dict({{"name", ""}, {"value", "NoName"}}),
      AValue("not a dictionary"),
      Dict({{"name", "Full"}, {"value", "v"}, {"spec", "s"}, {"translation", "t"},
            {"comment", "c"}, {"value-type", "3"}}),
      Dict({{"name", "Plain"}, {"value", "p"}}),
      Dict({{"name", "Numbered"}, {"value", "n"}, {"value-type", 2}}),
  };
  AError error{"untouched", 99, "untouched"};
  EXPECT_TRUE(generator_->AddAttributesFromArray(&attributes, &error));
  EXPECT_EQ(error.code, 99);
  EXPECT_TRUE(Attributes("NoValue").empty());
  EXPECT_TRUE(Attributes("EmptyValue").empty());
  EXPECT_TRUE(Attributes("").empty());

  const auto full = Attributes("Full");
  ASSERT_EQ(full.size(), 1u);
  EXPECT_EQ(full[0]->GetSpec(), "s");
  EXPECT_EQ(full[0]->GetText(), "t");
  EXPECT_EQ(full[0]->GetValue(), "v");
  EXPECT_EQ(full[0]->GetValueType(), kPPDStringValue);
  const auto plain = Attributes("Plain");
  ASSERT_EQ(plain.size(), 1u);
  EXPECT_EQ(plain[0]->GetValueType(), kPPDInvocationValue);
  const auto numbered = Attributes("Numbered");
  ASSERT_EQ(numbered.size(), 1u);
  EXPECT_EQ(numbered[0]->GetValueType(), kPPDSymbolValue);
}

TEST_F(AddAttributesFromArrayTest, RefusalStopsWithTheMessage) {
  // A generator whose engine has no document is refused everything.
  AScopedRef<IPPDGenerator> bare(IPPDGenerator::Create(nullptr));
  generator_->Initialize(bare.get(), nullptr);
  const AArray attributes{Dict({{"name", "Skipped"}}),
                          Dict({{"name", "First"}, {"value", "1"}, {"spec", "s"}}),
                          Dict({{"name", "Second"}, {"value", "2"}})};
  AError error;
  EXPECT_FALSE(generator_->AddAttributesFromArray(&attributes, &error));
  EXPECT_EQ(Describe(error), "RKPPDGeneration/1: Cannot add attribute: First s: 1");
  EXPECT_FALSE(generator_->AddAttributesFromArray(&attributes, nullptr));
}

}  // namespace
}  // namespace ppdforge
