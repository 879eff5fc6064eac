// `ppdforge check` and `ppdforge convert` on real PPD files (tests/corpus and
// the PPDs that ppdc compiles from CUPS's sample driver file), on the PPDs
// that `generate` writes, and on small files made for one rule each.
// libcups itself is the oracle: the converted file must load with the same
// options, choices, defaults and sizes as the original.

#include <gtest/gtest.h>
#include <zlib.h>

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
#include <cups/ppd.h>
#pragma GCC diagnostic pop

#include <algorithm>
#include <cctype>
#include <cmath>
#include <filesystem>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "core/ASharedObject.h"
#include "model/APPDReader.h"
#include "model/IPPD.h"
#include "tools/ProcessRunner.h"
#include "tools/TemporaryDirectory.h"

namespace ppdforge::testing {
namespace {

namespace fs = std::filesystem;

const std::string kSource = PPDFORGE_SOURCE_DIR;
const std::string kSampleDriver = "/usr/share/cups/drv/sample.drv";

// What libcups reports of a PPD file.
struct LibcupsChoice {
  std::string text;
  friend bool operator==(const LibcupsChoice&, const LibcupsChoice&) = default;
};
struct LibcupsOption {
  std::string group;
  std::string text;
  int ui = 0;
  // The default as libcups applies it: the first choice when none is named.
  std::string defaultChoice;
  std::map<std::string, LibcupsChoice> choices;
  friend bool operator==(const LibcupsOption&, const LibcupsOption&) = default;
};
struct LibcupsSize {
  // Hundredths of points: the model writes two decimals.
  long width = 0, length = 0, left = 0, bottom = 0, right = 0, top = 0;
  friend bool operator==(const LibcupsSize&, const LibcupsSize&) = default;
};
struct LibcupsView {
  bool loaded = false;
  std::string error;
  std::map<std::string, LibcupsOption> options;
  std::map<std::string, LibcupsSize> sizes;
};

long Hundredths(float value) { return std::lround(static_cast<double>(value) * 100.0); }

void AddGroup(const ppd_group_t& group, LibcupsView& view) {
  for (int i = 0; i < group.num_options; ++i) {
    const ppd_option_t& record = group.options[i];
    LibcupsOption& option = view.options[record.keyword];
    option.group = group.name;
    option.text = record.text;
    option.ui = record.ui;
    option.defaultChoice = record.defchoice;
    if (option.defaultChoice.empty() && record.num_choices > 0) {
      option.defaultChoice = record.choices[0].choice;
    }
    for (int j = 0; j < record.num_choices; ++j) {
      option.choices[record.choices[j].choice] = LibcupsChoice{record.choices[j].text};
    }
  }
  for (int i = 0; i < group.num_subgroups; ++i) AddGroup(group.subgroups[i], view);
}

// libcups marks its PPD functions deprecated; they are the oracle here.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
LibcupsView ViewThroughLibcups(const std::string& path, bool strict) {
  LibcupsView view;
  ppdSetConformance(strict ? PPD_CONFORM_STRICT : PPD_CONFORM_RELAXED);
  ppd_file_t* ppd = ppdOpenFile(path.c_str());
  if (ppd == nullptr) {
    int line = 0;
    const ppd_status_t status = ppdLastError(&line);
    view.error = std::string(ppdErrorString(status)) + " on line " + std::to_string(line);
    return view;
  }
  view.loaded = true;
  for (int i = 0; i < ppd->num_groups; ++i) AddGroup(ppd->groups[i], view);
  for (int i = 0; i < ppd->num_sizes; ++i) {
    const ppd_size_t& size = ppd->sizes[i];
    view.sizes[size.name] = LibcupsSize{Hundredths(size.width), Hundredths(size.length),
                                        Hundredths(size.left),  Hundredths(size.bottom),
                                        Hundredths(size.right), Hundredths(size.top)};
  }
  ppdClose(ppd);
  return view;
}
#pragma GCC diagnostic pop

// Both files load alike (strictly when the original loads strictly).
void ExpectSameThroughLibcups(const std::string& original, const std::string& converted) {
  bool strict = true;
  LibcupsView before = ViewThroughLibcups(original, strict);
  if (!before.loaded) {
    strict = false;
    before = ViewThroughLibcups(original, strict);
  }
  ASSERT_TRUE(before.loaded) << original << ": " << before.error;
  const LibcupsView after = ViewThroughLibcups(converted, strict);
  ASSERT_TRUE(after.loaded) << converted << ": " << after.error;
  EXPECT_EQ(before.options.size(), after.options.size());
  for (const auto& [keyword, option] : before.options) {
    const auto found = after.options.find(keyword);
    ASSERT_NE(found, after.options.end()) << "option " << keyword << " is missing";
    EXPECT_EQ(found->second.group, option.group) << keyword;
    EXPECT_EQ(found->second.text, option.text) << keyword;
    EXPECT_EQ(found->second.ui, option.ui) << keyword;
    EXPECT_EQ(found->second.defaultChoice, option.defaultChoice) << keyword;
    EXPECT_TRUE(found->second.choices == option.choices) << "choices of " << keyword << " differ";
  }
  EXPECT_TRUE(before.sizes == after.sizes) << "sizes differ";
}

bool CupsTestPasses(const std::string& path) {
  return ProcessRunner::Run("cupstestppd", {"-q", "-I", "filters", "-I", "profiles", path}).exitCode == 0;
}

// The PPDs of CUPS's sample driver file, compiled once per run.
const fs::path& SampleDriverPPDs() {
  static TemporaryDirectory directory;
  static std::once_flag once;
  std::call_once(once, [] {
    if (!ProcessRunner::IsInstalled("ppdc") || !fs::exists(kSampleDriver)) return;
    const std::string root = directory.Path().string();
    ProcessRunner::Run("ppdc", {"-d", root + "/plain", kSampleDriver});
    ProcessRunner::Run("ppdc", {"-l", "en,fr,de,es,ja", "-d", root + "/l10n", kSampleDriver});
    ProcessRunner::Run("ppdc", {"-z", "-d", root + "/gz", kSampleDriver});
  });
  return directory.Path();
}

std::vector<std::string> CorpusFiles() {
  std::vector<std::string> files;
  for (const fs::directory_entry& entry : fs::directory_iterator(kSource + "/tests/corpus")) {
    if (entry.path().extension() == ".gz") files.push_back("corpus/" + entry.path().filename().string());
  }
  std::sort(files.begin(), files.end());
  for (const char* name : {"deskjet", "dymo", "epson24", "epson9", "generic", "generpcl",
                           "intelbar", "laserjet", "okidat24", "okidata9", "zebra", "zebracpl",
                           "zebraep1", "zebraep2"}) {
    files.push_back(std::string("plain/") + name + ".ppd");
  }
  for (const char* name : {"deskjet", "laserjet", "epson24", "zebra"}) {
    files.push_back(std::string("l10n/") + name + ".ppd");
    files.push_back(std::string("gz/") + name + ".ppd.gz");
  }
  return files;
}

std::string CorpusPath(const std::string& name) {
  if (name.rfind("corpus/", 0) == 0) return kSource + "/tests/" + name;
  return (SampleDriverPPDs() / name).string();
}

class Corpus : public ::testing::TestWithParam<std::string> {};

TEST_P(Corpus, ConvertsToAFileThatLibcupsReadsAlikeAndThatConvertsToItself) {
  const std::string original = CorpusPath(GetParam());
  if (!fs::exists(original)) GTEST_SKIP() << "ppdc is not installed: " << original;
  TemporaryDirectory directory;
  const std::string first = directory.File("first.ppd");
  const std::string second = directory.File("second.ppd");

  ProcessResult result = ProcessRunner::RunTool({"convert", original, "-o", first});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.err, "");
  ExpectSameThroughLibcups(original, first);

