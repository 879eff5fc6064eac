// Hostile product descriptions, string tables and paths: every case ends in
// a clear error or a documented fallback (docs/robustness.md), never in a
// crash, a hang or a partial output file.

#include <gtest/gtest.h>
#include <plist/plist.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cctype>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "core/APropertyList.h"
#include "core/AStringsTable.h"
#include "facade/APlistProductInfo.h"
#include "facade/ARKPPDConcreteGenerator.h"
#include "support/FakeProductInfo.h"

namespace ppdforge {
namespace {

namespace fs = std::filesystem;

// ---------------------------------------------------------------------------
// Building descriptions

ADictionary Dictionary(std::initializer_list<std::pair<const char*, AValue>> entries) {
  ADictionary dictionary;
  for (const auto& [key, value] : entries) dictionary.Set(key, value);
  return dictionary;
}

ADictionary Attribute(const AQVString& name, const AQVString& value, long long type) {
  return Dictionary({{"name", name}, {"value", value}, {"value-type", type}});
}

ADictionary Media(const AQVString& name) {
  return Dictionary({{"name", name}, {"PPDName", name}, {"userName", name},
                     {"paperRectTop", 0}, {"paperRectLeft", 0}, {"paperRectBottom", 842},
                     {"paperRectRight", 595}, {"pageRectTop", 12}, {"pageRectLeft", 12},
                     {"pageRectBottom", 830}, {"pageRectRight", 583}});
}

// The smallest product that generates: three attributes and one media size.
ADictionary MinimalProduct() {
  return Dictionary({
      {"CUPSVersion", 0x120},
      {"attributesGenerationInfo", AArray{Attribute("PPD-Adobe", "4.3", 1),
                                          Attribute("LanguageVersion", "English", 3),
                                          Attribute("ModelName", "Hostile", 1)}},
      {"optionsGenerationInfo", AArray{}},
      {"cupsUIResolversGenerationInfo", AArray{}},
      {"constraintsGenerationInfo", AArray{}},
      {"options", Dictionary({{"QVPaperInfo", Dictionary({{"defaultChoice", "A4"},
                                                          {"values", AArray{Media("A4")}}})}})},
  });
}

void Append(ADictionary& root, const char* key, const AValue& element) {
  AArray array;
  root.GetArray(key, array);
  array.Append(element);
  root.Set(key, array);
}

// One step of a key path: a dictionary key or an array index.
struct Step {
  std::string key;
  std::optional<std::size_t> index;
};

std::vector<Step> ParsePath(const std::string& path) {
  std::vector<Step> steps;
  std::size_t i = 0;
  while (i < path.size()) {
    if (path[i] == '.') {
      ++i;
    } else if (path[i] == '[') {
      const std::size_t end = path.find(']', i);
      steps.push_back({"", std::stoul(path.substr(i + 1, end - i - 1))});
      i = end + 1;
    } else {
      const std::size_t end = path.find_first_of(".[", i);
      steps.push_back({path.substr(i, end - i), std::nullopt});
      i = end == std::string::npos ? path.size() : end;
    }
  }
  return steps;
}

// `node` with the value at `steps` replaced (a missing last dictionary key is added).
AValue Replace(const AValue& node, const std::vector<Step>& steps, std::size_t at, const AValue& value) {
  if (at == steps.size()) return value;
  const Step& step = steps[at];
  if (step.index) {
    AArray array;
    EXPECT_TRUE(node.GetArray(array));
    EXPECT_LT(*step.index, array.Count());
    array.Set(*step.index, Replace(array[*step.index], steps, at + 1, value));
    return array;
  }
  ADictionary dictionary;
  EXPECT_TRUE(node.GetDictionary(dictionary));
  const AValue* child = dictionary.Get(step.key);
  dictionary.Set(step.key, Replace(child != nullptr ? *child : AValue(), steps, at + 1, value));
  return dictionary;
}

ADictionary With(const ADictionary& root, const std::string& path, const AValue& value) {
  ADictionary out;
  Replace(AValue(root), ParsePath(path), 0, value).GetDictionary(out);
  return out;
}

// Every value of a description with its key path, recursively, and whether
// it is an array or a dictionary.
void CollectPaths(const AValue& node, const std::string& path,
                  std::vector<std::pair<std::string, bool>>& out) {
  if (!path.empty()) out.emplace_back(path, node.IsArray() || node.IsDictionary());
  ADictionary dictionary;
  AArray array;
  if (node.GetDictionary(dictionary)) {
    for (const auto& [key, value] : dictionary) {
      CollectPaths(value, path.empty() ? key.UTF8() : path + "." + key.UTF8(), out);
    }
  } else if (node.GetArray(array)) {
    for (std::size_t i = 0; i < array.Count(); ++i) {
      CollectPaths(array[i], path + "[" + std::to_string(i) + "]", out);
    }
  }
}

// ---------------------------------------------------------------------------
// Property-list files

plist_t ToPlist(const AValue& value) {
  ADictionary dictionary;
  AArray array;
  switch (value.GetType()) {
    case AValue::Type::kBoolean: return plist_new_bool(value.BoolValue());
    case AValue::Type::kInteger: return plist_new_uint(static_cast<uint64_t>(value.IntegerValue()));
    case AValue::Type::kReal: return plist_new_real(value.DoubleValue());
    case AValue::Type::kString: return plist_new_string(value.AsString()->CString());
    case AValue::Type::kData: return plist_new_data(value.AsData()->data(), value.AsData()->size());
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
    default: return plist_new_string("");
  }
}

std::string BinaryPlist(const AValue& value) {
  plist_t root = ToPlist(value);
  char* bytes = nullptr;
  uint32_t length = 0;
  plist_to_bin(root, &bytes, &length);
  plist_free(root);
  std::string out(bytes, length);
  std::free(bytes);
  return out;
}

std::string XMLPlist(const AValue& value) {
  plist_t root = ToPlist(value);
  char* bytes = nullptr;
  uint32_t length = 0;
  plist_to_xml(root, &bytes, &length);
  plist_free(root);
  std::string out(bytes, length);
  std::free(bytes);
  return out;
}

// Replaces the one occurrence of `what` in `bytes`.
void Patch(std::string& bytes, const std::string& what, const std::string& with) {
  const std::size_t at = bytes.find(what);
  ASSERT_NE(at, std::string::npos);
  ASSERT_EQ(bytes.find(what, at + 1), std::string::npos);
  bytes.replace(at, what.size(), with);
}

// A binary property list of `depth` arrays, each holding the next (the last
// one empty); `cycle` makes the last one hold the first instead.
std::string NestedBinaryArrays(std::size_t depth, bool cycle) {
  std::string out = "bplist00";
  std::vector<uint32_t> offsets;
  auto bigEndian = [&out](uint64_t value, int size) {
    for (int i = size - 1; i >= 0; --i) out += static_cast<char>((value >> (8 * i)) & 0xFF);
  };
  for (std::size_t i = 0; i < depth; ++i) {
    offsets.push_back(static_cast<uint32_t>(out.size()));
    const bool last = i + 1 == depth;
    if (last && !cycle) {
      out += '\xA0';
    } else {
      out += '\xA1';
      bigEndian(last ? 0 : i + 1, 4);
    }
  }
  const uint64_t table = out.size();
  for (uint32_t offset : offsets) bigEndian(offset, 4);
  out.append(6, '\0');
  out += '\x04';  // offset size
  out += '\x04';  // reference size
  bigEndian(depth, 8);
  bigEndian(0, 8);
  bigEndian(table, 8);
  return out;
}

std::string NestedXMLArrays(std::size_t depth) {
  std::string out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n<dict><key>features</key><dict><key>deep</key>";
  for (std::size_t i = 0; i < depth; ++i) out += "<array>";
  for (std::size_t i = 0; i < depth; ++i) out += "</array>";
  return out + "</dict></dict></plist>\n";
}

// ---------------------------------------------------------------------------
// Generating

struct Outcome {
  bool created = false;
  AError createError;
  std::optional<std::string> data;
  AError renderError;
};

Outcome Generate(std::shared_ptr<const IProductInfo> product, const std::vector<fs::path>& bundles = {},
                 const std::vector<AQVString>& locales = {}) {
  Outcome outcome;
  const auto generator = ARKPPDConcreteGenerator::Create(std::move(product), &outcome.createError);
  if (!generator) return outcome;
  outcome.created = true;
  for (const fs::path& bundle : bundles) generator->AddLocalizedStringsFromBundleAtPath(bundle.string());
  if (!locales.empty()) generator->GetGenerator()->SetSupportedLocales(locales);
  outcome.data = generator->GeneratePPDData(&outcome.renderError);
  return outcome;
}

std::shared_ptr<const IProductInfo> Load(const ADictionary& root, AError* error = nullptr) {
  return APlistProductInfo::FromDictionary(root, "hostile.plist", error);
}

Outcome GenerateChecked(const ADictionary& root) {
  AError error;
  const auto product = Load(root, &error);
  EXPECT_NE(product, nullptr) << error.message;
  if (!product) return {};
  return Generate(product);
}

// Errors as one readable line, so that a mismatch shows the texts.
std::string Text(const AError& error) {
  return error.domain.UTF8() + " " + std::to_string(error.code) + ": " + error.message.UTF8();
}

std::string Error(long code, const std::string& message) {
  return Text(AError{"RKPPDGeneration", code, message});
}

std::size_t CountLines(const std::string& text, const std::string& prefix) {
  std::size_t count = 0;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) count += line.rfind(prefix, 0) == 0 ? 1 : 0;
  return count;
}

// ---------------------------------------------------------------------------
// Files, directories and the tool

class HostileFiles : public ::testing::Test {
 protected:
  void SetUp() override {
    const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
    directory_ = fs::path(::testing::TempDir()) /
                 ("ppdforge-hostile-" + std::to_string(::getpid()) + "-" + info->name());
    fs::remove_all(directory_);
    fs::create_directories(directory_ / "out");
  }
  void TearDown() override {
    std::error_code ignored;
    for (const fs::path& path : restore_) fs::permissions(path, fs::perms::owner_all, ignored);
    fs::remove_all(directory_, ignored);
  }

