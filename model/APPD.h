#pragma once
// The one implementation of IPPD: the document that owns the attributes, UI
// groups, paper sizes and constraints and writes the whole PPD file.

#include <map>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "model/APPDCommentableObject.h"
#include "model/APPDOwnedList.h"
#include "model/IPPD.h"

namespace ppdforge {

class APPDTextPieces;

class APPD : public APPDCommentableObject<IPPD> {
 public:
  APPD();
  // A deep copy: every attribute, group, paper size and constraint is cloned
  // (in order, names keeping their places) and held by the copy; the
  // localizer is shared. Throws std::bad_alloc (caught by CreateSharedObject)
  // when an element cannot be copied.
  APPD(const APPD& other);
  APPD& operator=(const APPD&) = delete;
  // Detaches and releases every element and releases the localizer.
  ~APPD() override;

  // A copy with the count 1 (owned by the caller), or null.
  APPD* Clone() const override;
  // The whole PPD: attributes in order of first arrival (without
  // "cupsIPPReason"), a blank line, the groups with the paper-size blocks
  // right after the group "General", the constraints, the IPP reasons and a
  // blank line. Leaves every paper size with the size type "PaperDimension".
  // On the first element that fails: the text so far, *error set.
  AQVString GetStringRepresentation(AError* error) const override;

  IPPDAttribute* AddAttribute(IPPDAttribute* attribute, bool copy) override;
  IPPDAttribute* AddAttribute(const AQVString& name, const AQVString& value, const AQVString& spec,
                              const AQVString& translation, PPDValueType type,
                              const AQVString& comment) override;
  void GetAttributesWithNameAndSpec(const AQVString& name, const AQVString* spec,
                                    std::vector<IPPDAttribute*>& out) const override;
  AQVString GetAttributeValueWithNameAndSpec(const AQVString& name,
                                             const AQVString* spec) const override;
  void RemoveAttributesWithNameAndSpec(const AQVString& name, const AQVString* spec) override;

  const std::vector<IPPDConstraint*>& GetConstraints() const override {
    return constraints_.Elements();
  }
  IPPDConstraint* AddConstraint(IPPDConstraint* constraint, bool copy) override;
  // By identity, else the first equal constraint; detached and released.
  void RemoveConstraint(IPPDConstraint* constraint) override;
  void RemoveConstraintsForOption(const AQVString& option) override;
  void GetConstraintsWithOptionAndChoice(const AQVString& option, const AQVString& choice,
                                         std::vector<IPPDConstraint*>& out) const override;

  const std::vector<IPPDPaperSize*>& GetPaperSizes() const override {
    return paperSizes_.Elements();
  }
  IPPDPaperSize* AddPaperSize(IPPDPaperSize* paperSize, bool copy) override;
  // By identity, else the first equal paper size; detached and released.
  void RemovePaperSize(IPPDPaperSize* paperSize) override;
  void RemovePaperSizeWithID(const AQVString& id) override;
  IPPDPaperSize* GetPaperSizeWithID(const AQVString& id) const override;

  const std::vector<IPPDGroup*>& GetGroups() const override { return groups_.Elements(); }
  IPPDGroup* AddGroup(IPPDGroup* group, bool copy) override;
  // By identity, else the first equal group; its document becomes null and it is released.
  void RemoveGroup(IPPDGroup* group) override;
  void RemoveGroupWithID(const AQVString& id) override;
  IPPDGroup* GetGroupWithID(const AQVString& id) const override;
  IPPDOption* GetOptionWithID(const AQVString& id) const override;

  IPPDLocalizer* GetLocalizer() const override { return localizer_; }
  void SetLocalizer(IPPDLocalizer* localizer) override;
  AQVString GetMainLanguage() const override;
  // The "cupsLanguages" value split at spaces, empty pieces skipped.
  void GetAdditionalLanguages(std::vector<AQVString>& out) const override;

  // Equal when both are APPD documents with: the same attribute names (those
  // that hold attributes) in the same order, and for each name equal
  // attributes in the same order; and, compared as sets (same count, each
  // element having an equal one in the other), equal groups, paper sizes and
  // constraints. The comment and the localizer are not compared. A document
  // of another implementation is never equal.
  void SetRenderThreads(unsigned count) override { renderThreads_ = count == 0 ? 1 : count; }
  bool operator==(const IPPD& other) const override;
  bool operator!=(const IPPD& other) const override { return !(*this == other); }

