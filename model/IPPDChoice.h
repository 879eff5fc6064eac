#pragma once
// One value of an option with the code that selects it:
// *OPTION CHOICE/Translation: "code"

#include <vector>

#include "model/IPPDObject.h"

struct ppd_choice_s;

namespace ppdforge {

class APPDTextDecoder;

class IPPDOption;
class IPPDLocalizer;

class IPPDChoice : public IPPDObject {
 public:
  IPPDChoice* Clone() const override = 0;

  virtual AQVString GetID() const = 0;
  virtual void SetID(const AQVString& id) = 0;
  virtual AQVString GetName() const = 0;
  virtual void SetName(const AQVString& name) = 0;
  virtual AQVString GetCode() const = 0;
  virtual void SetCode(const AQVString& code) = 0;
  // The option that holds the choice (borrowed), or null.
  virtual IPPDOption* GetOption() const = 0;
  virtual void SetOption(IPPDOption* option) = 0;
  // ID, name and code equal (exactly); comment, translations and option ignored.
  virtual bool operator==(const IPPDChoice& other) const = 0;
  virtual bool operator!=(const IPPDChoice& other) const = 0;
  // One key: the name.
  virtual void GetLocalizationKeys(std::vector<AQVString>& keys) const = 0;
  // Option, group, document, localizer; null as soon as a link is missing.
  virtual IPPDLocalizer* GetLocalizer() const = 0;

  // A new choice (count 1, owned by the caller), or null.
  static IPPDChoice* Create(const AQVString& id, const AQVString& name, const AQVString& code,
                            const AQVString& comment);
  // A choice from a libcups record: ID its `choice`, name its `text`, code
  // its `code` (empty when it has none), decoded as for attributes; all empty
  // for a null record. Count 1, owned by the caller; null on failure.
  static IPPDChoice* Create(const ppd_choice_s* record, APPDTextDecoder* decoder = nullptr);
};

}  // namespace ppdforge