  fs::path Write(const std::string& name, const std::string& bytes) const {
    const fs::path path = directory_ / name;
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
  }

  // Takes every permission away from `path` (given back in TearDown).
  void MakeUnreadable(const fs::path& path) {
    fs::permissions(path, fs::perms::none);
    restore_.push_back(path);
  }

  // Whether taking permissions away stops this process from reading (it does
  // not for root).
  bool PermissionsStopReads(const fs::path& path) const {
    return ::access(path.c_str(), R_OK) != 0;
  }

  struct ToolResult {
    int status = -1;
    std::string err;
  };

  // Runs `ppdforge generate PRODUCT -o out/OUTPUT` with the extra arguments.
  ToolResult RunTool(const fs::path& product, const std::string& extra = "") const {
    const fs::path errFile = directory_ / "stderr.txt";
    const std::string command = std::string("'") + PPDFORGE_TOOL_PATH + "' generate '" + product.string() +
                                "' -o '" + Output().string() + "' " + extra + " 2>'" + errFile.string() +
                                "' >/dev/null";
    ToolResult result;
    const int status = std::system(command.c_str());
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    std::ifstream stream(errFile);
    std::ostringstream text;
    text << stream.rdbuf();
    result.err = text.str();
    fs::remove(errFile);
    return result;
  }

  fs::path Output() const { return directory_ / "out" / "hostile.ppd"; }

  // Names in the output directory (the output file and any temporary file).
  std::vector<std::string> OutputDirectory() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(directory_ / "out")) {
      names.push_back(entry.path().filename().string());
    }
    return names;
  }

  fs::path directory_;
  std::vector<fs::path> restore_;
};

// ===========================================================================
// Wrong types

// A description holding every key the loader knows, each with a good value.
ADictionary EveryKeyProduct() {
  ADictionary root = MinimalProduct();
  root.Set("features", Dictionary({{"supportsCustomPageSize", true}}));
  root.Set("customPageSizeMargins", AArray{1, 2, 3, 4});
  root.Set("customPageSizeConstraints", AArray{10, 20, 30, 40});
  root.Set("customPageSizeExcludes", Dictionary({{"Duplex", AArray{"DuplexNoTumble"}}}));
  root.Set("colorProfiles", AArray{Dictionary({{"name", "Plain"}, {"path", "/p.icc"}})});
  root.Set("product", Dictionary({
                          {"modelName", "M"},
                          {"productNames", AArray{"M"}},
                          {"components", Dictionary({{"rasterFilter", "/f"}})},
                          {"duplex", Dictionary({{"backSide", "Normal"}})},
                          {"markers", AArray{Dictionary({{"name", "K"}})}},
                          {"ippReasons", AArray{Dictionary({{"reason", "r"}})}},
                          {"presets", AArray{Dictionary({{"name", "P"},
                                                         {"settings", AArray{AArray{"A", "B"}}},
                                                         {"presetValues", AArray{AArray{"C", "D"}}}})}},
                          {"preFilterAttributes", AArray{Attribute("cupsPreFilter", "x", 1)}},
                      }));
  Append(root, "optionsGenerationInfo",
         Dictionary({{"code-name", "Quality"}, {"choices", AArray{Dictionary({{"id", "Draft"}})}}}));
  Append(root, "cupsUIResolversGenerationInfo", Dictionary({{"resolver-name", "R"}}));
  Append(root, "constraintsGenerationInfo", Dictionary({{"option-1", "Quality"}}));
  ADictionary paperType = Dictionary({{"values", AArray{Dictionary({{"name", "Plain"}})}},
                                      {"PDFPreFilterAttributes", AArray{Attribute("a", "b", 1)}}});
  return With(root, "options.QVPaperType", paperType);
}

struct WrongType {
  const char* path;
  const char* expected;  // the documented type
};

class HostileWrongType : public ::testing::TestWithParam<WrongType> {};

TEST_P(HostileWrongType, IsAnInputErrorNamingTheKeyAndTheType) {
  const std::string expected = GetParam().expected;
  // A string where a string is wanted would pass, so an integer then.
  const bool wantsString = expected == "a string";
  const AValue wrong = wantsString ? AValue(7) : AValue(AArray{});
  const char* found = wantsString ? "an integer" : "an array";
  if (!wantsString && expected.rfind("an array", 0) == 0) {
    // An array where an array is wanted: a dictionary then.
    AError error;
    EXPECT_EQ(Load(With(EveryKeyProduct(), GetParam().path, ADictionary()), &error), nullptr);
    EXPECT_EQ(Text(error), Error(5, std::string("hostile.plist: ") + GetParam().path + " is a dictionary, expected " +
                                  expected));
    return;
  }
  AError error;
  EXPECT_EQ(Load(With(EveryKeyProduct(), GetParam().path, wrong), &error), nullptr);
  EXPECT_EQ(Text(error), Error(5, std::string("hostile.plist: ") + GetParam().path + " is " + found + ", expected " +
                                expected));
}

