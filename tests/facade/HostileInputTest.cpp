// Hostile product descriptions, string tables and paths: every case ends in
// a clear error or a documented fallback (docs/robustness.md), never in a
// crash, a hang or a partial output file.

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "core/APropertyList.h"
#include "core/AStringsTable.h"
#include "core/AWorkerPool.h"
#include "facade/APlistProductInfo.h"
#include "facade/ARKPPDConcreteGenerator.h"
#include "support/GeneratorTestSupport.h"
#include "support/ProcessRunner.h"
#include "support/TemporaryDirectory.h"

namespace ppdforge {
namespace {

namespace fs = std::filesystem;
using testing::Dict;
using testing::ProcessResult;
using testing::ProcessRunner;
using testing::PropertyListBytes;
using testing::SmallProduct;
using testing::TemporaryDirectory;

// ---------------------------------------------------------------------------
// Building descriptions

ADictionary Attribute(const std::string& name, const std::string& value) {
  return Dict({{"name", AQVString(name)}, {"value", AQVString(value)}, {"value-type", 1}});
}

ADictionary Media(const std::string& name) { return testing::MediaSize(name.c_str(), name.c_str(), 595, 842, 12); }

ADictionary Append(ADictionary root, const char* key, const AValue& element) {
  AArray array;
  root.GetArray(key, array);
  array.Append(element);
  root.Set(key, array);
  return root;
}

ADictionary Option(const std::string& keyword, const AArray& choices) {
  return Dict({{"code-name", AQVString(keyword)}, {"choices", choices}});
}

ADictionary Choices(const std::string& prefix, std::size_t count) {
  AArray choices;
  for (std::size_t i = 0; i < count; ++i) choices.Append(Dict({{"id", AQVString(prefix + std::to_string(i))}}));
  return Option("Big", choices);
}

ADictionary With(const ADictionary& root, const std::string& path, const AValue& value) {
  return testing::WithValue(root, path, value);
}

// Every value of a description with its key path, and whether it is a container.
void CollectPaths(const AValue& node, const std::string& path, std::vector<std::pair<std::string, bool>>& out) {
  if (!path.empty()) out.emplace_back(path, node.IsArray() || node.IsDictionary());
  ADictionary dictionary;
  AArray array;
  if (node.GetDictionary(dictionary)) {
    for (const auto& [key, value] : dictionary) CollectPaths(value, path + (path.empty() ? "" : ".") + key.UTF8(), out);
  } else if (node.GetArray(array)) {
    for (std::size_t i = 0; i < array.Count(); ++i) CollectPaths(array[i], path + "[" + std::to_string(i) + "]", out);
  }
}

// Replaces the one occurrence of `what` in `bytes`.
std::string Patch(std::string bytes, const std::string& what, const std::string& with) {
  const std::size_t at = bytes.find(what);
  EXPECT_NE(at, std::string::npos);
  EXPECT_EQ(bytes.find(what, at + 1), std::string::npos);
  return at == std::string::npos ? bytes : bytes.replace(at, what.size(), with);
}

// libplist writes a non-ASCII string as UTF-16: "Café" is 0043 0061 0066 00E9.
const std::string kCafe("\x00\x43\x00\x61\x00\x66\x00\xE9", 8);
const std::string kCafeHighSurrogate("\x00\x43\x00\x61\x00\x66\xD8\x00", 8);

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
    out += last && !cycle ? '\xA0' : '\xA1';
    if (!last || cycle) bigEndian(last ? 0 : i + 1, 4);
  }
  const uint64_t table = out.size();
  for (uint32_t offset : offsets) bigEndian(offset, 4);
  out.append(6, '\0');
  out += "\x04\x04";  // offset and reference sizes
  bigEndian(depth, 8);
  bigEndian(0, 8);
  bigEndian(table, 8);
  return out;
}

std::string NestedXMLArrays(std::size_t depth) {
  std::string arrays;
  for (std::size_t i = 0; i < depth; ++i) arrays += "<array>";
  for (std::size_t i = 0; i < depth; ++i) arrays += "</array>";
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n"
         "<dict><key>features</key><dict><key>deep</key>" +
         arrays + "</dict></dict></plist>\n";
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
  return product ? Generate(product) : Outcome{};
}

std::string Error(long code, const std::string& message) {
  return testing::Describe(AError{"RKPPDGeneration", code, message});
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
  void SetUp() override { fs::create_directories(directory_.Path() / "out"); }

  fs::path Write(const std::string& name, const std::string& bytes) const { return directory_.Write(name, bytes); }
  fs::path Path(const std::string& name) const { return directory_.Path() / name; }

  // Takes every permission away from `path`; false when that does not stop
  // this process from reading `probe` (root reads anything).
  static bool MakeUnreadable(const fs::path& path, const fs::path& probe) {
    fs::permissions(path, fs::perms::none);
    return ::access(probe.c_str(), R_OK) != 0;
  }

  // Runs `ppdforge generate PRODUCT -o out/hostile.ppd`.
  ProcessResult RunTool(const fs::path& product) const {
    return ProcessRunner::RunTool({"generate", product.string(), "-o", Path("out/hostile.ppd").string()});
  }
  std::vector<std::string> OutputDirectory() const { return directory_.Entries("out"); }

  TemporaryDirectory directory_;
};

