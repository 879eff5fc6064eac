#include "generators/APPDProductNamesGenerator.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDProductNamesGenerator);

AQVString APPDProductNamesGenerator::CutAtCharacterBoundary(const AQVString& text,
                                                            std::size_t maxBytes) {
  const std::string& bytes = text.UTF8();
  if (bytes.size() <= maxBytes) return text;
  std::size_t length = maxBytes;
  // Back off over continuation bytes (10xxxxxx) to the start of the character.
  while (length > 0 && (static_cast<unsigned char>(bytes[length]) & 0xC0) == 0x80) --length;
  return AQVString(bytes.substr(0, length));
}

APPDProductNamesGenerator::State APPDProductNamesGenerator::GetProductDatum(AQVString& datum,
                                                                            AError* error) const {
  const AQVString name = GetAttributeName();
  if (name == "ModelName") return GetProductString("modelName", datum, error);
  if (name == "NickName") return GetProductString("nickName", datum, error);
  if (name == "Manufacturer") return GetProductString("manufacturer", datum, error);
  if (name == "ShortNickName") {
    const State state = GetProductString("shortNickName", datum, error);
    if (state != State::kAbsent) return state;
    const State model = GetProductString("modelName", datum, error);
    if (model == State::kPresent) datum = CutAtCharacterBoundary(datum, kShortNickNameMaxLength);
    return model;
  }
  return GetProductString("modelName", datum, error);
}

}  // namespace ppdforge
