#pragma once
// A product answered from a product description file: a property list (XML
// or binary) whose root dictionary holds the generation descriptions, the
// product settings, the features and the custom page size numbers (the
// format is documented in docs/product-description.md).

#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include "core/ADictionary.h"
#include "core/AError.h"
#include "core/AQVString.h"
#include "engine/IProductInfo.h"

namespace ppdforge {

class APlistProductInfo final : public IProductInfo {
 public:
  // Reads and checks the file at `path`. Null with an input error (code 5)
  // that names the file, and the key path where one is to blame, when the
  // file cannot be read, is not a property list, has no dictionary at its
  // root or holds a known key of the wrong type. Shared with the caller.
  static std::shared_ptr<APlistProductInfo> LoadFile(const std::filesystem::path& path,
                                                     AError* error);
  // The same checks for a root dictionary already in memory; `sourceName`
  // stands for the file in messages.
  static std::shared_ptr<APlistProductInfo> FromDictionary(const ADictionary& root,
                                                           const AQVString& sourceName,
                                                           AError* error);

  // One text per unknown root key ("FILE: unknown key "x""), in key order.
  const std::vector<AQVString>& GetWarnings() const { return warnings_; }
  // The file name (or source name) that messages use.
  const AQVString& GetSourceName() const { return sourceName_; }
  // The whole description as read.
  const ADictionary& GetRoot() const { return root_; }

  std::optional<AArray> AttributesGenerationInfo() const override;
  std::optional<AArray> OptionsGenerationInfo() const override;
  std::optional<AArray> CUPSUIResolversGenerationInfo() const override;
  std::optional<AArray> ConstraintsGenerationInfo() const override;
  long CUPSVersion() const override;
  std::optional<ADictionary> InfoForOptionWithName(const AQVString& name) const override;
  AValue ProductFeatureForKey(const AQVString& key) const override;
  ARKMediaSizeRect CustomPageSizeMargins() const override;
  ARKMediaSizeRect CustomPageSizeConstraints() const override;
  std::optional<AArray> ColorProfiles() const override;
  std::optional<ADictionary> ProductData() const override;
  std::optional<ADictionary> CustomPageSizeExcludes() const override;

 private:
  APlistProductInfo(ADictionary root, AQVString sourceName, std::vector<AQVString> warnings);

  std::optional<AArray> ArrayForKey(const char* key) const;
  std::optional<ADictionary> DictionaryForKey(const char* key) const;
  ARKMediaSizeRect RectForKey(const char* key) const;

  ADictionary root_;
  AQVString sourceName_;
  std::vector<AQVString> warnings_;
};

}  // namespace ppdforge
