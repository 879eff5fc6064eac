#include "generators/APPDPrinterIconPathGenerator.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDPrinterIconPathGenerator);

APPDPrinterIconPathGenerator::State APPDPrinterIconPathGenerator::GetProductDatum(
    AQVString& datum, AError* error) const {
  return GetProductString("iconPath", datum, error);
}

}  // namespace ppdforge
