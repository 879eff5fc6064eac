#pragma once
// Turns one resolvers description entry ("resolver-name", "option-N",
// "choice-N", "comment") into one "cupsUIResolver" attribute naming the
// option/choice pairs that CUPS applies to resolve a conflict.

#include "core/AArray.h"
#include "engine/APPDObjectGenerator.h"

namespace ppdforge {

class APPDCUPSUIResolverGenerator : public APPDObjectGenerator {
 public:
  // Adds the attribute unless a resolver of the same name exists (then true,
  // nothing added); false with "Can not add CUPS UI Resolver with name %s."
  // (code 1) when the document refuses it.
  bool Generate(AError* error) override;
  // Every option named exists in the document and holds its choice.
  bool IsApplicable() const override;

  // "option-1", "option-2", ... up to the first one missing, with their
  // "choice-N"; a missing choice is the option's current default in the
  // document (empty when the option does not exist). Both arrays are replaced.
  virtual void GetOptionsAndChoices(AArray& options, AArray& choices) const;
  // "resolver-name", or empty.
  virtual AQVString GetResolverName() const;
  // "comment", or empty.
  virtual AQVString GetResolverComment() const;
  // "*OPT1 CHOICE1 *OPT2 CHOICE2"; an empty choice gives the keyword alone.
  virtual AQVString MakeValueFromOptionsAndChoices(const AArray& options,
                                                   const AArray& choices) const;
  // True when each option exists and holds the choice of the same index
  // (an empty choice included); true for empty arrays.
  virtual bool IsOptionsAndChoicesApplicable(const AArray& options, const AArray& choices) const;
};

}  // namespace ppdforge
