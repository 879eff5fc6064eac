#include "generators/APPDDefaultOutputOrderGenerator.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDDefaultOutputOrderGenerator);

APPDDefaultOutputOrderGenerator::State APPDDefaultOutputOrderGenerator::GetProductDatum(
    AQVString& datum, AError* error) const {
  const State state = GetProductString("outputOrder", datum, error);
  if (state == State::kInvalid) return state;
  if (state == State::kAbsent) {
    datum = "Normal";
    return State::kPresent;
  }
  if (datum != "Normal" && datum != "Reverse") {
    APPDProductData::ReportInvalid(
        error, APPDProductData::MemberPath(APPDProductData::kRootPath, "outputOrder"),
        "\"Normal\" or \"Reverse\"");
    return State::kInvalid;
  }
  return state;
}

}  // namespace ppdforge
