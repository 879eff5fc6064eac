// Micro-benchmarks of the library on the benchmark printer of examples/big
// (the ppdc anchor's large printer: 120 media sizes, 30 options, 8 languages).
//
//   build/bench/ppdforge_bench                      every case
//   build/bench/ppdforge_bench --benchmark_filter=MediaScale
//
// The MediaScale cases multiply the media list by 1, 4 and 16 and report the
// fitted complexity (it must be O(N)) and the time per media size.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/AArray.h"
#include "core/ADictionary.h"
#include "core/AError.h"
#include "core/AQVString.h"
#include "engine/IPPDGenerator.h"
#include "facade/APlistProductInfo.h"
#include "facade/ARKPPDConcreteGenerator.h"
#include "model/APPDStatement.h"
#include "model/PPDValueType.h"

namespace ppdforge {
namespace {

const std::string kProduct = std::string(PPDFORGE_SOURCE_DIR) + "/examples/big/alp9100.plist";
const std::string kBundle = std::string(PPDFORGE_SOURCE_DIR) + "/examples/big/acme-laserpro.bundle";
const std::vector<AQVString> kEightLanguages{"en", "de", "fr", "es", "it", "ja", "pt", "ru", "zh_CN"};

void Fail(benchmark::State& state, const char* what, const AError& error) {
  state.SkipWithError((std::string(what) + ": " + error.message.UTF8()).c_str());
}

// One whole generation as the tool runs it, minus process start and file
// writing: the description is read and checked, the document built, the
// string tables loaded and the PPD rendered.
std::optional<std::string> GenerateOnce(const std::shared_ptr<const APlistProductInfo>& product,
                                        const std::vector<AQVString>& languages, AError* error) {
  std::unique_ptr<ARKPPDConcreteGenerator> generator = ARKPPDConcreteGenerator::Create(product, error);
  if (!generator) return std::nullopt;
  generator->AddLocalizedStringsFromBundleAtPath(AQVString(kBundle));
  if (!languages.empty()) generator->GetGenerator()->SetSupportedLocales(languages);
  return generator->GeneratePPDData(error);
}

void WholeGeneration(benchmark::State& state, const std::vector<AQVString>& languages) {
  std::size_t bytes = 0;
  for (auto _ : state) {
    AError error;
    const std::shared_ptr<APlistProductInfo> product = APlistProductInfo::LoadFile(kProduct, &error);
    if (!product) return Fail(state, "load", error);
    const std::optional<std::string> data = GenerateOnce(product, languages, &error);
    if (!data) return Fail(state, "generate", error);
    bytes = data->size();
    benchmark::DoNotOptimize(data->data());
  }
  state.counters["ppd_bytes"] = static_cast<double>(bytes);
}

void BM_WholeGeneration_English(benchmark::State& state) { WholeGeneration(state, {}); }
void BM_WholeGeneration_8Languages(benchmark::State& state) { WholeGeneration(state, kEightLanguages); }

void BM_LoadProduct(benchmark::State& state) {
  for (auto _ : state) {
    AError error;
    const std::shared_ptr<APlistProductInfo> product = APlistProductInfo::LoadFile(kProduct, &error);
    if (!product) return Fail(state, "load", error);
    benchmark::DoNotOptimize(product.get());
  }
}

// Rendering alone: the document is built once and written again and again.
void Rendering(benchmark::State& state, const std::vector<AQVString>& languages) {
  AError error;
  const std::shared_ptr<APlistProductInfo> product = APlistProductInfo::LoadFile(kProduct, &error);
  if (!product) return Fail(state, "load", error);
  std::unique_ptr<ARKPPDConcreteGenerator> generator = ARKPPDConcreteGenerator::Create(product, &error);
  if (!generator) return Fail(state, "create", error);
  generator->AddLocalizedStringsFromBundleAtPath(AQVString(kBundle));
  if (!languages.empty()) generator->GetGenerator()->SetSupportedLocales(languages);
  for (auto _ : state) {
    const std::optional<std::string> data = generator->GeneratePPDData(&error);
    if (!data) return Fail(state, "render", error);
    benchmark::DoNotOptimize(data->data());
  }
}

void BM_Rendering_English(benchmark::State& state) { Rendering(state, {}); }
void BM_Rendering_8Languages(benchmark::State& state) { Rendering(state, kEightLanguages); }

// A statement of every choice line: keyword, choice, translation, code.
void BM_Statement_Typical(benchmark::State& state) {
  const AQVString keyword("PageSize");
  const AQVString choice("A4");
  const AQVString translation("A4 (210 x 297 mm)");
  const AQVString code("<</PageSize[595.00 842.00] /ImagingBBox null>> setpagedevice");
  for (auto _ : state) {
    APPDStatement statement(keyword, choice, translation, code, kPPDQuotedValue, AQVString());
    AError error;
    const AQVString text = statement.GetStringRepresentation(&error);
    benchmark::DoNotOptimize(text.UTF8().data());
  }
}

// The costliest statement that still passes: a translation of 80 bytes with
// stray brackets and colons in non-ASCII text (the UTF-16 scan), and a
// quoted value of about 1,000 bytes with stray brackets that is wrapped
// into lines of less than 255 bytes and closed by *End.
void BM_Statement_WorstCase(benchmark::State& state) {
  const AQVString keyword("AcmeWatermarkTextWithAVeryLongKeyword40");
  const AQVString choice("ConfidentialDraftOnlyForInternalUse1234");
  const AQVString translation("Vertraulich: <Entwurf> nur für den internen Gebrauch > Übersicht: Ä");
  std::string value;
  while (value.size() < 1000) value += "<</cupsString1(a > b) /cupsInteger2 1 <x >>setpagedevice ";
  const AQVString code(value);
  for (auto _ : state) {
    APPDStatement statement(keyword, choice, translation, code, kPPDQuotedValue, AQVString());
    AError error;
    const AQVString text = statement.GetStringRepresentation(&error);
    if (text.IsEmpty()) return Fail(state, "statement", error);
    benchmark::DoNotOptimize(text.UTF8().data());
  }
}

// The product with its media list repeated `factor` times (each copy with
// its own keywords), built in memory once.
std::shared_ptr<const APlistProductInfo> ScaledProduct(int factor, AError* error) {
  const std::shared_ptr<APlistProductInfo> base = APlistProductInfo::LoadFile(kProduct, error);
  if (!base) return nullptr;
  ADictionary root = base->GetRoot();
  ADictionary options;
  ADictionary paperInfo;
  AArray media;
  if (!root.GetDictionary("options", options) || !options.GetDictionary("QVPaperInfo", paperInfo) ||
      !paperInfo.GetArray("values", media)) {
    return nullptr;
  }
  AArray scaled;
  for (int copy = 0; copy < factor; ++copy) {
    for (const AValue& value : media) {
      ADictionary size;
      if (!value.GetDictionary(size)) continue;
      if (copy > 0) {
        const AQVString suffix = AQVString(".") + AQVString::FromInteger(copy);
        size.Set("PPDName", size.GetString("PPDName") + suffix);
        size.Set("name", size.GetString("name") + suffix);
      }
      scaled.Append(size);
    }
  }
  paperInfo.Set("values", scaled);
  options.Set("QVPaperInfo", paperInfo);
  root.Set("options", options);
  return APlistProductInfo::FromDictionary(root, AQVString("scaled product"), error);
}

// Building and rendering the document (the product is read once): the part
// whose cost follows the size of the media list.
void BM_MediaScale(benchmark::State& state) {
  const int factor = static_cast<int>(state.range(0));
  AError error;
  const std::shared_ptr<const APlistProductInfo> product = ScaledProduct(factor, &error);
  if (!product) return Fail(state, "scaled product", error);
  for (auto _ : state) {
    const std::optional<std::string> data = GenerateOnce(product, kEightLanguages, &error);
    if (!data) return Fail(state, "generate", error);
    benchmark::DoNotOptimize(data->data());
  }
  const double media = 120.0 * factor;
  state.SetComplexityN(static_cast<int64_t>(media));
  state.counters["per_media"] =
      benchmark::Counter(media, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

BENCHMARK(BM_WholeGeneration_English)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_WholeGeneration_8Languages)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LoadProduct)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Rendering_English)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Rendering_8Languages)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Statement_Typical);
BENCHMARK(BM_Statement_WorstCase);
BENCHMARK(BM_MediaScale)->Arg(1)->Arg(4)->Arg(16)->Unit(benchmark::kMillisecond)->Complexity(benchmark::oN);

}  // namespace
}  // namespace ppdforge

BENCHMARK_MAIN();
