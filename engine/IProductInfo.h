#pragma once
// What the engine and the generators ask of a product: the four generation
// descriptions, the CUPS version, the product settings and features, and the
// custom page size numbers. An answer that is absent is an empty optional or
// a null value.

#include <optional>

#include "core/AArray.h"
#include "core/ADictionary.h"
#include "core/ARKMediaSizeRect.h"
#include "core/AValue.h"

namespace ppdforge {

class IProductInfo {
 public:
  virtual ~IProductInfo() = default;

  // The generation descriptions (arrays of dictionaries); nothing when the
  // product has none (the engine then fails with code 3).
  virtual std::optional<AArray> AttributesGenerationInfo() const = 0;
  virtual std::optional<AArray> OptionsGenerationInfo() const = 0;
  virtual std::optional<AArray> CUPSUIResolversGenerationInfo() const = 0;
  virtual std::optional<AArray> ConstraintsGenerationInfo() const = 0;
  // The CUPS version as hexadecimal digits (0x120 is CUPS 1.2.0); 0 when unknown.
  virtual long CUPSVersion() const = 0;
  // The product setting `name` ("QVPaperInfo" holds the media), or nothing.
  virtual std::optional<ADictionary> InfoForOptionWithName(const AQVString& name) const = 0;
  // The feature `key`, or a null value when the product does not know it.
  virtual AValue ProductFeatureForKey(const AQVString& key) const = 0;
  // Top, left, bottom and right margins of the custom page size; zeros when unknown.
  virtual ARKMediaSizeRect CustomPageSizeMargins() const = 0;
  // Minimum height, minimum width, maximum height, maximum width; zeros when unknown.
  virtual ARKMediaSizeRect CustomPageSizeConstraints() const = 0;
  // The colour profiles ("colorProfiles"): dictionaries with "name", "path"
  // and optional "userName", "colorModel", "mediaType", "resolution",
  // "default", in the product's order; nothing when the product has none.
  virtual std::optional<AArray> ColorProfiles() const = 0;
  // The product's identity and data ("product": names, version, components,
  // presets, markers, IPP reasons ...), or nothing.
  virtual std::optional<ADictionary> ProductData() const = 0;
  // The exclusions of the custom page size ("customPageSizeExcludes": PPD
  // option keyword to an array of its choice keywords), or nothing.
  virtual std::optional<ADictionary> CustomPageSizeExcludes() const = 0;
};

}  // namespace ppdforge
