#pragma once
// The one implementation of IPPDGroup: OpenGroup (or OpenSubGroup) with its
// translation lines, a blank line, the sub-groups, the options and the close
// line. The group "General" writes its options bare.

#include <string>
#include <vector>

#include "model/APPDLocalizableObject.h"
#include "model/APPDOwnedList.h"
#include "model/IPPDGroup.h"

namespace ppdforge {

class APPDTextPieces;

class APPDGroup : public APPDLocalizableObject<IPPDGroup> {
 public:
  APPDGroup(const AQVString& id, const AQVString& name, const AQVString& comment);
  // Copies comment, ID, name and a copy of every option and sub-group; the
  // copy is no sub-group, has no document and no explicit translations.
  // Throws std::bad_alloc (caught by CreateSharedObject) when an element
  // cannot be copied.
  APPDGroup(const APPDGroup& other);
  // Detaches and releases every option and sub-group.
  ~APPDGroup() override;

  // A copy with the count 1 (owned by the caller), or null.
  APPDGroup* Clone() const override;
  // Empty for a group without options and sub-groups. Otherwise the comment,
  // the heading (unless the ID is "General"), the sub-groups, the options and
  // the close line, each line ended by LF. On a statement error: the text
  // made so far (empty when the comment or a group line failed), *error set.
  AQVString GetStringRepresentation(AError* error) const override;
  // Adds the pieces of the text of `group` followed by an LF (when it has
  // text) to `pieces`: the heading, each sub-group and option on its own, the
  // close line. A heading that fails becomes a failure piece.
  static void AddLinePieces(const IPPDGroup& group, APPDTextPieces& pieces);
  // The pieces of this group's text, without the LF after it.
  void AddPieces(APPDTextPieces& pieces) const;

  AQVString GetID() const override { return id_; }
  void SetID(const AQVString& id) override { id_ = id; }
  AQVString GetName() const override { return name_; }
  void SetName(const AQVString& name) override { name_ = name; }
  const std::vector<IPPDOption*>& GetOptions() const override { return options_.Elements(); }
  IPPDOption* AddOption(IPPDOption* option, bool copy) override;
  // By identity, else the first equal option; detaches and releases it.
  void RemoveOption(IPPDOption* option) override;
  void RemoveOptionWithID(const AQVString& id) override;
  // The first own option with exactly this ID (borrowed); sub-groups are not searched.
  IPPDOption* GetOptionWithID(const AQVString& id) const override;
  const std::vector<IPPDGroup*>& GetSubGroups() const override { return subGroups_.Elements(); }
  IPPDGroup* AddSubGroup(IPPDGroup* group, bool copy) override;
  // By identity, else the first equal sub-group; its document becomes null.
  void RemoveSubGroup(IPPDGroup* group) override;
  void RemoveSubGroupWithID(const AQVString& id) override;
  IPPDGroup* GetSubGroupWithID(const AQVString& id) const override;
  bool IsSubGroup() const override { return isSubGroup_; }
  void SetSubGroup(bool isSubGroup) override { isSubGroup_ = isSubGroup; }
  IPPD* GetPPD() const override { return ppd_; }
  void SetPPD(IPPD* ppd) override;
  bool operator==(const IPPDGroup& other) const override;
  bool operator!=(const IPPDGroup& other) const override { return !(*this == other); }
  void GetLocalizationKeys(std::vector<AQVString>& keys) const override;
  // The document's localizer (borrowed), or null without a document.
  IPPDLocalizer* GetLocalizer() const override;
  void ClearOptions() override;
  void ClearSubgroups() override;

 private:
  friend class APPDOwnedList<IPPDOption, APPDGroup>;
  friend class APPDOwnedList<IPPDGroup, APPDGroup>;

  // Appends the comment, heading and translation lines (the comment alone
  // for the General group). False with *error set when one of them or the
  // close line fails; the lines before a failing translation stay.
  bool WriteHeading(std::string& result, AError* error) const;
  const char* CloseKeyword() const { return isSubGroup_ ? "CloseSubGroup" : "CloseGroup"; }

  // Links a stored option or sub-group to this group, and undoes that.
  void Attach(IPPDOption* option) { option->SetGroup(this); }
  void Detach(IPPDOption* option) { option->SetGroup(nullptr); }
  void Attach(IPPDGroup* group);
  void Detach(IPPDGroup* group) { group->SetPPD(nullptr); }

  AQVString id_;
  AQVString name_;
  // Lookups read the IDs: an option is renamed without telling its group.
  APPDOwnedList<IPPDOption, APPDGroup> options_{this};
  APPDOwnedList<IPPDGroup, APPDGroup> subGroups_{this};
  bool isSubGroup_ = false;
  IPPD* ppd_ = nullptr;
};

}  // namespace ppdforge
