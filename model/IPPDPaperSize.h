#pragma once
// The geometry line of one media size: "PaperDimension" (width, height) or
// "ImageableArea" (left, bottom, right, top), chosen by the size type.

#include <vector>

#include "core/ARKMediaSizeRect.h"
#include "model/IPPDObject.h"

struct ppd_size_s;

namespace ppdforge {

class APPDTextDecoder;

class IPPD;
class IPPDLocalizer;

class IPPDPaperSize : public IPPDObject {
 public:
  IPPDPaperSize* Clone() const override = 0;

  virtual AQVString GetID() const = 0;
  virtual void SetID(const AQVString& id) = 0;
  virtual AQVString GetName() const = 0;
  // Replaces the name and drops the explicit translations.
  virtual void SetName(const AQVString& name) = 0;
  // The four stored numbers (bottom, left, top, right edges as used here).
  virtual ARKMediaSizeRect GetPaperSizeRect() const = 0;
  // Stores only two numbers: fourth = r.fourth - r.second, first = r.first - r.third.
  virtual void SetPaperSizeRect(const ARKMediaSizeRect& rect) = 0;
  virtual ARKMediaSizeRect GetImageableRect() const = 0;
  virtual void SetImageableRect(const ARKMediaSizeRect& rect) = 0;
  virtual AQVString GetSizeType() const = 0;
  virtual void SetSizeType(const AQVString& sizeType) = 0;
  virtual IPPD* GetPPD() const = 0;
  virtual void SetPPD(IPPD* ppd) = 0;
  // One key: the name, or the ID when the name is empty.
  virtual void GetLocalizationKeys(std::vector<AQVString>& keys) const = 0;
  virtual IPPDLocalizer* GetLocalizer() const = 0;
  // Size type "PaperDimension" or "ImageableArea" and a non-empty ID.
  virtual bool IsValid() const = 0;
  // ID, name and both rectangles equal; the size type is not compared.
  virtual bool operator==(const IPPDPaperSize& other) const = 0;
  virtual bool operator!=(const IPPDPaperSize& other) const = 0;

  // A new paper size (count 1, owned by the caller), or null.
  static IPPDPaperSize* Create(const AQVString& id, const AQVString& name,
                               const ARKMediaSizeRect& paperRect,
                               const ARKMediaSizeRect& imageableRect, const AQVString& sizeType);
  // A paper size from a libcups record: ID its name, no name, paper rectangle
  // (0, 0, length, width), imageable rectangle (bottom, left, top, right),
  // size type "ImageableArea". Empty strings and zero rectangles for a null
  // record. Count 1, owned by the caller; null on failure.
  static IPPDPaperSize* Create(const ppd_size_s* record, APPDTextDecoder* decoder = nullptr);
};

inline constexpr const char* kRKPPDImageableAreaSizeType = "ImageableArea";
inline constexpr const char* kRKPPDPaperDimensionSizeType = "PaperDimension";

}  // namespace ppdforge
