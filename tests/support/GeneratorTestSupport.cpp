#include "support/GeneratorTestSupport.h"

#include <plist/plist.h>

#include <cstdlib>
#include <regex>

#include "facade/ARKPPDGenerator.h"
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

ADictionary MediaSize(const char* ppdName, const char* name, double width, double height, double margin) {
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

ADictionary MinimalProductRoot() { return ProductRoot(AArray{MediaSize("A4", "A4", 595, 842, 12)}, "A4"); }

void SetNested(ADictionary& root, const char* dictionaryKey, const char* key, const AValue& value) {
  ADictionary inner;
  root.GetDictionary(dictionaryKey, inner);
  inner.Set(key, value);
  root.Set(dictionaryKey, inner);
}

namespace {

AValue Replace(const AValue& node, const std::string& path, const AValue& value) {
  if (path.empty()) return value;
  static const std::regex step("^\\.?(?:\\[([0-9]+)\\]|([^.\\[]+))");
  std::smatch match;
  EXPECT_TRUE(std::regex_search(path, match, step)) << path;
  const std::string rest = match.suffix();
  if (match[1].matched) {
    AArray array;
    const std::size_t index = std::stoul(match[1]);
    EXPECT_TRUE(node.GetArray(array) && index < array.Count()) << path;
    if (index < array.Count()) array.Set(index, Replace(array[index], rest, value));
    return array;
  }
  ADictionary dictionary;
  EXPECT_TRUE(node.GetDictionary(dictionary)) << path;
  const AValue* child = dictionary.Get(match[2].str());
  dictionary.Set(match[2].str(), Replace(child != nullptr ? *child : AValue(), rest, value));
  return dictionary;
}

}  // namespace

ADictionary WithValue(const ADictionary& root, const std::string& path, const AValue& value) {
  ADictionary out;
  Replace(AValue(root), path, value).GetDictionary(out);
  return out;
}

ADictionary SmallProduct() {
  ADictionary root = ProductRoot(AArray{MediaSize("A4", "A4", 595, 842, 0)});
  root.Set("attributesGenerationInfo",
           AArray{Dict({{"name", "PPD-Adobe"}, {"value", "4.3"}}),
                  Dict({{"name", "LanguageVersion"}, {"value", "English"}, {"value-type", 3}})});
  root.Set("CUPSVersion", 0x120);
  return root;
}

std::string LibraryText(const ADictionary& root) {
  const auto generator = ARKPPDGenerator::GeneratorWithProductInfo(std::make_shared<FakeProductInfo>(root), nullptr);
  return generator ? generator->GeneratePPDData(nullptr).value_or("") : "";
}

namespace {

plist_t ToPlist(const AValue& value) {
  ADictionary dictionary;
  AArray array;
  switch (value.GetType()) {
    case AValue::Type::kBoolean:
      return plist_new_bool(value.BoolValue());
    case AValue::Type::kInteger:
      return plist_new_uint(static_cast<uint64_t>(value.IntegerValue()));
    case AValue::Type::kReal:
      return plist_new_real(value.DoubleValue());
    case AValue::Type::kString:
      return plist_new_string(value.AsString()->CString());
    case AValue::Type::kData:
      return plist_new_data(value.AsData()->data(), value.AsData()->size());
    case AValue::Type::kArray: {
      value.GetArray(array);
      plist_t node = plist_new_array();
      for (const AValue& item : array) plist_array_append_item(node, ToPlist(item));
      return node;
    }
    case AValue::Type::kDictionary: {
      value.GetDictionary(dictionary);
      plist_t node = plist_new_dict();
      for (const auto& [key, item] : dictionary) plist_dict_set_item(node, key.CString(), ToPlist(item));
      return node;
    }
    default:
      return plist_new_string("");
  }
}

}  // namespace

std::string PropertyListBytes(const AValue& value, bool binary) {
  plist_t root = ToPlist(value);
  char* bytes = nullptr;
  uint32_t length = 0;
  if (binary) {
    plist_to_bin(root, &bytes, &length);
  } else {
    plist_to_xml(root, &bytes, &length);
  }
  plist_free(root);
  std::string out(bytes, length);
  std::free(bytes);
  return out;
}

AScopedRef<IPPDObjectGenerator> CreateGenerator(const char* className, IPPDGenerator* engine,
                                                const ADictionary& description) {
  return AScopedRef<IPPDObjectGenerator>(IPPDObjectGenerator::Create(className, engine, &description));
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

GeneratorRun GeneratorTestSupport::RunGenerator(const char* className, const ADictionary& description,
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

bool GeneratorTestSupport::IsApplicable(const char* className, const ADictionary& description) const {
  AScopedRef<IPPDObjectGenerator> generator = MakeGenerator(className, description);
  return generator && generator->IsApplicable();
}

bool GeneratorTestSupport::GenerateAnyway(const char* className, const ADictionary& description, AError* error) const {
  AScopedRef<IPPDObjectGenerator> generator = MakeGenerator(className, description);
  EXPECT_TRUE(generator) << "no generator class " << className;
  return generator && generator->Generate(error);
}

void GeneratorTestSupport::AddPickOneOption(const char* groupID, const char* id,
                                            const std::vector<const char*>& choices, const char* defaultChoice) {
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
