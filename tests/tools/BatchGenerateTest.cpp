// `ppdforge generate A B ... -o DIRECTORY`: one PPD per product, named after
// the product file, each the same as a single generation would write.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "tools/ProcessRunner.h"
#include "tools/TemporaryDirectory.h"

namespace ppdforge::testing {
namespace {

const std::string kExample = std::string(PPDFORGE_SOURCE_DIR) + "/examples/inkjet/qv-inkjet-500.plist";
const std::string kBundle = std::string(PPDFORGE_SOURCE_DIR) + "/examples/inkjet/qv-inkjet-500.bundle";

// The example product under `name` in `directory`.
std::string CopyExample(const TemporaryDirectory& directory, const std::string& name) {
  return directory.Write(name, ReadFile(kExample));
}

std::string SingleGeneration(const std::string& product, const std::vector<std::string>& options) {
  std::vector<std::string> arguments{"generate", product};
  arguments.insert(arguments.end(), options.begin(), options.end());
  const ProcessResult result = ProcessRunner::RunTool(arguments);
  EXPECT_EQ(result.exitCode, 0) << result.err;
  return result.out;
}

TEST(BatchGenerate, WritesOnePPDPerProductNamedAfterIt) {
  TemporaryDirectory products;
  const std::vector<std::string> names{"alpha.plist", "beta.v2.plist", "gamma"};
  std::vector<std::string> arguments{"generate"};
  for (const std::string& name : names) arguments.push_back(CopyExample(products, name));
  TemporaryDirectory output;
  const std::string directory = output.File("ppds");
  const std::vector<std::string> options{"--strings", kBundle, "--languages", "en,fr,de"};
  arguments.insert(arguments.end(), {"-o", directory});
  arguments.insert(arguments.end(), options.begin(), options.end());

  const ProcessResult result = ProcessRunner::RunTool(arguments);
  ASSERT_EQ(result.exitCode, 0) << result.err;
  // Standard error is no terminal here: no progress bar, no other output.
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out, "");
  std::vector<std::string> written;
  for (const auto& entry : std::filesystem::directory_iterator(directory)) {
    written.push_back(entry.path().filename().string());
  }
  std::sort(written.begin(), written.end());
  EXPECT_EQ(written, (std::vector<std::string>{"alpha.ppd", "beta.v2.ppd", "gamma.ppd"}));
  const std::string expected = SingleGeneration(kExample, options);
  for (const std::string& name : written) {
    EXPECT_EQ(ReadFile(std::filesystem::path(directory) / name), expected) << name;
  }
}

TEST(BatchGenerate, AnExistingDirectoryAsOutputTakesOneProductToo) {
  TemporaryDirectory output;
  const ProcessResult result = ProcessRunner::RunTool({"generate", kExample, "-o", output.Path().string()});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(output.Entries(), std::vector<std::string>{"qv-inkjet-500.ppd"});
  EXPECT_EQ(ReadFile(output.Path() / "qv-inkjet-500.ppd"), SingleGeneration(kExample, {}));
}

TEST(BatchGenerate, RefusesTwoProductsWithTheSameOutputName) {
  TemporaryDirectory first;
  TemporaryDirectory second;
  const std::string a = CopyExample(first, "printer.plist");
  const std::string b = CopyExample(second, "printer.xml");
  TemporaryDirectory output;
  const ProcessResult result = ProcessRunner::RunTool({"generate", a, b, "-o", output.Path().string()});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(result.err, "ppdforge: " + a + " and " + b + " would both write " +
                            (output.Path() / "printer.ppd").string() + "\n");
  EXPECT_TRUE(output.Entries().empty());
}

TEST(BatchGenerate, AFailingProductIsReportedAndTheOthersAreWritten) {
  TemporaryDirectory products;
  const std::string good = CopyExample(products, "good.plist");
  const std::string missing = products.File("missing.plist");
  const std::string empty = products.Write(
      "empty.plist",
      "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>attributesGenerationInfo</key><array/>"
      "<key>optionsGenerationInfo</key><array/><key>cupsUIResolversGenerationInfo</key><array/>"
      "<key>constraintsGenerationInfo</key><array/></dict></plist>");
  TemporaryDirectory output;
  const ProcessResult result =
      ProcessRunner::RunTool({"generate", empty, missing, good, "-o", output.Path().string()});
  // The worst status wins: an unreadable product (2) before a failed generation (1).
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(output.Entries(), std::vector<std::string>{"good.ppd"});
  // Messages in the order of the products, each line naming its product.
  const std::size_t emptyAt = result.err.find("ppdforge: " + empty + ": ");
  const std::size_t missingAt = result.err.find("ppdforge: " + missing + ": ");
  ASSERT_NE(emptyAt, std::string::npos) << result.err;
  ASSERT_NE(missingAt, std::string::npos) << result.err;
  EXPECT_LT(emptyAt, missingAt);
  EXPECT_EQ(result.err.find(good), std::string::npos) << result.err;
}

TEST(BatchGenerate, SeveralProductsNeedAnOutputDirectory) {
  const ProcessResult result = ProcessRunner::RunTool({"generate", kExample, kExample});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(result.err, "ppdforge: several products need -o naming the directory for their PPDs\n");
  EXPECT_EQ(result.out, "");
}

}  // namespace
}  // namespace ppdforge::testing