#define SKIP_AS_ROOT() GTEST_SKIP() << "running with privileges that ignore permissions (root): nothing is unreadable"

// ===========================================================================
// Wrong types

// A description holding every key the loader knows, each with a good value.
ADictionary EveryKeyProduct() {
  ADictionary root = SmallProduct();
  root.Set("features", Dict({{"supportsCustomPageSize", true}}));
  root.Set("customPageSizeMargins", AArray{1, 2, 3, 4});
  root.Set("customPageSizeConstraints", AArray{10, 20, 30, 40});
  root.Set("customPageSizeExcludes", Dict({{"Duplex", AArray{"DuplexNoTumble"}}}));
  root.Set("colorProfiles", AArray{Dict({{"name", "Plain"}, {"path", "/p.icc"}})});
  root.Set("product", Dict({
                          {"modelName", "M"},
                          {"productNames", AArray{"M"}},
                          {"components", Dict({{"rasterFilter", "/f"}})},
                          {"duplex", Dict({{"backSide", "Normal"}})},
                          {"markers", AArray{Dict({{"name", "K"}})}},
                          {"ippReasons", AArray{Dict({{"reason", "r"}})}},
                          {"presets", AArray{Dict({{"name", "P"},
                                                   {"settings", AArray{AArray{"A", "B"}}},
                                                   {"presetValues", AArray{AArray{"C", "D"}}}})}},
                          {"preFilterAttributes", AArray{Attribute("cupsPreFilter", "x")}},
                      }));
  root = Append(root, "optionsGenerationInfo", Option("Quality", AArray{Dict({{"id", "Draft"}})}));
  root = Append(root, "cupsUIResolversGenerationInfo", Dict({{"resolver-name", "R"}}));
  root = Append(root, "constraintsGenerationInfo", Dict({{"option-1", "Quality"}}));
  return With(
      root, "options.QVPaperType",
      Dict({{"values", AArray{Dict({{"name", "Plain"}})}}, {"PDFPreFilterAttributes", AArray{Attribute("a", "b")}}}));
}

struct WrongType {
  std::string path;
  std::string message;  // after "hostile.plist: "
  AValue wrong;
};

// Each key with its documented type gets a value of another type: an
// integer for a string, a dictionary for an array, else an array.
std::vector<WrongType> WrongTypes() {
  struct Keys {
    const char* type;
    const char* prefix;
    const char* keys;  // separated by blanks
  };
  const std::vector<Keys> table = {
      {"a string", "attributesGenerationInfo[0].", "generator comment name spec translation value"},
      {"a string", "optionsGenerationInfo[0].",
       "generator comment code-name user-name group-name setting-name choice-generic-code default-choice "
       "choices[0].id choices[0].name choices[0].code choices[0].comment"},
      {"a string", "cupsUIResolversGenerationInfo[0].", "generator comment resolver-name option-1 choice-1"},
      {"a string", "constraintsGenerationInfo[0].", "generator comment resolver option-2 choice-10"},
      {"a string", "options.",
       "QVPaperType.userName QVPaperType.defaultChoice QVPaperType.values[0].defaultQuality "
       "QVPaperType.PDFPreFilterAttributes[0].value"},
      {"a string", "options.QVPaperInfo.values[0].", "name userName PPDName mediaSizeCategory"},
      {"a string", "colorProfiles[0].", "name path userName colorModel mediaType resolution"},
      {"a string", "product.",
       "manufacturer modelName nickName shortNickName version iconPath outputOrder markerNotice productNames[0] "
       "components.rasterFilter duplex.backSide markers[0].name markers[0].userName ippReasons[0].reason "
       "ippReasons[0].message ippReasons[0].value presets[0].name presets[0].userName presets[0].settings[0][1] "
       "presets[0].presetValues[0][0] preFilterAttributes[0].name"},
      {"a string", "", "customPageSizeExcludes.Duplex[0]"},
      {"an array of dictionaries", "",
       "attributesGenerationInfo optionsGenerationInfo cupsUIResolversGenerationInfo constraintsGenerationInfo "
       "colorProfiles optionsGenerationInfo[0].choices options.QVPaperType.values "
       "options.QVPaperType.PDFPreFilterAttributes product.markers product.ippReasons product.presets "
       "product.preFilterAttributes"},
      {"an array of numbers", "", "customPageSizeMargins customPageSizeConstraints"},
      {"an array of strings", "", "customPageSizeExcludes.Duplex product.productNames product.presets[0].settings[0]"},
      {"an array of arrays", "product.presets[0].", "settings presetValues"},
      {"a dictionary", "",
       "options features product customPageSizeExcludes attributesGenerationInfo[1] optionsGenerationInfo[0] "
       "optionsGenerationInfo[0].choices[0] cupsUIResolversGenerationInfo[0] constraintsGenerationInfo[0] "
       "options.QVPaperType options.QVPaperType.values[0] colorProfiles[0] product.components product.duplex "
       "product.markers[0]"},
      {"a number", "", "customPageSizeMargins[2] customPageSizeConstraints[0]"},
      {"a number", "options.QVPaperInfo.values[0].",
       "oversprayScaleFactor paperRectTop paperRectLeft paperRectBottom paperRectRight pageRectTop pageRectLeft "
       "pageRectBottom pageRectRight cupsColorOrder cupsColorSpace cupsBitsPerColor horizontalResolutionValue "
       "verticalResolutionValue"},
      {"an integer", "", "CUPSVersion"},
      {"a number or a string", "",
       "attributesGenerationInfo[0].value-type optionsGenerationInfo[0].min-value-count "
       "optionsGenerationInfo[0].ui-type"},
      {"a boolean or a string", "", "constraintsGenerationInfo[0].non-ui"},
      {"a boolean, a number or a string", "", "constraintsGenerationInfo[0].cupsUIConstraint"},
      {"a boolean or a number", "",
       "options.QVPaperType.enabled options.QVPaperInfo.values[0].isCustomMediaSize "
       "options.QVPaperInfo.values[0].supportsFullBleed"},
      {"a boolean", "", "colorProfiles[0].default product.duplex.requiresFlippedMargin"},
  };
  std::vector<WrongType> rows;
  for (const Keys& keys : table) {
    const std::string type = keys.type;
    const bool string = type == "a string";
    const bool array = type.rfind("an array", 0) == 0;
    std::istringstream words(keys.keys);
    for (std::string key; words >> key;) {
      const std::string path = keys.prefix + key;
      const char* found = string ? "an integer" : array ? "a dictionary" : "an array";
      const AValue wrong = string ? AValue(7) : array ? AValue(ADictionary()) : AValue(AArray{});
      rows.push_back({path, path + " is " + found + ", expected " + type, wrong});
    }
  }
  // Other found types, counts and required keys.
  const std::vector<WrongType> more = {
      {"CUPSVersion", "CUPSVersion is a real number, expected an integer", 288.0},
      {"attributesGenerationInfo[1].value", "attributesGenerationInfo[1].value is a real number, expected a string",
       2.4},
      {"optionsGenerationInfo[0].ui-type",
       "optionsGenerationInfo[0].ui-type is a boolean, expected a number or a string", true},
      {"constraintsGenerationInfo[0].option-12",
       "constraintsGenerationInfo[0].option-12 is an integer, expected a string", 12},
      {"customPageSizeConstraints[2]", "customPageSizeConstraints[2] is a string, expected a number", "30"},
      {"customPageSizeMargins", "customPageSizeMargins has 3 elements, expected 4", AArray{1, 2, 3}},
      {"product.presets[0].settings", "product.presets[0].settings[1] has 3 elements, expected 2",
       AArray{AArray{"A", "B"}, AArray{"A", "B", "C"}}},
      {"colorProfiles", "colorProfiles[1]: missing \"path\"",
       AArray{Dict({{"name", "A"}, {"path", "a"}}), Dict({{"name", "B"}})}},
  };
  rows.insert(rows.end(), more.begin(), more.end());
  return rows;
}

