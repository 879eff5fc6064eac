#include "engine/APPDGenerator.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "core/ASharedObject.h"
#include "engine/APPDObjectGenerator.h"
#include "engine/IPPDObjectGenerator.h"
#include "model/IPPDConstraint.h"
#include "model/RKPPDConstants.h"
#include "support/FakeProductInfo.h"

namespace ppdforge {
namespace {

using testing::FakeProductInfo;

std::string Describe(const AError& error) {
  return error.domain.UTF8() + "/" + std::to_string(error.code) + ": " + error.message.UTF8();
}

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
};

// Puts a creator under a name for one test and restores the registry after.
class ScopedRegistration {
 public:
  ScopedRegistration(std::string name, IPPDObjectGenerator::Creator creator)
      : name_(std::move(name)) {
    auto& factory = IPPDObjectGenerator::GetObjectFactory();
    const auto found = factory.find(name_);
    if (found != factory.end()) previous_ = found->second;
    if (creator != nullptr) {
      factory[name_] = creator;
    } else {
      factory.erase(name_);
    }
  }
  ~ScopedRegistration() {
    auto& factory = IPPDObjectGenerator::GetObjectFactory();
    if (previous_ != nullptr) {
      factory[name_] = previous_;
    } else {
      factory.erase(name_);
    }
  }
  ScopedRegistration(const ScopedRegistration&) = delete;
  ScopedRegistration& operator=(const ScopedRegistration&) = delete;

 private:
  std::string name_;
  IPPDObjectGenerator::Creator previous_ = nullptr;
};

ADictionary Dict(std::initializer_list<std::pair<const char*, AValue>> items) {
  ADictionary dictionary;
  for (const auto& [key, value] : items) dictionary.Set(key, value);
  return dictionary;
}

ADictionary Probe(const char* tag, bool result = true, const char* error = "") {
  return Dict({{"generator", "EngineProbeGenerator"}, {"tag", tag}, {"result", result},
               {"error", error}});
}

ADictionary LetterMedia() {
  return Dict({{"name", "US Letter"},
               {"PPDName", "Letter"},
               {"paperRectBottom", 792.0},
               {"paperRectRight", 612.0},
               {"pageRectLeft", 18.0},
               {"pageRectBottom", 774.0},
               {"pageRectRight", 594.0}});
}

// A product whose phases all pass: empty descriptions and one media size.
ADictionary PassingProduct() {
  return Dict({{"attributesGenerationInfo", AArray{}},
               {"optionsGenerationInfo", AArray{}},
               {"cupsUIResolversGenerationInfo", AArray{}},
               {"constraintsGenerationInfo", AArray{}},
               {"CUPSVersion", 0x120},
               {"options", Dict({{"QVPaperInfo", Dict({{"values", AArray{LetterMedia()}},
                                                        {"defaultChoice", "US Letter"}})}})}});
}

class APPDGeneratorTest : public ::testing::Test {
 protected:
  void SetUp() override { EngineProbeGenerator::Log().clear(); }

  static AScopedRef<IPPDGenerator> MakeEngine(const ADictionary& root) {
    return AScopedRef<IPPDGenerator>(IPPDGenerator::Create(std::make_shared<FakeProductInfo>(root)));
  }

