#pragma once
// The engine: owns the document and the localizer and fills the document by
// running the object generators phase by phase (attributes, page sizes,
// options, CUPS UI resolvers, constraints).

#include <cstdint>
#include <memory>
#include <vector>

#include "core/AError.h"
#include "core/AQVString.h"
#include "engine/IProductInfo.h"
#include "model/IPPD.h"
#include "model/IPPDLocalizer.h"

namespace ppdforge {

class IPPDGenerator {
 public:
  // Resets the document and runs the five phases; false on the first phase
  // that fails, with *error set as the phase left it.
  virtual bool CreatePPDObjects(AError* error) = 0;
  // The locale identifier of the document's "LanguageVersion".
  virtual AQVString GetMainLocale() const = 0;
  // Replaces "LanguageVersion" with the localization name of `locale`; empty does nothing.
  virtual void SetMainLocale(const AQVString& locale) = 0;
  // The main locale, then the entries of "cupsLanguages".
  virtual std::vector<AQVString> GetSupportedLocales() const = 0;
  // Replaces "cupsLanguages" with `locales` less the main locale (CUPS 1.2.0 and later only).
  virtual void SetSupportedLocales(const std::vector<AQVString>& locales) = 0;
  // The document (borrowed), or null before the first reset.
  virtual IPPD* GetPPD() const = 0;
  // Loads the "Localizable" string tables of the bundle at `path` into the localizer.
  virtual void AddLocalizedStringsFromBundleAtPath(const AQVString& path) = 0;
  // The product (borrowed; the engine shares its ownership), or null.
  virtual const IProductInfo* GetPPDProductInfo() const = 0;
  // The localizer (borrowed), created on first use; null only when it cannot be made.
  virtual IPPDLocalizer* GetPPDLocalizer() const = 0;

  virtual std::int32_t Retain() = 0;
  virtual std::int32_t Release() = 0;
  virtual ~IPPDGenerator() = default;

  // A new engine (count 1, owned by the caller) sharing `productInfo`
  // (which may be null: CreatePPDObjects then fails with code 2), or null.
  static IPPDGenerator* Create(std::shared_ptr<const IProductInfo> productInfo);
};

}  // namespace ppdforge
