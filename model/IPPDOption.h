#pragma once
// One user-selectable setting: the OpenUI block with its translation lines,
// OrderDependency, Default and choices.

#include <cups/ppd.h>

#include <vector>

#include "model/IPPDChoice.h"
#include "model/IPPDObject.h"

namespace ppdforge {

class APPDTextDecoder;

class IPPDGroup;
class IPPDLocalizer;

class IPPDOption : public IPPDObject {
 public:
  IPPDOption* Clone() const override = 0;

  virtual AQVString GetID() const = 0;
  virtual void SetID(const AQVString& id) = 0;
  virtual AQVString GetName() const = 0;
  virtual void SetName(const AQVString& name) = 0;
  // The stored default, or the first choice's ID when none is stored.
  virtual AQVString GetDefaultChoice() const = 0;
  // Stored as given, not checked against the choices.
  virtual void SetDefaultChoice(const AQVString& id) = 0;
  virtual ppd_ui_e GetUIType() const = 0;
  virtual void SetUIType(ppd_ui_e type) = 0;
  virtual const std::vector<IPPDChoice*>& GetChoices() const = 0;
  // Stores `choice` (a copy when `copy`), replacing a held choice with the
  // same ID; the stored choice goes to the end and is returned (borrowed).
  // Null for a null choice or a failed copy.
  virtual IPPDChoice* AddChoice(IPPDChoice* choice, bool copy) = 0;
  // Detaches and releases the choice (by identity, else the first equal one).
  virtual void RemoveChoice(IPPDChoice* choice) = 0;
  virtual void RemoveChoiceWithID(const AQVString& id) = 0;
  // The first choice with exactly this ID (borrowed), or null.
  virtual IPPDChoice* GetChoiceWithID(const AQVString& id) const = 0;
  virtual IPPDGroup* GetGroup() const = 0;
  virtual void SetGroup(IPPDGroup* group) = 0;
  // ID, name, effective default, UI type and the same choices in any order.
  virtual bool operator==(const IPPDOption& other) const = 0;
  virtual bool operator!=(const IPPDOption& other) const = 0;
  // One key: the name.
  virtual void GetLocalizationKeys(std::vector<AQVString>& keys) const = 0;
  virtual IPPDLocalizer* GetLocalizer() const = 0;
  // AddChoice for each element in order.
  virtual void AddChoices(const std::vector<IPPDChoice*>& choices, bool copy) = 0;
  // Detaches and releases every choice.
  virtual void ClearChoices() = 0;

  // A new option (count 1, owned by the caller) holding copies of `choices`, or null.
  static IPPDOption* Create(const AQVString& id, const AQVString& name,
                            const AQVString& defaultChoice, ppd_ui_e uiType,
                            const std::vector<IPPDChoice*>& choices, const AQVString& comment);
  // An option from a libcups record: ID its `keyword`, default its
  // `defchoice`, name its `text`, UI type its `ui`, and a choice made from
  // each of its choice records, in order. An empty option of UI type 0 for a
  // null record. Count 1, owned by the caller; null on failure.
  static IPPDOption* Create(const ppd_option_s* record, APPDTextDecoder* decoder = nullptr);
};

}  // namespace ppdforge
