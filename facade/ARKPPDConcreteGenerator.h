#pragma once
// The one implementation of the public generator: holds one reference on
// the engine and asks it for the document's text.

#include <memory>
#include <optional>
#include <string>

#include "engine/IPPDGenerator.h"
#include "facade/ARKPPDGenerator.h"

namespace ppdforge {

class ARKPPDConcreteGenerator final : public ARKPPDGenerator {
 public:
  // Creates the engine for `productInfo` and builds the document. Returns
  // null with *error set as ARKPPDGenerator::GeneratorWithProductInfo says.
  static std::unique_ptr<ARKPPDConcreteGenerator> Create(
      std::shared_ptr<const IProductInfo> productInfo, AError* error);

  // Gives up the engine reference.
  ~ARKPPDConcreteGenerator() override;

  void AddLocalizedStringsFromBundleAtPath(const AQVString& path) override;
  std::optional<std::string> GeneratePPDData(AError* error) override;

  // The engine (borrowed; lives as long as this object), for callers that
  // set locales or work on the document directly.
  IPPDGenerator* GetGenerator() const { return generator_; }

 private:
  explicit ARKPPDConcreteGenerator(IPPDGenerator* generator) : generator_(generator) {}

  IPPDGenerator* generator_ = nullptr;
};

}  // namespace ppdforge
