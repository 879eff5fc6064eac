// The `ppdforge generate` program as a user runs it: exit status, the error
// and warning lines, and the atomic writing of the output file.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <regex>
#include <string>
#include <vector>

#include "tools/ProcessRunner.h"
#include "tools/TemporaryDirectory.h"

namespace ppdforge::testing {
namespace {

const char* const kHeader =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n<dict>\n";

const char* const kAttributes =
    "<dict><key>name</key><string>PPD-Adobe</string><key>value</key><string>4.3</string></dict>\n"
    "<dict><key>name</key><string>LanguageVersion</string><key>value</key><string>English</string>"
    "<key>value-type</key><integer>3</integer></dict>\n";

const char* const kA4 =
    "<dict><key>name</key><string>A4</string><key>PPDName</key><string>A4</string>"
    "<key>paperRectBottom</key><integer>842</integer><key>paperRectRight</key><integer>595</integer>"
    "<key>pageRectBottom</key><integer>842</integer><key>pageRectRight</key><integer>595</integer></dict>\n";

// A product description; `attributes` null leaves the key out, `extra` is
// added to the root dictionary as it stands.
std::string Product(const char* attributes = kAttributes, const char* media = kA4,
                    const std::string& extra = "") {
  std::string xml = kHeader;
  if (attributes != nullptr) {
    xml += "<key>attributesGenerationInfo</key><array>\n" + std::string(attributes) + "</array>\n";
  }
  xml +=
      "<key>optionsGenerationInfo</key><array/>\n"
      "<key>cupsUIResolversGenerationInfo</key><array/>\n"
      "<key>constraintsGenerationInfo</key><array/>\n"
      "<key>CUPSVersion</key><integer>288</integer>\n"
      "<key>options</key><dict><key>QVPaperInfo</key><dict><key>values</key><array>\n" +
      std::string(media) + "</array></dict></dict>\n" + extra + "</dict>\n</plist>\n";
  return xml;
}

const char* const kProductText =
    "*PPD-Adobe: \"4.3\"\n"
    "*LanguageVersion: English\n"
    "\n"
    "*OpenUI *PageSize/Paper Size: PickOne\n"
    "*OrderDependency: 10.0 AnySetup *PageSize\n"
    "*DefaultPageSize: A4\n"
    "*PageSize A4/A4: \"<</PageSize[595.00 842.00] /ImagingBBox null>> setpagedevice\"\n"
    "*CloseUI: *PageSize\n"
    "\n"
    "*OpenUI *PageRegion/PageRegion: PickOne\n"
    "*OrderDependency: 10.0 AnySetup *PageRegion\n"
    "*DefaultPageRegion: A4\n"
    "*PageRegion A4/A4: \"<</PageSize[595.00 842.00] /ImagingBBox null>> setpagedevice\"\n"
    "*CloseUI: *PageRegion\n"
    "\n"
    "\n"
    "*DefaultImageableArea: A4\n"
    "*ImageableArea A4/A4: \"0.00 0.00 595.00 842.00\"\n"
    "\n"
    "*DefaultPaperDimension: A4\n"
    "*PaperDimension A4/A4: \"595.00 842.00\"\n"
    "\n"
    "\n";

TEST(GenerateCommand, WritesThePPDToStandardOutput) {
  TemporaryDirectory directory;
  const ProcessResult result = ProcessRunner::RunTool({"generate", directory.Write("p.plist", Product())});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out, kProductText);
}

TEST(GenerateCommand, HelpAndVersion) {
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
  EXPECT_TRUE(std::regex_match(version.out, std::regex("ppdforge [0-9]+\\.[0-9]+\\.[0-9]+\n")))
      << version.out;
}

class GenerateCommandUsage : public ::testing::TestWithParam<std::vector<std::string>> {};

TEST_P(GenerateCommandUsage, IsAUsageErrorWithStatus2) {
  TemporaryDirectory directory;
  std::vector<std::string> arguments;
  for (const std::string& argument : GetParam()) {
    if (argument == "PRODUCT") {
      arguments.push_back(directory.Write("p.plist", Product()));
    } else if (argument == "MISSING-DIRECTORY") {
      arguments.push_back(directory.File("no-such-bundle"));
    } else {
      arguments.push_back(argument);
    }
  }
  const ProcessResult result = ProcessRunner::RunTool(arguments);
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err.rfind("ppdforge: ", 0), 0u) << result.err;
}

