#pragma once
// Mixin: a comment written as "*% " lines before the object's own text.

#include <cstdint>

#include "core/AError.h"
#include "core/AQVString.h"

namespace ppdforge {

class APPDCommentable {
 public:
  APPDCommentable() = default;
  explicit APPDCommentable(const AQVString& comment) : comment_(comment) {}
  APPDCommentable(const APPDCommentable&) = default;
  APPDCommentable& operator=(const APPDCommentable&) = default;
  virtual ~APPDCommentable() = default;

  // Supplied by ASharedObject for the object that carries this mixin.
  virtual std::int32_t Retain() = 0;
  virtual std::int32_t Release() = 0;

  const AQVString& GetComment() const { return comment_; }
  void SetComment(const AQVString& comment) { comment_ = comment; }
  // The comment as "*% " lines joined by LF (empty for an empty comment).
  // A line of 253 or more characters after trimming fails the whole comment:
  // empty result and *error set (code 4).
  AQVString GetStringRepresentation(AError* error) const;

 private:
  AQVString comment_;
};

}  // namespace ppdforge