  ScopedRegistration probe_{"EngineProbeGenerator",
                            &CreateRootSharedObject<IPPDObjectGenerator, EngineProbeGenerator>};
};

TEST_F(APPDGeneratorTest, ReferenceCountStartsAtOne) {
  IPPDGenerator* engine = IPPDGenerator::Create(nullptr);
  ASSERT_NE(engine, nullptr);
  EXPECT_EQ(engine->Retain(), 2);
  EXPECT_EQ(engine->Release(), 1);
  EXPECT_EQ(engine->Release(), 0);
}

TEST_F(APPDGeneratorTest, NoProductInfoFailsWithCode2AfterReset) {
  AScopedRef<IPPDGenerator> engine(IPPDGenerator::Create(nullptr));
  EXPECT_EQ(engine->GetPPD(), nullptr);
  AError error;
  EXPECT_FALSE(engine->CreatePPDObjects(&error));
  EXPECT_EQ(Describe(error), "RKPPDGeneration/2: Product info is not available.");
  ASSERT_NE(engine->GetPPD(), nullptr);
  EXPECT_EQ(engine->GetPPD()->GetLocalizer(), engine->GetPPDLocalizer());
  EXPECT_FALSE(engine->CreatePPDObjects(nullptr));
}

TEST_F(APPDGeneratorTest, EmptyDescriptionsPassEveryPhase) {
  AScopedRef<IPPDGenerator> engine = MakeEngine(PassingProduct());
  AError error = kUntouched;
  EXPECT_TRUE(engine->CreatePPDObjects(&error));
  EXPECT_EQ(error, kUntouched);
  EXPECT_EQ(engine->GetPPD()->GetPaperSizes().size(), 1u);
}

struct MissingArrayCase {
  const char* key;
  const char* expected;
  // Tags of the probes (one per phase, "a" "o" "r" "c") that ran.
  std::vector<std::string> ran;
};

class MissingArrayTest : public APPDGeneratorTest,
                         public ::testing::WithParamInterface<MissingArrayCase> {};

TEST_P(MissingArrayTest, FailsWithCode3AndStopsTheRun) {
  ADictionary root = PassingProduct();
  root.Set("attributesGenerationInfo", AArray{Probe("a")});
  root.Set("optionsGenerationInfo", AArray{Probe("o")});
  root.Set("cupsUIResolversGenerationInfo", AArray{Probe("r")});
  root.Set("constraintsGenerationInfo", AArray{Probe("c")});
  root.Remove(GetParam().key);
  AScopedRef<IPPDGenerator> engine = MakeEngine(root);
  AError error;
  EXPECT_FALSE(engine->CreatePPDObjects(&error));
  EXPECT_EQ(Describe(error), GetParam().expected);
  EXPECT_EQ(EngineProbeGenerator::Log(), GetParam().ran);
}

INSTANTIATE_TEST_SUITE_P(
    Phases, MissingArrayTest,
    ::testing::Values(
        MissingArrayCase{"attributesGenerationInfo",
                         "RKPPDGeneration/3: Cannot create PPD attributes XML description", {}},
        MissingArrayCase{"optionsGenerationInfo",
                         "RKPPDGeneration/3: Cannot create PPD options XML description", {"a@0"}},
        MissingArrayCase{"cupsUIResolversGenerationInfo",
                         "RKPPDGeneration/3: Cannot create PPD constraints XML description",
                         {"a@0", "o@1"}},
        MissingArrayCase{"constraintsGenerationInfo",
                         "RKPPDGeneration/3: Cannot create PPD constraints XML description",
                         {"a@0", "o@1", "r@1"}}));

TEST_F(APPDGeneratorTest, PhasesRunInOrderWithPageSizesSecond) {
  ADictionary root = PassingProduct();
  root.Set("attributesGenerationInfo", AArray{Probe("a1"), Probe("a2")});
  root.Set("optionsGenerationInfo", AArray{Probe("o")});
  root.Set("cupsUIResolversGenerationInfo", AArray{Probe("r")});
  root.Set("constraintsGenerationInfo", AArray{Probe("c")});
  AScopedRef<IPPDGenerator> engine = MakeEngine(root);
  EXPECT_TRUE(engine->CreatePPDObjects(nullptr));
  EXPECT_EQ(EngineProbeGenerator::Log(),
            (std::vector<std::string>{"a1@0", "a2@0", "o@1", "r@1", "c@1"}));
}

struct PhaseResultCase {
  const char* name;
  std::vector<ADictionary> descriptions;
  bool result;
  const char* error;  // nullptr: untouched
};

class PhaseResultTest : public APPDGeneratorTest,
                        public ::testing::WithParamInterface<PhaseResultCase> {};

TEST_P(PhaseResultTest, LastApplicableOrUncreatableDescriptionDecides) {
  ADictionary root = PassingProduct();
  AArray descriptions;
  for (const ADictionary& description : GetParam().descriptions) descriptions.Append(description);
  root.Set("optionsGenerationInfo", descriptions);
  root.Set("constraintsGenerationInfo", AArray{Probe("last")});
  AScopedRef<IPPDGenerator> engine = MakeEngine(root);
  AError error = kUntouched;
  EXPECT_EQ(engine->CreatePPDObjects(&error), GetParam().result);
  EXPECT_EQ(Describe(error), GetParam().error != nullptr ? GetParam().error : Describe(kUntouched));
  // Every description of the phase ran, whatever failed before it.
  std::size_t probes = 0;
  for (const ADictionary& description : GetParam().descriptions) {
    const AValue* applicable = description.Get("applicable");
    if (description.GetString("generator") == "EngineProbeGenerator" &&
        (applicable == nullptr || applicable->BoolValue())) {
      ++probes;
    }
  }
  EXPECT_EQ(EngineProbeGenerator::Log().size(), probes + (GetParam().result ? 1 : 0));
}

ADictionary Unknown(const char* name) { return Dict({{"generator", name}}); }

ADictionary NotApplicable() {
  ADictionary description = Probe("n", false, "must not run");
  description.Set("applicable", false);
  return description;
}

INSTANTIATE_TEST_SUITE_P(
    Descriptions, PhaseResultTest,
    ::testing::Values(
        PhaseResultCase{"UnknownThenGood", {Unknown("NoSuchGenerator"), Probe("g")}, true,
                        "RKPPDGeneration/1: Cannot create PPD generator with class name: "
                        "NoSuchGenerator"},
        PhaseResultCase{"GoodThenUnknown", {Probe("g"), Unknown("NoSuchGenerator")}, false,
                        "RKPPDGeneration/1: Cannot create PPD generator with class name: "
                        "NoSuchGenerator"},
        PhaseResultCase{"LaterFailureOverwritesError", {Unknown("First"), Unknown("Second")},
                        false,
                        "RKPPDGeneration/1: Cannot create PPD generator with class name: Second"},
        PhaseResultCase{"FailureThenSuccess", {Probe("f", false, "probe failed"), Probe("g")},
                        true, "RKPPDGeneration/1: probe failed"},
        PhaseResultCase{"FailureThenNotApplicable",
                        {Probe("f", false, "probe failed"), NotApplicable()}, false,
                        "RKPPDGeneration/1: probe failed"},
        PhaseResultCase{"OnlyNotApplicable", {NotApplicable()}, true, nullptr},
        PhaseResultCase{"ClassNameIsCaseSensitive", {Unknown("engineprobegenerator")}, false,
                        "RKPPDGeneration/1: Cannot create PPD generator with class name: "
                        "engineprobegenerator"}),
    [](const ::testing::TestParamInfo<PhaseResultCase>& param) { return param.param.name; });

TEST_F(APPDGeneratorTest, MissingOrEmptyClassNameSelectsThePhaseDefault) {
  ADictionary root = PassingProduct();
  root.Set("attributesGenerationInfo",
           AArray{Dict({{"name", "ModelName"}, {"value", "One"}}),
                  Dict({{"generator", ""}, {"name", "ShortNickName"}, {"value", "Two"}})});
  AScopedRef<IPPDGenerator> engine = MakeEngine(root);
  ASSERT_TRUE(engine->CreatePPDObjects(nullptr));
  EXPECT_EQ(engine->GetPPD()->GetAttributeValueWithNameAndSpec("ModelName", nullptr), "One");
  EXPECT_EQ(engine->GetPPD()->GetAttributeValueWithNameAndSpec("ShortNickName", nullptr), "Two");
}

TEST_F(APPDGeneratorTest, NonDictionaryElementRunsTheDefaultWithoutParameters) {
  ScopedRegistration probeAsDefault(
      "APPDGenericAttributesGenerator",
      &CreateRootSharedObject<IPPDObjectGenerator, EngineProbeGenerator>);
  ADictionary root = PassingProduct();
  root.Set("attributesGenerationInfo", AArray{AValue("junk"), AValue(7)});
  AScopedRef<IPPDGenerator> engine = MakeEngine(root);
  EXPECT_TRUE(engine->CreatePPDObjects(nullptr));
  EXPECT_EQ(EngineProbeGenerator::Log(), (std::vector<std::string>{"@0", "@0"}));
}

// Never applicable: stands in for the page sizes generator.
class InapplicableGenerator : public APPDObjectGenerator {
 public:
  bool IsApplicable() const override { return false; }
  bool Generate(AError* error) override { return SetError(error, 1, "must not run"); }
};

TEST_F(APPDGeneratorTest, InapplicablePageSizesGeneratorPassesThePhase) {
  ScopedRegistration inapplicable(
      "APPDPageSizesGenerator", &CreateRootSharedObject<IPPDObjectGenerator, InapplicableGenerator>);
  ADictionary root = PassingProduct();
  root.Remove("options");
  root.Set("optionsGenerationInfo", AArray{Probe("o")});
  AScopedRef<IPPDGenerator> engine = MakeEngine(root);
  AError error = kUntouched;
  EXPECT_TRUE(engine->CreatePPDObjects(&error));
  EXPECT_EQ(error, kUntouched);
  EXPECT_EQ(EngineProbeGenerator::Log(), (std::vector<std::string>{"o@0"}));
}

TEST_F(APPDGeneratorTest, WithoutMediaThePageSizesPhaseFailsSilently) {
  ADictionary root = PassingProduct();
  root.Remove("options");
  root.Set("optionsGenerationInfo", AArray{Probe("o")});
  AScopedRef<IPPDGenerator> engine = MakeEngine(root);
  AError error = kUntouched;
  EXPECT_FALSE(engine->CreatePPDObjects(&error));
  EXPECT_EQ(error, kUntouched);
  EXPECT_TRUE(EngineProbeGenerator::Log().empty());
}

TEST_F(APPDGeneratorTest, UnregisteredPageSizesGeneratorIsReported) {
  ScopedRegistration removed("APPDPageSizesGenerator", nullptr);
  ADictionary root = PassingProduct();
  root.Set("optionsGenerationInfo", AArray{Probe("o")});
  AScopedRef<IPPDGenerator> engine = MakeEngine(root);
  AError error;
  EXPECT_FALSE(engine->CreatePPDObjects(&error));
  EXPECT_EQ(Describe(error), "RKPPDGeneration/1: Cannot create page size PPD generator");
  EXPECT_TRUE(EngineProbeGenerator::Log().empty());
}

TEST_F(APPDGeneratorTest, SecondRunStartsFromAnEmptyDocumentAndKeepsTheLocalizer) {
  ADictionary root = PassingProduct();
  root.Set("attributesGenerationInfo", AArray{Dict({{"name", "ModelName"}, {"value", "One"}})});
  AScopedRef<IPPDGenerator> engine = MakeEngine(root);
  ASSERT_TRUE(engine->CreatePPDObjects(nullptr));
  IPPDLocalizer* localizer = engine->GetPPDLocalizer();
  engine->GetPPD()->AddAttribute("Extra", "x", "", "", kPPDQuotedValue, "");
  ASSERT_TRUE(engine->CreatePPDObjects(nullptr));
  std::vector<IPPDAttribute*> attributes;
  engine->GetPPD()->GetAttributesWithNameAndSpec("ModelName", nullptr, attributes);
  EXPECT_EQ(attributes.size(), 1u);
  engine->GetPPD()->GetAttributesWithNameAndSpec("Extra", nullptr, attributes);
  EXPECT_TRUE(attributes.empty());
  EXPECT_EQ(engine->GetPPD()->GetPaperSizes().size(), 1u);
  EXPECT_EQ(engine->GetPPDLocalizer(), localizer);
  EXPECT_EQ(engine->GetPPD()->GetLocalizer(), localizer);
}

TEST_F(APPDGeneratorTest, MainLocaleIsStoredAsLocalizationName) {
  AScopedRef<IPPDGenerator> engine = MakeEngine(PassingProduct());
  ASSERT_TRUE(engine->CreatePPDObjects(nullptr));
  engine->SetMainLocale("fr");
  engine->SetMainLocale("de");
  engine->SetMainLocale("");
  std::vector<IPPDAttribute*> attributes;
  engine->GetPPD()->GetAttributesWithNameAndSpec("LanguageVersion", nullptr, attributes);
  ASSERT_EQ(attributes.size(), 1u);
  EXPECT_EQ(attributes[0]->GetValue(), "German");
  EXPECT_EQ(attributes[0]->GetValueType(), kPPDStringValue);
  EXPECT_EQ(engine->GetMainLocale(), "de");
}

TEST_F(APPDGeneratorTest, SupportedLocalesLeaveOutTheMainLocale) {
  AScopedRef<IPPDGenerator> engine = MakeEngine(PassingProduct());
  ASSERT_TRUE(engine->CreatePPDObjects(nullptr));
  engine->SetMainLocale("en");
  engine->SetSupportedLocales({"ja"});
  engine->SetSupportedLocales({"en", "fr", "de"});
  std::vector<IPPDAttribute*> attributes;
  engine->GetPPD()->GetAttributesWithNameAndSpec("cupsLanguages", nullptr, attributes);
  ASSERT_EQ(attributes.size(), 1u);
  EXPECT_EQ(attributes[0]->GetValue(), "fr de");
  EXPECT_EQ(attributes[0]->GetValueType(), kPPDQuotedValue);
  EXPECT_EQ(engine->GetSupportedLocales(), (std::vector<AQVString>{"en", "fr", "de"}));

  // An empty list changes nothing; a list of the main locale alone leaves an empty value.
  engine->SetSupportedLocales({});
  EXPECT_EQ(engine->GetPPD()->GetAttributeValueWithNameAndSpec("cupsLanguages", nullptr), "fr de");
  engine->SetSupportedLocales({"en"});
  engine->GetPPD()->GetAttributesWithNameAndSpec("cupsLanguages", nullptr, attributes);
  ASSERT_EQ(attributes.size(), 1u);
  EXPECT_EQ(attributes[0]->GetValue(), "");
}

TEST_F(APPDGeneratorTest, SupportedLocalesNeedCUPS120) {
  ADictionary root = PassingProduct();
  root.Set("CUPSVersion", 0x11F);
  AScopedRef<IPPDGenerator> engine = MakeEngine(root);
  ASSERT_TRUE(engine->CreatePPDObjects(nullptr));
  engine->SetSupportedLocales({"en", "fr", "de"});
  std::vector<IPPDAttribute*> attributes;
  engine->GetPPD()->GetAttributesWithNameAndSpec("cupsLanguages", nullptr, attributes);
  EXPECT_TRUE(attributes.empty());
}

TEST_F(APPDGeneratorTest, SupportedLocalesWithoutCupsLanguagesAreTheMainLocale) {
  AScopedRef<IPPDGenerator> engine = MakeEngine(PassingProduct());
  ASSERT_TRUE(engine->CreatePPDObjects(nullptr));
  engine->SetMainLocale("ja");
  EXPECT_EQ(engine->GetSupportedLocales(), (std::vector<AQVString>{"ja"}));
}

TEST_F(APPDGeneratorTest, LocaleAttributesKeepTheirFirstPlaceInTheText) {
  AScopedRef<IPPDGenerator> engine = MakeEngine(PassingProduct());
  ASSERT_TRUE(engine->CreatePPDObjects(nullptr));
  engine->SetMainLocale("en");
  engine->SetSupportedLocales({"fr"});
  engine->GetPPD()->AddAttribute("ModelName", "Probe", "", "", kPPDQuotedValue, "");
  engine->SetMainLocale("en");
  engine->SetSupportedLocales({"de"});
  AError error = kUntouched;
  const AQVString text = engine->GetPPD()->GetStringRepresentation(&error);
  EXPECT_EQ(error, kUntouched);
  const std::string& utf8 = text.UTF8();
  ASSERT_EQ(utf8.rfind("*LanguageVersion: English\n*cupsLanguages: \"de\"\n*ModelName: \"Probe\"\n",
                       0),
            0u)
      << utf8;
}

TEST_F(APPDGeneratorTest, BundleStringsReachTheLocalizer) {
  const std::filesystem::path bundle =
      std::filesystem::temp_directory_path() / ("ppdforge-engine-bundle-" + std::to_string(::getpid()));
  std::filesystem::create_directories(bundle / "Resources" / "fr.lproj");
  {
    std::ofstream table(bundle / "Resources" / "fr.lproj" / "Localizable.strings");
    table << "\"Paper Size\" = \"Taille du papier\";\n";
  }
  AScopedRef<IPPDGenerator> engine = MakeEngine(PassingProduct());
  engine->AddLocalizedStringsFromBundleAtPath(AQVString((bundle / "Resources" / "fr.lproj" /
                                                         "Localizable.strings").string()));
  engine->AddLocalizedStringsFromBundleAtPath(AQVString((bundle / "missing").string()));
  EXPECT_EQ(engine->GetPPDLocalizer()->Localize("Paper Size", "fr"), "Paper Size");
  engine->AddLocalizedStringsFromBundleAtPath(AQVString(bundle.string()));
  EXPECT_EQ(engine->GetPPDLocalizer()->Localize("Paper Size", "fr"), "Taille du papier");
  std::filesystem::remove_all(bundle);
}

TEST_F(APPDGeneratorTest, RemoveUIConstraintBetweenMatchesEitherSide) {
  AScopedRef<IPPDGenerator> engine = MakeEngine(PassingProduct());
  ASSERT_TRUE(engine->CreatePPDObjects(nullptr));
  IPPD* ppd = engine->GetPPD();
  const auto add = [ppd](const char* o0, const char* c0, const char* o1, const char* c1) {
    AScopedRef<IPPDConstraint> constraint(
        IPPDConstraint::Create(AArray{o0, o1}, AArray{c0, c1}, "", false, false, ""));
    ppd->AddConstraint(constraint.get(), false);
  };
  add("Duplex", "DuplexNoTumble", "MediaType", "Transparency");
  add("Duplex", "DuplexNoTumble", "PageSize", "Env10");
  add("MediaType", "Transparency", "Duplex", "DuplexNoTumble");
  add("Duplex", "None", "MediaType", "Transparency");

  static_cast<APPDGenerator*>(engine.get())
      ->RemoveUIConstraintBetween("Duplex", "DuplexNoTumble", "MediaType", "Transparency");

  ASSERT_EQ(ppd->GetConstraints().size(), 2u);
  EXPECT_EQ(ppd->GetConstraints()[0]->GetOptionAtIndex(1), "PageSize");
  EXPECT_EQ(ppd->GetConstraints()[1]->GetChoiceAtIndex(0), "None");
}

struct ExtractCase {
  const char* text;
  std::vector<std::pair<const char*, const char*>> expected;
};

class ExtractOptionsTest : public APPDGeneratorTest,
                           public ::testing::WithParamInterface<ExtractCase> {};

TEST_P(ExtractOptionsTest, KeywordToLastWord) {
  AScopedRef<IPPDGenerator> engine = MakeEngine(PassingProduct());
  const ADictionary result =
      static_cast<APPDGenerator*>(engine.get())->ExtractOptionsAndChoicesFromString(GetParam().text);
  ADictionary expected;
  for (const auto& [key, value] : GetParam().expected) expected.Set(key, value);
  EXPECT_TRUE(result == expected) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(
    Texts, ExtractOptionsTest,
    ::testing::Values(ExtractCase{"*PageSize A4 *Duplex None", {{"PageSize", "A4"}, {"Duplex", "None"}}},
                      ExtractCase{"*PageSize", {{"PageSize", ""}}},
                      ExtractCase{"*PageSize A4 *PageSize Letter", {{"PageSize", "Letter"}}},
                      ExtractCase{"  * Resolution \t300dpi  600dpi *  ", {{"Resolution", "600dpi"}}},
                      ExtractCase{"", {}}, ExtractCase{"* * *", {}}));

}  // namespace
}  // namespace ppdforge
