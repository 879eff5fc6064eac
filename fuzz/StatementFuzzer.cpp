// APPDStatement with random keywords, translations, values and value types,
// rebuilt after random setters, and comment lines. The text is empty exactly
// when an error (code 4) is set; valid text is UTF-8 with every line under
// 256 bytes; asking twice gives the same answer.

#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "model/APPDStatement.h"
#include "fuzz/FuzzCheck.h"

namespace {

using namespace ppdforge;

// Mostly short texts from an alphabet rich in the characters the statement
// treats specially, sometimes raw bytes (made valid UTF-8 by the string class).
AQVString Text(FuzzedDataProvider& input) {
  static constexpr std::string_view kAlphabet = "ab<>:/\"^ \t\n\r<3A><<>>*End%@\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
  if (input.ConsumeBool()) return AQVString(input.ConsumeRandomLengthString(600));
  const std::size_t length = input.ConsumeIntegralInRange<std::size_t>(0, 300);
  std::string text;
  for (std::size_t i = 0; i < length && input.remaining_bytes() > 0; ++i) {
    const std::uint8_t pick = input.ConsumeIntegral<std::uint8_t>();
    if (pick < 200) {
      text += kAlphabet[pick % kAlphabet.size()];
    } else {
      text.append(pick - 199, 'x');
    }
  }
  return AQVString(text);
}

PPDValueType Type(FuzzedDataProvider& input) {
  if (input.ConsumeIntegralInRange<int>(0, 9) == 0) return input.ConsumeIntegral<PPDValueType>();
  return input.ConsumeIntegralInRange<PPDValueType>(0, 4);
}

void CheckStatement(const APPDStatement& statement) {
  AError error;
  const AQVString text = statement.GetStringRepresentation(&error);
  PPDFORGE_FUZZ_CHECK(text.IsEmpty() == !error.domain.IsEmpty());
  PPDFORGE_FUZZ_CHECK(IsValidUTF8(text.UTF8()));
  PPDFORGE_FUZZ_CHECK(IsValidUTF8(error.message.UTF8()));
  AError validity;
  PPDFORGE_FUZZ_CHECK(statement.IsValid(&validity) == !text.IsEmpty());
  if (text.IsEmpty()) {
    PPDFORGE_FUZZ_CHECK(error.code == 4 && !error.message.IsEmpty());
    PPDFORGE_FUZZ_CHECK(validity == error);
  } else {
    PPDFORGE_FUZZ_CHECK(text.UTF8().rfind("*" + statement.GetMainKeyword().UTF8(), 0) == 0);
    PPDFORGE_FUZZ_CHECK(statement.GetMainKeyword().ByteLength() <= 40);
    PPDFORGE_FUZZ_CHECK(statement.GetOptionKeyword().ByteLength() <= 40);
    std::size_t lineStart = 0;
    const std::string& bytes = text.UTF8();
    while (lineStart <= bytes.size()) {
      std::size_t lineEnd = bytes.find('\n', lineStart);
      if (lineEnd == std::string::npos) lineEnd = bytes.size();
      PPDFORGE_FUZZ_CHECK(lineEnd - lineStart < 256);
      lineStart = lineEnd + 1;
    }
  }
  AError again;
  PPDFORGE_FUZZ_CHECK(statement.GetStringRepresentation(&again) == text);
  PPDFORGE_FUZZ_CHECK(again == error);
  // A null error place must be safe too.
  PPDFORGE_FUZZ_CHECK(statement.GetStringRepresentation(nullptr) == text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  const AQVString mainKeyword = Text(input);
  const AQVString optionKeyword = Text(input);
  const AQVString optionTranslation = Text(input);
  const AQVString value = Text(input);
  const PPDValueType type = Type(input);
  const AQVString valueTranslation = Text(input);
  APPDStatement statement(mainKeyword, optionKeyword, optionTranslation, value, type, valueTranslation);
  CheckStatement(statement);
  // Setters drop the cached text; the stored translations stay escaped from
  // the previous build, so rebuilding escapes them again.
  for (int round = 0; round < 4 && input.remaining_bytes() > 0; ++round) {
    switch (input.ConsumeIntegralInRange<int>(0, 5)) {
      case 0: statement.SetMainKeyword(Text(input)); break;
      case 1: statement.SetOptionKeyword(Text(input)); break;
      case 2: statement.SetOptionTranslation(Text(input)); break;
      case 3: statement.SetValue(Text(input)); break;
      case 4: statement.SetValueType(Type(input)); break;
      default: statement.SetValueTranslation(Text(input)); break;
    }
    CheckStatement(statement);
  }
  AError commentError;
  const AQVString comment = Text(input);
  const AQVString lines = APPDStatement::CommentLines(comment, &commentError);
  PPDFORGE_FUZZ_CHECK(IsValidUTF8(lines.UTF8()));
  PPDFORGE_FUZZ_CHECK(!commentError.domain.IsEmpty() ? lines.IsEmpty() : lines.IsEmpty() == comment.IsEmpty());
  return 0;
}
