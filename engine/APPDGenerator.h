#pragma once
// The one implementation of the engine.

#include <memory>
#include <vector>

#include "engine/IPPDGenerator.h"

namespace ppdforge {

class APPDGenerator : public IPPDGenerator {
 public:
  explicit APPDGenerator(std::shared_ptr<const IProductInfo> productInfo);
  APPDGenerator(const APPDGenerator&) = delete;
  APPDGenerator& operator=(const APPDGenerator&) = delete;
  // Releases the document, then the localizer, then the product.
  ~APPDGenerator() override;

  bool CreatePPDObjects(AError* error) override;
  AQVString GetMainLocale() const override;
  void SetMainLocale(const AQVString& locale) override;
  std::vector<AQVString> GetSupportedLocales() const override;
  void SetSupportedLocales(const std::vector<AQVString>& locales) override;
  IPPD* GetPPD() const override { return ppd_; }
  void AddLocalizedStringsFromBundleAtPath(const AQVString& path) override;
  const IProductInfo* GetPPDProductInfo() const override { return productInfo_.get(); }
  IPPDLocalizer* GetPPDLocalizer() const override;

  // Removes the constraints between (option1, choice1) and (option2, choice2),
  // in either direction.
  void RemoveUIConstraintBetween(const AQVString& option1, const AQVString& choice1,
                                 const AQVString& option2, const AQVString& choice2) const;
  // "*PageSize A4 *Duplex None" gives {PageSize: A4, Duplex: None}: option
  // keyword to its last word (empty for a lone keyword); later keys win.
  ADictionary ExtractOptionsAndChoicesFromString(const AQVString& text) const;

 private:
  void ResetPPD();
  bool GenerateAttributes(AError* error);
  bool GeneratePageSizes(AError* error);
  bool GenerateOptions(AError* error);
  bool GenerateResolvers(AError* error);
  bool GenerateConstraints(AError* error);
  bool GeneratePPDObjects(const AArray& descriptions, const AQVString& defaultClassName,
                          AError* error);

  IPPD* ppd_ = nullptr;
  mutable IPPDLocalizer* localizer_ = nullptr;
  std::shared_ptr<const IProductInfo> productInfo_;
};

}  // namespace ppdforge
