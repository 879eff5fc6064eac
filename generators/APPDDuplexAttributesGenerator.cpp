#include "generators/APPDDuplexAttributesGenerator.h"

#include <utility>
#include <vector>

#include "core/RKPPDMessages.h"
#include "generators/APPDProductData.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDDuplexAttributesGenerator);

namespace {

using State = APPDProductData::State;

bool IsBackSide(const AQVString& text) {
  return text == "Normal" || text == "ManualTumble" || text == "Rotated" || text == "Flipped";
}

}  // namespace

bool APPDDuplexAttributesGenerator::IsApplicable() const {
  const IPPDGenerator* generator = GetPPDGenerator();
  const IProductInfo* product = generator != nullptr ? generator->GetPPDProductInfo() : nullptr;
  return product != nullptr && product->ProductFeatureForKey("supportsAutoDuplex").BoolValue();
}

bool APPDDuplexAttributesGenerator::Generate(AError* error) {
  const std::optional<ADictionary> product = APPDProductData::Load(GetPPDGenerator());
  if (!product) return true;
  ADictionary duplex;
  const State state =
      APPDProductData::GetDictionary(*product, "duplex", APPDProductData::kRootPath, duplex, error);
  if (state != State::kPresent) return state == State::kAbsent;

  const AQVString path = APPDProductData::MemberPath(APPDProductData::kRootPath, "duplex");
  AQVString backSide;
  const State backSideState = APPDProductData::GetString(duplex, "backSide", path, backSide, error);
  if (backSideState == State::kInvalid) return false;
  if (backSideState == State::kPresent && !IsBackSide(backSide)) {
    return APPDProductData::ReportInvalid(
        error, APPDProductData::MemberPath(path, "backSide"),
        "\"Normal\", \"ManualTumble\", \"Rotated\" or \"Flipped\"");
  }
  bool flippedMargin = false;
  const State marginState =
      APPDProductData::GetBoolean(duplex, "requiresFlippedMargin", path, flippedMargin, error);
  if (marginState == State::kInvalid) return false;

  std::vector<std::pair<AQVString, AQVString>> attributes;
  if (backSideState == State::kPresent) {
    attributes.emplace_back("cupsBackSide", backSide);
    if (backSide == "Rotated" || backSide == "Flipped") {
      attributes.emplace_back("cupsFlipDuplex", "true");
    }
  }
  if (marginState == State::kPresent) {
    attributes.emplace_back("APDuplexRequiresFlippedMargin", flippedMargin ? "true" : "false");
  }
  const AQVString comment = GetAttributeComment();
  for (std::size_t i = 0; i < attributes.size(); ++i) {
    const auto& [name, value] = attributes[i];
    if (!AddAttribute(name, value, AQVString(), AQVString(), kPPDStringValue,
                      i == 0 ? comment : AQVString())) {
      return messages::Report(error, messages::kCannotAddAttribute,
                              {name, AQVString(), AQVString(), value});
    }
  }
  return true;
}

}  // namespace ppdforge