  result = ProcessRunner::RunTool({"convert", first, "-o", second});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(ReadFile(second), ReadFile(first)) << "a second conversion changed the text";

  result = ProcessRunner::RunTool({"check", original});
  EXPECT_EQ(result.exitCode, 0) << result.out << result.err;
  EXPECT_EQ(result.out, original + ": ok\n");

  if (ProcessRunner::IsInstalled("cupstestppd") && CupsTestPasses(original)) {
    EXPECT_TRUE(CupsTestPasses(first)) << "cupstestppd accepts the original but not " << first;
  }
}

INSTANTIATE_TEST_SUITE_P(RealFiles, Corpus, ::testing::ValuesIn(CorpusFiles()),
                         [](const ::testing::TestParamInfo<std::string>& param) {
                           std::string name = param.param;
                           for (char& c : name) {
                             if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
                           }
                           return name;
                         });

// The products whose PPD `generate` writes: every description of examples/
// and tests/golden, with its string bundle and three languages when it has one.
struct Product {
  std::string description;
  std::vector<std::string> arguments;
};

std::vector<Product> GeneratedProducts() {
  std::vector<Product> products;
  std::vector<fs::path> descriptions;
  for (auto it = fs::recursive_directory_iterator(kSource + "/examples");
       it != fs::recursive_directory_iterator(); ++it) {
    // String bundles hold property lists of their own.
    if (it->path().extension() == ".bundle") {
      it.disable_recursion_pending();
    } else if (it->path().extension() == ".plist") {
      descriptions.push_back(it->path());
    }
  }
  for (const fs::directory_entry& entry : fs::directory_iterator(kSource + "/tests/golden")) {
    if (entry.path().extension() == ".plist") descriptions.push_back(entry.path());
  }
  std::sort(descriptions.begin(), descriptions.end());
  for (const fs::path& description : descriptions) {
    products.push_back({description.string(), {}});
    fs::path bundle = description;
    bundle.replace_extension(".bundle");
    if (fs::is_directory(bundle)) {
      products.push_back({description.string(), {"--strings", bundle.string(), "--languages", "en,fr,de"}});
    }
  }
  return products;
}

TEST(ConvertGenerated, ReadsBackAsAnEqualDocumentAndConvertsToItself) {
  const std::vector<Product> products = GeneratedProducts();
  ASSERT_FALSE(products.empty());
  for (const Product& product : products) {
    SCOPED_TRACE(product.description + (product.arguments.empty() ? "" : " with strings"));
    TemporaryDirectory directory;
    const std::string generated = directory.File("generated.ppd");
    const std::string converted = directory.File("converted.ppd");
    std::vector<std::string> arguments{"generate", product.description, "-o", generated};
    arguments.insert(arguments.end(), product.arguments.begin(), product.arguments.end());
    ProcessResult result = ProcessRunner::RunTool(arguments);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    result = ProcessRunner::RunTool({"convert", generated, "-o", converted});
    ASSERT_EQ(result.exitCode, 0) << result.err;

    AError error;
    AScopedRef<IPPD> fromGenerated(APPDReader::Read(AQVString(generated), &error));
    ASSERT_TRUE(fromGenerated) << error.message;
    AScopedRef<IPPD> fromConverted(APPDReader::Read(AQVString(converted), &error));
    ASSERT_TRUE(fromConverted) << error.message;
    EXPECT_TRUE(*fromConverted.get() == *fromGenerated.get());
    ExpectSameThroughLibcups(generated, converted);

    const std::string again = directory.File("again.ppd");
    result = ProcessRunner::RunTool({"convert", converted, "-o", again});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(ReadFile(again), ReadFile(converted));
  }
}

// ISOLatin1 bytes of a small single-language French file.
const std::string kLatin1PPD =
    "*PPD-Adobe: \"4.3\"\n"
    "*LanguageVersion: French\n"
    "*LanguageEncoding: ISOLatin1\n"
    "*NickName: \"Imprimante \xE9tudiant\"\n"
    "*OpenUI *PageSize/Taille: PickOne\n"
    "*DefaultPageSize: A4\n"
    "*PageSize A4/A4 (r\xE9gl\xE9): \"<</PageSize[595 842]>>setpagedevice\"\n"
    "*CloseUI: *PageSize\n"
    "*ImageableArea A4: \"18 36 577 806\"\n"
    "*PaperDimension A4: \"595 842\"\n"
    "*OpenGroup: Quality/Qualit\xE9\n"
    "*OpenUI *Mode/Mode d'impression: PickOne\n"
    "*DefaultMode: Fast\n"
    "*Mode Fast/Rapide: \"\"\n"
    "*Mode Fine/Tr\xE8s fin: \"\"\n"
    "*CloseUI: *Mode\n"
    "*CloseGroup: Quality\n";

const std::string kLatin1Converted =
    "*PPD-Adobe: \"4.3\"\n"
    "*% =================================\n"
    "*% Adobe Systems PostScript(R) Printer Description File\n"
    "*% Copyright (C) the ppdforge authors. All rights reserved.\n"
    "*% PPD Version for Apple Macintosh\n"
    "*% =================================\n"
    "*LanguageVersion: French\n"
    "*LanguageEncoding: UTF-8\n"
    "*NickName: \"Imprimante \xC3\xA9tudiant\"\n"
    "\n"
    "*OpenUI *PageSize/Taille: PickOne\n"
    "*OrderDependency: 10.0 AnySetup *PageSize\n"
    "*DefaultPageSize: A4\n"
    "*PageSize A4/A4 (r\xC3\xA9gl\xC3\xA9): \"<</PageSize[595 842]>>setpagedevice\"\n"
    "*CloseUI: *PageSize\n"
    "\n"
    "\n"
    "*DefaultImageableArea: A4\n"
    "*ImageableArea A4/A4 (r\xC3\xA9gl\xC3\xA9): \"18.00 36.00 577.00 806.00\"\n"
    "\n"
    "*DefaultPaperDimension: A4\n"
    "*PaperDimension A4/A4 (r\xC3\xA9gl\xC3\xA9): \"595.00 842.00\"\n"
    "\n"
    "*OpenGroup: Quality/Qualit\xC3\xA9\n"
    "\n"
    "*OpenUI *Mode/Mode d'impression: PickOne\n"
    "*OrderDependency: 10.0 AnySetup *Mode\n"
    "*DefaultMode: Fast\n"
    "*Mode Fast/Rapide: \"\"\n"
    "*Mode Fine/Tr\xC3\xA8s fin: \"\"\n"
    "*CloseUI: *Mode\n"
    "\n"
    "*CloseGroup: Quality\n"
    "\n"
    "\n";

TEST(Convert, WritesAnISOLatin1FileAsUTF8UnderAMatchingLanguageEncoding) {
  TemporaryDirectory directory;
  const std::string input = directory.Write("latin1.ppd", kLatin1PPD);
  const ProcessResult result = ProcessRunner::RunTool({"convert", input});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.out, kLatin1Converted);