  // Every attribute name in order of first arrival, including names whose
  // attributes were all removed.
  const std::vector<AQVString>& GetAttributeNames() const { return attributeOrder_; }
  // Puts `name` first in the order of attribute names (appending it when it
  // is not there yet), so that its attributes are written first.
  void MoveAttributeNameToFront(const AQVString& name);
  // Puts `name` last in that order (appending it when it is not there yet).
  void MoveAttributeNameToBack(const AQVString& name);

  // Called by a held paper size whose ID changed and by a held constraint
  // that changed: the lookup index is rebuilt on its next use.
  void InvalidatePaperSizeIndex() { paperSizes_.InvalidateIndex(); }
  void InvalidateConstraintIndex() { constraintIndexValid_ = false; }

 private:
  struct Languages {
    AQVString main;
    std::vector<AQVString> additional;
  };

  // The languages as the attributes say, ignoring the render cache.
  Languages ReadLanguages() const;
  // Adds the ImageableArea and PaperDimension blocks to `pieces` as a unit
  // of its own, the sizes in runs of a piece each.
  void AddPaperSizePieces(APPDTextPieces& pieces) const;
  // Adds a piece with the text of each attribute of `name`, each with an LF.
  void AddAttributePieces(const AQVString& name, APPDTextPieces& pieces) const;

  friend class APPDOwnedList<IPPDConstraint, APPD>;
  friend class APPDOwnedList<IPPDPaperSize, APPD, true>;
  friend class APPDOwnedList<IPPDGroup, APPD>;

  // Links a stored element to this document, and undoes that; a constraint
  // also enters or leaves the constraint indexes while they are valid.
  void Attach(IPPDConstraint* constraint);
  void Detach(IPPDConstraint* constraint);
  void Attach(IPPDPaperSize* paperSize) { paperSize->SetPPD(this); }
  void Detach(IPPDPaperSize* paperSize) { paperSize->SetPPD(nullptr); }
  void Attach(IPPDGroup* group) { group->SetPPD(this); }
  void Detach(IPPDGroup* group) { group->SetPPD(nullptr); }

  void StoreAttribute(IPPDAttribute* attribute);
  // The first held constraint equal to `constraint`, or null.
  IPPDConstraint* FindEqualConstraint(const IPPDConstraint& constraint) const;
  // Adds a held constraint to both constraint indexes.
  void IndexConstraint(IPPDConstraint* constraint) const;
  // Takes a held constraint out of both constraint indexes.
  void UnindexConstraint(IPPDConstraint* constraint) const;
  // Rebuilds both constraint indexes when a change invalidated them.
  void EnsureConstraintIndex() const;
  void ReleaseAll();

  std::map<AQVString, std::vector<IPPDAttribute*>> attributes_;
  // Names in order of first arrival; a name stays when its attributes are removed.
  std::vector<AQVString> attributeOrder_;
  std::unordered_set<AQVString> orderedNames_;
  APPDOwnedList<IPPDConstraint, APPD> constraints_{this};
  // Indexed: a held paper size reports a new ID through InvalidatePaperSizeIndex.
  APPDOwnedList<IPPDPaperSize, APPD, true> paperSizes_{this};
  // Lookups read the IDs: a group is renamed without telling its document.
  APPDOwnedList<IPPDGroup, APPD> groups_{this};
  IPPDLocalizer* localizer_ = nullptr;

  // Content hash to the constraints with that hash, in document order.
  mutable std::unordered_map<std::size_t, std::vector<IPPDConstraint*>> constraintIndex_;
  // "OPTION LF CHOICE" of the first and of the second option to the
  // constraints holding that pair, in document order; valid with the above.
  mutable std::unordered_map<std::string, std::vector<IPPDConstraint*>> choiceIndex_;
  mutable bool constraintIndexValid_ = true;
  // Set only while GetStringRepresentation runs, so that every element asks
  // for the languages without the attributes being read again.
  mutable const Languages* renderLanguages_ = nullptr;
  unsigned renderThreads_ = 1;
};

}  // namespace ppdforge
