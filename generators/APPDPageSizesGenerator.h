#pragma once
// Builds the options "PageSize" and "PageRegion" in the group "General", one
// choice per media size of the product's "QVPaperInfo" (custom sizes
// excepted), and one paper size per media for the geometry lines.

#include "engine/APPDObjectGenerator.h"
#include "model/IPPDOption.h"

namespace ppdforge {

class APPDPageSizesGenerator : public APPDObjectGenerator {
 public:
  // Adds the choices, the paper sizes and then both options. False without
  // an error when the product has no media; false with "Cannot add PPD page
  // size: ..." or "Cannot add PPD page region: ..." (code 1) on the first
  // refused choice or paper size (what was added before stays).
  bool Generate(AError* error) override;
  // Always true.
  bool IsApplicable() const override;

  // Adds `option` itself to the group "General", creating the group when the
  // document has none; true when the group holds the option afterwards.
  bool AddOption(IPPDOption* option);
};

}  // namespace ppdforge
