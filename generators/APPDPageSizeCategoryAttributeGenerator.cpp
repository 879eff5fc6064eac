#include "generators/APPDPageSizeCategoryAttributeGenerator.h"

#include <map>
#include <optional>

#include "core/RKPPDMessages.h"
#include "model/RKPPDConstants.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDPageSizeCategoryAttributeGenerator);

bool APPDPageSizeCategoryAttributeGenerator::Generate(AError* error) {
  const IPPDGenerator* generator = GetPPDGenerator();
  const IProductInfo* product = generator != nullptr ? generator->GetPPDProductInfo() : nullptr;
  AArray mediaList;
  if (product != nullptr) {
    const std::optional<ADictionary> paperInfo =
        product->InfoForOptionWithName(kRKPPDOptionPageSizeName);
    if (paperInfo) paperInfo->GetArray(kRKPPDOptionChoicesKey, mediaList);
  }

  std::map<AQVString, AQVString> categories;
  for (const AValue& element : mediaList) {
    ADictionary media;
    if (!element.GetDictionary(media)) continue;
    const AValue* custom = media.Get(kRKPPDPageSizeIsCustomSizeKey);
    if (custom != nullptr && custom->BoolValue()) continue;
    const AQVString category = media.GetString(kRKPPDPageSizeCategoryKey);
    if (category.IsEmpty()) continue;
    const AQVString ppdName = media.GetString(kRKPPDPageSizePPDNameKey);
    const auto [entry, inserted] = categories.try_emplace(category, ppdName);
    if (!inserted) {
      entry->second += kRKPPDSpace;
      entry->second += ppdName;
    }
  }

  const AQVString name = GetAttributeName();
  const PPDValueType type = GetAttributeValueType();
  const AQVString comment = GetAttributeComment();
  bool first = true;
  for (const auto& [category, keywords] : categories) {
    if (!AddAttribute(name, keywords, category, category, type, first ? comment : AQVString())) {
      return messages::Report(error, messages::kCannotAddAttribute,
                              {name, category, category, keywords});
    }
    first = false;
  }
  return true;
}

}  // namespace ppdforge
