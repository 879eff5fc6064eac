#pragma once
// A document's text as an ordered list of pieces, written on several threads
// and joined in order. A piece is a fixed text, a failure, or a writer.

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "core/AError.h"
#include "core/AQVString.h"

namespace ppdforge {

class APPDTextPieces {
 public:
  // Appends to `text`; false with *error set on a failure.
  using Writer = std::function<bool(std::string& text, AError* error)>;

  // The count of pieces so far: a mark for AddLineEnd.
  std::size_t Size() const { return pieces_.size(); }
  // Starts a unit: a failure leaves out the whole unit it falls in, and
  // everything after it. Before the first unit, a failure keeps the text
  // made so far, the failing writer's own included.
  void BeginUnit() { unitStart_ = pieces_.size(); }
  void AddText(std::string text);
  // A piece that fails with `error` when it is reached.
  void AddFailure(const AError& error);
  void AddWriter(Writer writer);
  // An LF when any piece from the mark `from` up to here has text.
  void AddLineEnd(std::size_t from);

  // A writer of the text of `object` (anything with GetStringRepresentation,
  // borrowed: it must outlive the writing).
  template <class Object>
  static Writer TextOf(const Object& object) {
    return [&object](std::string& text, AError* error) {
      AError local;
      AQVString written = object.GetStringRepresentation(&local);
      if (local.code != 0) {
        if (error != nullptr) *error = local;
        return false;
      }
      text = written.TakeUTF8();
      return true;
    };
  }

  // The text of the pieces that `object.AddPieces` adds, written on the
  // calling thread (the text so far and *error set on a failure).
  template <class Object>
  static AQVString WriteAlone(const Object& object, AError* error) {
    APPDTextPieces pieces;
    object.AddPieces(pieces);
    AQVString result;
    pieces.WriteTo(result, 1, error);
    return result;
  }

  // Writes the pieces on `threads` threads (the caller's among them) and
  // appends their texts in order to `result`, up to the unit of the first
  // failure. False with *error set on a failure.
  bool WriteTo(AQVString& result, unsigned threads, AError* error);

 private:
  struct Piece {
    Writer writer;
    std::string text;
    AError error;
    std::size_t unitStart = kNoUnit;
    // For a line end: the first piece whose text it depends on.
    std::size_t lineEndFrom = 0;
    bool isLineEnd = false;
    bool failed = false;
  };
  void Write(Piece& piece) const;

  static constexpr std::size_t kNoUnit = static_cast<std::size_t>(-1);

  std::vector<Piece> pieces_;
  std::size_t unitStart_ = kNoUnit;
};

}  // namespace ppdforge
