#pragma once
// A product name attribute; the entry's attribute name chooses the datum:
// "ModelName", "NickName" and "Manufacturer" take "modelName", "nickName" and
// "manufacturer"; "ShortNickName" takes "shortNickName", or else "modelName"
// cut to at most 31 bytes at a character boundary; any other name takes
// "modelName".

#include <cstddef>

#include "generators/APPDProductDatumAttributesGenerator.h"

namespace ppdforge {

class APPDProductNamesGenerator : public APPDProductDatumAttributesGenerator {
 public:
  // The longest a ShortNickName may be, in UTF-8 bytes (cupstestppd's limit).
  static constexpr std::size_t kShortNickNameMaxLength = 31;

  // The longest start of `text` that has at most `maxBytes` UTF-8 bytes and
  // ends at a character boundary.
  static AQVString CutAtCharacterBoundary(const AQVString& text, std::size_t maxBytes);

 protected:
  State GetProductDatum(AQVString& datum, AError* error) const override;
};

}  // namespace ppdforge
