#pragma once
// A product for tests, answered from one in-memory dictionary that has the
// layout of a product description file.

#include <memory>

#include "core/ADictionary.h"
#include "engine/IProductInfo.h"

namespace ppdforge::testing {

class FakeProductInfo : public IProductInfo {
 public:
  explicit FakeProductInfo(ADictionary root = {}) : root_(std::move(root)) {}

  ADictionary& Root() { return root_; }

  std::optional<AArray> AttributesGenerationInfo() const override { return Array("attributesGenerationInfo"); }
  std::optional<AArray> OptionsGenerationInfo() const override { return Array("optionsGenerationInfo"); }
  std::optional<AArray> CUPSUIResolversGenerationInfo() const override { return Array("cupsUIResolversGenerationInfo"); }
  std::optional<AArray> ConstraintsGenerationInfo() const override { return Array("constraintsGenerationInfo"); }
  long CUPSVersion() const override {
    const AValue* v = root_.Get("CUPSVersion");
    return v != nullptr ? static_cast<long>(v->IntegerValue()) : 0;
  }
  std::optional<ADictionary> InfoForOptionWithName(const AQVString& name) const override {
    ADictionary options, option;
    if (root_.GetDictionary("options", options) && options.GetDictionary(name, option)) return option;
    return std::nullopt;
  }
  AValue ProductFeatureForKey(const AQVString& key) const override {
    ADictionary features;
    if (!root_.GetDictionary("features", features)) return {};
    const AValue* v = features.Get(key);
    return v != nullptr ? *v : AValue();
  }
  ARKMediaSizeRect CustomPageSizeMargins() const override { return Rect("customPageSizeMargins"); }
  ARKMediaSizeRect CustomPageSizeConstraints() const override { return Rect("customPageSizeConstraints"); }
  std::optional<AArray> ColorProfiles() const override { return Array("colorProfiles"); }
  std::optional<ADictionary> ProductData() const override { return Dictionary("product"); }
  std::optional<ADictionary> CustomPageSizeExcludes() const override { return Dictionary("customPageSizeExcludes"); }

 private:
  std::optional<AArray> Array(const char* key) const {
    AArray a;
    if (root_.GetArray(key, a)) return a;
    return std::nullopt;
  }
  std::optional<ADictionary> Dictionary(const char* key) const {
    ADictionary d;
    if (root_.GetDictionary(key, d)) return d;
    return std::nullopt;
  }
  ARKMediaSizeRect Rect(const char* key) const {
    AArray a;
    if (!root_.GetArray(key, a) || a.Count() < 4) return {};
    return {a[0].DoubleValue(), a[1].DoubleValue(), a[2].DoubleValue(), a[3].DoubleValue()};
  }

  ADictionary root_;
};

}  // namespace ppdforge::testing
