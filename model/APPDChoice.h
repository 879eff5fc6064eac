#pragma once
// The one implementation of IPPDChoice: *OPTION CHOICE/Translation: "code"
// followed by one translation line per additional language.

#include <vector>

#include "model/APPDLocalizableObject.h"
#include "model/IPPDChoice.h"

namespace ppdforge {

class IPPD;

class APPDChoice : public APPDLocalizableObject<IPPDChoice> {
 public:
  APPDChoice(const AQVString& id, const AQVString& name, const AQVString& code,
             const AQVString& comment);
  // Copies comment, ID, name and code; the copy belongs to no option and has
  // no explicit translations.
  APPDChoice(const APPDChoice& other);

  // A copy with the count 1 (owned by the caller), or null.
  APPDChoice* Clone() const override;
  // The comment lines, the choice line and its translation lines. A choice
  // outside any option uses the keyword "DummySettingName". On a statement
  // error: the text made so far (empty when the main line failed), *error set.
  AQVString GetStringRepresentation(AError* error) const override;

  AQVString GetID() const override { return id_; }
  // Also tells the holding option that its ID index is out of date.
  void SetID(const AQVString& id) override;
  AQVString GetName() const override { return name_; }
  void SetName(const AQVString& name) override { name_ = name; }
  AQVString GetCode() const override { return code_; }
  void SetCode(const AQVString& code) override { code_ = code; }
  // Borrowed; null outside an option.
  IPPDOption* GetOption() const override { return option_; }
  void SetOption(IPPDOption* option) override { option_ = option; }
  // ID, name and code equal, exactly.
  bool operator==(const IPPDChoice& other) const override;
  bool operator!=(const IPPDChoice& other) const override { return !(*this == other); }
  // The name alone.
  void GetLocalizationKeys(std::vector<AQVString>& keys) const override;
  // Option, group, document, localizer (borrowed); null when a link is missing.
  IPPDLocalizer* GetLocalizer() const override;

 private:
  // The document reached through option and group, or null.
  IPPD* GetDocument() const;

  AQVString id_;
  AQVString name_;
  AQVString code_;
  IPPDOption* option_ = nullptr;
};

}  // namespace ppdforge
