#pragma once
// The one implementation of IPPDPaperSize: the "ImageableArea" or
// "PaperDimension" line of one media size with its translation lines.

#include <vector>

#include "model/APPDLocalizableObject.h"
#include "model/IPPDPaperSize.h"

namespace ppdforge {

class APPDPaperSize : public APPDLocalizableObject<IPPDPaperSize> {
 public:
  // The four numbers of each rectangle are used as bottom, left, top and
  // right edges, in member order; stored as given.
  APPDPaperSize(const AQVString& id, const AQVString& name, const ARKMediaSizeRect& paperRect,
                const ARKMediaSizeRect& imageableRect, const AQVString& sizeType);
  // Copies comment, ID, name, both rectangles and the size type; the copy has
  // no document and no explicit translations.
  APPDPaperSize(const APPDPaperSize& other);

  // A copy with the count 1 (owned by the caller), or null.
  APPDPaperSize* Clone() const override;
  // Empty (no error) when !IsValid(). Otherwise the comment lines, the line
  // "*SIZETYPE ID/Text: "values"" (values "%.2f", width and height for
  // "PaperDimension", left bottom right top for "ImageableArea") and one line
  // per additional language. On a statement error: the text made so far
  // (empty when the main line or comment failed), *error set.
  AQVString GetStringRepresentation(AError* error) const override;
  // The same text for the size type `sizeType` instead of the own one; the
  // size itself is left as it is, so that both types may be written at once.
  AQVString GetStringRepresentation(const AQVString& sizeType, AError* error) const;

  AQVString GetID() const override { return id_; }
  // Also tells the holding document that its ID index is out of date.
  void SetID(const AQVString& id) override;
  AQVString GetName() const override { return name_; }
  void SetName(const AQVString& name) override;
  ARKMediaSizeRect GetPaperSizeRect() const override { return paperRect_; }
  void SetPaperSizeRect(const ARKMediaSizeRect& rect) override;
  ARKMediaSizeRect GetImageableRect() const override { return imageableRect_; }
  void SetImageableRect(const ARKMediaSizeRect& rect) override { imageableRect_ = rect; }
  AQVString GetSizeType() const override { return sizeType_; }
  void SetSizeType(const AQVString& sizeType) override { sizeType_ = sizeType; }
  // Borrowed; null until a document holds the size.
  IPPD* GetPPD() const override { return ppd_; }
  void SetPPD(IPPD* ppd) override { ppd_ = ppd; }
  void GetLocalizationKeys(std::vector<AQVString>& keys) const override;
  IPPDLocalizer* GetLocalizer() const override;
  bool IsValid() const override;
  bool operator==(const IPPDPaperSize& other) const override;
  bool operator!=(const IPPDPaperSize& other) const override { return !(*this == other); }

 private:
  // A known size type and an ID.
  bool IsWritable(const AQVString& sizeType) const;
  AQVString id_;
  AQVString name_;
  ARKMediaSizeRect paperRect_;
  ARKMediaSizeRect imageableRect_;
  AQVString sizeType_;
  IPPD* ppd_ = nullptr;
};

}  // namespace ppdforge
