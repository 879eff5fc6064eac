// The golden product that uses every product-specific attribute and
// constraint generator: its whole PPD text, in English and with French and
// German, and what libcups and cupstestppd make of it.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "core/AQVString.h"
#include "support/GeneratorTestSupport.h"
#include "support/PPDOracle.h"

namespace ppdforge {
namespace {

using testing::GoldenFile;
using testing::PPDOracle;

// The PPD of the golden product; `languages` empty keeps it single-language.
std::string Generate(const std::vector<AQVString>& languages, std::string* problem) {
  return testing::GenerateFromProductFile(GoldenFile("product-data.plist"),
                                          GoldenFile("product-data.bundle"), languages, problem);
}

struct GoldenCase {
  const char* name;
  std::vector<AQVString> languages;
  const char* expected;
};

class ProductDataGoldenTest : public ::testing::TestWithParam<GoldenCase> {};

TEST_P(ProductDataGoldenTest, WholeTextIsTheReviewedOne) {
  std::string problem;
  const std::string text = Generate(GetParam().languages, &problem);
  EXPECT_EQ(problem, "");
  EXPECT_EQ(text, PPDOracle::ReadFile(GoldenFile(GetParam().expected)));
}

// Filters are not installed here (-I filters).
TEST_P(ProductDataGoldenTest, LoadsStrictlyAndPassesCupsTestPPD) {
  std::string problem;
  const PPDOracle oracle;
  const std::filesystem::path file = oracle.WriteFile(std::string(GetParam().name) + ".ppd",
                                                      Generate(GetParam().languages, &problem));
  ASSERT_EQ(problem, "");
  EXPECT_EQ(PPDOracle::LoadFile(file).Problem(), "");
  const PPDOracle::CheckResult check = PPDOracle::RunCupsTestPPD(file, {"-I", "filters", "-v"});
  EXPECT_EQ(check.exitStatus, 0) << check.output;
  EXPECT_NE(check.output.find("NO ERRORS FOUND"), std::string::npos) << check.output;
  EXPECT_EQ(check.output.find("WARN"), std::string::npos) << check.output;
}

INSTANTIATE_TEST_SUITE_P(Languages, ProductDataGoldenTest,
                         ::testing::Values(GoldenCase{"English", {}, "product-data.ppd"},
                                           GoldenCase{"EnglishFrenchGerman",
                                                      {"en", "fr", "de"},
                                                      "product-data.en-fr-de.ppd"}),
                         [](const ::testing::TestParamInfo<GoldenCase>& param) {
                           return std::string(param.param.name);
                         });

// cupstestppd does not look at these, so a missing translation would pass unseen.
TEST(ProductDataTranslationsTest, PresetsMarkersAndReasonsHaveTextsInEveryLanguage) {
  std::string problem;
  const std::string text = Generate({"en", "fr", "de"}, &problem);
  ASSERT_EQ(problem, "");
  const std::vector<std::string> expected = {
      "*fr.APPrinterPreset Photo_on_Glossy/Photo sur papier brillant: \"\"\n",
      "*de.APPrinterPreset Photo_on_Glossy/Foto auf Glanzpapier: \"\"\n",
      "*fr.APPrinterPreset Fast_Draft/Brouillon rapide: \"\"\n",
      "*de.APPrinterPreset Fast_Draft/Schneller Entwurf: \"\"\n",
      "*fr.cupsMarkerName black/Encre noire: \"\"\n",
      "*de.cupsMarkerName black/Tinte Schwarz: \"\"\n",
      "*fr.cupsIPPReason com.qv-ink-low-warning: \"text:Le%20niveau%20d%27encre%20est%20bas.\"\n",
      "*de.cupsIPPReason com.qv-ink-low-warning: \"text:Der%20Tintenstand%20ist%20niedrig.\"\n",
  };
  for (const std::string& line : expected) EXPECT_NE(text.find(line), std::string::npos) << line;
  for (const char* name : {"cyan", "magenta", "yellow", "black"}) {
    for (const char* language : {"fr", "de"}) {
      EXPECT_NE(text.find("*" + std::string(language) + ".cupsMarkerName " + name + "/"),
                std::string::npos)
          << language << " " << name;
    }
  }
}

}  // namespace
}  // namespace ppdforge
