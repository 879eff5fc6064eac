// The engine's phases and locales, and the object generator base: registry,
// initialisation and attributes read from a description.

#include "engine/APPDGenerator.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/ASharedObject.h"
#include "engine/APPDObjectGenerator.h"
#include "model/IPPDConstraint.h"
#include "support/GeneratorTestSupport.h"

namespace ppdforge {
namespace {

using testing::Describe;
using testing::Dict;

const AError kUntouched{"untouched", 99, "untouched"};

// Records each run as "tag@N" (N: paper sizes in the document at that time)
// and succeeds or fails as its description says.
class EngineProbeGenerator : public APPDObjectGenerator {
 public:
  static std::vector<std::string>& Log() {
    static std::vector<std::string> log;
    return log;
  }
  bool IsApplicable() const override {
    const AValue* applicable = GetParams().Get("applicable");
    return applicable == nullptr || applicable->BoolValue();
  }
  bool Generate(AError* error) override {
    Log().push_back(GetParams().GetString("tag").UTF8() + "@" +
                    std::to_string(GetPPDGenerator()->GetPPD()->GetPaperSizes().size()));
    const AValue* result = GetParams().Get("result");
    if (result == nullptr || result->BoolValue()) return true;
    return SetError(error, 1, GetParams().GetString("error"));
  }
  using APPDObjectGenerator::AddAttributesFromArray;
  using APPDObjectGenerator::GetParams;
  using APPDObjectGenerator::GetPPDGenerator;
};

// Never applicable: stands in for the page sizes generator.
class InapplicableGenerator : public EngineProbeGenerator {
 public:
  bool IsApplicable() const override { return false; }
};

// Puts a creator under a name for one test and restores the registry after.
class ScopedRegistration {
 public:
  ScopedRegistration(std::string name, IPPDObjectGenerator::Creator creator) : name_(std::move(name)) {
    auto& factory = IPPDObjectGenerator::GetObjectFactory();
    const auto found = factory.find(name_);
    if (found != factory.end()) previous_ = found->second;
    Put(creator);
  }
  ~ScopedRegistration() { Put(previous_); }
  ScopedRegistration(const ScopedRegistration&) = delete;
  ScopedRegistration& operator=(const ScopedRegistration&) = delete;

