#pragma once
// Turns one options description entry into one option (an OpenUI block with
// its choices) in a group of the document. Choices come from the entry's
// "choices" list, from a product setting's values, or from the values a
// subclass supplies; subclasses override the hooks below.

#include <cups/ppd.h>

#include <optional>

#include "core/AArray.h"
#include "engine/APPDObjectGenerator.h"
#include "model/IPPDGroup.h"
#include "model/IPPDOption.h"

namespace ppdforge {

enum class PPDChoiceSource : int {
  kProductSetting = 0,  // the values of the product setting "setting-name"
  kDescription = 1,     // the entry's "choices"
  kSettingValues = 2,   // GetOptionSettingValues()
};

class APPDGenericOptionGenerator : public APPDObjectGenerator {
 public:
  // Group, option, choices, default, PostProcess; false with a code 1 error
  // on the first failure (nothing is rolled back).
  bool Generate(AError* error) override;
  // Description choices: true; setting values: at least "min-value-count" of them.
  bool IsApplicable() const override;

  // "group-name" when present (even empty), else "General".
  virtual AQVString GetGroupID() const;
  virtual AQVString GetOptionID() const;
  // "user-name"; else for a product setting its "userName"; else empty.
  virtual AQVString GetOptionName() const;
  // Number: as is; the text "Boolean": Boolean; anything else: PickOne.
  virtual ppd_ui_e GetOptionUIType() const;
  virtual AQVString GetOptionComment() const;
  virtual AQVString GetOptionSettingName() const;
  // The "values" of the product setting "setting-name"; nothing when unknown.
  virtual std::optional<AArray> GetOptionSettingValues() const;
  // The code of the choice `codeName` made from the setting value `value`:
  // here the "choice-generic-code" text for every choice; subclasses format
  // it per choice. Nothing, with *error set naming the option (code 1), when
  // a description's format does not fit its arguments.
  virtual std::optional<AQVString> GetChoiceGenericCode(const IPPDOption* option,
                                                        const ADictionary* value,
                                                        const AQVString& codeName,
                                                        AError* error) const;
  virtual PPDChoiceSource GetChoiceSource() const;
  virtual std::int32_t GetChoiceMinValueCount() const;
  virtual void GetChoices(AArray& out) const;
  virtual AQVString GetDefaultChoice(const IPPDOption* option) const;
  // The group of GetGroupID(), created when missing (borrowed), or null.
  virtual IPPDGroup* AddGroup(AError* error);
  // A new option replacing one with the same ID in `group` (borrowed), or null.
  virtual IPPDOption* AddOptionToGroup(IPPDGroup* group, AError* error);
  virtual bool AddChoicesToOption(IPPDOption* option, AError* error);
  // Replaces a choice with the same ID; true when the option holds it afterwards.
  virtual bool AddChoiceToOption(IPPDOption* option, const AQVString& id, const AQVString& name,
                                 const AQVString& code, const AQVString& comment);
  // Nothing here; true.
  virtual bool PostProcess(IPPDOption* option, AError* error);
};

}  // namespace ppdforge
