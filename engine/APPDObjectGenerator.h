#pragma once
// The common base of every object generator: the engine it works for and its
// own copy of its generation description.

#include "core/AArray.h"
#include "core/ADictionary.h"
#include "core/AFormatter.h"
#include "engine/IPPDGenerator.h"
#include "engine/IPPDObjectGenerator.h"

namespace ppdforge {

class APPDObjectGenerator : public IPPDObjectGenerator {
 public:
  APPDObjectGenerator() = default;
  APPDObjectGenerator(const APPDObjectGenerator&) = delete;
  APPDObjectGenerator& operator=(const APPDObjectGenerator&) = delete;
  // Gives back the reference on the engine.
  ~APPDObjectGenerator() override;

  void Initialize(IPPDGenerator* generator, const ADictionary* description) override;

 protected:
  // The engine (borrowed); null before Initialize.
  IPPDGenerator* GetPPDGenerator() const { return generator_; }
  // The generation description (empty when created without one).
  const ADictionary& GetParams() const { return params_; }
  // Adds one attribute per dictionary of `attributes` ("name", "value",
  // "spec", "translation", "comment", "value-type" (default 0)); elements
  // without a name or value are skipped. On the first refusal: false and
  // "Cannot add attribute: %@ %@: %@" (code 1). Null or empty: true.
  bool AddAttributesFromArray(const AArray* attributes, AError* error) const;
  // The description key made from a "%d" key format and a number
  // ("option-%d" and 3 give "option-3").
  static AQVString NumberedKey(const char* format, long long number);

 private:
  IPPDGenerator* generator_ = nullptr;
  ADictionary params_;
};

}  // namespace ppdforge
