#pragma once
// One free-standing statement of the document: *NAME SPEC/Text: VALUE,
// with its comment and per-language translation lines.

#include <vector>

#include "core/ADictionary.h"
#include "model/IPPDObject.h"
#include "model/PPDValueType.h"

struct ppd_attr_s;

namespace ppdforge {

class APPDTextDecoder;

class IPPD;
class IPPDLocalizer;

class IPPDAttribute : public IPPDObject {
 public:
  IPPDAttribute* Clone() const override = 0;

  virtual AQVString GetName() const = 0;
  virtual void SetName(const AQVString& name) = 0;
  virtual AQVString GetSpec() const = 0;
  virtual void SetSpec(const AQVString& spec) = 0;
  virtual AQVString GetText() const = 0;
  // Replaces the text and drops the explicit translations.
  virtual void SetText(const AQVString& text) = 0;
  // Sets an explicit translation per entry: key a locale identifier, value the text.
  virtual void SetTextLocalizations(const ADictionary& localizations) = 0;
  virtual AQVString GetValue() const = 0;
  virtual void SetValue(const AQVString& value) = 0;
  virtual PPDValueType GetValueType() const = 0;
  virtual void SetValueType(PPDValueType type) = 0;
  // The document that holds the attribute (borrowed), or null.
  virtual IPPD* GetPPD() const = 0;
  virtual void SetPPD(IPPD* ppd) = 0;
  // The localization keys: the text alone.
  virtual void GetLocalizationKeys(std::vector<AQVString>& keys) const = 0;
  // The document's localizer (borrowed), or null.
  virtual IPPDLocalizer* GetLocalizer() const = 0;
  // Name, spec, text and value equal (exactly); type, comment and translations ignored.
  virtual bool operator==(const IPPDAttribute& other) const = 0;
  virtual bool operator!=(const IPPDAttribute& other) const = 0;

  // A new attribute (count 1, owned by the caller), or null.
  static IPPDAttribute* Create(const AQVString& name, const AQVString& spec, const AQVString& text,
                               const AQVString& value, PPDValueType type, const AQVString& comment);
  // An attribute from a libcups record: its name, spec, text and value
  // (decoded by `decoder`, as UTF-8 without one), the value type
  // APPDAttribute::DefaultValueType(name), no comment. A null record gives
  // empty strings and type 0. Count 1, owned by the caller; null on failure.
  static IPPDAttribute* Create(const ppd_attr_s* record, APPDTextDecoder* decoder = nullptr);
};

}  // namespace ppdforge
