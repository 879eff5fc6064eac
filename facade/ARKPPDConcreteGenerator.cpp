#include "facade/ARKPPDConcreteGenerator.h"

#include <filesystem>
#include <new>
#include <system_error>
#include <utility>

#include "core/RKPPDMessages.h"

namespace ppdforge {

std::unique_ptr<ARKPPDConcreteGenerator> ARKPPDConcreteGenerator::Create(
    std::shared_ptr<const IProductInfo> productInfo, AError* error) {
  IPPDGenerator* engine = IPPDGenerator::Create(std::move(productInfo));
  if (engine == nullptr) {
    messages::Report(error, messages::kCannotCreateGeneratorObject);
    return nullptr;
  }
  // From here on the façade owns the engine reference and gives it up in
  // its destructor, also when the document cannot be built.
  std::unique_ptr<ARKPPDConcreteGenerator> facade(new (std::nothrow) ARKPPDConcreteGenerator(engine));
  if (!facade) {
    engine->Release();
    messages::Report(error, messages::kCannotCreateGeneratorObject);
    return nullptr;
  }
  if (!engine->CreatePPDObjects(error)) return nullptr;
  return facade;
}

ARKPPDConcreteGenerator::~ARKPPDConcreteGenerator() {
  if (generator_ != nullptr) generator_->Release();
  generator_ = nullptr;
}

void ARKPPDConcreteGenerator::AddLocalizedStringsFromBundleAtPath(const AQVString& path) {
  if (generator_ == nullptr) return;
  std::error_code ignored;
  const std::filesystem::path directory(path.UTF8());
  if (!std::filesystem::is_directory(directory, ignored)) return;
  generator_->AddLocalizedStringsFromBundleAtPath(path);
}

std::optional<std::string> ARKPPDConcreteGenerator::GeneratePPDData(AError* error) {
  if (generator_ == nullptr) {
    messages::Report(error, messages::kGeneratorObjectNotCreated);
    return std::nullopt;
  }
  const IPPD* document = generator_->GetPPD();
  if (document == nullptr) {
    messages::Report(error, messages::kPPDObjectsNotCreated);
    return std::nullopt;
  }
  // The document may report through the caller's error only on failure, so
  // a local error tells success from failure even when `error` is null.
  AError renderError;
  AQVString text = document->GetStringRepresentation(&renderError);
  if (!renderError.domain.IsEmpty()) {
    if (error != nullptr) *error = renderError;
    return std::nullopt;
  }
  // Every piece of the text is valid UTF-8 (AQVString's invariant), and so is their sum.
  return text.TakeUTF8();
}

}  // namespace ppdforge
