#pragma once
// The library's public entry: one generator per product, which builds the
// whole PPD document when it is made and renders it as UTF-8 on request.

#include <memory>
#include <optional>
#include <string>

#include "core/AError.h"
#include "core/AQVString.h"
#include "engine/IProductInfo.h"

namespace ppdforge {

class ARKPPDGenerator {
 public:
  virtual ~ARKPPDGenerator() = default;
  ARKPPDGenerator(const ARKPPDGenerator&) = delete;
  ARKPPDGenerator& operator=(const ARKPPDGenerator&) = delete;

  // A concrete generator for `productInfo` with its document already built;
  // null when the engine cannot be made ("Can't create PPD generator
  // object.", code 1) or a generation phase fails (the engine's error). The
  // caller owns the result.
  static std::unique_ptr<ARKPPDGenerator> GeneratorWithProductInfo(
      std::shared_ptr<const IProductInfo> productInfo, AError* error);

  // Adds the "Localizable" string tables of the bundle directory at `path`
  // to the translations; anything but an existing directory is ignored.
  virtual void AddLocalizedStringsFromBundleAtPath(const AQVString& path) = 0;

  // The PPD text of the current document as UTF-8 bytes; nothing on failure
  // with *error set (a statement that breaks the PPD rules, code 4).
  virtual std::optional<std::string> GeneratePPDData(AError* error) = 0;

 protected:
  ARKPPDGenerator() = default;
};

}  // namespace ppdforge
