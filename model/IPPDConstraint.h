#pragma once
// Option settings that must not be combined: the pairwise "UIConstraints"
// (with its reversed line) or "NonUIConstraints", or the many-option
// "cupsUIConstraints" line that names a resolver.

#include "core/AArray.h"
#include "model/IPPDObject.h"

struct ppd_const_s;

namespace ppdforge {

class APPDTextDecoder;

class IPPD;

class IPPDConstraint : public IPPDObject {
 public:
  IPPDConstraint* Clone() const override = 0;

  virtual const AArray& GetOptions() const = 0;
  virtual void SetOptions(const AArray& options) = 0;
  virtual const AArray& GetChoices() const = 0;
  virtual void SetChoices(const AArray& choices) = 0;
  virtual AQVString GetResolver() const = 0;
  virtual void SetResolver(const AQVString& resolver) = 0;
  virtual bool IsCUPSUIConstraint() const = 0;
  virtual void SetCUPSUIConstraint(bool value) = 0;
  virtual bool IsNonUI() const = 0;
  virtual void SetNonUI(bool value) = 0;
  // The string at `index`, or empty past the end.
  virtual AQVString GetOptionAtIndex(std::size_t index) const = 0;
  // Pads with empty strings up to `index`, then sets it.
  virtual void SetOptionAtIndex(const AQVString& value, std::size_t index) = 0;
  virtual AQVString GetChoiceAtIndex(std::size_t index) const = 0;
  virtual void SetChoiceAtIndex(const AQVString& value, std::size_t index) = 0;
  virtual IPPD* GetPPD() const = 0;
  virtual void SetPPD(IPPD* ppd) = 0;
  // Arrays, resolver and both flags equal; comment and document ignored.
  virtual bool operator==(const IPPDConstraint& other) const = 0;
  virtual bool operator!=(const IPPDConstraint& other) const = 0;
  // At least 2 options, every option non-empty and at most 41 characters,
  // as many choices (each at most 41), resolver at most 41.
  virtual bool IsValid() const = 0;

  // A new constraint (count 1, owned by the caller), or null.
  static IPPDConstraint* Create(const AArray& options, const AArray& choices,
                                const AQVString& resolver, bool cupsUIConstraint, bool nonUI,
                                const AQVString& comment);
  // A pairwise constraint from a libcups record: options `option1` and
  // `option2`, choices `choice1` and `choice2`, no resolver, both flags
  // false. Count 1, owned by the caller; null on failure.
  static IPPDConstraint* Create(const ppd_const_s* record, APPDTextDecoder* decoder = nullptr);
  // The many-option value "*OPT1 CHOICE1 *OPT2 ..." (a pair with an empty
  // choice gives the keyword alone); empty when the arrays differ in length.
  static AQVString MakeValueFromOptionsAndChoices(const AArray& options, const AArray& choices);
};

}  // namespace ppdforge