INSTANTIATE_TEST_SUITE_P(
    EveryKnownKey, HostileWrongType,
    ::testing::Values(
        // Root keys.
        WrongType{"attributesGenerationInfo", "an array of dictionaries"},
        WrongType{"optionsGenerationInfo", "an array of dictionaries"},
        WrongType{"cupsUIResolversGenerationInfo", "an array of dictionaries"},
        WrongType{"constraintsGenerationInfo", "an array of dictionaries"},
        WrongType{"CUPSVersion", "an integer"},
        WrongType{"options", "a dictionary"},
        WrongType{"features", "a dictionary"},
        WrongType{"customPageSizeMargins", "an array of numbers"},
        WrongType{"customPageSizeMargins[2]", "a number"},
        WrongType{"customPageSizeConstraints", "an array of numbers"},
        WrongType{"customPageSizeConstraints[0]", "a number"},
        WrongType{"colorProfiles", "an array of dictionaries"},
        WrongType{"product", "a dictionary"},
        WrongType{"customPageSizeExcludes", "a dictionary"},
        WrongType{"customPageSizeExcludes.Duplex", "an array of strings"},
        WrongType{"customPageSizeExcludes.Duplex[0]", "a string"},
        // Description entries.
        WrongType{"attributesGenerationInfo[1]", "a dictionary"},
        WrongType{"attributesGenerationInfo[0].generator", "a string"},
        WrongType{"attributesGenerationInfo[0].comment", "a string"},
        WrongType{"attributesGenerationInfo[0].name", "a string"},
        WrongType{"attributesGenerationInfo[0].spec", "a string"},
        WrongType{"attributesGenerationInfo[0].translation", "a string"},
        WrongType{"attributesGenerationInfo[0].value", "a string"},
        WrongType{"attributesGenerationInfo[0].value-type", "a number or a string"},
        WrongType{"optionsGenerationInfo[0]", "a dictionary"},
        WrongType{"optionsGenerationInfo[0].generator", "a string"},
        WrongType{"optionsGenerationInfo[0].comment", "a string"},
        WrongType{"optionsGenerationInfo[0].code-name", "a string"},
        WrongType{"optionsGenerationInfo[0].user-name", "a string"},
        WrongType{"optionsGenerationInfo[0].group-name", "a string"},
        WrongType{"optionsGenerationInfo[0].setting-name", "a string"},
        WrongType{"optionsGenerationInfo[0].min-value-count", "a number or a string"},
        WrongType{"optionsGenerationInfo[0].ui-type", "a number or a string"},
        WrongType{"optionsGenerationInfo[0].choices", "an array of dictionaries"},
        WrongType{"optionsGenerationInfo[0].choices[0]", "a dictionary"},
        WrongType{"optionsGenerationInfo[0].choices[0].id", "a string"},
        WrongType{"optionsGenerationInfo[0].choices[0].name", "a string"},
        WrongType{"optionsGenerationInfo[0].choices[0].code", "a string"},
        WrongType{"optionsGenerationInfo[0].choices[0].comment", "a string"},
        WrongType{"optionsGenerationInfo[0].choice-generic-code", "a string"},
        WrongType{"optionsGenerationInfo[0].default-choice", "a string"},
        WrongType{"cupsUIResolversGenerationInfo[0]", "a dictionary"},
        WrongType{"cupsUIResolversGenerationInfo[0].generator", "a string"},
        WrongType{"cupsUIResolversGenerationInfo[0].comment", "a string"},
        WrongType{"cupsUIResolversGenerationInfo[0].resolver-name", "a string"},
        WrongType{"cupsUIResolversGenerationInfo[0].option-1", "a string"},
        WrongType{"cupsUIResolversGenerationInfo[0].choice-1", "a string"},
        WrongType{"constraintsGenerationInfo[0]", "a dictionary"},
        WrongType{"constraintsGenerationInfo[0].generator", "a string"},
        WrongType{"constraintsGenerationInfo[0].comment", "a string"},
        WrongType{"constraintsGenerationInfo[0].resolver", "a string"},
        WrongType{"constraintsGenerationInfo[0].option-2", "a string"},
        WrongType{"constraintsGenerationInfo[0].choice-10", "a string"},
        WrongType{"constraintsGenerationInfo[0].non-ui", "a boolean or a string"},
        WrongType{"constraintsGenerationInfo[0].cupsUIConstraint", "a boolean, a number or a string"},
        // Settings.
        WrongType{"options.QVPaperType", "a dictionary"},
        WrongType{"options.QVPaperType.userName", "a string"},
        WrongType{"options.QVPaperType.defaultChoice", "a string"},
        WrongType{"options.QVPaperType.values", "an array of dictionaries"},
        WrongType{"options.QVPaperType.values[0]", "a dictionary"},
        WrongType{"options.QVPaperType.values[0].defaultQuality", "a string"},
        WrongType{"options.QVPaperType.enabled", "a boolean or a number"},
        WrongType{"options.QVPaperType.PDFPreFilterAttributes", "an array of dictionaries"},
        WrongType{"options.QVPaperType.PDFPreFilterAttributes[0].value", "a string"},
        // Media.
        WrongType{"options.QVPaperInfo.values[0].name", "a string"},
        WrongType{"options.QVPaperInfo.values[0].userName", "a string"},
        WrongType{"options.QVPaperInfo.values[0].PPDName", "a string"},
        WrongType{"options.QVPaperInfo.values[0].mediaSizeCategory", "a string"},
        WrongType{"options.QVPaperInfo.values[0].isCustomMediaSize", "a boolean or a number"},
        WrongType{"options.QVPaperInfo.values[0].supportsFullBleed", "a boolean or a number"},
        WrongType{"options.QVPaperInfo.values[0].oversprayScaleFactor", "a number"},
        WrongType{"options.QVPaperInfo.values[0].paperRectTop", "a number"},
        WrongType{"options.QVPaperInfo.values[0].paperRectLeft", "a number"},
        WrongType{"options.QVPaperInfo.values[0].paperRectBottom", "a number"},
        WrongType{"options.QVPaperInfo.values[0].paperRectRight", "a number"},
        WrongType{"options.QVPaperInfo.values[0].pageRectTop", "a number"},
        WrongType{"options.QVPaperInfo.values[0].pageRectLeft", "a number"},
        WrongType{"options.QVPaperInfo.values[0].pageRectBottom", "a number"},
        WrongType{"options.QVPaperInfo.values[0].pageRectRight", "a number"},
        WrongType{"options.QVPaperInfo.values[0].cupsColorOrder", "a number"},
        WrongType{"options.QVPaperInfo.values[0].cupsColorSpace", "a number"},
        WrongType{"options.QVPaperInfo.values[0].cupsBitsPerColor", "a number"},
        WrongType{"options.QVPaperInfo.values[0].horizontalResolutionValue", "a number"},
        WrongType{"options.QVPaperInfo.values[0].verticalResolutionValue", "a number"},
        // Colour profiles.
        WrongType{"colorProfiles[0]", "a dictionary"},
        WrongType{"colorProfiles[0].name", "a string"},
        WrongType{"colorProfiles[0].path", "a string"},
        WrongType{"colorProfiles[0].userName", "a string"},
        WrongType{"colorProfiles[0].colorModel", "a string"},
        WrongType{"colorProfiles[0].mediaType", "a string"},
        WrongType{"colorProfiles[0].resolution", "a string"},
        WrongType{"colorProfiles[0].default", "a boolean"},
        // Product.
        WrongType{"product.manufacturer", "a string"},
        WrongType{"product.modelName", "a string"},
        WrongType{"product.nickName", "a string"},
        WrongType{"product.shortNickName", "a string"},
        WrongType{"product.version", "a string"},
        WrongType{"product.iconPath", "a string"},
        WrongType{"product.outputOrder", "a string"},
        WrongType{"product.markerNotice", "a string"},
        WrongType{"product.productNames", "an array of strings"},
        WrongType{"product.productNames[0]", "a string"},
        WrongType{"product.components", "a dictionary"},
        WrongType{"product.components.rasterFilter", "a string"},
        WrongType{"product.duplex", "a dictionary"},
        WrongType{"product.duplex.backSide", "a string"},
        WrongType{"product.duplex.requiresFlippedMargin", "a boolean"},
        WrongType{"product.markers", "an array of dictionaries"},
        WrongType{"product.markers[0]", "a dictionary"},
        WrongType{"product.markers[0].name", "a string"},
        WrongType{"product.markers[0].userName", "a string"},
        WrongType{"product.ippReasons", "an array of dictionaries"},
        WrongType{"product.ippReasons[0].reason", "a string"},
        WrongType{"product.ippReasons[0].message", "a string"},
        WrongType{"product.ippReasons[0].value", "a string"},
        WrongType{"product.presets", "an array of dictionaries"},
        WrongType{"product.presets[0].name", "a string"},
        WrongType{"product.presets[0].userName", "a string"},
        WrongType{"product.presets[0].settings", "an array of arrays"},
        WrongType{"product.presets[0].settings[0]", "an array of strings"},
        WrongType{"product.presets[0].settings[0][1]", "a string"},
        WrongType{"product.presets[0].presetValues", "an array of arrays"},
        WrongType{"product.presets[0].presetValues[0][0]", "a string"},
        WrongType{"product.preFilterAttributes", "an array of dictionaries"},
        WrongType{"product.preFilterAttributes[0].name", "a string"}),
    [](const ::testing::TestParamInfo<WrongType>& param) {
      std::string name;
      for (const char c : std::string(param.param.path)) name += std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
      return name;
    });

