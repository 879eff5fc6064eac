#include <gtest/gtest.h>

#include <string>

#include "model/APPDTextPieces.h"
#include "model/ModelTestSupport.h"

namespace ppdforge {
namespace {

using testing::Code4;

APPDTextPieces::Writer Writes(std::string text) {
  return [text](std::string& out, AError*) {
    out += text;
    return true;
  };
}

// Writes `partial`, then fails with `message`.
APPDTextPieces::Writer Fails(std::string partial, const char* message) {
  return [partial, message](std::string& out, AError* error) {
    out += partial;
    *error = Code4(message);
    return false;
  };
}

TEST(TextPiecesTest, JoinsInOrderWithLineEndsAfterText) {
  for (const unsigned threads : {1u, 2u, 4u}) {
    SCOPED_TRACE(threads);
    APPDTextPieces pieces;
    pieces.AddText("a");
    std::size_t mark = pieces.Size();
    pieces.AddWriter(Writes(""));
    pieces.AddLineEnd(mark);  // nothing written since the mark: no LF
    mark = pieces.Size();
    pieces.AddWriter(Writes(""));
    pieces.AddWriter(Writes("b"));
    pieces.AddLineEnd(mark);
    for (int i = 0; i < 50; ++i) pieces.AddWriter(Writes(std::to_string(i % 10)));
    AQVString result("<");
    AError error;
    EXPECT_TRUE(pieces.WriteTo(result, threads, &error));
    EXPECT_EQ(result, "<ab\n" + std::string("01234567890123456789012345678901234567890123456789"));
    EXPECT_EQ(error.code, 0);
  }
}

TEST(TextPiecesTest, AFailureEndsTheTextAsItsUnitSays) {
  const struct {
    const char* name;
    bool units;
    const char* expected;
  } cases[] = {
      // Outside units the text so far stays, the failing writer's own included.
      {"NoUnits", false, "head|one|par"},
      // In units the failing unit goes whole.
      {"Units", true, "head|"},
  };
  for (const auto& c : cases) {
    for (const unsigned threads : {1u, 3u}) {
      SCOPED_TRACE(::testing::Message() << c.name << " on " << threads << " threads");
      APPDTextPieces pieces;
      pieces.AddText("head|");
      if (c.units) pieces.BeginUnit();
      pieces.AddWriter(Writes("one|"));
      pieces.AddWriter(Fails("par", "first"));
      if (c.units) pieces.BeginUnit();
      pieces.AddWriter(Writes("two|"));
      pieces.AddFailure(Code4("second"));
      AQVString result;
      AError error;
      EXPECT_FALSE(pieces.WriteTo(result, threads, &error));
      EXPECT_EQ(result, c.expected);
      EXPECT_EQ(error, Code4("first"));
    }
  }
}

}  // namespace
}  // namespace ppdforge