  const std::string output = directory.Write("utf8.ppd", result.out);
  ExpectSameThroughLibcups(input, output);
  EXPECT_EQ(ProcessRunner::RunTool({"convert", output}).out, kLatin1Converted);
}

TEST(Convert, ReadsGzipCompressedInput) {
  TemporaryDirectory directory;
  const std::string compressed = directory.File("latin1.ppd.gz");
  gzFile file = gzopen(compressed.c_str(), "wb9");
  ASSERT_NE(file, nullptr);
  ASSERT_EQ(gzwrite(file, kLatin1PPD.data(), static_cast<unsigned>(kLatin1PPD.size())),
            static_cast<int>(kLatin1PPD.size()));
  ASSERT_EQ(gzclose(file), Z_OK);

  const ProcessResult result = ProcessRunner::RunTool({"convert", compressed});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.out, kLatin1Converted);
}

TEST(Convert, ReplacesTheOutputFile) {
  TemporaryDirectory directory;
  const std::string input = directory.Write("latin1.ppd", kLatin1PPD);
  const std::string output = directory.Write("out.ppd", "old content");
  const ProcessResult result = ProcessRunner::RunTool({"convert", input, "-o", output});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(ReadFile(output), kLatin1Converted);
  EXPECT_EQ(directory.Entries(), (std::vector<std::string>{"latin1.ppd", "out.ppd"}));
}