INSTANTIATE_TEST_SUITE_P(
    CommandLines, GenerateCommandUsage,
    ::testing::Values(std::vector<std::string>{}, std::vector<std::string>{"generate"},
                      std::vector<std::string>{"frobnicate"},
                      std::vector<std::string>{"generate", "PRODUCT", "--bogus"},
                      std::vector<std::string>{"generate", "PRODUCT", "-o"},
                      std::vector<std::string>{"generate", "PRODUCT", "--strings", "MISSING-DIRECTORY"}));

TEST(GenerateCommand, AnUnreadableProductIsStatus2) {
  TemporaryDirectory directory;
  const std::string path = directory.File("missing.plist");
  const ProcessResult result = ProcessRunner::RunTool({"generate", path});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(result.err, "ppdforge: RKPPDGeneration error 5: " + path +
                            ": cannot read the product description: no such file\n");
}

TEST(GenerateCommand, AnInvalidProductIsStatus2AndNamesTheKey) {
  TemporaryDirectory directory;
  const std::string path = directory.Write(
      "p.plist", Product(kAttributes, "<dict><key>PPDName</key><integer>4</integer></dict>\n"));
  const ProcessResult result = ProcessRunner::RunTool({"generate", path, "-o", directory.File("out.ppd")});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(result.err, "ppdforge: RKPPDGeneration error 5: " + path +
                            ": options.QVPaperInfo.values[0].PPDName is an integer, expected a string\n");
  EXPECT_EQ(directory.Entries(), std::vector<std::string>{"p.plist"});
}

TEST(GenerateCommand, UnknownKeysAreWarnings) {
  TemporaryDirectory directory;
  const std::string path =
      directory.Write("p.plist", Product(kAttributes, kA4, "<key>colour</key><string>blue</string>\n"));
  const ProcessResult result = ProcessRunner::RunTool({"generate", path});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.err, "ppdforge: warning: " + path + ": unknown key \"colour\"\n");
  EXPECT_EQ(result.out, kProductText);
}

TEST(GenerateCommand, AnUnknownGeneratorThatTheBuildSurvivesIsAWarning) {
  TemporaryDirectory directory;
  const std::string attributes =
      std::string(kAttributes) +
      "<dict><key>generator</key><string>APPDNoSuchGenerator</string><key>name</key>"
      "<string>FileVersion</string><key>value</key><string>1.0</string></dict>\n" +
      "<dict><key>name</key><string>FormatVersion</string><key>value</key><string>4.3</string></dict>\n";
  const ProcessResult result =
      ProcessRunner::RunTool({"generate", directory.Write("p.plist", Product(attributes.c_str()))});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.err,
            "ppdforge: warning: RKPPDGeneration error 1: Cannot create PPD generator with class "
            "name: APPDNoSuchGenerator\n");
  EXPECT_NE(result.out.find("*FormatVersion: \"4.3\"\n"), std::string::npos);
}

struct LibraryFailure {
  const char* name;
  std::string product;
  std::string errorLine;
};

class GenerateCommandLibraryFailure : public ::testing::TestWithParam<LibraryFailure> {};

TEST_P(GenerateCommandLibraryFailure, IsStatus1WithTheErrorLineAndNoOutput) {
  TemporaryDirectory directory;
  const std::string path = directory.Write("p.plist", GetParam().product);
  const std::string output = directory.File("out.ppd");
  ProcessResult result = ProcessRunner::RunTool({"generate", path, "-o", output});
  EXPECT_EQ(result.exitCode, 1);
  std::string expected = GetParam().errorLine;
  const std::size_t file = expected.find("FILE");
  if (file != std::string::npos) expected.replace(file, 4, path);
  EXPECT_EQ(result.err, expected);
  EXPECT_EQ(directory.Entries(), std::vector<std::string>{"p.plist"});

  // An existing output file is left exactly as it was.
  directory.Write("out.ppd", "previous content\n");
  result = ProcessRunner::RunTool({"generate", path, "-o", output});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(ReadFile(output), "previous content\n");
  EXPECT_EQ(directory.Entries(), (std::vector<std::string>{"out.ppd", "p.plist"}));
}