TEST(HostileDescription, TheCompleteDescriptionItselfLoads) {
  AError error;
  EXPECT_NE(Load(EveryKeyProduct(), &error), nullptr) << error.message;
}

// Keys that the loader does not know (features, generator-specific entry
// keys, "excludes") reach the generators with whatever type they hold.
TEST(HostileDescription, UncheckedKeysOfTheWrongTypeFallBackOrFailClearly) {
  // A feature is read as a flag: a string by its first letter, anything
  // else that is no number or boolean as false.
  ADictionary root = MinimalProduct();
  root.Set("features", Dictionary({{"supportsCustomPageSize", AArray{1}}}));
  Append(root, "attributesGenerationInfo",
         Dictionary({{"generator", "APPDCustomPageSizeGenerator"}, {"name", "MaxMediaWidth"},
                     {"value", "%.0f"}, {"value-type", 1}}));
  Outcome outcome = GenerateChecked(root);
  ASSERT_TRUE(outcome.data.has_value());
  EXPECT_EQ(outcome.data->find("*MaxMediaWidth"), std::string::npos);

  root.Set("features", Dictionary({{"supportsCustomPageSize", "yes"}}));
  outcome = GenerateChecked(root);
  ASSERT_TRUE(outcome.data.has_value());
  EXPECT_NE(outcome.data->find("*MaxMediaWidth: \"0\""), std::string::npos);

  // "component" of the wrong type: the generator has no datum and writes nothing.
  root = MinimalProduct();
  root.Set("product", Dictionary({{"components", Dictionary({{"rasterFilter", "/f"}})}}));
  Append(root, "attributesGenerationInfo",
         Dictionary({{"generator", "APPDDriverComponentsGenerator"}, {"name", "cupsFilter"},
                     {"component", AArray{"rasterFilter"}}}));
  outcome = GenerateChecked(root);
  ASSERT_TRUE(outcome.data.has_value());
  EXPECT_EQ(outcome.data->find("*cupsFilter"), std::string::npos);

  // "excludes" of the wrong type: the generator names the key.
  root = MinimalProduct();
  root = With(root, "options.QVPaperInfo.values[0].excludes", "Duplex");
  Append(root, "optionsGenerationInfo",
         Dictionary({{"code-name", "Duplex"}, {"choices", AArray{Dictionary({{"id", "None"}})}}}));
  Append(root, "constraintsGenerationInfo", Dictionary({{"generator", "APPDDuplexOnPaperSizeConstraintsGenerator"}}));
  outcome = GenerateChecked(root);
  EXPECT_FALSE(outcome.created);
  EXPECT_EQ(Text(outcome.createError),
            Error(1, "Invalid product description: options.QVPaperInfo.values[0].excludes must be a "
                     "dictionary from option keyword to an array of choice keywords"));
}

// Whatever type stands anywhere in the shipped descriptions, the generators
// (reached without the loader's checks, as a driver's own product object
// would reach them) end in a PPD or an error, never in a crash or in text
// that is not UTF-8.
TEST(HostileDescription, WrongTypesAnywhereNeverCrashTheGenerators) {
  const std::vector<std::string> files = {"examples/inkjet/qv-inkjet-500.plist",
                                          "tests/golden/product-data.plist",
                                          "tests/golden/specific-options.plist"};
  std::size_t runs = 0;
  for (const std::string& file : files) {
    AValue value;
    AQVString problem;
    ASSERT_TRUE(APropertyList::ParseFile(fs::path(PPDFORGE_SOURCE_DIR) / file, value, &problem)) << problem;
    ADictionary root;
    ASSERT_TRUE(value.GetDictionary(root));
    std::vector<std::pair<std::string, bool>> paths;
    CollectPaths(root, "", paths);
    // One path per position with the indices left out: the first media size
    // stands for all of them.
    std::set<std::string> seen;
    for (const auto& [path, container] : paths) {
      if (!seen.insert(std::regex_replace(path, std::regex("\\[[0-9]+\\]"), "[]")).second) continue;
      {
        // A number where a container stands, a container where a string,
        // number or boolean stands.
        const AValue wrong = container ? AValue(7) : AValue(AArray{AValue("x")});
        SCOPED_TRACE(file + ": " + path);
        const ADictionary spoiled = With(root, path, wrong);
        const Outcome outcome = Generate(std::make_shared<testing::FakeProductInfo>(spoiled));
        ++runs;
        if (!outcome.created) {
          if (!outcome.createError.domain.IsEmpty()) {
            EXPECT_FALSE(outcome.createError.message.IsEmpty());
          }
          continue;
        }
        if (outcome.data) {
          EXPECT_TRUE(IsValidUTF8(*outcome.data));
        } else {
          EXPECT_EQ(outcome.renderError.code, 4);
          EXPECT_FALSE(outcome.renderError.message.IsEmpty());
        }
      }
    }
  }
  EXPECT_GT(runs, 300u);
}

// ===========================================================================
// Huge arrays

// Sanitizer builds run these several times slower (and unoptimised).
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kSanitized = true;
constexpr double kSlowdown = 10;
#else
constexpr bool kSanitized = false;
constexpr double kSlowdown = 1;
#endif

TEST(HostileDescription, HundredThousandMediaSizesTakeLinearTime) {
  const std::size_t kCount = kSanitized ? 25000 : 100000;
  ADictionary root = MinimalProduct();
  AArray media;
  for (std::size_t i = 0; i < kCount; ++i) media.Append(Media("M" + std::to_string(i)));
  root = With(root, "options.QVPaperInfo.values", media);

  const auto start = std::chrono::steady_clock::now();
  const Outcome outcome = GenerateChecked(root);
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  ASSERT_TRUE(outcome.data.has_value()) << outcome.createError.message << outcome.renderError.message;
  EXPECT_EQ(CountLines(*outcome.data, "*PageSize M"), kCount);
  EXPECT_EQ(CountLines(*outcome.data, "*PaperDimension M"), kCount);
  const std::string last = "M" + std::to_string(kCount - 1);
  EXPECT_NE(outcome.data->find("*PageSize " + last + "/" + last + ": "), std::string::npos);
  // A quadratic scan of 100,000 sizes takes hours; linear work, even on a
  // loaded machine, well under this.
  EXPECT_LT(seconds, 60.0 * kSlowdown);
}

