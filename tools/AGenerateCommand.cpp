#include "tools/AGenerateCommand.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <filesystem>
#include <ostream>
#include <system_error>
#include <utility>

#include "core/AError.h"
#include "model/RKPPDConstants.h"
#include "facade/APlistProductInfo.h"
#include "facade/ARKPPDConcreteGenerator.h"
#include "tools/AArena.h"
#include "tools/AAtomicFileWriter.h"
#include "tools/AHeapPrefaulter.h"
#include "tools/ABatchGenerate.h"

namespace ppdforge {

namespace {

constexpr const char* kProgram = ICommand::kProgram;
// The main language of a PPD whose product and command line name none.
constexpr const char* kDefaultLanguage = "en";

// A generation's heap grows with its product file and with every language
// of the PPD (a string table and a part of the text); these two measures,
// fitted to the large and the inkjet examples, cover most of it.
constexpr std::uintmax_t kHeapPerProductByte = 6;
constexpr std::size_t kHeapPerLanguage = 180 << 10;
constexpr std::uintmax_t kLargestPrefault = 16 << 20;

// About the heap that generating `product` in `languages` languages uses.
std::size_t ExpectedHeap(const std::string& product, std::size_t languages) {
  std::error_code failed;
  const std::uintmax_t size = std::filesystem::file_size(product, failed);
  const std::uintmax_t fromFile = failed ? 0 : size * kHeapPerProductByte;
  return static_cast<std::size_t>(
      std::min(kLargestPrefault, fromFile + std::max<std::size_t>(languages, 1) * kHeapPerLanguage));
}

bool HasError(const AError& error) { return !error.domain.IsEmpty(); }

bool HasMediaSizes(const IProductInfo& product) {
  const std::optional<ADictionary> paperInfo = product.InfoForOptionWithName(kRKPPDOptionPageSizeName);
  AArray media;
  return paperInfo && paperInfo->GetArray(kRKPPDOptionChoicesKey, media) && !media.IsEmpty();
}

// The library reports most failures; the page size phase fails silently when
// the product has no media, and that is by far the likeliest cause.
void PrintSilentFailure(std::ostream& err, const APlistProductInfo& product) {
  err << kProgram << ": the PPD could not be generated and the library reported no error; ";
  if (!HasMediaSizes(product)) {
    err << "likely cause: " << product.GetSourceName().UTF8()
        << " has no media sizes in \"QVPaperInfo\" (options.QVPaperInfo.values is missing or empty)\n";
  } else {
    err << "likely cause: a generator named in " << product.GetSourceName().UTF8()
        << " failed without a message\n";
  }
}

// A single generation hands its model over to the end of the process: the
// system takes the memory back at once, while releasing the ten thousand
// objects of a large product one by one would cost a tenth of the run. The
// pointer keeps them reachable, so leak checkers do not count them.
void KeepUntilExit(std::shared_ptr<const APlistProductInfo> product, std::unique_ptr<ARKPPDGenerator> generator) {
  struct Kept {
    std::shared_ptr<const APlistProductInfo> product;
    std::unique_ptr<ARKPPDGenerator> generator;
  };
  static Kept* kept = nullptr;
  delete kept;
  kept = new Kept{std::move(product), std::move(generator)};
}

bool WriteToStream(std::ostream& out, const std::string& bytes) {
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  out.flush();
  return static_cast<bool>(out);
}

}  // namespace

AGenerateCommand::AGenerateCommand(CLI::App& program) {
  command_ = program.add_subcommand(
      "generate", "Write the PPD of a product description (to standard output without -o)");
  command_->add_option("PRODUCT", products_,
                       "Product description file (XML or binary property list); several "
                       "products are generated in parallel into the directory given by -o")
      ->required();
  command_->add_option("-o,--output", output_,
                       "Write the PPD to this file, replacing it atomically; with several "
                       "products, the directory that receives NAME.ppd for each NAME.plist");
  command_->add_option("--strings", bundles_,
                       "Bundle directory with NAME.lproj/Localizable.strings tables; "
                       "may be given several times, searched in the order given")
      ->check(CLI::ExistingDirectory)
      ->allow_extra_args(false);
  command_->add_option("--main-language", mainLanguage_,
                       "Main language of the PPD (\"LanguageVersion\"), e.g. en or French");
  command_->add_option("--languages", languages_,
                       "Comma-separated languages of the PPD (\"cupsLanguages\"), e.g. en,fr,de")
      ->delimiter(',')
      ->allow_extra_args(false);
}

bool AGenerateCommand::WasSelected() const { return command_->parsed(); }

int AGenerateCommand::Run(std::ostream& out, std::ostream& err) {
  std::error_code ignored;
  if (products_.size() > 1 || (!output_.empty() && std::filesystem::is_directory(output_, ignored))) {
    if (output_.empty()) {
      err << kProgram << ": several products need -o naming the directory for their PPDs\n";
      return 2;
    }
    const ABatchGenerate::GenerateOne one = [this](const std::string& product,
                                                   const std::string& output, std::ostream& messages) {
      std::ostream none(nullptr);
      return Generate(product, output, none, messages, false);
    };
    return ABatchGenerate::Run(products_, output_, one, err, ABatchGenerate::IsTerminal(err));
  }
  // One generation runs on this thread alone: here a helper thread cost more
  // to start and to wake than it saved (bench/README.md, "The memory round").
  AHeapPrefaulter::FaultIn(AArena::Start(ExpectedHeap(products_.front(), languages_.size())));
  return Generate(products_.front(), output_, out, err, true);
}

int AGenerateCommand::Generate(const std::string& productPath, const std::string& output,
                               std::ostream& out, std::ostream& err, bool alone) const {
  AError error;
  const std::shared_ptr<APlistProductInfo> product = APlistProductInfo::LoadFile(productPath, &error);
  if (!product) {
    PrintError(err, error);
    return 2;
  }
  for (const AQVString& warning : product->GetWarnings()) {
    err << kProgram << ": warning: " << warning.UTF8() << "\n";
  }

  std::unique_ptr<ARKPPDGenerator> generator =
      ARKPPDGenerator::GeneratorWithProductInfo(product, &error);
  if (!generator) {
    if (HasError(error)) {
      PrintError(err, error);
    } else {
      PrintSilentFailure(err, *product);
    }
    return 1;
  }
  // The build succeeded, yet a description may have been skipped (an
  // unknown generator name): the library keeps that error, so say so.
  if (HasError(error)) {
    err << kProgram << ": warning: " << error.domain.UTF8() << " error " << error.code << ": "
        << error.message.UTF8() << "\n";
  }
  for (const std::string& bundle : bundles_) {
    generator->AddLocalizedStringsFromBundleAtPath(AQVString(bundle));
  }
  if (auto* concrete = dynamic_cast<ARKPPDConcreteGenerator*>(generator.get())) {
    IPPDGenerator* engine = concrete->GetGenerator();
    if (!mainLanguage_.empty()) engine->SetMainLocale(AQVString(mainLanguage_));
    if (!languages_.empty()) {
      std::vector<AQVString> locales;
      for (const std::string& language : languages_) {
        if (!language.empty()) locales.emplace_back(language);
      }
      engine->SetSupportedLocales(locales);
    }
  }

  // A success of the build phases may leave an error of a skipped
  // description behind; only the rendering's own error counts now.
  AError renderError;
  const std::optional<std::string> data = generator->GeneratePPDData(&renderError);
  if (!data) {
    if (HasError(renderError)) {
      PrintError(err, renderError);
    } else {
      err << kProgram << ": the PPD text could not be made and the library reported no error\n";
    }
    return 1;
  }
  if (alone) KeepUntilExit(product, std::move(generator));

  if (output.empty()) {
    if (!WriteToStream(out, *data)) {
      err << kProgram << ": cannot write the PPD to standard output\n";
      return 1;
    }
    return 0;
  }
  std::string problem;
  if (!AAtomicFileWriter::Write(output, *data, &problem)) {
    err << kProgram << ": cannot write " << output << ": " << problem << "\n";
    return 1;
  }
  return 0;
}

}  // namespace ppdforge
