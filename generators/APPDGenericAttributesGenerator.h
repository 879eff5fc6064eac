#pragma once
// Turns one attributes description entry ("name", "spec", "translation",
// "value", "value-type", "comment") into one attribute of the document.
// Subclasses compute any part by overriding the getters and reuse Generate.

#include "engine/APPDObjectGenerator.h"
#include "model/IPPDAttribute.h"

namespace ppdforge {

class APPDGenericAttributesGenerator : public APPDObjectGenerator {
 public:
  // Adds the attribute; false with "Cannot add PPD attribute: ..." (code 1)
  // when the document refuses it.
  bool Generate(AError* error) override;
  // Always true here.
  bool IsApplicable() const override;

  // The entry's strings; empty when absent or not a string.
  virtual AQVString GetAttributeName() const;
  virtual AQVString GetAttributeSpec() const;
  virtual AQVString GetAttributeText() const;
  virtual AQVString GetAttributeValue() const;
  virtual AQVString GetAttributeComment() const;
  // "value-type": a number as is, a string as a decimal integer (0 if none); absent: 1.
  virtual PPDValueType GetAttributeValueType() const;
  // Forwards to the document; true when it stored the attribute.
  virtual bool AddAttribute(const AQVString& name, const AQVString& value, const AQVString& spec,
                            const AQVString& translation, PPDValueType type,
                            const AQVString& comment);
  // Stores `attribute` itself (the document takes its own reference).
  virtual bool AddAttribute(IPPDAttribute* attribute);
};

}  // namespace ppdforge