// Sizes at which quadratic work in a list would show: minutes, against
// a fraction of a second for linear work.
constexpr std::size_t kManyEntries = kSanitized ? 5000 : 20000;

double SecondsToGenerate(const ADictionary& root, Outcome& outcome) {
  const auto start = std::chrono::steady_clock::now();
  outcome = GenerateChecked(root);
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

TEST(HostileDescription, ManyChoicesTakeLinearTime) {
  ADictionary root = MinimalProduct();
  AArray choices;
  for (std::size_t i = 0; i < kManyEntries; ++i) choices.Append(Dictionary({{"id", AQVString("C" + std::to_string(i))}}));
  Append(root, "optionsGenerationInfo", Dictionary({{"code-name", "Big"}, {"choices", choices}}));
  Outcome outcome;
  const double seconds = SecondsToGenerate(root, outcome);
  ASSERT_TRUE(outcome.data.has_value());
  EXPECT_EQ(CountLines(*outcome.data, "*Big C"), kManyEntries);
  EXPECT_LT(seconds, 30.0 * kSlowdown);
}

TEST(HostileDescription, ManyAttributesTakeLinearTime) {
  ADictionary root = MinimalProduct();
  AArray attributes;
  root.GetArray("attributesGenerationInfo", attributes);
  for (std::size_t i = 0; i < kManyEntries; ++i) {
    ADictionary attribute = Attribute("qvData", "v", 1);
    attribute.Set("spec", AQVString("S" + std::to_string(i)));
    attributes.Append(attribute);
  }
  root.Set("attributesGenerationInfo", attributes);
  Outcome outcome;
  const double seconds = SecondsToGenerate(root, outcome);
  ASSERT_TRUE(outcome.data.has_value());
  EXPECT_EQ(CountLines(*outcome.data, "*qvData S"), kManyEntries);
  EXPECT_LT(seconds, 30.0 * kSlowdown);
}

TEST(HostileDescription, ManyConstraintsTakeLinearTime) {
  ADictionary root = MinimalProduct();
  AArray choices;
  for (std::size_t i = 0; i < kManyEntries; ++i) choices.Append(Dictionary({{"id", AQVString("C" + std::to_string(i))}}));
  Append(root, "optionsGenerationInfo", Dictionary({{"code-name", "Big"}, {"choices", choices}}));
  Append(root, "optionsGenerationInfo",
         Dictionary({{"code-name", "Other"}, {"choices", AArray{Dictionary({{"id", "On"}})}}}));
  AArray constraints;
  for (std::size_t i = 0; i < kManyEntries; ++i) {
    constraints.Append(Dictionary({{"option-1", "Big"}, {"choice-1", AQVString("C" + std::to_string(i))},
                                   {"option-2", "Other"}, {"choice-2", "On"}}));
  }
  root.Set("constraintsGenerationInfo", constraints);
  Outcome outcome;
  const double seconds = SecondsToGenerate(root, outcome);
  ASSERT_TRUE(outcome.data.has_value());
  EXPECT_EQ(CountLines(*outcome.data, "*UIConstraints: *Big C"), kManyEntries);
  EXPECT_LT(seconds, 30.0 * kSlowdown);
}

// Every constraint given twice, the second time with a resolver: each one
// replaces its twin, which must not rebuild the document's lookups each time.
TEST(HostileDescription, ManyReplacedConstraintsTakeLinearTime) {
  ADictionary root = MinimalProduct();
  AArray choices;
  for (std::size_t i = 0; i < kManyEntries; ++i) choices.Append(Dictionary({{"id", AQVString("C" + std::to_string(i))}}));
  Append(root, "optionsGenerationInfo", Dictionary({{"code-name", "Big"}, {"choices", choices}}));
  Append(root, "optionsGenerationInfo",
         Dictionary({{"code-name", "Other"}, {"choices", AArray{Dictionary({{"id", "On"}})}}}));
  AArray constraints;
  for (const char* resolver : {"", "R"}) {
    for (std::size_t i = 0; i < kManyEntries; ++i) {
      constraints.Append(Dictionary({{"option-1", "Big"}, {"choice-1", AQVString("C" + std::to_string(i))},
                                     {"option-2", "Other"}, {"choice-2", "On"}, {"resolver", resolver}}));
    }
  }
  root.Set("constraintsGenerationInfo", constraints);
  Outcome outcome;
  const double seconds = SecondsToGenerate(root, outcome);
  ASSERT_TRUE(outcome.data.has_value());
  EXPECT_EQ(CountLines(*outcome.data, "*UIConstraints: *Big C"), kManyEntries);
  EXPECT_LT(seconds, 30.0 * kSlowdown);
}

// ===========================================================================
// Deep nesting

TEST_F(HostileFiles, NestingDeeperThan256LevelsIsAnInputError) {
  struct Case {
    const char* name;
    std::string bytes;
    const char* reason;
  };
  const std::vector<Case> cases = {
      {"xml-257.plist", NestedXMLArrays(257), "the property list nests deeper than 256 levels"},
      {"xml-100000.plist", NestedXMLArrays(100000), "the property list nests deeper than 256 levels"},
      {"binary-300.plist", NestedBinaryArrays(300, false), "the property list nests deeper than 256 levels"},
      {"binary-100000.plist", NestedBinaryArrays(100000, false), "the property list nests deeper than 256 levels"},
      {"binary-cycle.plist", NestedBinaryArrays(3, true), "the data is not a property list"},
      {"binary-self.plist", NestedBinaryArrays(1, true), "the data is not a property list"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const fs::path path = Write(c.name, c.bytes);
    AError error;
    EXPECT_EQ(APlistProductInfo::LoadFile(path, &error), nullptr);
    EXPECT_EQ(Text(error), Error(5, path.string() + ": cannot read the product description: " + c.reason));
  }
}

TEST_F(HostileFiles, NestingOf250LevelsUnderAFeatureLoadsAndGenerates) {
  ADictionary root = MinimalProduct();
  AValue deep = AArray{};
  for (int i = 0; i < 248; ++i) deep = AArray{deep};
  root.Set("features", Dictionary({{"deep", deep}}));
  const fs::path path = Write("deep.plist", BinaryPlist(root));
  AError error;
  const auto product = APlistProductInfo::LoadFile(path, &error);
  ASSERT_NE(product, nullptr) << error.message;
  EXPECT_TRUE(Generate(product).data.has_value());
}

// ===========================================================================
// Format strings from the description

struct HostileFormat {
  const char* name;
  // A product "value" format, filled with one string.
  const char* valueFormat;
  const char* valueProblem;
  // A resolution "choice-generic-code", filled with two integers.
  const char* codeFormat;
  const char* codeProblem;
};

const std::vector<HostileFormat>& HostileFormats() {
  static const std::vector<HostileFormat> formats = {
      {"n", "%n", "conversion \"%n\" is not allowed", "%n", "conversion \"%n\" is not allowed"},
      {"s", "%s", "conversion \"%s\" is not allowed (a string is written with \"%@\")",
       "<</HWResolution[%s %s]>>", "conversion \"%s\" is not allowed (a string is written with \"%@\")"},
      {"p", "<%p>", "conversion \"%p\" is not allowed", "<%p>", "conversion \"%p\" is not allowed"},
      {"TooMany", "%@ %@ %@", "conversion \"%@\" needs argument 2, but 1 argument was passed",
       "%d %d %d", "conversion \"%d\" needs argument 3, but 2 arguments were passed"},
      {"Positional", "%9$@", "conversion \"%9$@\" needs argument 9, but 1 argument was passed",
       "%2$d %9$d", "conversion \"%9$d\" needs argument 9, but 2 arguments were passed"},
      {"WrongType", "%d", "conversion \"%d\" needs an integer argument, not a string",
       "%@", "conversion \"%@\" needs a string argument, not an integer"},
      {"HugeWidth", "%999999999@", "conversion \"%999999999\" has a width above 4096",
       "%999999999d", "conversion \"%999999999\" has a width above 4096"},
  };
  return formats;
}

class HostileFormatTest : public ::testing::TestWithParam<HostileFormat> {};

// A product "value" format: the attribute is refused with the format and the
// formatter's reason; as the last description of its phase it ends the run.
TEST_P(HostileFormatTest, InAProductValueFormatIsAnError) {
  ADictionary root = MinimalProduct();
  root.Set("product", Dictionary({{"version", "1.0"}}));
  Append(root, "attributesGenerationInfo",
         Dictionary({{"generator", "APPDFileVersionGenerator"}, {"name", "FileVersion"},
                     {"value", GetParam().valueFormat}, {"value-type", 1}}));
  const Outcome outcome = GenerateChecked(root);
  EXPECT_FALSE(outcome.created);
  EXPECT_EQ(Text(outcome.createError),
            Error(1, std::string("Cannot format the value of PPD attribute *FileVersion with \"") +
                         GetParam().valueFormat + "\": " + GetParam().valueProblem));
}

// A "choice-generic-code": the option is refused, naming the choice and the option.
TEST_P(HostileFormatTest, InAChoiceGenericCodeIsAnError) {
  ADictionary root = With(MinimalProduct(), "options.QVResolution",
              Dictionary({{"defaultChoice", "300dpi"},
                          {"values", AArray{Dictionary({{"name", "300dpi"}, {"horizontalResolutionValue", 300},
                                                        {"verticalResolutionValue", 300}})}}}));
  Append(root, "optionsGenerationInfo",
         Dictionary({{"generator", "APPDResolutionOptionGenerator"}, {"code-name", "Resolution"},
                     {"setting-name", "QVResolution"}, {"choice-generic-code", GetParam().codeFormat}}));
  const Outcome outcome = GenerateChecked(root);
  EXPECT_FALSE(outcome.created);
  EXPECT_EQ(Text(outcome.createError),
            Error(1, std::string("Cannot make the code of PPD choice 300dpi in option Resolution: "
                                 "choice-generic-code \"") +
                         GetParam().codeFormat + "\" does not fit: " + GetParam().codeProblem));
}

// A custom page size value: the format is written as it stands.
TEST_P(HostileFormatTest, InACustomPageSizeValueIsWrittenUnformatted) {
  ADictionary root = MinimalProduct();
  root.Set("features", Dictionary({{"supportsCustomPageSize", true}}));
  root.Set("customPageSizeConstraints", AArray{10, 20, 30, 40});
  Append(root, "attributesGenerationInfo",
         Dictionary({{"generator", "APPDCustomPageSizeGenerator"}, {"name", "MaxMediaWidth"},
                     {"value", GetParam().codeFormat}, {"value-type", 1}}));
  const Outcome outcome = GenerateChecked(root);
  ASSERT_TRUE(outcome.data.has_value()) << outcome.createError.message << outcome.renderError.message;
  EXPECT_NE(outcome.data->find(std::string("*MaxMediaWidth: \"") + GetParam().codeFormat + "\"\n"),
            std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Formats, HostileFormatTest, ::testing::ValuesIn(HostileFormats()),
                         [](const ::testing::TestParamInfo<HostileFormat>& param) { return std::string(param.param.name); });

// ===========================================================================
// Invalid text

TEST_F(HostileFiles, InvalidUTF8AndLoneSurrogatesAreInputErrors) {
  const std::string kInvalid = "a string in the property list is not valid UTF-8";
  const std::string kSurrogate = "a string in the property list holds a lone UTF-16 surrogate";
  ADictionary root = MinimalProduct();
  root = With(root, "attributesGenerationInfo[2].value", "Caf\xC3\xA9");
  const std::string xml = XMLPlist(root);
  const std::string binary = BinaryPlist(root);
  // libplist writes a non-ASCII string as UTF-16: "Café" is 0043 0061 0066 00E9.
  const std::string cafe("\x00\x43\x00\x61\x00\x66\x00\xE9", 8);

  struct Case {
    const char* name;
    std::string bytes;
    std::string reason;
  };
  std::vector<Case> cases;
  std::string bytes = xml;
  Patch(bytes, "Caf\xC3\xA9", "Caf\xE9");
  cases.push_back({"latin1-value.plist", bytes, kInvalid});
  bytes = xml;
  Patch(bytes, "Caf\xC3\xA9", "Caf\xED\xA0\x80");  // a surrogate encoded as UTF-8
  cases.push_back({"cesu-value.plist", bytes, kInvalid});
  bytes = xml;
  Patch(bytes, "<key>CUPSVersion", "<key>CUPS\xFFVersion");
  cases.push_back({"invalid-key.plist", bytes, kInvalid});
  bytes = binary;
  Patch(bytes, cafe, std::string("\x00\x43\x00\x61\x00\x66\xD8\x00", 8));
  cases.push_back({"high-surrogate.plist", bytes, kSurrogate});
  bytes = binary;
  Patch(bytes, cafe, std::string("\x00\x43\xDC\x00\x00\x66\x00\xE9", 8));
  cases.push_back({"low-surrogate.plist", bytes, kSurrogate});
  bytes = binary;
  Patch(bytes, cafe, std::string("\xDB\xFF\x00\x61\x00\x66\x00\xE9", 8));
  cases.push_back({"unpaired-high.plist", bytes, kSurrogate});
  bytes = binary;
  Patch(bytes, "ModelName", "Model\xC3" "ame");  // an ASCII string with a high byte
  cases.push_back({"binary-ascii-high-byte.plist", bytes, kInvalid});

  ADictionary keyed = MinimalProduct();
  keyed.Set("features", Dictionary({{"Caf\xC3\xA9", true}}));
  bytes = BinaryPlist(keyed);
  Patch(bytes, cafe, std::string("\x00\x43\x00\x61\x00\x66\xDF\xFF", 8));
  cases.push_back({"surrogate-key.plist", bytes, kSurrogate});

  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const fs::path path = Write(c.name, c.bytes);
    AError error;
    EXPECT_EQ(APlistProductInfo::LoadFile(path, &error), nullptr);
    EXPECT_EQ(Text(error), Error(5, path.string() + ": cannot read the product description: " + c.reason));
  }
  // The untouched files load.
  AError error;
  EXPECT_NE(APlistProductInfo::LoadFile(Write("good.plist", xml), &error), nullptr) << error.message;
  EXPECT_NE(APlistProductInfo::LoadFile(Write("good.bplist", binary), &error), nullptr) << error.message;
}

// ===========================================================================
// Keyword and value limits

TEST(HostileDescription, KeywordsOf40BytesPassAnd41Fail) {
  const std::string k40(40, 'K');
  const std::string k41(41, 'K');
  // Attribute name (main keyword).
  ADictionary root = MinimalProduct();
  Append(root, "attributesGenerationInfo", Attribute(k40, "v", 1));
  Outcome outcome = GenerateChecked(root);
  ASSERT_TRUE(outcome.data.has_value());
  EXPECT_NE(outcome.data->find("*" + k40 + ": \"v\"\n"), std::string::npos);
  root = MinimalProduct();
  Append(root, "attributesGenerationInfo", Attribute(k41, "v", 1));
  outcome = GenerateChecked(root);
  EXPECT_FALSE(outcome.data.has_value());
  EXPECT_EQ(Text(outcome.renderError),
            Error(4, "Main keyword is longer then the maximum allowed (40 characters): " + k41));

  // Attribute spec (option keyword).
  root = MinimalProduct();
  ADictionary attribute = Attribute("qvData", "v", 1);
  attribute.Set("spec", AQVString(k40));
  Append(root, "attributesGenerationInfo", attribute);
  outcome = GenerateChecked(root);
  ASSERT_TRUE(outcome.data.has_value());
  EXPECT_NE(outcome.data->find("*qvData " + k40 + ": \"v\"\n"), std::string::npos);
  attribute.Set("spec", AQVString(k41));
  root = MinimalProduct();
  Append(root, "attributesGenerationInfo", attribute);
  outcome = GenerateChecked(root);
  EXPECT_EQ(Text(outcome.renderError),
            Error(4, "Option keyword is longer then the maximum allowed (40 characters): " + k41));

  // Choice keyword.
  root = MinimalProduct();
  Append(root, "optionsGenerationInfo",
         Dictionary({{"code-name", "Q"}, {"choices", AArray{Dictionary({{"id", AQVString(k40)}})}}}));
  outcome = GenerateChecked(root);
  ASSERT_TRUE(outcome.data.has_value());
  EXPECT_NE(outcome.data->find("*Q " + k40 + ": \"\"\n"), std::string::npos);
  root = MinimalProduct();
  Append(root, "optionsGenerationInfo",
         Dictionary({{"code-name", "Q"}, {"choices", AArray{Dictionary({{"id", AQVString(k41)}})}}}));
  outcome = GenerateChecked(root);
  EXPECT_FALSE(outcome.data.has_value());
  EXPECT_EQ(Text(outcome.renderError),
            Error(4, "Option keyword is longer then the maximum allowed (40 characters): " + k41));

  // Option keyword: "*Default" and the keyword make the main keyword of the
  // default line, so 33 bytes is the longest that can be written.
  auto withOption = [](const std::string& keyword) {
    ADictionary product = MinimalProduct();
    Append(product, "optionsGenerationInfo",
           Dictionary({{"code-name", AQVString(keyword)}, {"choices", AArray{Dictionary({{"id", "A"}})}}}));
    return GenerateChecked(product);
  };
  outcome = withOption(std::string(33, 'O'));
  ASSERT_TRUE(outcome.data.has_value());
  EXPECT_NE(outcome.data->find("*Default" + std::string(33, 'O') + ": A\n"), std::string::npos);
  outcome = withOption(std::string(34, 'O'));
  EXPECT_EQ(Text(outcome.renderError),
            Error(4, "Main keyword is longer then the maximum allowed (40 characters): Default" + std::string(34, 'O')));
  outcome = withOption(k40);
  EXPECT_EQ(Text(outcome.renderError),
            Error(4, "Option keyword is longer then the maximum allowed (40 characters): *" + k40));

  // Media keyword.
  root = With(MinimalProduct(), "options.QVPaperInfo.values", AArray{Media(k40)});
  root = With(root, "options.QVPaperInfo.defaultChoice", AQVString(k40));
  outcome = GenerateChecked(root);
  ASSERT_TRUE(outcome.data.has_value());
  EXPECT_NE(outcome.data->find("*PageSize " + k40 + "/"), std::string::npos);
  root = With(root, "options.QVPaperInfo.values", AArray{Media(k41)});
  root = With(root, "options.QVPaperInfo.defaultChoice", AQVString(k41));
  outcome = GenerateChecked(root);
  EXPECT_FALSE(outcome.data.has_value());
  EXPECT_EQ(Text(outcome.renderError),
            Error(4, "Option keyword is longer then the maximum allowed (40 characters): " + k41));
}

std::string Words(std::size_t bytes) {
  std::string text;
  while (text.size() < bytes) text += text.empty() ? "word" : " word";
  return text.substr(0, bytes);
}

TEST(HostileDescription, TenThousandByteValues) {
  // A quoted value with spaces is wrapped under 255 bytes a line and closed with *End.
  ADictionary root = MinimalProduct();
  Append(root, "attributesGenerationInfo", Attribute("qvLong", Words(10000), 1));
  Outcome outcome = GenerateChecked(root);
  ASSERT_TRUE(outcome.data.has_value());
  std::istringstream lines(*outcome.data);
  for (std::string line; std::getline(lines, line);) EXPECT_LT(line.size(), 256u);
  EXPECT_NE(outcome.data->find("\"\n*End\n"), std::string::npos);

  // Without a place to break it the line is too long.
  const std::string solid(10000, 'x');
  root = MinimalProduct();
  Append(root, "attributesGenerationInfo", Attribute("qvLong", solid, 1));
  outcome = GenerateChecked(root);
  EXPECT_FALSE(outcome.data.has_value());
  EXPECT_EQ(Text(outcome.renderError),
            Error(4, "Line longer then the maximum allowed: 255 characters in statement: *qvLong: \"" + solid + "\""));

  // A 10,000-byte translation.
  root = MinimalProduct();
  ADictionary attribute = Attribute("qvLong", "v", 1);
  attribute.Set("spec", "S");
  attribute.Set("translation", AQVString(Words(10000)));
  Append(root, "attributesGenerationInfo", attribute);
  outcome = GenerateChecked(root);
  EXPECT_EQ(Text(outcome.renderError),
            Error(4, "Translation string is longer then the maximum allowed (80 characters): " + Words(10000)));

  // A 10,000-byte keyword.
  root = MinimalProduct();
  Append(root, "attributesGenerationInfo", Attribute(solid, "v", 1));
  outcome = GenerateChecked(root);
  EXPECT_EQ(Text(outcome.renderError),
            Error(4, "Main keyword is longer then the maximum allowed (40 characters): " + solid));
}

// ===========================================================================
// String tables

TEST(HostileStringsTable, TablesThatAreNeitherFormAreNothing) {
  const std::vector<std::pair<const char*, std::string>> cases = {
      {"binary garbage", std::string("\x00\x01\x02\xFF\xFE", 5)},
      {"plain text", "this is not a table"},
      {"unterminated string", "\"key\" = \"value"},
      {"missing semicolon", "\"key\" = \"value\""},
      {"unterminated comment", "/* \"key\" = \"value\";"},
      {"invalid UTF-8", "\"key\" = \"caf\xE9\";"},
      {"UTF-16 of odd length", std::string("\xFF\xFE\x22\x00\x6B", 5)},
      {"UTF-16 lone surrogate", std::string("\xFF\xFE\x22\x00\x00\xD8\x22\x00\x3B\x00", 10)},
      {"lone surrogate escape", "\"key\" = \"\\UD800\";"},
      {"broken XML", "<?xml version=\"1.0\"?><plist><dict><key>k</key>"},
      {"binary header only", "bplist00"},
      {"XML array root", "<plist version=\"1.0\"><array><string>x</string></array></plist>"},
  };
  for (const auto& [name, bytes] : cases) {
    EXPECT_FALSE(AStringsTable::Parse(bytes).has_value()) << name;
  }
}

// Bundles whose tables cannot be read add no translations: the PPD is the
// one made without them.
TEST_F(HostileFiles, UnreadableStringTablesAreIgnored) {
  ADictionary root = MinimalProduct();
  const auto product = Load(root);
  ASSERT_NE(product, nullptr);
  const std::vector<AQVString> locales = {"en", "fr"};
  const Outcome plain = Generate(product, {}, locales);
  ASSERT_TRUE(plain.data.has_value());

  const fs::path good = directory_ / "good.bundle";
  Write("good.bundle/fr.lproj/Localizable.strings", "\"Paper Size\" = \"Format du papier\";\n");
  const Outcome translated = Generate(product, {good}, locales);
  ASSERT_TRUE(translated.data.has_value());
  EXPECT_NE(translated.data, plain.data);

  ADictionary table = Dictionary({{"Paper Size", "Caf\xC3\xA9"}});
  std::string surrogate = BinaryPlist(table);
  Patch(surrogate, std::string("\x00\x43\x00\x61\x00\x66\x00\xE9", 8), std::string("\x00\x43\x00\x61\x00\x66\xD8\x00", 8));
  const std::vector<std::pair<std::string, std::string>> tables = {
      {"garbage", std::string("\x00\x01\x02\xFF", 4)},
      {"latin1", "\"Paper Size\" = \"Format du papier \xE9\";"},
      {"surrogate", surrogate},
      {"truncated", std::string(BinaryPlist(table), 0, 20)},
      {"text-and-garbage", "\"Paper Size\" = \"Format\"; garbage"},
  };
  for (const auto& [name, bytes] : tables) {
    SCOPED_TRACE(name);
    const fs::path bundle = directory_ / (name + ".bundle");
    Write(name + ".bundle/fr.lproj/Localizable.strings", bytes);
    const Outcome outcome = Generate(product, {bundle}, locales);
    ASSERT_TRUE(outcome.data.has_value());
    EXPECT_EQ(*outcome.data, *plain.data);
  }

  // A table that is a directory, a bundle that is a file, a missing bundle.
  fs::create_directories(directory_ / "dir.bundle/fr.lproj/Localizable.strings");
  const fs::path file = Write("file.bundle", "not a directory");
  for (const fs::path& bundle : {directory_ / "dir.bundle", file, directory_ / "missing.bundle"}) {
    SCOPED_TRACE(bundle.string());
    const Outcome outcome = Generate(product, {bundle}, locales);
    ASSERT_TRUE(outcome.data.has_value());
    EXPECT_EQ(*outcome.data, *plain.data);
  }
}

TEST_F(HostileFiles, UnreadableTablesAndBundleFoldersAreIgnored) {
  const auto product = Load(MinimalProduct());
  ASSERT_NE(product, nullptr);
  const std::vector<AQVString> locales = {"en", "fr"};
  const Outcome plain = Generate(product, {}, locales);
  const fs::path table = Write("locked.bundle/fr.lproj/Localizable.strings", "\"Paper Size\" = \"Format\";");
  MakeUnreadable(table);
  if (!PermissionsStopReads(table)) {
    GTEST_SKIP() << "running with privileges that ignore file permissions (root): unreadable files cannot be made";
  }
  EXPECT_EQ(Generate(product, {directory_ / "locked.bundle"}, locales).data, plain.data);
  MakeUnreadable(directory_ / "locked.bundle" / "fr.lproj");
  EXPECT_EQ(Generate(product, {directory_ / "locked.bundle"}, locales).data, plain.data);
  MakeUnreadable(directory_ / "locked.bundle");
  EXPECT_EQ(Generate(product, {directory_ / "locked.bundle"}, locales).data, plain.data);
}

// ===========================================================================
// Product paths and the output file

TEST_F(HostileFiles, AnUnreadableProductFileIsAnInputError) {
  const fs::path path = Write("locked.plist", XMLPlist(MinimalProduct()));
  MakeUnreadable(path);
  if (!PermissionsStopReads(path)) {
    GTEST_SKIP() << "running with privileges that ignore file permissions (root): unreadable files cannot be made";
  }
  AError error;
  EXPECT_EQ(APlistProductInfo::LoadFile(path, &error), nullptr);
  EXPECT_EQ(Text(error), Error(5, path.string() + ": cannot read the product description: the file cannot be read"));
  const ToolResult result = RunTool(path);
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.err, "ppdforge: RKPPDGeneration error 5: " + path.string() +
                            ": cannot read the product description: the file cannot be read\n");
  EXPECT_TRUE(OutputDirectory().empty());
}

TEST_F(HostileFiles, AProductInAnUnreadableDirectoryIsAnInputError) {
  const fs::path path = Write("locked/product.plist", XMLPlist(MinimalProduct()));
  MakeUnreadable(directory_ / "locked");
  if (!PermissionsStopReads(path)) {
    GTEST_SKIP() << "running with privileges that ignore file permissions (root): unreadable directories cannot be made";
  }
  AError error;
  EXPECT_EQ(APlistProductInfo::LoadFile(path, &error), nullptr);
  EXPECT_EQ(error.code, 5);
  EXPECT_EQ(error.message.UTF8().rfind(path.string() + ": cannot read the product description: ", 0), 0u);
}

TEST_F(HostileFiles, FailuresLeaveNoOutputFile) {
  fs::create_directories(directory_ / "folder.plist");
  ADictionary longKeyword = MinimalProduct();
  Append(longKeyword, "attributesGenerationInfo", Attribute(std::string(41, 'K'), "v", 1));
  ADictionary badFormat = MinimalProduct();
  badFormat.Set("product", Dictionary({{"version", "1.0"}}));
  Append(badFormat, "attributesGenerationInfo",
         Dictionary({{"generator", "APPDFileVersionGenerator"}, {"name", "FileVersion"}, {"value", "%n"}}));
  ADictionary solid = MinimalProduct();
  Append(solid, "attributesGenerationInfo", Attribute("qvLong", std::string(10000, 'x'), 1));
  std::string surrogate = BinaryPlist(With(MinimalProduct(), "attributesGenerationInfo[2].value", "Caf\xC3\xA9"));
  Patch(surrogate, std::string("\x00\x43\x00\x61\x00\x66\x00\xE9", 8), std::string("\x00\x43\x00\x61\x00\x66\xD8\x00", 8));

  struct Case {
    std::string name;
    fs::path product;
    int status;
    std::string err;
  };
  const fs::path folder = directory_ / "folder.plist";
  const fs::path deep = Write("deep.plist", NestedXMLArrays(100000));
  const fs::path lone = Write("surrogate.plist", surrogate);
  const std::string kLine = "ppdforge: RKPPDGeneration error ";
  const std::vector<Case> cases = {
      {"directory", folder, 2, kLine + "5: " + folder.string() + ": cannot read the product description: it is a directory\n"},
      {"missing", directory_ / "missing.plist", 2,
       kLine + "5: " + (directory_ / "missing.plist").string() + ": cannot read the product description: no such file\n"},
      {"deep", deep, 2, kLine + "5: " + deep.string() + ": cannot read the product description: the property list nests deeper than 256 levels\n"},
      {"surrogate", lone, 2, kLine + "5: " + lone.string() + ": cannot read the product description: a string in the property list holds a lone UTF-16 surrogate\n"},
      {"keyword", Write("keyword.plist", XMLPlist(longKeyword)), 1,
       kLine + "4: Main keyword is longer then the maximum allowed (40 characters): " + std::string(41, 'K') + "\n"},
      {"format", Write("format.plist", XMLPlist(badFormat)), 1,
       kLine + "1: Cannot format the value of PPD attribute *FileVersion with \"%n\": conversion \"%n\" is not allowed\n"},
      {"line", Write("line.plist", XMLPlist(solid)), 1,
       kLine + "4: Line longer then the maximum allowed: 255 characters in statement: *qvLong: \"" + std::string(10000, 'x') + "\"\n"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    ToolResult result = RunTool(c.product);
    EXPECT_EQ(result.status, c.status);
    EXPECT_EQ(result.err, c.err);
    EXPECT_TRUE(OutputDirectory().empty());
    // An existing output is left as it was.
    Write("out/hostile.ppd", "previous");
    result = RunTool(c.product);
    EXPECT_EQ(result.status, c.status);
    EXPECT_EQ(OutputDirectory(), std::vector<std::string>{"hostile.ppd"});
    std::ifstream previous(Output());
    std::string text;
    std::getline(previous, text);
    EXPECT_EQ(text, "previous");
    fs::remove(Output());
  }
}

}  // namespace
}  // namespace ppdforge
