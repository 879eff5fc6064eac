#pragma once
// The digital photo enhancement option: made only when the product supports it; brings the
// PDF pre-filter attributes of its product setting into the document.

#include "generators/APPDSpecificOptionGenerator.h"

namespace ppdforge {

class APPDDigitalPhotoOptionGenerator : public APPDSpecificOptionGenerator {
 public:
  // The feature "supportsDigitalPhotoEnhancement", and then the generic test.
  bool IsApplicable() const override;
  // Adds the "PDFPreFilterAttributes" of the product setting named like the
  // option; false with the attribute's error when the document refuses one.
  bool PostProcess(IPPDOption* option, AError* error) override;
};

}  // namespace ppdforge
