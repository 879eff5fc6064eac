#pragma once
// The one implementation of IPPDOption: the OpenUI block of one setting with
// its translation lines, OrderDependency, Default, choices and CloseUI.

#include <unordered_map>
#include <vector>

#include "model/APPDCommentable.h"
#include "model/APPDLocalizable.h"
#include "model/IPPDOption.h"

namespace ppdforge {

class IPPD;

class APPDTextPieces;

class APPDOption : public IPPDOption, public APPDCommentable, public APPDLocalizable {
 public:
  APPDOption(const AQVString& id, const AQVString& name, const AQVString& defaultChoice,
             ppd_ui_e uiType, const AQVString& comment);
  // Copies comment, ID, name, default and UI type and a copy of every choice;
  // the copy belongs to no group and has no explicit translations. Throws
  // std::bad_alloc (caught by CreateSharedObject) when a choice cannot be copied.
  APPDOption(const APPDOption& other);
  APPDOption& operator=(const APPDOption&) = delete;

  // One reference count for all bases (supplied by ASharedObject).
  using IPPDOption::Retain;
  using IPPDOption::Release;
  // Detaches and releases every choice.
  ~APPDOption() override;

  // A copy with the count 1 (owned by the caller), or null.
  APPDOption* Clone() const override;
  // This object with one more reference (the caller releases it).
  APPDCommentable* QueryPPDCommentable() const override;
  APPDLocalizable* QueryPPDLocalizable() const override;
  // Comment, OpenUI, translation lines, OrderDependency, Default, choices,
  // CloseUI, each line ended by LF; empty without choices. On a statement
  // error: the text made so far (empty when one of the four fixed lines or
  // the comment failed), *error set.
  AQVString GetStringRepresentation(AError* error) const override;
  // Adds the pieces of that text to `pieces`: the lines up to the default,
  // the choices in runs, the close line. Nothing without choices.
  void AddPieces(APPDTextPieces& pieces) const;

  AQVString GetID() const override { return id_; }
  void SetID(const AQVString& id) override { id_ = id; }
  AQVString GetName() const override { return name_; }
  void SetName(const AQVString& name) override { name_ = name; }
  AQVString GetDefaultChoice() const override;
  void SetDefaultChoice(const AQVString& id) override { defaultChoice_ = id; }
  ppd_ui_e GetUIType() const override { return uiType_; }
  void SetUIType(ppd_ui_e type) override { uiType_ = type; }
  const std::vector<IPPDChoice*>& GetChoices() const override { return choices_; }
  IPPDChoice* AddChoice(IPPDChoice* choice, bool copy) override;
  void RemoveChoice(IPPDChoice* choice) override;
  void RemoveChoiceWithID(const AQVString& id) override;
  IPPDChoice* GetChoiceWithID(const AQVString& id) const override;
  // Borrowed; null outside a group.
  IPPDGroup* GetGroup() const override { return group_; }
  void SetGroup(IPPDGroup* group) override { group_ = group; }
  bool operator==(const IPPDOption& other) const override;
  bool operator!=(const IPPDOption& other) const override { return !(*this == other); }
  void GetLocalizationKeys(std::vector<AQVString>& keys) const override;
  // Group, document, localizer (borrowed); null when a link is missing.
  IPPDLocalizer* GetLocalizer() const override;
  void AddChoices(const std::vector<IPPDChoice*>& choices, bool copy) override;
  void ClearChoices() override;

  // Called by a held choice whose ID changed: the ID index is rebuilt on the
  // next lookup.
  void InvalidateChoiceIndex() { choiceIndexValid_ = false; }

  // The text of `object` for the main line: its translation for
  // `mainLanguage`. With additional languages and a text that is not plain
  // (bytes 32..126, no ":"), returns empty and puts the main language's locale
  // identifier at the front of `languages`, so that the text gets a
  // translation line of its own.
  static AQVString MainLineTranslation(const APPDLocalizable& object,
                                       const AQVString& mainLanguage,
                                       std::vector<AQVString>& languages);

 private:
  // Appends the comment, OpenUI, translation, OrderDependency and default
  // lines; false with *error set when a line (or the close line) fails.
  bool WriteHeading(std::string& result, AError* error) const;
  // The document reached through the group, or null.
  IPPD* GetDocument() const;
  // Index of the first choice with this ID, or choices_.size().
  std::size_t FindChoiceWithID(const AQVString& id) const;
  // Detaches, releases and erases the choice at `index`.
  void EraseChoiceAt(std::size_t index);
  void ReleaseChoices();

  AQVString id_;
  AQVString name_;
  AQVString defaultChoice_;
  ppd_ui_e uiType_;
  std::vector<IPPDChoice*> choices_;
  IPPDGroup* group_ = nullptr;
  // ID to the first choice with that ID; valid while no held choice was
  // renamed and the flag holds.
  mutable std::unordered_map<AQVString, IPPDChoice*> choiceIndex_;
  mutable bool choiceIndexValid_ = true;
};

}  // namespace ppdforge
