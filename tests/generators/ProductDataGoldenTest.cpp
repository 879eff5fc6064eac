// The golden product that uses every product-specific attribute and
// constraint generator: its whole PPD text, in English and with French and
// German, and what libcups and cupstestppd make of it.

#include <cups/ppd.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "core/ASharedObject.h"
#include "engine/IPPDGenerator.h"
#include "facade/APlistProductInfo.h"
#include "model/IPPD.h"

namespace ppdforge {
namespace {

const std::filesystem::path kGolden = std::filesystem::path(PPDFORGE_SOURCE_DIR) / "tests/golden";

std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

// The PPD of the golden product; `languages` empty keeps it single-language.
std::string Generate(const std::vector<AQVString>& languages, std::string* problem) {
  AError error;
  std::shared_ptr<APlistProductInfo> product =
      APlistProductInfo::LoadFile(kGolden / "product-data.plist", &error);
  if (!product) {
    *problem = error.message.UTF8();
    return "";
  }
  if (!product->GetWarnings().empty()) *problem = product->GetWarnings().front().UTF8();
  AScopedRef<IPPDGenerator> engine(IPPDGenerator::Create(product));
  if (!engine || !engine->CreatePPDObjects(&error)) {
    *problem = error.message.UTF8();
    return "";
  }
  engine->AddLocalizedStringsFromBundleAtPath((kGolden / "product-data.bundle").string());
  engine->SetSupportedLocales(languages);
  const std::string text = engine->GetPPD()->GetStringRepresentation(&error).UTF8();
  if (!error.message.IsEmpty()) *problem = error.message.UTF8();
  return text;
}

class TemporaryFile {
 public:
  TemporaryFile(const std::string& name, const std::string& contents)
      : path_(std::filesystem::temp_directory_path() /
              (name + "-" + std::to_string(::getpid()) + ".ppd")) {
    std::ofstream(path_, std::ios::binary) << contents;
  }
  ~TemporaryFile() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
  }
  const std::filesystem::path& Path() const { return path_; }

 private:
  std::filesystem::path path_;
};

// Empty when libcups loads the file in strict mode, else its complaint.
std::string StrictLoadProblem(const std::filesystem::path& path) {
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
  ppdSetConformance(PPD_CONFORM_STRICT);
  ppd_file_t* ppd = ppdOpenFile(path.c_str());
  if (ppd != nullptr) {
    ppdClose(ppd);
    return "";
  }
  int line = 0;
  const ppd_status_t status = ppdLastError(&line);
  return std::string(ppdErrorString(status)) + " on line " + std::to_string(line);
#pragma GCC diagnostic pop
}

// cupstestppd's exit status and output (filters are not installed here).
int RunCupsTestPPD(const std::filesystem::path& path, std::string& output) {
  const std::string command = "cupstestppd -I filters -v '" + path.string() + "' 2>&1";
  FILE* pipe = ::popen(command.c_str(), "r");
  if (pipe == nullptr) return -1;
  char buffer[512];
  while (std::fgets(buffer, sizeof buffer, pipe) != nullptr) output += buffer;
  const int status = ::pclose(pipe);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
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
  EXPECT_EQ(text, ReadFile(kGolden / GetParam().expected));
}

TEST_P(ProductDataGoldenTest, LoadsStrictlyAndPassesCupsTestPPD) {
  std::string problem;
  const TemporaryFile file(GetParam().name, Generate(GetParam().languages, &problem));
  ASSERT_EQ(problem, "");
  EXPECT_EQ(StrictLoadProblem(file.Path()), "");
  std::string output;
  EXPECT_EQ(RunCupsTestPPD(file.Path(), output), 0) << output;
  EXPECT_NE(output.find("NO ERRORS FOUND"), std::string::npos) << output;
  EXPECT_EQ(output.find("WARN"), std::string::npos) << output;
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
