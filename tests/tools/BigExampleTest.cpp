// The benchmark printer of examples/big (the ppdc anchor's large printer)
// and its 20 models in examples/big20, as CUPS sees them: libcups loads them
// in strict mode and cupstestppd accepts them (with `-I filters`: the
// printer's filters are not installed here).

#include <cups/cups.h>
#include <cups/ppd.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tools/ProcessRunner.h"
#include "tools/TemporaryDirectory.h"

// libcups marks its PPD functions deprecated; they are the oracle here.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

namespace ppdforge::testing {
namespace {

const std::string kExamples = std::string(PPDFORGE_SOURCE_DIR) + "/examples";
const std::string kProduct = kExamples + "/big/alp9100.plist";
const std::string kBundle = kExamples + "/big/acme-laserpro.bundle";
const std::string kLanguages = "en,de,fr,es,it,ja,pt,ru,zh_CN";

void ExpectCupstestppdPasses(const std::string& path) {
  ASSERT_TRUE(ProcessRunner::IsInstalled("cupstestppd"))
      << "cupstestppd is missing: install the Debian package cups-client";
  const ProcessResult result = ProcessRunner::Run("cupstestppd", {"-I", "filters", path});
  EXPECT_EQ(result.exitCode, 0) << result.out << result.err;
  EXPECT_EQ(result.out, path + ": PASS\n");
}

class BigExample : public ::testing::TestWithParam<bool> {};

TEST_P(BigExample, LoadsStrictlyAndPassesCupstestppd) {
  TemporaryDirectory directory;
  const std::string path = directory.File("alp9100.ppd");
  std::vector<std::string> arguments{"generate", kProduct, "--strings", kBundle, "-o", path};
  if (GetParam()) arguments.insert(arguments.end(), {"--languages", kLanguages});
  const ProcessResult result = ProcessRunner::RunTool(arguments);
  ASSERT_EQ(result.exitCode, 0) << result.err;
  ASSERT_EQ(result.err, "");
  ExpectCupstestppdPasses(path);

  ppdSetConformance(PPD_CONFORM_STRICT);
  ppd_file_t* ppd = ppdOpenFile(path.c_str());
  ppdSetConformance(PPD_CONFORM_RELAXED);
  ASSERT_NE(ppd, nullptr);
  // 120 media sizes and the custom size.
  EXPECT_EQ(ppd->num_sizes, 121);
  const ppd_size_t* photo = ppdPageSize(ppd, "83x121mm");
  ASSERT_NE(photo, nullptr);
  EXPECT_NEAR(photo->left, 8.5, 0.01);
  EXPECT_NEAR(photo->top, 334.49, 0.01);
  const ppd_size_t* envelope = ppdPageSize(ppd, "EnvC4");
  ASSERT_NE(envelope, nullptr);
  EXPECT_FLOAT_EQ(envelope->bottom, 36);
  EXPECT_FLOAT_EQ(envelope->right, 631);
  EXPECT_EQ(ppd->num_groups, 8);
  ASSERT_NE(ppdFindOption(ppd, "AcmeWatermark"), nullptr);
  EXPECT_EQ(ppdFindOption(ppd, "AcmeWatermark")->num_choices, 8);
  // The anchor's 40 pairs, each written both ways.
  EXPECT_EQ(ppd->num_consts, 80);
  ppdClose(ppd);
}

INSTANTIATE_TEST_SUITE_P(Languages, BigExample, ::testing::Values(false, true),
                         [](const ::testing::TestParamInfo<bool>& param) {
                           return std::string(param.param ? "EightLanguages" : "English");
                         });

TEST(Big20Example, EveryModelPassesCupstestppd) {
  std::vector<std::string> arguments{"generate"};
  for (const auto& entry : std::filesystem::directory_iterator(kExamples + "/big20")) {
    if (entry.path().extension() == ".plist") arguments.push_back(entry.path().string());
  }
  ASSERT_EQ(arguments.size(), 21u);
  TemporaryDirectory directory;
  arguments.insert(arguments.end(), {"--strings", kBundle, "--languages", kLanguages, "-o",
                                     directory.Path().string()});
  const ProcessResult result = ProcessRunner::RunTool(arguments);
  ASSERT_EQ(result.exitCode, 0) << result.err;
  ASSERT_EQ(directory.Entries().size(), 20u);
  for (const std::string& name : directory.Entries()) ExpectCupstestppdPasses(directory.File(name));
}

}  // namespace
}  // namespace ppdforge::testing

#pragma GCC diagnostic pop
