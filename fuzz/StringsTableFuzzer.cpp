// ".strings" bytes in either form (property list or the classic text form).
// A table that is read holds only strings; written back in the text form
// and read again, it gives the same table.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/AStringsTable.h"
#include "fuzz/FuzzCheck.h"

namespace {

using namespace ppdforge;

void AppendQuoted(std::string& out, const std::string& text) {
  out += '"';
  for (const char c : text) {
    if (c == '"' || c == '\\') out += '\\';
    out += c;
  }
  out += '"';
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::optional<ADictionary> table =
      AStringsTable::Parse(std::string_view(reinterpret_cast<const char*>(data), size));
  if (!table) return 0;
  std::string text;
  for (const auto& [key, value] : *table) {
    PPDFORGE_FUZZ_CHECK(IsValidUTF8(key.UTF8()));
    const AQVString* string = value.AsString();
    PPDFORGE_FUZZ_CHECK(string != nullptr);
    PPDFORGE_FUZZ_CHECK(IsValidUTF8(string->UTF8()));
    AppendQuoted(text, key.UTF8());
    text += " = ";
    AppendQuoted(text, string->UTF8());
    text += ";\n";
  }
  const std::optional<ADictionary> again = AStringsTable::Parse(text);
  PPDFORGE_FUZZ_CHECK(again.has_value());
  PPDFORGE_FUZZ_CHECK(*again == *table);
  return 0;
}
