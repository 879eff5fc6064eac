#include "model/APPDTextPieces.h"

#include "core/AWorkerPool.h"

#include <algorithm>
#include <utility>

namespace ppdforge {

void APPDTextPieces::AddText(std::string text) {
  Piece piece;
  piece.text = std::move(text);
  piece.unitStart = unitStart_;
  pieces_.push_back(std::move(piece));
}

void APPDTextPieces::AddFailure(const AError& error) {
  Piece piece;
  piece.error = error;
  piece.failed = true;
  piece.unitStart = unitStart_;
  pieces_.push_back(std::move(piece));
}

void APPDTextPieces::AddWriter(Writer writer) {
  Piece piece;
  piece.writer = std::move(writer);
  piece.unitStart = unitStart_;
  pieces_.push_back(std::move(piece));
}

void APPDTextPieces::AddLineEnd(std::size_t from) {
  Piece piece;
  piece.isLineEnd = true;
  piece.lineEndFrom = from;
  piece.unitStart = unitStart_;
  pieces_.push_back(std::move(piece));
}

void APPDTextPieces::Write(Piece& piece) const {
  if (!piece.writer) return;
  piece.failed = !piece.writer(piece.text, &piece.error);
}

bool APPDTextPieces::WriteTo(AQVString& result, unsigned threads, AError* error) {
  const std::size_t count = pieces_.size();
  if (threads <= 1) {
    // Nothing after the first failure is used: stop there.
    for (Piece& piece : pieces_) {
      Write(piece);
      if (piece.failed) break;
    }
  } else {
    AWorkerPool::Shared().ForEach(count, threads, [this](std::size_t i) { Write(pieces_[i]); });
  }

  std::size_t end = count;
  bool failed = false;
  for (std::size_t i = 0; i < count && !failed; ++i) {
    if (!pieces_[i].failed) continue;
    failed = true;
    // Outside units the text that the failing writer made still counts.
    end = pieces_[i].unitStart == kNoUnit ? i + 1 : pieces_[i].unitStart;
    if (error != nullptr) *error = pieces_[i].error;
  }
  // Line ends are settled in order, once the texts before them are known.
  std::size_t length = result.ByteLength();
  for (std::size_t i = 0; i < end; ++i) {
    Piece& piece = pieces_[i];
    if (piece.isLineEnd) {
      const bool any = std::any_of(pieces_.begin() + static_cast<std::ptrdiff_t>(piece.lineEndFrom),
                                   pieces_.begin() + static_cast<std::ptrdiff_t>(i),
                                   [](const Piece& before) { return !before.text.empty(); });
      if (any) piece.text.push_back('\n');
    }
    length += piece.text.size();
  }
  result.Reserve(length);
  for (std::size_t i = 0; i < end; ++i) result.Append(pieces_[i].text);
  return !failed;
}

}  // namespace ppdforge
