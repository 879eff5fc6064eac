// Whole PPD texts of small products, compared byte for byte with reviewed
// files under tests/golden, and what libcups and cupstestppd make of those
// that are complete printers. After a deliberate change of the output, run
// with PPDFORGE_UPDATE_GOLDEN=1 to rewrite the expected files, then review
// the difference line by line before accepting it.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <fstream>
#include <regex>
#include <string>
#include <vector>

#include "support/PPDOracle.h"
#include "support/ProcessRunner.h"
#include "support/TemporaryDirectory.h"

namespace ppdforge::testing {
namespace {

const std::string kGolden = std::string(PPDFORGE_SOURCE_DIR) + "/tests/golden/";

struct GoldenCase {
  const char* product;   // NAME.plist
  const char* expected;  // the reviewed PPD
  std::vector<std::string> arguments;
  std::string warnings;  // expected on standard error
  bool printer;          // complete enough for cupstestppd
};

class GoldenFiles : public ::testing::TestWithParam<GoldenCase> {};

TEST_P(GoldenFiles, GeneratedTextEqualsTheReviewedFile) {
  TemporaryDirectory directory;
  const std::string ppd = directory.File("golden.ppd");
  std::vector<std::string> arguments{"generate", kGolden + GetParam().product + ".plist", "-o", ppd};
  arguments.insert(arguments.end(), GetParam().arguments.begin(), GetParam().arguments.end());
  const ProcessResult result = ProcessRunner::RunTool(arguments);
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.err, GetParam().warnings);
  const std::string text = ReadFile(ppd);
  const std::string expectedPath = kGolden + GetParam().expected;
  const char* update = std::getenv("PPDFORGE_UPDATE_GOLDEN");
  if (update != nullptr && std::string(update) == "1") std::ofstream(expectedPath, std::ios::binary) << text;
  EXPECT_EQ(text, ReadFile(expectedPath)) << "differs from " << expectedPath;
  if (!GetParam().printer) return;

  // Filters are not installed here (-I filters); the ICC profiles are made
  // under a root of their own (-R), so that the profiles check really runs.
  const std::vector<std::string> options{"-I", "filters", "-R", directory.File("root")};
  const std::regex profile("\\*cupsICCProfile [^:]*: \"([^\"]+)\"");
  bool profiles = false;
  for (std::sregex_iterator it(text.begin(), text.end(), profile), end; it != end; ++it, profiles = true) {
    if (!profiles) {
      const ProcessResult missing = PPDOracle::CupsTestPPD(ppd, options);
      EXPECT_NE(missing.out.find("Missing cupsICCProfile file"), std::string::npos) << missing.out;
    }
    // Read-only and owned by whoever runs the test: cupstestppd checks the
    // owner only when it runs as root, which then owns them.
    ::chmod(directory.Write("root" + (*it)[1].str(), "icc").c_str(), 0444);
  }
  EXPECT_EQ(PPDOracle::Rejections(ppd, options), "");
}

INSTANTIATE_TEST_SUITE_P(
    Products, GoldenFiles,
    ::testing::Values(GoldenCase{"minimal", "minimal.ppd", {}, "", false},
                      GoldenCase{"options-and-constraints",
                                 "options-and-constraints.ppd",
                                 {},
                                 "ppdforge: warning: RKPPDGeneration error 1: Cannot create PPD generator with "
                                 "class name: APPDNoSuchGenerator\n",
                                 false},
                      GoldenCase{"page-sizes", "page-sizes.ppd", {}, "", false},
                      GoldenCase{"localized",
                                 "localized.ppd",
                                 {"--strings", kGolden + "localized.bundle", "--languages", "en,fr"},
                                 "",
                                 false},
                      // Every product-specific attribute and constraint generator.
                      GoldenCase{
                          "product-data", "product-data.ppd", {"--strings", kGolden + "product-data.bundle"}, "", true},
                      GoldenCase{"product-data",
                                 "product-data.en-fr-de.ppd",
                                 {"--strings", kGolden + "product-data.bundle", "--languages", "en,fr,de"},
                                 "",
                                 true},
                      // All eleven option generators and the colour profiles.
                      GoldenCase{"specific-options", "specific-options.ppd", {}, "", true}),
    [](const ::testing::TestParamInfo<GoldenCase>& param) {
      return std::regex_replace(param.param.expected, std::regex("[^A-Za-z0-9]"), "_");
    });

}  // namespace
}  // namespace ppdforge::testing