class HostileWrongType : public ::testing::TestWithParam<WrongType> {};

TEST_P(HostileWrongType, IsAnInputErrorNamingTheKeyAndTheType) {
  AError error;
  EXPECT_EQ(Load(With(EveryKeyProduct(), GetParam().path, GetParam().wrong), &error), nullptr);
  EXPECT_EQ(testing::Describe(error), Error(5, "hostile.plist: " + GetParam().message));
}

INSTANTIATE_TEST_SUITE_P(EveryKnownKey, HostileWrongType, ::testing::ValuesIn(WrongTypes()),
                         [](const ::testing::TestParamInfo<WrongType>& param) {
                           return std::regex_replace(param.param.path, std::regex("[^A-Za-z0-9]"), "_") + "_" +
                                  std::to_string(param.index);
                         });

TEST(HostileDescription, TheCompleteDescriptionItselfLoads) {
  AError error;
  EXPECT_NE(Load(EveryKeyProduct(), &error), nullptr) << error.message;
}

// The members of a description are checked side by side when the process
// has helper threads; of several problems the first in key order is the one
// reported, as in a single walk.
TEST(HostileDescription, OfSeveralProblemsTheFirstInKeyOrderIsReported) {
  AWorkerPool::Shared().Reserve(4);
  const ADictionary twoWrong = With(With(EveryKeyProduct(), "product.modelName", 5), "colorProfiles[0].name", 6);
  for (int run = 0; run < 20; ++run) {
    AError error;
    EXPECT_EQ(Load(twoWrong, &error), nullptr);
    EXPECT_EQ(testing::Describe(error),
              Error(5, "hostile.plist: colorProfiles[0].name is an integer, expected a string"));
  }
}

