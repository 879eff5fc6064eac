// Whole PPD texts of small products, compared byte for byte with reviewed
// files under tests/golden. After a deliberate change of the output, run
// with PPDFORGE_UPDATE_GOLDEN=1 to rewrite the expected files, then review
// the difference line by line before accepting it.

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "tools/ProcessRunner.h"
#include "tools/TemporaryDirectory.h"

namespace ppdforge::testing {
namespace {

const std::string kGolden = std::string(PPDFORGE_SOURCE_DIR) + "/tests/golden/";

struct GoldenCase {
  // NAME.plist gives NAME.ppd.
  const char* name;
  std::vector<std::string> arguments;
  // The warning lines expected on standard error.
  std::string warnings;
};

class GoldenFiles : public ::testing::TestWithParam<GoldenCase> {};

TEST_P(GoldenFiles, GeneratedTextEqualsTheReviewedFile) {
  std::vector<std::string> arguments{"generate", kGolden + GetParam().name + ".plist"};
  arguments.insert(arguments.end(), GetParam().arguments.begin(), GetParam().arguments.end());
  const ProcessResult result = ProcessRunner::RunTool(arguments);
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.err, GetParam().warnings);

  const std::string expectedPath = kGolden + GetParam().name + ".ppd";
  const char* update = std::getenv("PPDFORGE_UPDATE_GOLDEN");
  if (update != nullptr && std::string(update) == "1") {
    std::ofstream(expectedPath, std::ios::binary) << result.out;
  }
  EXPECT_EQ(result.out, ReadFile(expectedPath)) << "differs from " << expectedPath;
}

INSTANTIATE_TEST_SUITE_P(
    Products, GoldenFiles,
    ::testing::Values(
        GoldenCase{"minimal", {}, ""},
        GoldenCase{"options-and-constraints", {},
                   "ppdforge: warning: RKPPDGeneration error 1: Cannot create PPD generator with "
                   "class name: APPDNoSuchGenerator\n"},
        GoldenCase{"page-sizes", {}, ""},
        GoldenCase{"localized",
                   {"--strings", kGolden + "localized.bundle", "--languages", "en,fr"},
                   ""}),
    [](const ::testing::TestParamInfo<GoldenCase>& param) {
      std::string name = param.param.name;
      for (char& c : name) {
        if (c == '-') c = '_';
      }
      return name;
    });

}  // namespace
}  // namespace ppdforge::testing
