#pragma once
// A heading of the printing dialog: OpenGroup/CloseGroup (or the Sub forms)
// around its sub-groups and options. The group "General" is written bare.

#include <vector>

#include "model/IPPDObject.h"
#include "model/IPPDOption.h"

struct ppd_group_s;

namespace ppdforge {

class APPDTextDecoder;

class IPPD;
class IPPDLocalizer;

class IPPDGroup : public IPPDObject {
 public:
  IPPDGroup* Clone() const override = 0;

  virtual AQVString GetID() const = 0;
  virtual void SetID(const AQVString& id) = 0;
  virtual AQVString GetName() const = 0;
  virtual void SetName(const AQVString& name) = 0;
  virtual const std::vector<IPPDOption*>& GetOptions() const = 0;
  // Stores `option` (a copy when `copy`), replacing a held option with the
  // same ID; goes to the end; returns the stored option (borrowed) or null.
  virtual IPPDOption* AddOption(IPPDOption* option, bool copy) = 0;
  virtual void RemoveOption(IPPDOption* option) = 0;
  virtual void RemoveOptionWithID(const AQVString& id) = 0;
  virtual IPPDOption* GetOptionWithID(const AQVString& id) const = 0;
  virtual const std::vector<IPPDGroup*>& GetSubGroups() const = 0;
  // As AddOption; the stored sub-group gets this group's document and the sub-group flag.
  virtual IPPDGroup* AddSubGroup(IPPDGroup* group, bool copy) = 0;
  virtual void RemoveSubGroup(IPPDGroup* group) = 0;
  virtual void RemoveSubGroupWithID(const AQVString& id) = 0;
  virtual IPPDGroup* GetSubGroupWithID(const AQVString& id) const = 0;
  virtual bool IsSubGroup() const = 0;
  virtual void SetSubGroup(bool isSubGroup) = 0;
  virtual IPPD* GetPPD() const = 0;
  // Stores the document; a top-level group passes it to its sub-groups.
  virtual void SetPPD(IPPD* ppd) = 0;
  // ID, name, and equal options and sub-groups in any order.
  virtual bool operator==(const IPPDGroup& other) const = 0;
  virtual bool operator!=(const IPPDGroup& other) const = 0;
  // One key: the name.
  virtual void GetLocalizationKeys(std::vector<AQVString>& keys) const = 0;
  virtual IPPDLocalizer* GetLocalizer() const = 0;
  virtual void ClearOptions() = 0;
  virtual void ClearSubgroups() = 0;

  // A new group (count 1, owned by the caller) holding copies of `options`
  // and `subGroups`, or null.
  static IPPDGroup* Create(const AQVString& id, const AQVString& name,
                           const std::vector<IPPDOption*>& options,
                           const std::vector<IPPDGroup*>& subGroups, const AQVString& comment);
  // A group from a libcups record: ID its `name`, name its `text`, an option
  // made from each option record and a sub-group from each sub-group record,
  // in order. An empty group for a null record. Count 1, owned by the caller;
  // null on failure.
  static IPPDGroup* Create(const ppd_group_s* record, APPDTextDecoder* decoder = nullptr);
};

}  // namespace ppdforge
