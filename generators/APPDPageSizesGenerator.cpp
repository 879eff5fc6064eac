#include "generators/APPDPageSizesGenerator.h"

#include <cups/ppd.h>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "core/AFormatter.h"
#include "core/ARKMediaSizeRect.h"
#include "core/AWorkerPool.h"
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

constexpr std::size_t kSizesPerBlock = 16;

// One media size with its choice and paper size, made without the document;
// `present` is false for entries that are not sizes and for the custom size.
struct PreparedSize {
  PreparedSize() = default;
  PreparedSize(const PreparedSize&) = delete;
  PreparedSize& operator=(const PreparedSize&) = delete;
  ~PreparedSize() {
    ReleaseObject(choice);
    ReleaseObject(paperSize);
  }

  bool present = false;
  AQVString name;
  AQVString ppdName;
  // Owned; null when it could not be made (adding it then fails).
  IPPDChoice* choice = nullptr;
  IPPDPaperSize* paperSize = nullptr;
};

void Prepare(const AValue& element, PreparedSize& out) {
  ADictionary media;
  if (!element.GetDictionary(media)) return;
  if (FlagFor(media, kRKPPDPageSizeIsCustomSizeKey)) return;

  out.present = true;
  out.name = media.GetString(kRKPPDCommonCodeNameKey);
  out.ppdName = media.GetString(kRKPPDPageSizePPDNameKey);
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
  out.choice = IPPDChoice::Create(out.ppdName, out.name,
                                  PageSizeCode(width, height, borderless, scaleFactor), "");

  const ARKMediaSizeRect paperRect = RKMediaSizeRectMake(0, 0, height, width);
  // The third number is the raw paper bottom and the page top plays no part:
  // drivers' imageable areas have always been computed this way.
  const ARKMediaSizeRect imageableRect =
      RKMediaSizeRectMake(paperBottom - pageBottom, pageLeft - paperLeft, paperBottom,
                          pageRight - paperLeft);
  out.paperSize = IPPDPaperSize::Create(out.ppdName, out.name, paperRect, imageableRect, "");
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

  // Reading the sizes and making their objects is most of the work and
  // touches no document, so blocks of sizes are made side by side; they are
  // added in their order afterwards.
  std::vector<PreparedSize> sizes(mediaList.Count());
  AWorkerPool& pool = AWorkerPool::Shared();
  pool.ForEach((sizes.size() + kSizesPerBlock - 1) / kSizesPerBlock, pool.Threads(),
               [&](std::size_t block) {
                 const std::size_t end = std::min(sizes.size(), (block + 1) * kSizesPerBlock);
                 for (std::size_t i = block * kSizesPerBlock; i < end; ++i) {
                   Prepare(mediaList[i], sizes[i]);
                 }
               });

  for (const PreparedSize& size : sizes) {
    if (!size.present) continue;
    // PageSize keeps a copy; PageRegion holds the choice itself.
    if (pageSize->AddChoice(size.choice, true) == nullptr) {
      return messages::Report(error, messages::kCannotAddPageSize, {size.ppdName, size.name});
    }
    if (pageRegion->AddChoice(size.choice, false) == nullptr) {
      return messages::Report(error, messages::kCannotAddPageRegion, {size.ppdName, size.name});
    }
    // The user-visible name is what "defaultChoice" holds; the last match wins.
    if (size.name == defaultChoice) {
      pageSize->SetDefaultChoice(size.ppdName);
      pageRegion->SetDefaultChoice(size.ppdName);
    }
    if (ppd->AddPaperSize(size.paperSize, false) == nullptr) {
      return messages::Report(error, messages::kCannotAddPageSize, {size.ppdName, size.name});
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

