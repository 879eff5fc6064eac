// Product description bytes through the loader and, when they load, through
// the whole generation in three languages. Whatever the bytes, the loader
// either accepts them or names the problem, and the generation either
// returns valid UTF-8 or an error; nothing leaks.

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "core/APropertyList.h"
#include "core/ASharedObject.h"
#include "facade/APlistProductInfo.h"
#include "facade/ARKPPDConcreteGenerator.h"
#include "fuzz/FuzzCheck.h"

namespace {

void Run(std::string_view bytes) {
  using namespace ppdforge;
  AValue value;
  AQVString problem;
  if (!APropertyList::Parse(bytes, value, &problem)) {
    PPDFORGE_FUZZ_CHECK(!problem.IsEmpty());
    return;
  }
  ADictionary root;
  if (!value.GetDictionary(root)) return;
  AError error;
  const auto product = APlistProductInfo::FromDictionary(root, "fuzz.plist", &error);
  if (!product) {
    PPDFORGE_FUZZ_CHECK(error.code == 5 && !error.message.IsEmpty());
    return;
  }
  const auto generator = ARKPPDConcreteGenerator::Create(product, &error);
  if (!generator) return;
  generator->AddLocalizedStringsFromBundleAtPath(PPDFORGE_SOURCE_DIR "/examples/inkjet/qv-inkjet-500.bundle");
  IPPDGenerator* engine = generator->GetGenerator();
  engine->SetMainLocale("en");
  engine->SetSupportedLocales({"en", "fr", "de"});
  AError renderError;
  const std::optional<std::string> data = generator->GeneratePPDData(&renderError);
  if (data) {
    PPDFORGE_FUZZ_CHECK(renderError.domain.IsEmpty());
    PPDFORGE_FUZZ_CHECK(IsValidUTF8(*data));
  } else {
    PPDFORGE_FUZZ_CHECK(renderError.domain == kRKPPDGenerationErrorDomain);
    PPDFORGE_FUZZ_CHECK(!renderError.message.IsEmpty());
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const long alive = ppdforge::SharedObjectLiveCount().load();
  Run(std::string_view(reinterpret_cast<const char*>(data), size));
  PPDFORGE_FUZZ_CHECK(ppdforge::SharedObjectLiveCount().load() == alive);
  return 0;
}