TEST(Convert, ReportsAFileThatCannotBeWrittenWithExitStatus1) {
  TemporaryDirectory directory;
  // The group keyword "Qualité" is not a valid PPD keyword.
  std::string broken = kLatin1PPD;
  broken.replace(broken.find("Quality/"), 7, "Qualit\xE9");
  const std::string input = directory.Write("broken.ppd", broken);
  const ProcessResult result = ProcessRunner::RunTool({"convert", input, "-o", directory.File("out.ppd")});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.err,
            "ppdforge: RKPPDGeneration error 4: Value contains invalid characters: Qualit\xC3\xA9\n");
  EXPECT_EQ(directory.Entries(), (std::vector<std::string>{"broken.ppd"}));
}

TEST(Check, ReportsEveryFailingStatementWithItsKeyword) {
  TemporaryDirectory directory;
  std::string broken = kLatin1PPD;
  broken.replace(broken.find("Quality/"), 7, "Qualit\xE9");
  // libcups decodes <3A>: a text of 78 bytes that become 81 when the colon
  // is escaped again.
  broken.replace(broken.find("Rapide"), 6, "Rapide<3A> " + std::string(70, 'x'));
  const std::string input = directory.Write("broken.ppd", broken);
  const std::string good = directory.Write("good.ppd", kLatin1PPD);

  const ProcessResult result = ProcessRunner::RunTool({"check", good, input});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out,
            good + ": ok\n" +
            input + ": *Mode Fast: RKPPDGeneration error 4: Translation string is longer then the "
            "maximum allowed (80 characters): Rapide<3A> " + std::string(70, 'x') + "\n" +
            input + ": *OpenGroup Qualit\xC3\xA9: RKPPDGeneration error 4: Value contains invalid "
            "characters: Qualit\xC3\xA9\n");
}

