#include "support/GeneratorTestSupport.h"

#include "facade/APlistProductInfo.h"
#include "model/IPPDChoice.h"
#include "model/IPPDConstraint.h"
#include "model/IPPDGroup.h"
#include "model/IPPDOption.h"

namespace ppdforge::testing {

ADictionary Dict(Entries entries) {
  ADictionary dictionary;
  for (const auto& [key, value] : entries) dictionary.Set(key, value);
  return dictionary;
}

std::string Describe(const AError& error) {
  return error.domain.UTF8() + "/" + std::to_string(error.code) + ": " + error.message.UTF8();
}

std::vector<std::string> Strings(const AArray& array) {
  std::vector<std::string> out;
  for (std::size_t i = 0; i < array.Count(); ++i) out.push_back(array.GetStringAt(i).UTF8());
  return out;
}

std::string ValueLabel(const AValue& value) {
  const AQVString* text = value.AsString();
  return text != nullptr ? text->UTF8() : std::to_string(value.IntegerValue());
}

ADictionary MediaSize(const char* ppdName, const char* name, double width, double height,
                      double margin) {
  return Dict({{"name", name},
               {"PPDName", ppdName},
               {"paperRectTop", 0.0},
               {"paperRectLeft", 0.0},
               {"paperRectBottom", height},
               {"paperRectRight", width},
               {"pageRectTop", margin},
               {"pageRectLeft", margin},
               {"pageRectBottom", height - margin},
               {"pageRectRight", width - margin}});
}

ADictionary SettingValue(const char* name, const char* userName) {
  return Dict({{"name", name}, {"userName", userName}});
}

ADictionary Setting(const AArray& values, const char* defaultChoice) {
  ADictionary setting = Dict({{"values", values}});
  if (defaultChoice != nullptr) setting.Set("defaultChoice", defaultChoice);
  return setting;
}

ADictionary Choice(const char* id, const char* name, const char* code) {
  return Dict({{"id", id}, {"name", name != nullptr ? name : id}, {"code", code}});
}

ADictionary ProductRoot(const AArray& media, const char* defaultChoice) {
  return Dict({{"attributesGenerationInfo", AArray()},
               {"optionsGenerationInfo", AArray()},
               {"cupsUIResolversGenerationInfo", AArray()},
               {"constraintsGenerationInfo", AArray()},
               {"options", Dict({{"QVPaperInfo", Setting(media, defaultChoice)}})}});
}

ADictionary MinimalProductRoot() {
  return ProductRoot(AArray{MediaSize("A4", "A4", 595, 842, 12)}, "A4");
}

void SetNested(ADictionary& root, const char* dictionaryKey, const char* key, const AValue& value) {
  ADictionary inner;
  root.GetDictionary(dictionaryKey, inner);
  inner.Set(key, value);
  root.Set(dictionaryKey, inner);
}

std::filesystem::path GoldenFile(const char* name) {
  return std::filesystem::path(PPDFORGE_SOURCE_DIR) / "tests/golden" / name;
}

std::string GenerateFromProductFile(const std::filesystem::path& productFile,
                                    const std::filesystem::path& bundle,
                                    const std::vector<AQVString>& languages, std::string* problem) {
  AError error;
  std::shared_ptr<APlistProductInfo> product = APlistProductInfo::LoadFile(productFile, &error);
  if (!product) {
    *problem = error.message.UTF8();
    return "";
  }
  if (!product->GetWarnings().empty()) *problem = product->GetWarnings().front().UTF8();
  AScopedRef<IPPDGenerator> engine(IPPDGenerator::Create(product));
  if (!engine || !engine->CreatePPDObjects(&error)) {
    *problem = error.message.UTF8();
    return "";
  }
  if (!bundle.empty()) engine->AddLocalizedStringsFromBundleAtPath(bundle.string());
  engine->SetSupportedLocales(languages);
  const std::string text = engine->GetPPD()->GetStringRepresentation(&error).UTF8();
  if (!error.message.IsEmpty()) *problem = error.message.UTF8();
  return text;
}

AScopedRef<IPPDObjectGenerator> CreateGenerator(const char* className, IPPDGenerator* engine,
                                                const ADictionary& description) {
  return AScopedRef<IPPDObjectGenerator>(
      IPPDObjectGenerator::Create(className, engine, &description));
}

void GeneratorTestSupport::MakeEngine(ADictionary root) {
  // The old engine goes first: it shares the old product.
  engine_.reset();
  product_ = std::make_shared<FakeProductInfo>(std::move(root));
  engine_.reset(IPPDGenerator::Create(product_));
}

::testing::AssertionResult GeneratorTestSupport::RunEngine(AError* error) {
  if (!engine_) return ::testing::AssertionFailure() << "no engine";
  AError own;
  AError* target = error != nullptr ? error : &own;
  if (engine_->CreatePPDObjects(target)) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "CreatePPDObjects failed: " << Describe(*target);
}

::testing::AssertionResult GeneratorTestSupport::StartEngine(ADictionary root) {
  MakeEngine(std::move(root));
  return RunEngine();
}

void GeneratorTestSupport::SetSetting(const char* name, const ADictionary& setting) {
  SetNested(Root(), "options", name, setting);
}

void GeneratorTestSupport::SetFeature(const char* key, const AValue& value) {
  SetNested(Root(), "features", key, value);
}

GeneratorRun GeneratorTestSupport::RunGenerator(const char* className,
                                                const ADictionary& description,
                                                AError* error) const {
  GeneratorRun run;
  AScopedRef<IPPDObjectGenerator> generator = MakeGenerator(className, description);
  run.made = static_cast<bool>(generator);
  EXPECT_TRUE(run.made) << "no generator class " << className;
  if (!run.made) return run;
  run.applicable = generator->IsApplicable();
  if (run.applicable) run.generated = generator->Generate(error != nullptr ? error : &run.error);
  return run;
}

bool GeneratorTestSupport::IsApplicable(const char* className,
                                        const ADictionary& description) const {
  AScopedRef<IPPDObjectGenerator> generator = MakeGenerator(className, description);
  return generator && generator->IsApplicable();
}

bool GeneratorTestSupport::GenerateAnyway(const char* className, const ADictionary& description,
                                          AError* error) const {
  AScopedRef<IPPDObjectGenerator> generator = MakeGenerator(className, description);
  EXPECT_TRUE(generator) << "no generator class " << className;
  return generator && generator->Generate(error);
}

void GeneratorTestSupport::AddPickOneOption(const char* groupID, const char* id,
                                            const std::vector<const char*>& choices,
                                            const char* defaultChoice) {
  ASSERT_NE(Doc(), nullptr);
  IPPDGroup* group = Doc()->GetGroupWithID(groupID);
  if (group == nullptr) {
    AScopedRef<IPPDGroup> made(IPPDGroup::Create(groupID, groupID, {}, {}, ""));
    group = Doc()->AddGroup(made.get(), false);
  }
  ASSERT_NE(group, nullptr);
  AScopedRef<IPPDOption> option(IPPDOption::Create(id, id, defaultChoice, PPD_UI_PICKONE, {}, ""));
  for (const char* choiceID : choices) {
    AScopedRef<IPPDChoice> choice(IPPDChoice::Create(choiceID, choiceID, "", ""));
    option->AddChoice(choice.get(), false);
  }
  ASSERT_NE(group->AddOption(option.get(), false), nullptr);
}

std::string GeneratorTestSupport::RenderDocument() const {
  if (Doc() == nullptr) return "<no document>";
  AError error;
  const std::string text = Doc()->GetStringRepresentation(&error).UTF8();
  return text + error.message.UTF8();
}

std::string GeneratorTestSupport::OptionText(const char* id) const {
  const IPPDOption* option = Doc()->GetOptionWithID(id);
  if (option == nullptr) return "<no option>";
  AError error;
  const AQVString text = option->GetStringRepresentation(&error);
  return text.UTF8() + error.message.UTF8();
}

std::string GeneratorTestSupport::ConstraintsText() const {
  std::string text;
  for (const IPPDConstraint* constraint : Doc()->GetConstraints()) {
    AError error;
    text += constraint->GetStringRepresentation(&error).UTF8() + error.message.UTF8() + "\n";
  }
  return text;
}

}  // namespace ppdforge::testing