// Keys that the loader does not know (features, generator-specific entry
// keys, "excludes") reach the generators with whatever type they hold.
TEST(HostileDescription, UncheckedKeysOfTheWrongTypeFallBackOrFailClearly) {
  // A feature is read as a flag: a string by its first letter, anything
  // else that is no number or boolean as false.
  const ADictionary width = Append(SmallProduct(), "attributesGenerationInfo",
                                   Dict({{"generator", "APPDCustomPageSizeGenerator"},
                                         {"name", "MaxMediaWidth"},
                                         {"value", "%.0f"},
                                         {"value-type", 1}}));
  Outcome outcome = GenerateChecked(With(width, "features", Dict({{"supportsCustomPageSize", AArray{1}}})));
  ASSERT_TRUE(outcome.data.has_value());
  EXPECT_EQ(outcome.data->find("*MaxMediaWidth"), std::string::npos);
  outcome = GenerateChecked(With(width, "features", Dict({{"supportsCustomPageSize", "yes"}})));
  ASSERT_TRUE(outcome.data.has_value());
  EXPECT_NE(outcome.data->find("*MaxMediaWidth: \"0\""), std::string::npos);

  // "component" of the wrong type: the generator has no datum and writes nothing.
  ADictionary root = With(SmallProduct(), "product", Dict({{"components", Dict({{"rasterFilter", "/f"}})}}));
  outcome = GenerateChecked(Append(root, "attributesGenerationInfo",
                                   Dict({{"generator", "APPDDriverComponentsGenerator"},
                                         {"name", "cupsFilter"},
                                         {"component", AArray{"rasterFilter"}}})));
  ASSERT_TRUE(outcome.data.has_value());
  EXPECT_EQ(outcome.data->find("*cupsFilter"), std::string::npos);

  // "excludes" of the wrong type: the generator names the key.
  root = With(SmallProduct(), "options.QVPaperInfo.values[0].excludes", "Duplex");
  root = Append(root, "optionsGenerationInfo", Option("Duplex", AArray{Dict({{"id", "None"}})}));
  outcome = GenerateChecked(
      Append(root, "constraintsGenerationInfo", Dict({{"generator", "APPDDuplexOnPaperSizeConstraintsGenerator"}})));
  EXPECT_FALSE(outcome.created);
  EXPECT_EQ(testing::Describe(outcome.createError),
            Error(1,
                  "Invalid product description: options.QVPaperInfo.values[0].excludes must be a "
                  "dictionary from option keyword to an array of choice keywords"));
}

