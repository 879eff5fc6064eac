#include "generators/APPDPageSizesGenerator.h"

#include <cups/ppd.h>

#include <optional>
#include <string>

#include "core/AFormatter.h"
#include "core/ARKMediaSizeRect.h"
#include "core/RKPPDMessages.h"
#include "model/IPPD.h"
#include "model/IPPDChoice.h"
#include "model/IPPDGroup.h"
#include "model/IPPDPaperSize.h"
#include "model/RKPPDConstants.h"

namespace ppdforge {

PPDFORGE_REGISTER_GENERATOR(APPDPageSizesGenerator);

namespace {

// The code of a media size and its borderless suffix, which follows "null"
// directly: "<</PageSize[%.2f %.2f] /ImagingBBox null%@>> setpagedevice"
// with "/cupsBorderlessScalingFactor %.2f".

// That code filled in, without the general formatter (it would cost more
// than the rest of a media size).
AQVString PageSizeCode(double width, double height, bool borderless, double scaleFactor) {
  std::string code = "<</PageSize[";
  AFormatter::AppendTwoDecimals(code, width);
  code += ' ';
  AFormatter::AppendTwoDecimals(code, height);
  code += "] /ImagingBBox null";
  if (borderless) {
    code += "/cupsBorderlessScalingFactor ";
    AFormatter::AppendTwoDecimals(code, scaleFactor);
  }
  code += ">> setpagedevice";
  AQVString text;
  text.Append(code);
  return text;
}

double NumberFor(const ADictionary& media, const char* key) {
  const AValue* value = media.Get(key);
  return value != nullptr ? value->DoubleValue() : 0;
}

bool FlagFor(const ADictionary& media, const char* key) {
  const AValue* value = media.Get(key);
  return value != nullptr && value->BoolValue();
}

}  // namespace

bool APPDPageSizesGenerator::IsApplicable() const { return true; }

bool APPDPageSizesGenerator::Generate(AError* error) {
  IPPDGenerator* generator = GetPPDGenerator();
  IPPD* ppd = generator != nullptr ? generator->GetPPD() : nullptr;
  const IProductInfo* product = generator != nullptr ? generator->GetPPDProductInfo() : nullptr;
  if (ppd == nullptr || product == nullptr) return false;
  const std::optional<ADictionary> paperInfo =
      product->InfoForOptionWithName(kRKPPDOptionPageSizeName);
  AArray mediaList;
  if (!paperInfo || !paperInfo->GetArray(kRKPPDOptionChoicesKey, mediaList) ||
      mediaList.IsEmpty()) {
    return false;
  }
  const AQVString defaultChoice = paperInfo->GetString(kRKPPDOptionDefaultChoiceNameKey);

  AScopedRef<IPPDOption> pageSize(IPPDOption::Create(kRKPPDPageSizeKeyword,
                                                     kRKPPDPageSizeHumanReadableName, "",
                                                     PPD_UI_PICKONE, {}, ""));
  AScopedRef<IPPDOption> pageRegion(IPPDOption::Create(kRKPPDPageRegionKeyword,
                                                       kRKPPDPageRegionKeyword, "",
                                                       PPD_UI_PICKONE, {}, ""));
  if (!pageSize || !pageRegion) return false;

  for (const AValue& element : mediaList) {
    ADictionary media;
    if (!element.GetDictionary(media)) continue;
    if (FlagFor(media, kRKPPDPageSizeIsCustomSizeKey)) continue;

    const AQVString name = media.GetString(kRKPPDCommonCodeNameKey);
    const AQVString ppdName = media.GetString(kRKPPDPageSizePPDNameKey);
    const double paperTop = NumberFor(media, kRKPPDPageSizePaperRectTopKey);
    const double paperLeft = NumberFor(media, kRKPPDPageSizePaperRectLeftKey);
    const double paperBottom = NumberFor(media, kRKPPDPageSizePaperRectBottomKey);
    const double paperRight = NumberFor(media, kRKPPDPageSizePaperRectRightKey);
    const double pageLeft = NumberFor(media, kRKPPDPageSizePageRectLeftKey);
    const double pageBottom = NumberFor(media, kRKPPDPageSizePageRectBottomKey);
    const double pageRight = NumberFor(media, kRKPPDPageSizePageRectRightKey);

    const bool borderless = FlagFor(media, kRKPPDPageSizeSupportsFullBleedKey);
    const double scaleFactor = borderless ? NumberFor(media, kRKPPDPageSizeOversprayScaleFactorKey) : 0;
    const double width = paperRight - paperLeft;
    const double height = paperBottom - paperTop;
    const AQVString code = PageSizeCode(width, height, borderless, scaleFactor);

    AScopedRef<IPPDChoice> choice(IPPDChoice::Create(ppdName, name, code, ""));
    // PageSize keeps a copy; PageRegion holds the choice itself.
    if (pageSize->AddChoice(choice.get(), true) == nullptr) {
      return messages::Report(error, messages::kCannotAddPageSize, {ppdName, name});
    }
    if (pageRegion->AddChoice(choice.get(), false) == nullptr) {
      return messages::Report(error, messages::kCannotAddPageRegion, {ppdName, name});
    }
    // The user-visible name is what "defaultChoice" holds; the last match wins.
    if (name == defaultChoice) {
      pageSize->SetDefaultChoice(ppdName);
      pageRegion->SetDefaultChoice(ppdName);
    }

    const ARKMediaSizeRect paperRect = RKMediaSizeRectMake(0, 0, height, width);
    // The third number is the raw paper bottom and the page top plays no part:
    // drivers' imageable areas have always been computed this way.
    const ARKMediaSizeRect imageableRect =
        RKMediaSizeRectMake(paperBottom - pageBottom, pageLeft - paperLeft, paperBottom,
                            pageRight - paperLeft);
    AScopedRef<IPPDPaperSize> paperSize(
        IPPDPaperSize::Create(ppdName, name, paperRect, imageableRect, ""));
    if (ppd->AddPaperSize(paperSize.get(), false) == nullptr) {
      return messages::Report(error, messages::kCannotAddPageSize, {ppdName, name});
    }
  }

  if (!AddOption(pageSize.get())) {
    return messages::Report(error, messages::kCannotAddOption,
                            {pageSize->GetID(), pageSize->GetName()});
  }
  if (!AddOption(pageRegion.get())) {
    return messages::Report(error, messages::kCannotAddOption,
                            {pageRegion->GetID(), pageRegion->GetName()});
  }
  return true;
}

bool APPDPageSizesGenerator::AddOption(IPPDOption* option) {
  IPPDGenerator* generator = GetPPDGenerator();
  IPPD* ppd = generator != nullptr ? generator->GetPPD() : nullptr;
  if (ppd == nullptr) return false;
  IPPDGroup* group = ppd->GetGroupWithID(kRKPPDGeneralGroupName);
  if (group == nullptr) {
    AScopedRef<IPPDGroup> general(
        IPPDGroup::Create(kRKPPDGeneralGroupName, kRKPPDGeneralGroupName, {}, {}, ""));
    group = ppd->AddGroup(general.get(), false);
    if (group == nullptr) return false;
  }
  return group->AddOption(option, false) != nullptr;
}

}  // namespace ppdforge

