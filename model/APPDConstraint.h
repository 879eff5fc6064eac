#pragma once
// The one implementation of IPPDConstraint: a pairwise "UIConstraints" or
// "NonUIConstraints" line (with its reversed line when a choice is named) or
// one "cupsUIConstraints" line naming a resolver. No translations.

#include "model/APPDCommentable.h"
#include "model/IPPDConstraint.h"

namespace ppdforge {

class APPDConstraint : public IPPDConstraint, public APPDCommentable {
 public:
  // The arrays are kept as given; nothing is checked.
  APPDConstraint(const AArray& options, const AArray& choices, const AQVString& resolver,
                 bool cupsUIConstraint, bool nonUI, const AQVString& comment);
  // Copies both arrays, the resolver, both flags and the comment; the copy
  // has no document.
  APPDConstraint(const APPDConstraint& other);
  APPDConstraint& operator=(const APPDConstraint&) = delete;

  // One reference count for all bases (supplied by ASharedObject).
  using IPPDConstraint::Retain;
  using IPPDConstraint::Release;

  // A copy with the count 1 (owned by the caller), or null.
  APPDConstraint* Clone() const override;
  // This object with one more reference (the caller releases it).
  APPDCommentable* QueryPPDCommentable() const override;
  // Always null: constraints have no translations.
  APPDLocalizable* QueryPPDLocalizable() const override { return nullptr; }
  // Empty (no error) for an invalid constraint. Otherwise the comment lines
  // and the constraint line(s), joined by LF. On a statement error: the text
  // made so far (empty when the first line or the comment failed), *error set.
  AQVString GetStringRepresentation(AError* error) const override;

  // Every setter below also tells the holding document that its equality
  // index is out of date.
  const AArray& GetOptions() const override { return options_; }
  void SetOptions(const AArray& options) override;
  const AArray& GetChoices() const override { return choices_; }
  void SetChoices(const AArray& choices) override;
  AQVString GetResolver() const override { return resolver_; }
  void SetResolver(const AQVString& resolver) override;
  bool IsCUPSUIConstraint() const override { return cupsUIConstraint_; }
  void SetCUPSUIConstraint(bool value) override;
  bool IsNonUI() const override { return nonUI_; }
  void SetNonUI(bool value) override;
  AQVString GetOptionAtIndex(std::size_t index) const override;
  void SetOptionAtIndex(const AQVString& value, std::size_t index) override;
  AQVString GetChoiceAtIndex(std::size_t index) const override;
  void SetChoiceAtIndex(const AQVString& value, std::size_t index) override;
  // Borrowed; null until a document holds the constraint.
  IPPD* GetPPD() const override { return ppd_; }
  void SetPPD(IPPD* ppd) override { ppd_ = ppd; }
  bool operator==(const IPPDConstraint& other) const override;
  bool operator!=(const IPPDConstraint& other) const override { return !(*this == other); }
  bool IsValid() const override;

 private:
  void Changed();

  AArray options_;
  AArray choices_;
  AQVString resolver_;
  bool cupsUIConstraint_;
  bool nonUI_;
  IPPD* ppd_ = nullptr;
};

}  // namespace ppdforge
