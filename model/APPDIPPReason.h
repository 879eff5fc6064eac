#pragma once
// An IPP reason: the "cupsIPPReason" attribute whose option keyword is a
// printer-state reason and whose value is a "text:" URI carrying the message,
// split over continuation lines when long, one line per language.

#include <vector>

#include "model/APPDAttribute.h"

namespace ppdforge {

class APPDIPPReason : public APPDAttribute {
 public:
  // A new reason (count 1, owned by the caller), or null. `text` is the
  // message in the main language and the localization key; `value` the
  // message used when no localized text exists.
  static APPDIPPReason* Create(const AQVString& name, const AQVString& spec,
                               const AQVString& text, const AQVString& value,
                               const AQVString& comment);

  APPDIPPReason(const AQVString& name, const AQVString& spec, const AQVString& text,
                const AQVString& value, const AQVString& comment);
  // As the attribute's copy: no explicit translations, no document.
  APPDIPPReason(const APPDIPPReason& other);
  APPDIPPReason& operator=(const APPDIPPReason&) = delete;
  ~APPDIPPReason() override = default;

  // A copy that is again an IPP reason (count 1, owned by the caller), or null.
  IPPDAttribute* Clone() const override;
  // Comment lines, the main-language line, then one line per additional
  // language. On a broken rule *error is set (code 4) and the text made so
  // far is returned.
  AQVString GetStringRepresentation(AError* error) const override;
  // The line of one language: keyword "cupsIPPReason" for the main language,
  // LANGUAGE.cupsIPPReason otherwise. Empty with *error set on a broken rule.
  AQVString GetStringRepresentationForLanguage(bool isMainLanguage, const AQVString& language,
                                               AError* error) const;
  // "text:" followed by `text` with every prohibited character
  // percent-encoded; empty for an empty text.
  AQVString GetTextURIFromString(const AQVString& text) const;
  // `uri` cut into pieces that fit a 186-byte buffer, each further piece on a
  // line of its own starting with "text:"; `uri` itself when it gives no pieces.
  AQVString GetSplittedString(const AQVString& uri) const;
  // The 26 characters that a text URI escapes, in their fixed order.
  const std::vector<AQVString>& GetProhibitedChars() const { return prohibitedChars_; }

 private:
  std::vector<AQVString> prohibitedChars_;
};

}  // namespace ppdforge
