#pragma once
// An attribute written as exactly one line, *NAME SPEC/Text: VALUE, whatever
// the languages of its document: a translation line read from a PPD file
// ("ll.Keyword") that belongs to no object of the document, so that it
// reaches the written file as it stood instead of being translated again.

#include "model/APPDAttribute.h"

namespace ppdforge {

class APPDVerbatimAttribute : public APPDAttribute {
 public:
  // A new attribute (count 1, owned by the caller), or null.
  static APPDVerbatimAttribute* Create(const AQVString& name, const AQVString& spec,
                                       const AQVString& text, const AQVString& value,
                                       PPDValueType type);

  APPDVerbatimAttribute(const AQVString& name, const AQVString& spec, const AQVString& text,
                        const AQVString& value, PPDValueType type);
  APPDVerbatimAttribute(const APPDVerbatimAttribute& other) = default;
  APPDVerbatimAttribute& operator=(const APPDVerbatimAttribute&) = delete;
  ~APPDVerbatimAttribute() override = default;

  // A copy that is again verbatim (count 1, owned by the caller), or null.
  IPPDAttribute* Clone() const override;
  // The comment lines and the one statement of name, spec, text (not
  // localized), value and type. On a broken rule: empty, *error set (code 4).
  AQVString GetStringRepresentation(AError* error) const override;
};

}  // namespace ppdforge