TEST(Check, ExitsWith2ForAFileThatCannotBeReadAndGoesOn) {
  TemporaryDirectory directory;
  const std::string good = directory.Write("good.ppd", kLatin1PPD);
  const std::string missing = directory.File("missing.ppd");
  const ProcessResult result = ProcessRunner::RunTool({"check", missing, good});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(result.out, good + ": ok\n");
  EXPECT_EQ(result.err, "ppdforge: RKPPDGeneration error 6: " + missing +
                            ": cannot read the PPD file: no such file\n");
}

TEST(Check, ReportsLibcupsOwnErrorAndLine) {
  TemporaryDirectory directory;
  const std::string input =
      directory.Write("bad.ppd", "*PPD-Adobe: \"4.3\"\n*OpenUI *Foo: PickOne\n*Foo A: \"\"\n*Broken\n");
  ProcessResult result = ProcessRunner::RunTool({"check", "--strict", input});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "ppdforge: RKPPDGeneration error 6: " + input +
                            ": libcups rejects the PPD file: Missing value string on line 4\n");

  result = ProcessRunner::RunTool({"convert", "--strict", input});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(result.err, "ppdforge: RKPPDGeneration error 6: " + input +
                            ": libcups rejects the PPD file: Missing value string on line 4\n");
}

TEST(Check, RejectsAUTF8FileWithBytesThatAreNotUTF8) {
  TemporaryDirectory directory;
  const std::string input = directory.Write(
      "bad.ppd", "*PPD-Adobe: \"4.3\"\n*LanguageEncoding: UTF-8\n*OpenUI *Foo/Foo \xE9: PickOne\n"
                 "*Foo A: \"\"\n*CloseUI: *Foo\n");
  const ProcessResult result = ProcessRunner::RunTool({"check", input});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(result.err, "ppdforge: RKPPDGeneration error 6: " + input +
                            ": text that is not valid in the file's LanguageEncoding UTF-8: "
                            "\"Foo \\xE9\"\n");
}

TEST(Check, SaysSoWhenLibcupsCannotBeLoadedWhileGenerateNeedsNoLibcups) {
  TemporaryDirectory directory;
  const std::string good = directory.Write("good.ppd", kLatin1PPD);
  const std::string missingLibrary = "PPDFORGE_LIBCUPS=libppdforge-no-such-library.so.2";
  ProcessResult result = ProcessRunner::Run("env", {missingLibrary, PPDFORGE_TOOL_PATH, "check", good});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(result.err.rfind("ppdforge: RKPPDGeneration error 6: cannot read PPD files: libcups "
                             "(libppdforge-no-such-library.so.2) cannot be loaded: ",
                             0),
            0U)
      << result.err;

  result = ProcessRunner::Run("env", {missingLibrary, PPDFORGE_TOOL_PATH, "generate",
                                      kSource + "/tests/golden/product-data.plist"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
}

}  // namespace
}  // namespace ppdforge::testing
