#include "model/APPDPaperSize.h"

#include <cups/ppd.h>

#include "model/APPDTextDecoder.h"

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

#include "core/AFormatter.h"
#include "core/ASharedObject.h"
#include "model/APPD.h"
#include "model/APPDLineWriter.h"
#include "model/APPDStatement.h"
#include "model/RKPPDConstants.h"

namespace ppdforge {

namespace {

// "%.2f" of each number, separated by single spaces, whatever the C locale says.
AQVString FormatPoints(std::initializer_list<double> numbers) {
  std::string text;
  for (const double number : numbers) {
    if (!text.empty()) text += ' ';
    AFormatter::AppendTwoDecimals(text, number);
  }
  return AQVString::FromTrustedUTF8(std::move(text));
}

}  // namespace

APPDPaperSize::APPDPaperSize(const AQVString& id, const AQVString& name,
                             const ARKMediaSizeRect& paperRect,
                             const ARKMediaSizeRect& imageableRect, const AQVString& sizeType)
    : id_(id), name_(name), paperRect_(paperRect), imageableRect_(imageableRect),
      sizeType_(sizeType) {}

APPDPaperSize::APPDPaperSize(const APPDPaperSize& other)
    : APPDLocalizableObject(other), id_(other.id_), name_(other.name_),
      paperRect_(other.paperRect_), imageableRect_(other.imageableRect_),
      sizeType_(other.sizeType_) {}

APPDPaperSize* APPDPaperSize::Clone() const { return CreateSharedObject<APPDPaperSize>(*this); }

void APPDPaperSize::SetID(const AQVString& id) {
  id_ = id;
  if (auto* document = dynamic_cast<APPD*>(ppd_)) document->InvalidatePaperSizeIndex();
}

void APPDPaperSize::SetName(const AQVString& name) {
  name_ = name;
  // The explicit translations belonged to the old name.
  ClearLocalization();
}

// Only the first and fourth numbers change; the written height (the third
// number) stays as it was, which the page size generators rely on.
void APPDPaperSize::SetPaperSizeRect(const ARKMediaSizeRect& rect) {
  paperRect_.right = rect.right - rect.left;
  paperRect_.top = rect.top - rect.bottom;
}

void APPDPaperSize::GetLocalizationKeys(std::vector<AQVString>& keys) const {
  keys.clear();
  keys.push_back(name_.IsEmpty() ? id_ : name_);
}

IPPDLocalizer* APPDPaperSize::GetLocalizer() const {
  return ppd_ != nullptr ? ppd_->GetLocalizer() : nullptr;
}

bool APPDPaperSize::IsValid() const { return IsWritable(sizeType_); }

bool APPDPaperSize::IsWritable(const AQVString& sizeType) const {
  return (sizeType == kRKPPDPaperDimensionSizeType || sizeType == kRKPPDImageableAreaSizeType) &&
         !id_.IsEmpty();
}

bool APPDPaperSize::operator==(const IPPDPaperSize& other) const {
  return id_ == other.GetID() && name_ == other.GetName() &&
         RKMediaSizeRectIsEqualToRect(paperRect_, other.GetPaperSizeRect()) &&
         RKMediaSizeRectIsEqualToRect(imageableRect_, other.GetImageableRect());
}

AQVString APPDPaperSize::GetStringRepresentation(AError* error) const {
  return GetStringRepresentation(sizeType_, error);
}

AQVString APPDPaperSize::GetStringRepresentation(const AQVString& sizeType, AError* error) const {
  if (!IsWritable(sizeType)) return AQVString();

  AQVString mainLanguage;
  std::vector<AQVString> languages;
  if (ppd_ != nullptr) {
    mainLanguage = ppd_->GetMainLanguage();
    ppd_->GetAdditionalLanguages(languages);
  }

  // Member order is bottom, left, top, right edge.
  const AQVString value =
      sizeType == kRKPPDPaperDimensionSizeType
          ? FormatPoints({paperRect_.right, paperRect_.bottom})
          : FormatPoints({imageableRect_.left, imageableRect_.top, imageableRect_.right,
                          imageableRect_.bottom});

  // Lines are appended to one buffer by the statement rules, without a
  // statement object per line.
  AError local;
  std::string result;
  // A line and one per language, of about this length: no regrowth.
  result.reserve(96 * (languages.size() + 1));
  if (!APPDStatement::Append(result, sizeType.UTF8(), id_.UTF8(), GetLocalizedString(mainLanguage).UTF8(),
                             value.UTF8(), kPPDQuotedValue, std::string_view(), &local)) {
    APPDLineWriter::Failed(local, error);
    return AQVString();
  }

  const AQVString comment = APPDCommentable::GetStringRepresentation(&local);
  if (APPDLineWriter::Failed(local, error)) return AQVString();
  if (!comment.IsEmpty()) result.insert(0, comment.UTF8() + kRKPPDNewLine);

  APPDLineWriter::AppendTranslationLines(result, *this, sizeType.UTF8(), id_.UTF8(), languages,
                                         error);
  return AQVString::FromTrustedUTF8(std::move(result));
}

IPPDPaperSize* IPPDPaperSize::Create(const AQVString& id, const AQVString& name,
                                     const ARKMediaSizeRect& paperRect,
                                     const ARKMediaSizeRect& imageableRect,
                                     const AQVString& sizeType) {
  return CreateSharedObject<APPDPaperSize>(id, name, paperRect, imageableRect, sizeType);
}

IPPDPaperSize* IPPDPaperSize::Create(const ppd_size_s* record, APPDTextDecoder* decoder) {
  if (record == nullptr) {
    return Create(AQVString(), AQVString(), ARKMediaSizeRect(), ARKMediaSizeRect(),
                  kRKPPDImageableAreaSizeType);
  }
  // The members are used as bottom, left, top and right edges, in order.
  return Create(APPDTextDecoder::DecodeWith(decoder, record->name, APPDTextDecoder::Kind::kRaw),
                AQVString(), RKMediaSizeRectMake(0, 0, record->length, record->width),
                RKMediaSizeRectMake(record->bottom, record->left, record->top, record->right),
                kRKPPDImageableAreaSizeType);
}

}  // namespace ppdforge
