#pragma once
// The interface every model object implements: reference counting (supplied
// by ASharedObject), cloning, access to its mixins, and its PPD text.

#include <cstdint>

#include "core/AError.h"
#include "core/AQVString.h"

namespace ppdforge {

class APPDCommentable;
class APPDLocalizable;

class IPPDObject {
 public:
  // Adds one reference; returns the new count.
  virtual std::int32_t Retain() = 0;
  // Gives up one reference, destroying the object at zero; returns the new count.
  virtual std::int32_t Release() = 0;
  // A new copy with the count 1 (owned by the caller), or null when it cannot be made.
  virtual IPPDObject* Clone() const = 0;
  // The object as its comment mixin with one more reference (the caller
  // releases it through the mixin), or null when it has none.
  virtual APPDCommentable* QueryPPDCommentable() const = 0;
  // The object as its localization mixin with one more reference, or null.
  virtual APPDLocalizable* QueryPPDLocalizable() const = 0;
  // The object's PPD text without a final line end. On a statement that
  // breaks the PPD rules: the text made so far (often empty) and *error set.
  virtual AQVString GetStringRepresentation(AError* error) const = 0;
  virtual ~IPPDObject() = default;
};

}  // namespace ppdforge
