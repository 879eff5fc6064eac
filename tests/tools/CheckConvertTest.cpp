// `ppdforge check` and `ppdforge convert` on real PPD files (tests/corpus and
// the PPDs that ppdc compiles from CUPS's sample driver file), on the PPDs
// that `generate` writes, and on small files made for one rule each.
// libcups itself is the oracle: the converted file must load with the same
// options, choices, defaults and sizes as the original.

#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <functional>
#include <mutex>
#include <regex>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "core/ASharedObject.h"
#include "model/APPDReader.h"
#include "model/IPPD.h"
#include "support/PPDOracle.h"
#include "support/ToolInvocationTest.h"

namespace ppdforge::testing {
namespace {

namespace fs = std::filesystem;

const std::string kSource = PPDFORGE_SOURCE_DIR;
const std::string kSampleDriver = "/usr/share/cups/drv/sample.drv";

// What libcups makes of a PPD file: a line per option (group, text, user
// interface, the default as applied, the first choice when none is named,
// and the choices) and per size (in hundredths of points: the model writes
// two decimals). "!" and libcups' error when it refuses the file.
std::string LibcupsView(const std::string& path, bool strict) {
  std::string problem;
  const PPDOracle::File ppd = PPDOracle::Open(path, strict, &problem);
  if (!ppd) return "!" + problem;
  std::set<std::string> lines;
  const std::function<void(const ppd_group_t&)> add = [&](const ppd_group_t& group) {
    for (const ppd_option_t& option : std::span(group.options, group.num_options)) {
      std::set<std::string> choices;
      for (const ppd_choice_t& choice : std::span(option.choices, option.num_choices)) {
        choices.insert(std::string(choice.choice) + "/" + choice.text);
      }
      std::string line =
          std::string("option ") + option.keyword + " in " + group.name + " \"" + option.text + "\" ui " +
          std::to_string(option.ui) + " default " +
          (*option.defchoice != '\0' || option.num_choices == 0 ? option.defchoice : option.choices[0].choice);
      for (const std::string& choice : choices) line += " " + choice;
      lines.insert(line);
    }
    for (const ppd_group_t& subgroup : std::span(group.subgroups, group.num_subgroups)) add(subgroup);
  };
  for (const ppd_group_t& group : std::span(ppd->groups, ppd->num_groups)) add(group);
  for (const ppd_size_t& size : std::span(ppd->sizes, ppd->num_sizes)) {
    std::string line = std::string("size ") + size.name;
    for (float value : {size.width, size.length, size.left, size.bottom, size.right, size.top}) {
      line += " " + std::to_string(std::lround(static_cast<double>(value) * 100.0));
    }
    lines.insert(line);
  }
  std::string view;
  for (const std::string& line : lines) view += line + "\n";
  return view;
}

// Both files load alike (strictly when the original loads strictly).
void ExpectSameThroughLibcups(const std::string& original, const std::string& converted) {
  std::string before = LibcupsView(original, true);
  const bool strict = before.rfind('!', 0) != 0;
  if (!strict) before = LibcupsView(original, false);
  ASSERT_NE(before.rfind('!', 0), 0u) << original << ": " << before;
  EXPECT_EQ(LibcupsView(converted, strict), before) << converted;
}

bool CupsTestPasses(const std::string& path) {
  return PPDOracle::CupsTestPPD(path, {"-q", "-I", "filters", "-I", "profiles"}).exitCode == 0;
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
  for (const char* name : {"deskjet", "dymo", "epson24", "epson9", "generic", "generpcl", "intelbar", "laserjet",
                           "okidat24", "okidata9", "zebra", "zebracpl", "zebraep1", "zebraep2"}) {
    files.push_back(std::string("plain/") + name + ".ppd");
  }
  for (const char* name : {"deskjet", "laserjet", "epson24", "zebra"}) {
    files.insert(files.end(), {std::string("l10n/") + name + ".ppd", std::string("gz/") + name + ".ppd.gz"});
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
                           return std::regex_replace(param.param, std::regex("[^A-Za-z0-9]"), "_");
                         });

// Every description of examples/ and tests/golden, also with its string
// bundle and three languages when it has one.
TEST(ConvertGenerated, ReadsBackAsAnEqualDocumentAndConvertsToItself) {
  std::vector<fs::path> descriptions;
  for (auto it = fs::recursive_directory_iterator(kSource + "/examples"); it != fs::recursive_directory_iterator();
       ++it) {
    // String bundles hold property lists of their own.
    if (it->path().extension() == ".bundle") it.disable_recursion_pending();
    if (it->path().extension() == ".plist") descriptions.push_back(it->path());
  }
  for (const fs::directory_entry& entry : fs::directory_iterator(kSource + "/tests/golden")) {
    if (entry.path().extension() == ".plist") descriptions.push_back(entry.path());
  }
  ASSERT_GT(descriptions.size(), 20u);
  for (const fs::path& description : descriptions) {
    const fs::path bundle = fs::path(description).replace_extension(".bundle");
    for (const bool strings : {false, true}) {
      if (strings && !fs::is_directory(bundle)) continue;
      SCOPED_TRACE(description.string() + (strings ? " with strings" : ""));
      TemporaryDirectory directory;
      const std::string generated = directory.File("generated.ppd");
      const std::string converted = directory.File("converted.ppd");
      std::vector<std::string> arguments{"generate", description.string(), "-o", generated};
      if (strings) arguments.insert(arguments.end(), {"--strings", bundle.string(), "--languages", "en,fr,de"});
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
      ASSERT_EQ(ProcessRunner::RunTool({"convert", converted, "-o", again}).exitCode, 0);
      EXPECT_EQ(ReadFile(again), ReadFile(converted));
    }
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

class CheckConvert : public ToolInvocationTest {
 protected:
  void SetUp() override {
    directory_.Write("latin1.ppd", kLatin1PPD);
    gzFile file = gzopen(directory_.File("latin1.ppd.gz").c_str(), "wb9");
    ASSERT_NE(file, nullptr);
    ASSERT_EQ(gzwrite(file, kLatin1PPD.data(), static_cast<unsigned>(kLatin1PPD.size())),
              static_cast<int>(kLatin1PPD.size()));
    ASSERT_EQ(gzclose(file), Z_OK);
    // The group keyword "Qualité" is not a valid PPD keyword.
    std::string broken = kLatin1PPD;
    broken.replace(broken.find("Quality/"), 7, "Qualit\xE9");
    directory_.Write("keyword.ppd", broken);
    // libcups decodes <3A>: a text of 78 bytes that become 81 when the colon
    // is escaped again.
    broken.replace(broken.find("Rapide"), 6, "Rapide<3A> " + std::string(70, 'x'));
    directory_.Write("two.ppd", broken);
    directory_.Write("novalue.ppd", "*PPD-Adobe: \"4.3\"\n*OpenUI *Foo: PickOne\n*Foo A: \"\"\n*Broken\n");
    directory_.Write("utf8.ppd",
                     "*PPD-Adobe: \"4.3\"\n*LanguageEncoding: UTF-8\n*OpenUI *Foo/Foo \xE9: PickOne\n"
                     "*Foo A: \"\"\n*CloseUI: *Foo\n");
  }
};

TEST_P(CheckConvert, ExitStatusMessagesAndOutput) { RunAndCompare(); }

const std::string kError = "ppdforge: RKPPDGeneration error ";
const std::string kRejected = ": libcups rejects the PPD file: Missing value string on line 4\n";

INSTANTIATE_TEST_SUITE_P(
    Invocations, CheckConvert,
    ::testing::Values(
        // ISOLatin1 is written as UTF-8 under a matching LanguageEncoding, also from gzip.
        ToolInvocation{"convert @latin1.ppd", 0, "", kLatin1Converted},
        ToolInvocation{"convert @latin1.ppd.gz", 0, "", kLatin1Converted},
        ToolInvocation{"convert @keyword.ppd -o @out.ppd", 1,
                       kError + "4: Value contains invalid characters: Qualit\xC3\xA9\n", ""},
        ToolInvocation{"check @latin1.ppd @two.ppd", 1, "",
                       "@latin1.ppd: ok\n@two.ppd: *Mode Fast: " + kError.substr(10) +
                           "4: Translation string is longer then the maximum allowed (80 characters): Rapide<3A> " +
                           std::string(70, 'x') + "\n@two.ppd: *OpenGroup Qualit\xC3\xA9: " + kError.substr(10) +
                           "4: Value contains invalid characters: Qualit\xC3\xA9\n"},
        ToolInvocation{"check @missing.ppd @latin1.ppd", 2,
                       kError + "6: @missing.ppd: cannot read the PPD file: no such file\n", "@latin1.ppd: ok\n"},
        ToolInvocation{"check --strict @novalue.ppd", 2, kError + "6: @novalue.ppd" + kRejected, ""},
        ToolInvocation{"convert --strict @novalue.ppd", 2, kError + "6: @novalue.ppd" + kRejected, ""},
        ToolInvocation{"check @utf8.ppd", 2,
                       kError + "6: @utf8.ppd: text that is not valid in the file's LanguageEncoding UTF-8: \"Foo "
                                "\\xE9\"\n",
                       ""}));

TEST(Convert, WritesAFileThatLibcupsReadsAlikeAndReplacesTheOutput) {
  TemporaryDirectory directory;
  const std::string input = directory.Write("latin1.ppd", kLatin1PPD);
  const std::string output = directory.Write("out.ppd", "old content");
  const ProcessResult result = ProcessRunner::RunTool({"convert", input, "-o", output});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(ReadFile(output), kLatin1Converted);
  EXPECT_EQ(directory.Entries(), (std::vector<std::string>{"latin1.ppd", "out.ppd"}));
  ExpectSameThroughLibcups(input, output);
  EXPECT_EQ(ProcessRunner::RunTool({"convert", output}).out, kLatin1Converted);
}

TEST(Check, SaysSoWhenLibcupsCannotBeLoadedWhileGenerateNeedsNoLibcups) {
  TemporaryDirectory directory;
  const std::string good = directory.Write("good.ppd", kLatin1PPD);
  const std::string missingLibrary = "PPDFORGE_LIBCUPS=libppdforge-no-such-library.so.2";
  ProcessResult result = ProcessRunner::Run("env", {missingLibrary, PPDFORGE_TOOL_PATH, "check", good});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(result.err.rfind(kError + "6: cannot read PPD files: libcups (libppdforge-no-such-library.so.2) "
                                      "cannot be loaded: ",
                             0),
            0U)
      << result.err;
  result = ProcessRunner::Run(
      "env", {missingLibrary, PPDFORGE_TOOL_PATH, "generate", kSource + "/tests/golden/product-data.plist"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
}

}  // namespace
}  // namespace ppdforge::testing
