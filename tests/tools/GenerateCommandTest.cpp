// `ppdforge generate` as a user runs it: exit status, error and warning
// lines, atomic writing of the output, and several products at once.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <regex>
#include <string>
#include <vector>

#include "support/GeneratorTestSupport.h"
#include "support/ProcessRunner.h"
#include "support/TemporaryDirectory.h"
#include "support/ToolInvocationTest.h"

namespace ppdforge::testing {
namespace {

const std::string kExample = std::string(PPDFORGE_SOURCE_DIR) + "/examples/inkjet/qv-inkjet-500.plist";
const std::string kBundle = std::string(PPDFORGE_SOURCE_DIR) + "/examples/inkjet/qv-inkjet-500.bundle";
const std::string kLong(300, 'x');
const std::string kError = "ppdforge: RKPPDGeneration error ";
const std::string kUnknownGenerator =
    "ppdforge: warning: RKPPDGeneration error 1: Cannot create PPD generator with class name: APPDNoSuchGenerator\n";

std::string Xml(const ADictionary& root) { return PropertyListBytes(root, false); }

using Invocation = ToolInvocation;

// The tool writes what the library makes.
std::string SmallText() { return LibraryText(SmallProduct()); }

class GenerateCommand : public ToolInvocationTest {
 protected:
  void SetUp() override {
    directory_.Write("p.plist", Xml(SmallProduct()));
    ADictionary root = SmallProduct();
    root.Set("colour", "blue");
    directory_.Write("warn.plist", Xml(root));
    root = SmallProduct();
    SetNested(root, "options", "QVPaperInfo", Setting(AArray{Dict({{"PPDName", 4}})}));
    directory_.Write("bad.plist", Xml(root));
    root.Set("options", ADictionary());
    directory_.Write("nomedia.plist", Xml(root));
    root = SmallProduct();
    root.Remove("attributesGenerationInfo");
    directory_.Write("noattributes.plist", Xml(root));
    root = SmallProduct();
    AArray attributes;
    root.GetArray("attributesGenerationInfo", attributes);
    attributes.Append(Dict({{"generator", "APPDNoSuchGenerator"}, {"name", "FileVersion"}, {"value", "1.0"}}));
    attributes.Append(Dict({{"name", "FormatVersion"}, {"value", "4.3"}}));
    root.Set("attributesGenerationInfo", attributes);
    directory_.Write("unknown.plist", Xml(root));
    attributes.Append(Dict({{"name", "ModelName"}, {"value", AQVString(kLong)}}));
    root.Set("attributesGenerationInfo", attributes);
    directory_.Write("long.plist", Xml(root));
  }
};

TEST_P(GenerateCommand, ExitStatusMessagesAndOutput) { RunAndCompare(); }

INSTANTIATE_TEST_SUITE_P(
    Invocations, GenerateCommand,
    ::testing::Values(
        Invocation{"generate @p.plist", 0, "", SmallText()},
        Invocation{"generate @warn.plist", 0, "ppdforge: warning: @warn.plist: unknown key \"colour\"\n", SmallText()},
        Invocation{"generate @unknown.plist", 0, kUnknownGenerator,
                   "*PPD-Adobe: \"4.3\"\n*LanguageVersion: English\n*FormatVersion: \"4.3\"\n\n*"},
        Invocation{"generate @p.plist --main-language de --languages en,de,fr", 0, "",
                   "*PPD-Adobe: \"4.3\"\n*LanguageVersion: German\n*cupsLanguages: \"en fr\"\n\n*"},
        Invocation{"generate @missing.plist -o @out.ppd", 2,
                   kError + "5: @missing.plist: cannot read the product description: no such file\n", ""},
        Invocation{"generate @bad.plist -o @out.ppd", 2,
                   kError + "5: @bad.plist: options.QVPaperInfo.values[0].PPDName is an integer, expected a string\n",
                   ""},
        Invocation{"generate @noattributes.plist -o @out.ppd", 1,
                   kError + "3: Cannot create PPD attributes XML description\n", ""},
        Invocation{"generate @long.plist -o @out.ppd", 1,
                   kUnknownGenerator + kError +
                       "4: Line longer then the maximum allowed: 255 characters in statement: *ModelName: \"" + kLong +
                       "\"\n",
                   ""},
        Invocation{"generate @nomedia.plist -o @out.ppd", 1,
                   "ppdforge: the PPD could not be generated and the library reported no error; likely cause: "
                   "@nomedia.plist has no media sizes in \"QVPaperInfo\" (options.QVPaperInfo.values is missing or "
                   "empty)\n",
                   ""},
        Invocation{"generate @p.plist -o @missing/out.ppd", 1,
                   "ppdforge: cannot write @missing/out.ppd: cannot create a temporary file in @missing: No such file "
                   "or directory\n",
                   ""},
        Invocation{"generate @p.plist @p.plist", 2,
                   "ppdforge: several products need -o naming the directory for their PPDs\n", ""},
        // Usage errors.
        Invocation{"", 2, "ppdforge: *", ""}, Invocation{"generate", 2, "ppdforge: *", ""},
        Invocation{"frobnicate", 2, "ppdforge: *", ""}, Invocation{"generate @p.plist --bogus", 2, "ppdforge: *", ""},
        Invocation{"generate @p.plist -o", 2, "ppdforge: *", ""},
        Invocation{"generate @p.plist --strings @no-such-bundle", 2, "ppdforge: *", ""}));

TEST(GenerateCommandHelp, NamesTheOptionsAndTheVersion) {
  ProcessResult help = ProcessRunner::RunTool({"--help"});
  EXPECT_EQ(help.exitCode, 0);
  EXPECT_NE(help.out.find("generate"), std::string::npos);
  help = ProcessRunner::RunTool({"generate", "--help"});
  EXPECT_EQ(help.exitCode, 0);
  for (const char* option : {"PRODUCT", "--output", "--strings", "--main-language", "--languages"}) {
    EXPECT_NE(help.out.find(option), std::string::npos) << option;
  }
  const ProcessResult version = ProcessRunner::RunTool({"--version"});
  EXPECT_EQ(version.exitCode, 0);
  EXPECT_TRUE(std::regex_match(version.out, std::regex("ppdforge [0-9]+\\.[0-9]+\\.[0-9]+\n"))) << version.out;
}

TEST(GenerateCommandOutput, ReplacesTheFileAndKeepsItsPermissions) {
  TemporaryDirectory directory;
  const std::string output = directory.Write("out.ppd", "old\n");
  ASSERT_EQ(::chmod(output.c_str(), 0640), 0);
  const ProcessResult result =
      ProcessRunner::RunTool({"generate", directory.Write("p.plist", Xml(SmallProduct())), "--output", output});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out + result.err, "");
  EXPECT_EQ(ReadFile(output), SmallText());
  struct stat status {};
  ASSERT_EQ(::stat(output.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0640u);
  EXPECT_EQ(directory.Entries(), (std::vector<std::string>{"out.ppd", "p.plist"}));
}

TEST(GenerateCommandOutput, DoesNotLoadLibcups) {
  // Not among a dynamic tool's libraries (a static tool has none).
  const ProcessResult linked = ProcessRunner::Run("ldd", {PPDFORGE_TOOL_PATH});
  EXPECT_EQ(linked.out.find("libcups"), std::string::npos) << linked.out;
  // Nor opened later, while generating.
  if (!ProcessRunner::IsInstalled("strace")) GTEST_SKIP() << "strace is not installed";
  TemporaryDirectory directory;
  const std::string product = directory.Write("p.plist", Xml(SmallProduct()));
  const std::string trace = directory.File("trace");
  // LeakSanitizer cannot run under ptrace; a sanitizer build's tool goes without it here.
  const ProcessResult run = ProcessRunner::Run("env", {"ASAN_OPTIONS=detect_leaks=0", "strace", "-f", "-e",
                                                       "trace=openat", "-o", trace, PPDFORGE_TOOL_PATH,
                                                       "generate", product});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const std::string opened = ReadFile(trace);
  EXPECT_NE(opened.find(product), std::string::npos) << "strace saw no files opened:\n" << opened;
  EXPECT_EQ(opened.find("libcups"), std::string::npos) << opened;
}

// libplist is loaded only for binary property lists; without it they are an
// input error that says why, and XML products are read all the same.
TEST(GenerateCommandOutput, NeedsLibplistOnlyForBinaryProducts) {
  TemporaryDirectory directory;
  const std::string binary = directory.Write("p.bplist", PropertyListBytes(SmallProduct(), true));
  const std::string xml = directory.Write("p.plist", Xml(SmallProduct()));
  const std::string missingLibrary = "PPDFORGE_LIBPLIST=libppdforge-no-such-library.so.3";
  ProcessResult result = ProcessRunner::Run("env", {missingLibrary, PPDFORGE_TOOL_PATH, "generate", binary});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(result.err.rfind(kError + "5: " + binary +
                                 ": cannot read the product description: libplist "
                                 "(libppdforge-no-such-library.so.3) cannot be loaded: ",
                             0),
            0U)
      << result.err;
  EXPECT_NE(result.err.find("; install the package libplist3\n"), std::string::npos) << result.err;
  EXPECT_EQ(result.out, "");
  result = ProcessRunner::Run("env", {missingLibrary, PPDFORGE_TOOL_PATH, "generate", xml});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.out, SmallText());
  EXPECT_EQ(ProcessRunner::RunTool({"generate", binary}).out, SmallText());
}

std::string SingleGeneration(const std::vector<std::string>& options) {
  std::vector<std::string> arguments{"generate", kExample};
  arguments.insert(arguments.end(), options.begin(), options.end());
  const ProcessResult result = ProcessRunner::RunTool(arguments);
  EXPECT_EQ(result.exitCode, 0) << result.err;
  return result.out;
}

TEST(BatchGenerate, WritesOnePPDPerProductNamedAfterItAsASingleGenerationWould) {
  TemporaryDirectory products;
  std::vector<std::string> arguments{"generate"};
  for (const char* name : {"alpha.plist", "beta.v2.plist", "gamma"}) {
    arguments.push_back(products.Write(name, ReadFile(kExample)));
  }
  const std::vector<std::string> options{"--strings", kBundle, "--languages", "en,fr,de"};
  arguments.insert(arguments.end(), {"-o", products.File("ppds")});
  arguments.insert(arguments.end(), options.begin(), options.end());
  const ProcessResult result = ProcessRunner::RunTool(arguments);
  ASSERT_EQ(result.exitCode, 0) << result.err;
  // Standard error is no terminal here: no progress bar, no other output.
  EXPECT_EQ(result.err + result.out, "");
  const std::vector<std::string> written = products.Entries("ppds");
  EXPECT_EQ(written, (std::vector<std::string>{"alpha.ppd", "beta.v2.ppd", "gamma.ppd"}));
  const std::string expected = SingleGeneration(options);
  for (const std::string& name : written) EXPECT_EQ(ReadFile(products.File("ppds/" + name)), expected) << name;

  // An existing directory takes a single product too.
  TemporaryDirectory output;
  ASSERT_EQ(ProcessRunner::RunTool({"generate", kExample, "-o", output.Path().string()}).exitCode, 0);
  EXPECT_EQ(output.Entries(), std::vector<std::string>{"qv-inkjet-500.ppd"});
  EXPECT_EQ(ReadFile(output.File("qv-inkjet-500.ppd")), SingleGeneration({}));
}

TEST(BatchGenerate, DrawsAProgressBarOnATerminal) {
  if (!ProcessRunner::IsInstalled("script")) GTEST_SKIP() << "script (util-linux) is not installed";
  TemporaryDirectory directory;
  const std::string command = std::string(PPDFORGE_TOOL_PATH) + " generate " +
                              directory.Write("a.plist", ReadFile(kExample)) + " " +
                              directory.Write("b.plist", ReadFile(kExample)) + " -o " + directory.File("out");
  const ProcessResult result = ProcessRunner::Run("script", {"-qec", command, "/dev/null"});
  EXPECT_EQ(result.exitCode, 0) << result.out;
  EXPECT_NE(result.out.find("] 0/2"), std::string::npos) << result.out;
  EXPECT_NE(result.out.find("] 2/2"), std::string::npos) << result.out;
  EXPECT_EQ(directory.Entries("out"), (std::vector<std::string>{"a.ppd", "b.ppd"}));
}

TEST(BatchGenerate, RefusesTwoProductsWithTheSameOutputName) {
  TemporaryDirectory directory;
  const std::string a = directory.Write("a/printer.plist", ReadFile(kExample));
  const std::string b = directory.Write("b/printer.xml", ReadFile(kExample));
  directory.Write("out/x", "");
  const ProcessResult result = ProcessRunner::RunTool({"generate", a, b, "-o", directory.File("out")});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(result.err,
            "ppdforge: " + a + " and " + b + " would both write " + directory.File("out/printer.ppd") + "\n");
  EXPECT_EQ(directory.Entries("out"), std::vector<std::string>{"x"});
}

TEST(BatchGenerate, AFailingProductIsReportedAndTheOthersAreWritten) {
  TemporaryDirectory directory;
  const std::string good = directory.Write("good.plist", ReadFile(kExample));
  const std::string missing = directory.File("missing.plist");
  ADictionary root = SmallProduct();
  root.Set("options", ADictionary());
  const std::string empty = directory.Write("empty.plist", Xml(root));
  const ProcessResult result = ProcessRunner::RunTool({"generate", empty, missing, good, "-o", directory.File("out/")});
  // The worst status wins: an unreadable product (2) before a failed generation (1).
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(directory.Entries("out"), std::vector<std::string>{"good.ppd"});
  // Messages in the order of the products, each line naming its product.
  const std::size_t emptyAt = result.err.find("ppdforge: " + empty + ": ");
  const std::size_t missingAt = result.err.find("ppdforge: " + missing + ": ");
  ASSERT_NE(emptyAt, std::string::npos) << result.err;
  ASSERT_NE(missingAt, std::string::npos) << result.err;
  EXPECT_LT(emptyAt, missingAt);
  EXPECT_EQ(result.err.find(good), std::string::npos) << result.err;
}

}  // namespace
}  // namespace ppdforge::testing
