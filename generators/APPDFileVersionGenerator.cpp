#include "generators/APPDFileVersionGenerator.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDFileVersionGenerator);

namespace {

// cupstestppd refuses a FileVersion with anything but digits and dots.
bool IsVersion(const AQVString& text) {
  bool digit = false;
  for (const char c : text.UTF8()) {
    if (c >= '0' && c <= '9') {
      digit = true;
    } else if (c != '.') {
      return false;
    }
  }
  return digit;
}

}  // namespace

APPDFileVersionGenerator::State APPDFileVersionGenerator::GetProductDatum(AQVString& datum,
                                                                          AError* error) const {
  const State state = GetProductString("version", datum, error);
  if (state == State::kPresent && !IsVersion(datum)) {
    APPDProductData::ReportInvalid(
        error, APPDProductData::MemberPath(APPDProductData::kRootPath, "version"),
        "digits and dots");
    return State::kInvalid;
  }
  return state;
}

}  // namespace ppdforge
