#pragma once
// The base of a model object that carries both mixins: its interface, the
// comment and the translations, one reference count for all three.

#include "model/APPDCommentableObject.h"
#include "model/APPDLocalizable.h"

namespace ppdforge {

template <class Interface>
class APPDLocalizableObject : public APPDCommentableObject<Interface>, public APPDLocalizable {
 public:
  APPDLocalizableObject& operator=(const APPDLocalizableObject&) = delete;

  // One reference count for all bases (supplied by ASharedObject).
  using APPDCommentableObject<Interface>::Retain;
  using APPDCommentableObject<Interface>::Release;

  // This object with one more reference (the caller releases it).
  APPDLocalizable* QueryPPDLocalizable() const override {
    auto* self = const_cast<APPDLocalizableObject*>(this);
    self->Retain();
    return self;
  }

 protected:
  explicit APPDLocalizableObject(const AQVString& comment = AQVString())
      : APPDCommentableObject<Interface>(comment) {}
  // Copies the comment; the explicit translations stay behind.
  APPDLocalizableObject(const APPDLocalizableObject& other)
      : APPDCommentableObject<Interface>(other), APPDLocalizable() {}
};

}  // namespace ppdforge
