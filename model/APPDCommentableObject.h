#pragma once
// The base of a model object that carries the comment mixin: its interface
// and the comment, one reference count for both.

#include "model/APPDCommentable.h"

namespace ppdforge {

class APPDLocalizable;

template <class Interface>
class APPDCommentableObject : public Interface, public APPDCommentable {
 public:
  APPDCommentableObject& operator=(const APPDCommentableObject&) = delete;

  // One reference count for all bases (supplied by ASharedObject).
  using Interface::Retain;
  using Interface::Release;

  // This object with one more reference (the caller releases it).
  APPDCommentable* QueryPPDCommentable() const override {
    auto* self = const_cast<APPDCommentableObject*>(this);
    self->Retain();
    return self;
  }
  // Null: the object has no translations of its own.
  APPDLocalizable* QueryPPDLocalizable() const override { return nullptr; }

 protected:
  explicit APPDCommentableObject(const AQVString& comment = AQVString())
      : APPDCommentable(comment) {}
  // Copies the comment.
  APPDCommentableObject(const APPDCommentableObject& other)
      : Interface(), APPDCommentable(other) {}
};

}  // namespace ppdforge
