#pragma once
// Turns one constraints description entry ("option-N", "choice-N", "non-ui",
// "cupsUIConstraint", "resolver", "comment") into one constraint of the
// document, when the options, choices and resolver it names exist. Paired
// constraint generators derive from it and replace where the sides come from.

#include "core/AArray.h"
#include "engine/APPDObjectGenerator.h"

namespace ppdforge {

class APPDGenericConstraintsGenerator : public APPDObjectGenerator {
 public:
  // Adds the constraint from the full numbered list; false with
  // "Cannot add PPD constraint." (code 1) when refused.
  bool Generate(AError* error) override;
  bool IsApplicable() const override;

  virtual AQVString GetFirstOptionID() const;
  virtual AQVString GetSecondOptionID() const;
  virtual AQVString GetFirstChoiceID() const;
  virtual AQVString GetSecondChoiceID() const;
  // "non-ui": a boolean as is, the exact string "true"; otherwise false.
  virtual bool IsConstraintNonUI() const;
  virtual AQVString GetConstraintComment() const;
  // "cupsUIConstraint": a number or boolean as is, the exact string "true"; otherwise false.
  virtual bool IsCUPSUIConstraint() const;
  // "option-1", "option-2", ... up to the first gap, with their choices (empty when absent).
  virtual void GetOptionsAndChoices(AArray& options, AArray& choices) const;
  virtual AQVString GetResolverName() const;
  // Every option exists in the document and holds its non-empty choice.
  virtual bool IsOptionsAndChoicesApplicable(const AArray& options, const AArray& choices) const;
  // Pair form: both options first, then both choices; resolver and CUPS flag from the entry.
  virtual bool AddConstraint(const AQVString& option1, const AQVString& option2,
                             const AQVString& choice1, const AQVString& choice2, bool nonUI,
                             const AQVString& comment);
  // Replaces constraints on the same options and choices (any order), then adds.
  virtual bool AddConstraint(const AArray& options, const AArray& choices,
                             const AQVString& resolver, bool cupsUIConstraint, bool nonUI,
                             const AQVString& comment);
  virtual void RemoveConstraintsForOptionsAndChoices(const AArray& options, const AArray& choices);
  virtual AQVString MakeValueFromOptionsAndChoices(const AArray& options,
                                                   const AArray& choices) const;
};

}  // namespace ppdforge
