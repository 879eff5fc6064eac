#pragma once
// The attribute: one free-standing statement *NAME SPEC/Text: VALUE with its
// comment lines and one translation line per additional language of its
// document.

#include <cstdint>
#include <vector>

#include "model/APPDCommentable.h"
#include "model/APPDLocalizable.h"
#include "model/IPPDAttribute.h"

namespace ppdforge {

class APPDAttribute : public IPPDAttribute, public APPDCommentable, public APPDLocalizable {
 public:
  APPDAttribute(const AQVString& name, const AQVString& spec, const AQVString& text,
                const AQVString& value, PPDValueType type, const AQVString& comment);
  // Copies comment, name, spec, text, value and type; the copy has no
  // explicit translations and no document.
  APPDAttribute(const APPDAttribute& other);
  APPDAttribute& operator=(const APPDAttribute&) = delete;
  ~APPDAttribute() override = default;

  // Supplied by ASharedObject; one declaration for the three bases' slots, so
  // that Retain and Release are unambiguous on attributes.
  std::int32_t Retain() override = 0;
  std::int32_t Release() override = 0;

  // A copy made as by the copy constructor (count 1, owned by the caller), or null.
  IPPDAttribute* Clone() const override;
  // This object as its mixin, with one more reference that the caller releases.
  APPDCommentable* QueryPPDCommentable() const override;
  APPDLocalizable* QueryPPDLocalizable() const override;
  // Comment lines (after the main line for "PPD-Adobe", before it otherwise),
  // the main line, and one translation line per additional language. On a
  // broken rule *error is set (code 4) and the text made so far is returned.
  AQVString GetStringRepresentation(AError* error) const override;

  AQVString GetName() const override { return name_; }
  void SetName(const AQVString& name) override { name_ = name; }
  AQVString GetSpec() const override { return spec_; }
  void SetSpec(const AQVString& spec) override { spec_ = spec; }
  AQVString GetText() const override { return text_; }
  void SetText(const AQVString& text) override;
  // Entries whose value is not a string are skipped.
  void SetTextLocalizations(const ADictionary& localizations) override;
  AQVString GetValue() const override { return value_; }
  void SetValue(const AQVString& value) override { value_ = value; }
  PPDValueType GetValueType() const override { return valueType_; }
  void SetValueType(PPDValueType type) override { valueType_ = type; }
  IPPD* GetPPD() const override { return ppd_; }
  void SetPPD(IPPD* ppd) override { ppd_ = ppd; }
  void GetLocalizationKeys(std::vector<AQVString>& keys) const override;
  IPPDLocalizer* GetLocalizer() const override;
  bool operator==(const IPPDAttribute& other) const override;
  bool operator!=(const IPPDAttribute& other) const override { return !(*this == other); }

  // The value kind of a keyword as read from a PPD file (exact, case-sensitive
  // lookup); unknown keywords give kPPDInvocationValue. Thread-safe.
  static PPDValueType DefaultValueType(const AQVString& name);

 protected:
  // The document's main language and additional languages; both empty
  // without a document.
  void GetLanguages(AQVString& mainLanguage, std::vector<AQVString>& additional) const;

 private:
  AQVString name_;
  AQVString spec_;
  AQVString text_;
  AQVString value_;
  PPDValueType valueType_;
  IPPD* ppd_ = nullptr;
};

}  // namespace ppdforge