// Whatever type stands anywhere in the shipped descriptions, the generators
// (reached without the loader's checks, as a driver's own product object
// would reach them) end in a PPD or an error, never in a crash or in text
// that is not UTF-8.
TEST(HostileDescription, WrongTypesAnywhereNeverCrashTheGenerators) {
  std::size_t runs = 0;
  for (const char* file : {"examples/inkjet/qv-inkjet-500.plist", "tests/golden/product-data.plist",
                           "tests/golden/specific-options.plist"}) {
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
      SCOPED_TRACE(std::string(file) + ": " + path);
      // A number where a container stands, a container where a string, number or boolean stands.
      const AValue wrong = container ? AValue(7) : AValue(AArray{AValue("x")});
      const Outcome outcome = Generate(std::make_shared<testing::FakeProductInfo>(With(root, path, wrong)));
      ++runs;
      if (!outcome.created) {
        EXPECT_TRUE(outcome.createError.domain.IsEmpty() || !outcome.createError.message.IsEmpty());
      } else if (outcome.data) {
        EXPECT_TRUE(IsValidUTF8(*outcome.data));
      } else {
        EXPECT_EQ(outcome.renderError.code, 4);
        EXPECT_FALSE(outcome.renderError.message.IsEmpty());
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
// Sizes at which quadratic work in a list would show: minutes or hours,
// against a fraction of a second for linear work.
constexpr std::size_t kManyMedia = kSanitized ? 25000 : 100000;
constexpr std::size_t kMany = kSanitized ? 5000 : 20000;

struct HugeCase {
  const char* name;
  std::function<ADictionary()> product;
  std::vector<std::string> linePrefixes;  // each starts `count` lines
  std::size_t count;
  double seconds;
};

ADictionary Constraints(bool twice) {
  ADictionary root = Append(Append(SmallProduct(), "optionsGenerationInfo", Choices("C", kMany)),
                            "optionsGenerationInfo", Option("Other", AArray{Dict({{"id", "On"}})}));
  AArray constraints;
  // The second round names a resolver: each replaces its twin.
  for (const char* resolver : twice ? std::vector<const char*>{"", "R"} : std::vector<const char*>{""}) {
    for (std::size_t i = 0; i < kMany; ++i) {
      constraints.Append(Dict({{"option-1", "Big"},
                               {"choice-1", AQVString("C" + std::to_string(i))},
                               {"option-2", "Other"},
                               {"choice-2", "On"},
                               {"resolver", resolver}}));
    }
  }
  root.Set("constraintsGenerationInfo", constraints);
  return root;
}

class HostileHugeInput : public ::testing::TestWithParam<HugeCase> {};

TEST_P(HostileHugeInput, TakesLinearTime) {
  const ADictionary root = GetParam().product();
  const auto start = std::chrono::steady_clock::now();
  const Outcome outcome = GenerateChecked(root);
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  ASSERT_TRUE(outcome.data.has_value()) << outcome.createError.message << outcome.renderError.message;
  for (const std::string& prefix : GetParam().linePrefixes) {
    EXPECT_EQ(CountLines(*outcome.data, prefix), GetParam().count) << prefix;
  }
  EXPECT_LT(seconds, GetParam().seconds * kSlowdown);
}

INSTANTIATE_TEST_SUITE_P(
    Lists, HostileHugeInput,
    ::testing::Values(
        HugeCase{"MediaSizes",
                 [] {
                   AArray media;
                   for (std::size_t i = 0; i < kManyMedia; ++i) media.Append(Media("M" + std::to_string(i)));
                   return With(SmallProduct(), "options.QVPaperInfo.values", media);
                 },
                 {"*PageSize M", "*PaperDimension M"},
                 kManyMedia,
                 60},
        HugeCase{"Choices",
                 [] { return Append(SmallProduct(), "optionsGenerationInfo", Choices("C", kMany)); },
                 {"*Big C"},
                 kMany,
                 30},
        HugeCase{"Attributes",
                 [] {
                   ADictionary root = SmallProduct();
                   for (std::size_t i = 0; i < kMany; ++i) {
                     root = Append(root, "attributesGenerationInfo",
                                   With(Attribute("qvData", "v"), "spec", AQVString("S" + std::to_string(i))));
                   }
                   return root;
                 },
                 {"*qvData S"},
                 kMany,
                 30},
        HugeCase{"Constraints", [] { return Constraints(false); }, {"*UIConstraints: *Big C"}, kMany, 30},
        HugeCase{"ReplacedConstraints", [] { return Constraints(true); }, {"*UIConstraints: *Big C"}, kMany, 30}),
    [](const ::testing::TestParamInfo<HugeCase>& param) { return std::string(param.param.name); });

// ===========================================================================
// Deep nesting, broken and invalid property lists

TEST_F(HostileFiles, BrokenPropertyListsAreInputErrors) {
  const std::string kDeep = "the property list nests deeper than 256 levels";
  const std::string kNotAList = "the data is not a property list";
  const std::string kInvalid = "a string in the property list is not valid UTF-8";
  const std::string kSurrogate = "a string in the property list holds a lone UTF-16 surrogate";
  const ADictionary root = With(SmallProduct(), "attributesGenerationInfo[1].value", "Caf\xC3\xA9");
  const std::string xml = PropertyListBytes(root, false);
  const std::string binary = PropertyListBytes(root, true);
  const std::string keyed = PropertyListBytes(With(SmallProduct(), "features", Dict({{"Caf\xC3\xA9", true}})), true);
  const std::vector<std::tuple<std::string, std::string, std::string>> cases = {
      {"xml-257.plist", NestedXMLArrays(257), kDeep},
      {"xml-100000.plist", NestedXMLArrays(100000), kDeep},
      {"binary-300.plist", NestedBinaryArrays(300, false), kDeep},
      {"binary-100000.plist", NestedBinaryArrays(100000, false), kDeep},
      {"binary-cycle.plist", NestedBinaryArrays(3, true), kNotAList},
      {"binary-self.plist", NestedBinaryArrays(1, true), kNotAList},
      {"text.plist", "this is not a property list", kNotAList},
      {"latin1-value.plist", Patch(xml, "Caf\xC3\xA9", "Caf\xE9"), kInvalid},
      {"cesu-value.plist", Patch(xml, "Caf\xC3\xA9", "Caf\xED\xA0\x80"), kInvalid},  // a surrogate as UTF-8
      {"invalid-key.plist", Patch(xml, "<key>CUPSVersion", "<key>CUPS\xFFVersion"), kInvalid},
      {"binary-ascii-high-byte.plist", Patch(binary, "PPD-Adobe", std::string("PPD-\xC3") + "dobe"), kInvalid},
      {"high-surrogate.plist", Patch(binary, kCafe, kCafeHighSurrogate), kSurrogate},
      {"low-surrogate.plist", Patch(binary, kCafe, std::string("\x00\x43\xDC\x00\x00\x66\x00\xE9", 8)), kSurrogate},
      {"unpaired-high.plist", Patch(binary, kCafe, std::string("\xDB\xFF\x00\x61\x00\x66\x00\xE9", 8)), kSurrogate},
      {"surrogate-key.plist", Patch(keyed, kCafe, std::string("\x00\x43\x00\x61\x00\x66\xDF\xFF", 8)), kSurrogate},
  };
  for (const auto& [name, bytes, reason] : cases) {
    SCOPED_TRACE(name);
    const fs::path path = Write(name, bytes);
    AError error;
    EXPECT_EQ(APlistProductInfo::LoadFile(path, &error), nullptr);
    EXPECT_EQ(testing::Describe(error), Error(5, path.string() + ": cannot read the product description: " + reason));
  }
  // The untouched files load.
  AError error;
  EXPECT_NE(APlistProductInfo::LoadFile(Write("good.plist", xml), &error), nullptr) << error.message;
  EXPECT_NE(APlistProductInfo::LoadFile(Write("good.bplist", binary), &error), nullptr) << error.message;
}

TEST_F(HostileFiles, NestingOf250LevelsUnderAFeatureLoadsAndGenerates) {
  AValue deep = AArray{};
  for (int i = 0; i < 248; ++i) deep = AArray{deep};
  const fs::path path =
      Write("deep.plist", PropertyListBytes(With(SmallProduct(), "features", Dict({{"deep", deep}})), true));
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

class HostileFormatTest : public ::testing::TestWithParam<HostileFormat> {};

// A product "value" format: the attribute is refused with the format and the
// formatter's reason; as the last description of its phase it ends the run.
TEST_P(HostileFormatTest, InAProductValueFormatIsAnError) {
  const ADictionary root =
      Append(With(SmallProduct(), "product", Dict({{"version", "1.0"}})), "attributesGenerationInfo",
             Dict({{"generator", "APPDFileVersionGenerator"},
                   {"name", "FileVersion"},
                   {"value", GetParam().valueFormat},
                   {"value-type", 1}}));
  const Outcome outcome = GenerateChecked(root);
  EXPECT_FALSE(outcome.created);
  EXPECT_EQ(testing::Describe(outcome.createError),
            Error(1, std::string("Cannot format the value of PPD attribute *FileVersion with \"") +
                         GetParam().valueFormat + "\": " + GetParam().valueProblem));
}

// A "choice-generic-code": the option is refused, naming the choice and the option.
TEST_P(HostileFormatTest, InAChoiceGenericCodeIsAnError) {
  const ADictionary resolution =
      Dict({{"name", "300dpi"}, {"horizontalResolutionValue", 300}, {"verticalResolutionValue", 300}});
  const ADictionary root = Append(
      With(SmallProduct(), "options.QVResolution", Dict({{"defaultChoice", "300dpi"}, {"values", AArray{resolution}}})),
      "optionsGenerationInfo",
      Dict({{"generator", "APPDResolutionOptionGenerator"},
            {"code-name", "Resolution"},
            {"setting-name", "QVResolution"},
            {"choice-generic-code", GetParam().codeFormat}}));
  const Outcome outcome = GenerateChecked(root);
  EXPECT_FALSE(outcome.created);
  EXPECT_EQ(testing::Describe(outcome.createError),
            Error(1, "Cannot make the code of PPD choice 300dpi in option Resolution: choice-generic-code \"" +
                         std::string(GetParam().codeFormat) + "\" does not fit: " + GetParam().codeProblem));
}

// A custom page size value: the format is written as it stands.
TEST_P(HostileFormatTest, InACustomPageSizeValueIsWrittenUnformatted) {
  ADictionary root = With(SmallProduct(), "features", Dict({{"supportsCustomPageSize", true}}));
  root.Set("customPageSizeConstraints", AArray{10, 20, 30, 40});
  const Outcome outcome = GenerateChecked(Append(root, "attributesGenerationInfo",
                                                 Dict({{"generator", "APPDCustomPageSizeGenerator"},
                                                       {"name", "MaxMediaWidth"},
                                                       {"value", GetParam().codeFormat},
                                                       {"value-type", 1}})));
  ASSERT_TRUE(outcome.data.has_value()) << outcome.createError.message << outcome.renderError.message;
  EXPECT_NE(outcome.data->find(std::string("*MaxMediaWidth: \"") + GetParam().codeFormat + "\"\n"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(
    Formats, HostileFormatTest,
    ::testing::Values(
        HostileFormat{"n", "%n", "conversion \"%n\" is not allowed", "%n", "conversion \"%n\" is not allowed"},
        HostileFormat{"s", "%s", "conversion \"%s\" is not allowed (a string is written with \"%@\")",
                      "<</HWResolution[%s %s]>>", "conversion \"%s\" is not allowed (a string is written with \"%@\")"},
        HostileFormat{"p", "<%p>", "conversion \"%p\" is not allowed", "<%p>", "conversion \"%p\" is not allowed"},
        HostileFormat{"TooMany", "%@ %@ %@", "conversion \"%@\" needs argument 2, but 1 argument was passed",
                      "%d %d %d", "conversion \"%d\" needs argument 3, but 2 arguments were passed"},
        HostileFormat{"Positional", "%9$@", "conversion \"%9$@\" needs argument 9, but 1 argument was passed",
                      "%2$d %9$d", "conversion \"%9$d\" needs argument 9, but 2 arguments were passed"},
        HostileFormat{"WrongType", "%d", "conversion \"%d\" needs an integer argument, not a string", "%@",
                      "conversion \"%@\" needs a string argument, not an integer"},
        HostileFormat{"HugeWidth", "%999999999@", "conversion \"%999999999\" has a width above 4096", "%999999999d",
                      "conversion \"%999999999\" has a width above 4096"}),
    [](const ::testing::TestParamInfo<HostileFormat>& param) { return std::string(param.param.name); });

// ===========================================================================
// Keyword and value limits

struct LimitCase {
  const char* name;
  ADictionary product;
  std::string written;  // a piece of the PPD, when it is made
  std::string error;    // the rendering error (code 4) otherwise
};

const std::string k40(40, 'K');
const std::string k41(41, 'K');
const std::string kSolid(10000, 'x');

std::string Words(std::size_t bytes) {
  std::string text;
  while (text.size() < bytes) text += text.empty() ? "word" : " word";
  return text.substr(0, bytes);
}

ADictionary WithAttribute(const ADictionary& attribute) {
  return Append(SmallProduct(), "attributesGenerationInfo", attribute);
}
ADictionary WithOption(const std::string& keyword, const std::string& choice) {
  return Append(SmallProduct(), "optionsGenerationInfo", Option(keyword, AArray{Dict({{"id", AQVString(choice)}})}));
}
ADictionary WithMedia(const std::string& name) {
  return With(With(SmallProduct(), "options.QVPaperInfo.values", AArray{Media(name)}),
              "options.QVPaperInfo.defaultChoice", AQVString(name));
}

class HostileLimits : public ::testing::TestWithParam<LimitCase> {};

TEST_P(HostileLimits, AreWrittenOrRefusedWhole) {
  const Outcome outcome = GenerateChecked(GetParam().product);
  if (!GetParam().error.empty()) {
    EXPECT_FALSE(outcome.data.has_value());
    EXPECT_EQ(testing::Describe(outcome.renderError), Error(4, GetParam().error));
    return;
  }
  ASSERT_TRUE(outcome.data.has_value()) << outcome.renderError.message;
  EXPECT_NE(outcome.data->find(GetParam().written), std::string::npos);
  std::istringstream lines(*outcome.data);
  for (std::string line; std::getline(lines, line);) EXPECT_LT(line.size(), 256u);
}

const char* const kMain = "Main keyword is longer then the maximum allowed (40 characters): ";
const char* const kOption = "Option keyword is longer then the maximum allowed (40 characters): ";

INSTANTIATE_TEST_SUITE_P(
    Keywords, HostileLimits,
    ::testing::Values(
        LimitCase{"AttributeName40", WithAttribute(Attribute(k40, "v")), "*" + k40 + ": \"v\"\n", ""},
        LimitCase{"AttributeName41", WithAttribute(Attribute(k41, "v")), "", kMain + k41},
        LimitCase{"AttributeSpec40", WithAttribute(With(Attribute("qvData", "v"), "spec", AQVString(k40))),
                  "*qvData " + k40 + ": \"v\"\n", ""},
        LimitCase{"AttributeSpec41", WithAttribute(With(Attribute("qvData", "v"), "spec", AQVString(k41))), "",
                  kOption + k41},
        LimitCase{"Choice40", WithOption("Q", k40), "*Q " + k40 + ": \"\"\n", ""},
        LimitCase{"Choice41", WithOption("Q", k41), "", kOption + k41},
        // "*Default" and the option keyword make the main keyword of the
        // default line, so 33 bytes is the longest that can be written.
        LimitCase{"Option33", WithOption(std::string(33, 'O'), "A"), "*Default" + std::string(33, 'O') + ": A\n", ""},
        LimitCase{"Option34", WithOption(std::string(34, 'O'), "A"), "", kMain + ("Default" + std::string(34, 'O'))},
        LimitCase{"Option40", WithOption(k40, "A"), "", kOption + ("*" + k40)},
        LimitCase{"Media40", WithMedia(k40), "*PageSize " + k40 + "/", ""},
        LimitCase{"Media41", WithMedia(k41), "", kOption + k41},
        // A quoted value with spaces is wrapped under 255 bytes a line and closed with *End.
        LimitCase{"Value10000Words", WithAttribute(Attribute("qvLong", Words(10000))), "\"\n*End\n", ""},
        LimitCase{"Value10000Solid", WithAttribute(Attribute("qvLong", kSolid)), "",
                  "Line longer then the maximum allowed: 255 characters in statement: *qvLong: \"" + kSolid + "\""},
        LimitCase{
            "Translation10000",
            WithAttribute(With(With(Attribute("qvLong", "v"), "spec", "S"), "translation", AQVString(Words(10000)))),
            "", "Translation string is longer then the maximum allowed (80 characters): " + Words(10000)},
        LimitCase{"Keyword10000", WithAttribute(Attribute(kSolid, "v")), "", kMain + kSolid}),
    [](const ::testing::TestParamInfo<LimitCase>& param) { return std::string(param.param.name); });

// ===========================================================================
// String tables

TEST(HostileStringsTable, TablesThatAreNeitherFormAreNothing) {
  for (const std::string& bytes :
       {std::string("\x00\x01\x02\xFF\xFE", 5),                                // binary garbage
        std::string("this is not a table"), std::string("\"key\" = \"value"),  // unterminated string
        std::string("\"key\" = \"value\""),                                    // missing semicolon
        std::string("/* \"key\" = \"value\";"),                                // unterminated comment
        std::string("\"key\" = \"caf\xE9\";"),                                 // invalid UTF-8
        std::string("\xFF\xFE\x22\x00\x6B", 5),                                // UTF-16 of odd length
        std::string("\xFF\xFE\x22\x00\x00\xD8\x22\x00\x3B\x00", 10),           // UTF-16 lone surrogate
        std::string("\"key\" = \"\\UD800\";"),                                 // lone surrogate escape
        std::string("<?xml version=\"1.0\"?><plist><dict><key>k</key>"),       // broken XML
        std::string("bplist00"),                                               // binary header only
        std::string("<plist version=\"1.0\"><array><string>x</string></array></plist>")}) {
    EXPECT_FALSE(AStringsTable::Parse(bytes).has_value()) << bytes;
  }
}

// Bundles whose tables cannot be read add no translations: the PPD is the
// one made without them.
TEST_F(HostileFiles, UnreadableStringTablesAreIgnored) {
  const auto product = Load(SmallProduct());
  ASSERT_NE(product, nullptr);
  const std::vector<AQVString> locales = {"en", "fr"};
  const Outcome plain = Generate(product, {}, locales);
  ASSERT_TRUE(plain.data.has_value());
  Write("good.bundle/fr.lproj/Localizable.strings", "\"Paper Size\" = \"Format du papier\";\n");
  EXPECT_NE(Generate(product, {Path("good.bundle")}, locales).data, plain.data);

  const std::string table = PropertyListBytes(Dict({{"Paper Size", "Caf\xC3\xA9"}}), true);
  const std::vector<std::pair<std::string, std::string>> tables = {
      {"garbage", std::string("\x00\x01\x02\xFF", 4)},
      {"latin1", "\"Paper Size\" = \"Format du papier \xE9\";"},
      {"surrogate", Patch(table, kCafe, kCafeHighSurrogate)},
      {"truncated", table.substr(0, 20)},
      {"text-and-garbage", "\"Paper Size\" = \"Format\"; garbage"},
  };
  std::vector<fs::path> bundles;
  for (const auto& [name, bytes] : tables) {
    Write(name + ".bundle/fr.lproj/Localizable.strings", bytes);
    bundles.push_back(Path(name + ".bundle"));
  }
  // A table that is a directory, a bundle that is a file, a missing bundle.
  fs::create_directories(Path("dir.bundle/fr.lproj/Localizable.strings"));
  bundles.insert(bundles.end(), {Path("dir.bundle"), Write("file.bundle", "not a directory"), Path("missing.bundle")});
  for (const fs::path& bundle : bundles) {
    SCOPED_TRACE(bundle.string());
    EXPECT_EQ(Generate(product, {bundle}, locales).data, plain.data);
  }
}

TEST_F(HostileFiles, UnreadableTablesAndBundleFoldersAreIgnored) {
  const auto product = Load(SmallProduct());
  ASSERT_NE(product, nullptr);
  const std::vector<AQVString> locales = {"en", "fr"};
  const Outcome plain = Generate(product, {}, locales);
  const fs::path table = Write("locked.bundle/fr.lproj/Localizable.strings", "\"Paper Size\" = \"Format\";");
  if (!MakeUnreadable(table, table)) SKIP_AS_ROOT();
  for (const fs::path& locked : {table, Path("locked.bundle/fr.lproj"), Path("locked.bundle")}) {
    MakeUnreadable(locked, table);
    EXPECT_EQ(Generate(product, {Path("locked.bundle")}, locales).data, plain.data) << locked;
  }
}

// ===========================================================================
// Product paths and the output file

TEST_F(HostileFiles, UnreadableProductFilesAndFoldersAreInputErrors) {
  const fs::path file = Write("locked.plist", PropertyListBytes(SmallProduct(), false));
  const fs::path inFolder = Write("locked/product.plist", PropertyListBytes(SmallProduct(), false));
  if (!MakeUnreadable(file, file) || !MakeUnreadable(Path("locked"), inFolder)) SKIP_AS_ROOT();
  for (const fs::path& path : {file, inFolder}) {
    const std::string message = path.string() + ": cannot read the product description: the file cannot be read";
    AError error;
    EXPECT_EQ(APlistProductInfo::LoadFile(path, &error), nullptr);
    EXPECT_EQ(error.code, 5);
    EXPECT_EQ(error.message.UTF8(), message);
    const ProcessResult result = RunTool(path);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.err, "ppdforge: RKPPDGeneration error 5: " + error.message.UTF8() + "\n");
    EXPECT_TRUE(OutputDirectory().empty());
  }
}

TEST_F(HostileFiles, FailuresLeaveNoOutputFile) {
  const fs::path folder = Path("folder.plist");
  fs::create_directories(folder);
  const fs::path missing = Path("missing.plist");
  const fs::path deep = Write("deep.plist", NestedXMLArrays(100000));
  const fs::path lone =
      Write("surrogate.plist",
            Patch(PropertyListBytes(With(SmallProduct(), "attributesGenerationInfo[1].value", "Caf\xC3\xA9"), true),
                  kCafe, kCafeHighSurrogate));
  const auto file = [this](const char* name, const ADictionary& root) {
    return Write(name, PropertyListBytes(root, false));
  };
  const std::string kLine = "ppdforge: RKPPDGeneration error ";
  const std::string kCannot = ": cannot read the product description: ";
  const std::vector<std::tuple<fs::path, int, std::string>> cases = {
      {folder, 2, kLine + "5: " + folder.string() + kCannot + "it is a directory\n"},
      {missing, 2, kLine + "5: " + missing.string() + kCannot + "no such file\n"},
      {deep, 2, kLine + "5: " + deep.string() + kCannot + "the property list nests deeper than 256 levels\n"},
      {lone, 2,
       kLine + "5: " + lone.string() + kCannot + "a string in the property list holds a lone UTF-16 surrogate\n"},
      {file("keyword.plist", WithAttribute(Attribute(k41, "v"))), 1, kLine + "4: " + kMain + k41 + "\n"},
      {file("format.plist",
            With(WithAttribute(
                     Dict({{"generator", "APPDFileVersionGenerator"}, {"name", "FileVersion"}, {"value", "%n"}})),
                 "product", Dict({{"version", "1.0"}}))),
       1,
       kLine + "1: Cannot format the value of PPD attribute *FileVersion with \"%n\": conversion \"%n\" is not "
               "allowed\n"},
      {file("line.plist", WithAttribute(Attribute("qvLong", kSolid))), 1,
       kLine + "4: Line longer then the maximum allowed: 255 characters in statement: *qvLong: \"" + kSolid + "\"\n"},
  };
  for (const auto& [product, status, err] : cases) {
    SCOPED_TRACE(product.string());
    ProcessResult result = RunTool(product);
    EXPECT_EQ(result.exitCode, status);
    EXPECT_EQ(result.err, err);
    EXPECT_TRUE(OutputDirectory().empty());
    // An existing output is left as it was.
    Write("out/hostile.ppd", "previous");
    EXPECT_EQ(RunTool(product).exitCode, status);
    EXPECT_EQ(OutputDirectory(), std::vector<std::string>{"hostile.ppd"});
    EXPECT_EQ(testing::ReadFile(Path("out/hostile.ppd")), "previous");
    fs::remove(Path("out/hostile.ppd"));
  }
}

}  // namespace
}  // namespace ppdforge