 private:
  void Put(IPPDObjectGenerator::Creator creator) {
    auto& factory = IPPDObjectGenerator::GetObjectFactory();
    if (creator != nullptr) {
      factory[name_] = creator;
    } else {
      factory.erase(name_);
    }
  }
  std::string name_;
  IPPDObjectGenerator::Creator previous_ = nullptr;
};

template <class T>
constexpr IPPDObjectGenerator::Creator kCreate = &CreateRootSharedObject<IPPDObjectGenerator, T>;

ADictionary Probe(const char* tag, bool result = true, const char* error = "") {
  return Dict({{"generator", "EngineProbeGenerator"}, {"tag", tag}, {"result", result}, {"error", error}});
}

// A product whose phases all pass: empty descriptions and one media size.
ADictionary PassingProduct() {
  ADictionary root = testing::MinimalProductRoot();
  root.Set("CUPSVersion", 0x120);
  return root;
}

class APPDGeneratorTest : public ::testing::Test {
 protected:
  void SetUp() override { EngineProbeGenerator::Log().clear(); }
  static AScopedRef<IPPDGenerator> MakeEngine(const ADictionary& root) {
    return AScopedRef<IPPDGenerator>(IPPDGenerator::Create(std::make_shared<testing::FakeProductInfo>(root)));
  }
  static std::vector<std::string> Values(IPPDGenerator& engine, const char* name) {
    std::vector<IPPDAttribute*> attributes;
    engine.GetPPD()->GetAttributesWithNameAndSpec(name, nullptr, attributes);
    std::vector<std::string> values;
    for (const IPPDAttribute* attribute : attributes) values.push_back(attribute->GetValue().UTF8());
    return values;
  }
  ScopedRegistration probe_{"EngineProbeGenerator", kCreate<EngineProbeGenerator>};
};

TEST_F(APPDGeneratorTest, NoProductInfoFailsWithCode2AfterReset) {
  AScopedRef<IPPDGenerator> engine(IPPDGenerator::Create(nullptr));
  EXPECT_EQ(engine->GetPPD(), nullptr);
  AError error;
  EXPECT_FALSE(engine->CreatePPDObjects(&error));
  EXPECT_EQ(Describe(error), "RKPPDGeneration/2: Product info is not available.");
  ASSERT_NE(engine->GetPPD(), nullptr);
  EXPECT_EQ(engine->GetPPD()->GetLocalizer(), engine->GetPPDLocalizer());
}

// Phases run in order with the page sizes after the attributes; a missing
// description array stops the run. Every description of a phase runs,
// whatever failed before it: the last applicable or uncreatable one decides,
// and a later error overwrites an earlier one.
TEST_F(APPDGeneratorTest, RunsThePhasesInOrderAndTheLastDescriptionDecides) {
  ADictionary notApplicable = Probe("n", false, "must not run");
  notApplicable.Set("applicable", false);
  const ADictionary unknown = Dict({{"generator", "NoSuchGenerator"}});
  const char* const kUnknown = "RKPPDGeneration/1: Cannot create PPD generator with class name: NoSuchGenerator";
  const char* const kConstraints = "RKPPDGeneration/3: Cannot create PPD constraints XML description";
  enum PageSizes { kRegistered, kInapplicable, kUnregistered };
  const struct {
    const char* name;
    AArray options;
    const char* removed;  // null: nothing
    PageSizes pageSizes;
    bool result;
    const char* error;  // null: untouched
    std::vector<std::string> ran;
  } cases[] = {
      {"all phases", {Probe("o")}, nullptr, kRegistered, true, nullptr, {"a1@0", "a2@0", "o@1", "r@1", "c@1"}},
      {"no attributes", {Probe("o")}, "attributesGenerationInfo", kRegistered, false,
       "RKPPDGeneration/3: Cannot create PPD attributes XML description", {}},
      {"no options", {Probe("o")}, "optionsGenerationInfo", kRegistered, false,
       "RKPPDGeneration/3: Cannot create PPD options XML description", {"a1@0", "a2@0"}},
      {"no resolvers", {Probe("o")}, "cupsUIResolversGenerationInfo", kRegistered, false, kConstraints,
       {"a1@0", "a2@0", "o@1"}},
      {"no constraints", {Probe("o")}, "constraintsGenerationInfo", kRegistered, false, kConstraints,
       {"a1@0", "a2@0", "o@1", "r@1"}},
      {"unknown then good", {unknown, Probe("g")}, nullptr, kRegistered, true, kUnknown,
       {"a1@0", "a2@0", "g@1", "r@1", "c@1"}},
      {"good then unknown", {Probe("g"), unknown}, nullptr, kRegistered, false, kUnknown, {"a1@0", "a2@0", "g@1"}},
      {"later failure overwrites", {Dict({{"generator", "First"}}), Dict({{"generator", "Second"}})}, nullptr,
       kRegistered, false, "RKPPDGeneration/1: Cannot create PPD generator with class name: Second", {"a1@0", "a2@0"}},
      {"failure then success", {Probe("f", false, "probe failed"), Probe("g")}, nullptr, kRegistered, true,
       "RKPPDGeneration/1: probe failed", {"a1@0", "a2@0", "f@1", "g@1", "r@1", "c@1"}},
      {"failure then not applicable", {Probe("f", false, "probe failed"), notApplicable}, nullptr, kRegistered, false,
       "RKPPDGeneration/1: probe failed", {"a1@0", "a2@0", "f@1"}},
      {"only not applicable", {notApplicable}, nullptr, kRegistered, true, nullptr, {"a1@0", "a2@0", "r@1", "c@1"}},
      {"class names are case-sensitive", {Dict({{"generator", "engineprobegenerator"}})}, nullptr, kRegistered, false,
       "RKPPDGeneration/1: Cannot create PPD generator with class name: engineprobegenerator", {"a1@0", "a2@0"}},
      {"no media fails silently", {Probe("o")}, "options", kRegistered, false, nullptr, {"a1@0", "a2@0"}},
      {"inapplicable page sizes generator passes", {Probe("o")}, "options", kInapplicable, true, nullptr,
       {"a1@0", "a2@0", "o@0", "r@0", "c@0"}},
      {"unregistered page sizes generator", {Probe("o")}, nullptr, kUnregistered, false,
       "RKPPDGeneration/1: Cannot create page size PPD generator", {"a1@0", "a2@0"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EngineProbeGenerator::Log().clear();
    std::optional<ScopedRegistration> pageSizes;
    if (c.pageSizes != kRegistered) {
      pageSizes.emplace("APPDPageSizesGenerator", c.pageSizes == kInapplicable ? kCreate<InapplicableGenerator> : nullptr);
    }
    ADictionary root = PassingProduct();
    root.Set("attributesGenerationInfo", AArray{Probe("a1"), Probe("a2")});
    root.Set("optionsGenerationInfo", c.options);
    root.Set("cupsUIResolversGenerationInfo", AArray{Probe("r")});
    root.Set("constraintsGenerationInfo", AArray{Probe("c")});
    if (c.removed != nullptr) root.Remove(c.removed);
    AError error = kUntouched;
    EXPECT_EQ(MakeEngine(root)->CreatePPDObjects(&error), c.result);
    EXPECT_EQ(Describe(error), c.error != nullptr ? c.error : Describe(kUntouched));
    EXPECT_EQ(EngineProbeGenerator::Log(), c.ran);
  }
}

TEST_F(APPDGeneratorTest, MissingEmptyOrNonDictionaryDescriptionsRunThePhaseDefault) {
  ADictionary root = PassingProduct();
  root.Set("attributesGenerationInfo", AArray{Dict({{"name", "ModelName"}, {"value", "One"}}),
                                              Dict({{"generator", ""}, {"name", "ShortNickName"}, {"value", "Two"}})});
  AScopedRef<IPPDGenerator> engine = MakeEngine(root);
  ASSERT_TRUE(engine->CreatePPDObjects(nullptr));
  EXPECT_EQ(Values(*engine.get(), "ModelName"), std::vector<std::string>{"One"});
  EXPECT_EQ(Values(*engine.get(), "ShortNickName"), std::vector<std::string>{"Two"});

  // A second run starts from an empty document and keeps the localizer.
  IPPDLocalizer* localizer = engine->GetPPDLocalizer();
  engine->GetPPD()->AddAttribute("Extra", "x", "", "", kPPDQuotedValue, "");
  ASSERT_TRUE(engine->CreatePPDObjects(nullptr));
  EXPECT_EQ(Values(*engine.get(), "ModelName"), std::vector<std::string>{"One"});
  EXPECT_TRUE(Values(*engine.get(), "Extra").empty());
  EXPECT_EQ(engine->GetPPD()->GetPaperSizes().size(), 1u);
  EXPECT_EQ(engine->GetPPDLocalizer(), localizer);
  EXPECT_EQ(engine->GetPPD()->GetLocalizer(), localizer);

  ScopedRegistration probeAsDefault("APPDGenericAttributesGenerator", kCreate<EngineProbeGenerator>);
  root.Set("attributesGenerationInfo", AArray{AValue("junk"), AValue(7)});
  EXPECT_TRUE(MakeEngine(root)->CreatePPDObjects(nullptr));
  EXPECT_EQ(EngineProbeGenerator::Log(), (std::vector<std::string>{"@0", "@0"}));
}

TEST_F(APPDGeneratorTest, LocalesBecomeLanguageVersionAndCupsLanguages) {
  AScopedRef<IPPDGenerator> engine = MakeEngine(PassingProduct());
  ASSERT_TRUE(engine->CreatePPDObjects(nullptr));
  engine->SetMainLocale("ja");
  // Without cupsLanguages the supported locales are the main one.
  EXPECT_EQ(engine->GetSupportedLocales(), (std::vector<AQVString>{"ja"}));
  engine->SetMainLocale("fr");
  engine->SetMainLocale("de");
  engine->SetMainLocale("");
  EXPECT_EQ(Values(*engine.get(), "LanguageVersion"), std::vector<std::string>{"German"});
  EXPECT_EQ(engine->GetMainLocale(), "de");

  engine->SetMainLocale("en");
  engine->SetSupportedLocales({"ja"});
  engine->SetSupportedLocales({"en", "fr", "de"});
  EXPECT_EQ(Values(*engine.get(), "cupsLanguages"), std::vector<std::string>{"fr de"});
  EXPECT_EQ(engine->GetSupportedLocales(), (std::vector<AQVString>{"en", "fr", "de"}));
  // An empty list changes nothing; the main locale alone leaves an empty value.
  engine->SetSupportedLocales({});
  EXPECT_EQ(Values(*engine.get(), "cupsLanguages"), std::vector<std::string>{"fr de"});
  engine->SetSupportedLocales({"en"});
  EXPECT_EQ(Values(*engine.get(), "cupsLanguages"), std::vector<std::string>{""});

  // The locale attributes keep their first place in the text.
  engine->GetPPD()->AddAttribute("ModelName", "Probe", "", "", kPPDQuotedValue, "");
  engine->SetMainLocale("en");
  engine->SetSupportedLocales({"de"});
  AError error = kUntouched;
  const std::string text = engine->GetPPD()->GetStringRepresentation(&error).UTF8();
  EXPECT_EQ(error, kUntouched);
  EXPECT_EQ(text.rfind("*LanguageVersion: English\n*cupsLanguages: \"de\"\n*ModelName: \"Probe\"\n", 0), 0u) << text;

  // Before CUPS 1.2 there is no cupsLanguages.
  ADictionary old = PassingProduct();
  old.Set("CUPSVersion", 0x11F);
  AScopedRef<IPPDGenerator> oldEngine = MakeEngine(old);
  ASSERT_TRUE(oldEngine->CreatePPDObjects(nullptr));
  oldEngine->SetSupportedLocales({"en", "fr", "de"});
  EXPECT_TRUE(Values(*oldEngine.get(), "cupsLanguages").empty());
}

TEST_F(APPDGeneratorTest, RemoveUIConstraintBetweenMatchesEitherSide) {
  AScopedRef<IPPDGenerator> engine = MakeEngine(PassingProduct());
  ASSERT_TRUE(engine->CreatePPDObjects(nullptr));
  IPPD* ppd = engine->GetPPD();
  for (const auto& pair : {std::vector<const char*>{"Duplex", "DuplexNoTumble", "MediaType", "Transparency"},
                           {"Duplex", "DuplexNoTumble", "PageSize", "Env10"},
                           {"MediaType", "Transparency", "Duplex", "DuplexNoTumble"},
                           {"Duplex", "None", "MediaType", "Transparency"}}) {
    AScopedRef<IPPDConstraint> constraint(
        IPPDConstraint::Create(AArray{pair[0], pair[2]}, AArray{pair[1], pair[3]}, "", false, false, ""));
    ppd->AddConstraint(constraint.get(), false);
  }
  static_cast<APPDGenerator*>(engine.get())
      ->RemoveUIConstraintBetween("Duplex", "DuplexNoTumble", "MediaType", "Transparency");
  ASSERT_EQ(ppd->GetConstraints().size(), 2u);
  EXPECT_EQ(ppd->GetConstraints()[0]->GetOptionAtIndex(1), "PageSize");
  EXPECT_EQ(ppd->GetConstraints()[1]->GetChoiceAtIndex(0), "None");
}

TEST_F(APPDGeneratorTest, ExtractOptionsTakesEachKeywordToItsLastWord) {
  AScopedRef<IPPDGenerator> engine = MakeEngine(PassingProduct());
  const std::pair<const char*, ADictionary> cases[] = {
      {"*PageSize A4 *Duplex None", Dict({{"PageSize", "A4"}, {"Duplex", "None"}})},
      {"*PageSize", Dict({{"PageSize", ""}})},
      {"*PageSize A4 *PageSize Letter", Dict({{"PageSize", "Letter"}})},
      {"  * Resolution \t300dpi  600dpi *  ", Dict({{"Resolution", "600dpi"}})},
      {"", Dict({})},
      {"* * *", Dict({})},
  };
  for (const auto& [text, expected] : cases) {
    EXPECT_TRUE(static_cast<APPDGenerator*>(engine.get())->ExtractOptionsAndChoicesFromString(text) == expected)
        << text;
  }
}

constexpr const char* kTestName = "FrameworkTestGenerator";

class APPDObjectGeneratorTest : public APPDGeneratorTest {
 protected:
  void SetUp() override { IPPDObjectGenerator::GetObjectFactory().erase(kTestName); }
  void TearDown() override { IPPDObjectGenerator::GetObjectFactory().erase(kTestName); }
  // The engine's count, read without changing it.
  std::int32_t EngineCount() const {
    engine_->Retain();
    return engine_->Release();
  }
  AScopedRef<IPPDGenerator> engine_{IPPDGenerator::Create(std::make_shared<testing::FakeProductInfo>())};
};

TEST_F(APPDObjectGeneratorTest, RegistryCreatesByExactNameAndTheFirstRegistrationWins) {
  APPDObjectGeneratorRegistration<EngineProbeGenerator> registration(kTestName);
  const IPPDObjectGenerator::Creator creator = IPPDObjectGenerator::GetObjectFactory().at(kTestName);
  APPDObjectGeneratorRegistration<InapplicableGenerator> second(kTestName);
  EXPECT_EQ(IPPDObjectGenerator::GetObjectFactory().at(kTestName), creator);

  const ADictionary description = Dict({{"name", "ModelName"}});
  IPPDObjectGenerator* created = IPPDObjectGenerator::Create(kTestName, engine_.get(), &description);
  ASSERT_NE(created, nullptr);
  auto* generator = static_cast<EngineProbeGenerator*>(created);
  EXPECT_EQ(generator->GetPPDGenerator(), engine_.get());
  EXPECT_TRUE(generator->GetParams() == description);
  EXPECT_EQ(EngineCount(), 2);
  EXPECT_EQ(created->Release(), 0);
  EXPECT_EQ(EngineCount(), 1);

  AScopedRef<IPPDObjectGenerator> bare(IPPDObjectGenerator::Create(kTestName, engine_.get(), nullptr));
  EXPECT_TRUE(static_cast<EngineProbeGenerator*>(bare.get())->GetParams().IsEmpty());
  for (const char* name : {"frameworktestgenerator", "FrameworkTestGenerator ", "FrameworkTest", ""}) {
    EXPECT_EQ(IPPDObjectGenerator::Create(name, engine_.get(), nullptr), nullptr) << name;
  }
  EXPECT_EQ(EngineCount(), 2);
  ScopedRegistration failing(kTestName, [] { return static_cast<IPPDObjectGenerator*>(nullptr); });
  EXPECT_EQ(IPPDObjectGenerator::Create(kTestName, engine_.get(), nullptr), nullptr);
}

TEST_F(APPDObjectGeneratorTest, InitialiseAgainMovesTheEngineReference) {
  AScopedRef<IPPDGenerator> other(IPPDGenerator::Create(nullptr));
  AScopedRef<EngineProbeGenerator> generator(CreateSharedObject<EngineProbeGenerator>());
  const ADictionary description = Dict({{"value", "1"}});
  generator->Initialize(engine_.get(), &description);
  generator->Initialize(engine_.get(), nullptr);
  EXPECT_EQ(EngineCount(), 2);
  // A null description keeps the copy already held.
  EXPECT_TRUE(generator->GetParams() == description);
  generator->Initialize(other.get(), nullptr);
  EXPECT_EQ(EngineCount(), 1);
  EXPECT_EQ(generator->GetPPDGenerator(), other.get());
}

TEST_F(APPDObjectGeneratorTest, AddAttributesFromArraySkipsIncompleteElementsAndStopsAtARefusal) {
  ASSERT_FALSE(engine_->CreatePPDObjects(nullptr));  // resets the document; no phases
  AScopedRef<EngineProbeGenerator> generator(CreateSharedObject<EngineProbeGenerator>());
  generator->Initialize(engine_.get(), nullptr);
  EXPECT_TRUE(generator->AddAttributesFromArray(nullptr, nullptr));
  const AArray empty;
  EXPECT_TRUE(generator->AddAttributesFromArray(&empty, nullptr));
  const AArray attributes{
      Dict({{"name", "NoValue"}}),
      Dict({{"name", "EmptyValue"}, {"value", ""}}),
      Dict({{"name", ""}, {"value", "NoName"}}),
      AValue("not a dictionary"),
      Dict({{"name", "Full"}, {"value", "v"}, {"spec", "s"}, {"translation", "t"}, {"comment", "c"}, {"value-type", "3"}}),
      Dict({{"name", "Plain"}, {"value", "p"}}),
      Dict({{"name", "Numbered"}, {"value", "n"}, {"value-type", 2}}),
  };
  AError error = kUntouched;
  EXPECT_TRUE(generator->AddAttributesFromArray(&attributes, &error));
  EXPECT_EQ(error, kUntouched);
  EXPECT_EQ(engine_->GetPPD()->GetStringRepresentation(nullptr),
            "*% c\n*Full s/t: v\n*Plain: \"p\"\n*Numbered: ^n\n\n\n");

  // A generator whose engine has no document is refused everything.
  AScopedRef<IPPDGenerator> bare(IPPDGenerator::Create(nullptr));
  generator->Initialize(bare.get(), nullptr);
  const AArray refused{Dict({{"name", "Skipped"}}), Dict({{"name", "First"}, {"value", "1"}, {"spec", "s"}}),
                       Dict({{"name", "Second"}, {"value", "2"}})};
  EXPECT_FALSE(generator->AddAttributesFromArray(&refused, &error));
  EXPECT_EQ(Describe(error), "RKPPDGeneration/1: Cannot add attribute: First s: 1");
  EXPECT_FALSE(generator->AddAttributesFromArray(&refused, nullptr));
}

}  // namespace
}  // namespace ppdforge