const std::string kLongModelName(300, 'x');

INSTANTIATE_TEST_SUITE_P(
    Errors, GenerateCommandLibraryFailure,
    ::testing::Values(
        LibraryFailure{"NoAttributes", Product(nullptr),
                       "ppdforge: RKPPDGeneration error 3: Cannot create PPD attributes XML description\n"},
        LibraryFailure{"StatementTooLong",
                       Product((std::string(kAttributes) + "<dict><key>name</key><string>ModelName</string>"
                                                           "<key>value</key><string>" +
                                kLongModelName + "</string></dict>\n")
                                   .c_str()),
                       "ppdforge: RKPPDGeneration error 4: Line longer then the maximum allowed: 255 "
                       "characters in statement: *ModelName: \"" +
                           kLongModelName + "\"\n"},
        LibraryFailure{"NoMedia", Product(kAttributes, ""),
                       "ppdforge: the PPD could not be generated and the library reported no error; "
                       "likely cause: FILE has no media sizes in \"QVPaperInfo\" "
                       "(options.QVPaperInfo.values is missing or empty)\n"}),
    [](const ::testing::TestParamInfo<LibraryFailure>& param) { return std::string(param.param.name); });

TEST(GenerateCommand, ReplacesTheOutputFileAndKeepsItsPermissions) {
  TemporaryDirectory directory;
  const std::string product = directory.Write("p.plist", Product());
  const std::string output = directory.Write("out.ppd", "old\n");
  ASSERT_EQ(::chmod(output.c_str(), 0640), 0);
  const ProcessResult result = ProcessRunner::RunTool({"generate", product, "--output", output});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(ReadFile(output), kProductText);
  struct stat status {};
  ASSERT_EQ(::stat(output.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0640u);
  EXPECT_EQ(directory.Entries(), (std::vector<std::string>{"out.ppd", "p.plist"}));
}

TEST(GenerateCommand, AnOutputThatCannotBeWrittenIsStatus1) {
  TemporaryDirectory directory;
  const std::string product = directory.Write("p.plist", Product());
  const std::string output = directory.File("missing/out.ppd");
  const ProcessResult result = ProcessRunner::RunTool({"generate", product, "-o", output});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.err, "ppdforge: cannot write " + output + ": cannot create a temporary file in " +
                            directory.File("missing") + ": No such file or directory\n");
  EXPECT_EQ(directory.Entries(), std::vector<std::string>{"p.plist"});
}

TEST(GenerateCommand, SetsTheMainAndSupportedLanguages) {
  TemporaryDirectory directory;
  const std::string product = directory.Write("p.plist", Product());
  const ProcessResult result =
      ProcessRunner::RunTool({"generate", product, "--main-language", "de", "--languages", "en,de,fr"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out.substr(0, result.out.find("\n\n") + 2),
            "*PPD-Adobe: \"4.3\"\n"
            "*LanguageVersion: German\n"
            "*cupsLanguages: \"en fr\"\n"
            "\n");
}

TEST(GenerateCommand, DoesNotLoadLibcups) {
  if (!ProcessRunner::IsInstalled("ldd")) GTEST_SKIP() << "ldd is not installed";
  const ProcessResult result = ProcessRunner::Run("ldd", {PPDFORGE_TOOL_PATH});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.out.find("libcups"), std::string::npos) << result.out;

  // Nor is it opened later, while generating.
  TemporaryDirectory directory;
  const ProcessResult run = ProcessRunner::Run(
      "env", {"LD_DEBUG=libs", PPDFORGE_TOOL_PATH, "generate", directory.Write("p.plist", Product())});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_NE(run.err.find("calling init"), std::string::npos) << "LD_DEBUG reported nothing";
  EXPECT_EQ(run.err.find("libcups"), std::string::npos) << run.err;
}

}  // namespace
}  // namespace ppdforge::testing
