#include "core/AStringsTable.h"

#include <cstring>
#include <string>
#include <string_view>

#include "core/APropertyList.h"

namespace com_qv_print_driver_core_cpp_util_v1 {

namespace {

// The bytes as UTF-8 text: UTF-16 with a byte-order mark is converted (into
// `converted`, which the result then views), a UTF-8 byte-order mark dropped;
// nothing for invalid text.
std::optional<std::string_view> DecodeText(std::string_view data, std::string& converted) {
  const bool littleEndian = data.size() >= 2 && data[0] == '\xFF' && data[1] == '\xFE';
  const bool bigEndian = data.size() >= 2 && data[0] == '\xFE' && data[1] == '\xFF';
  if (littleEndian || bigEndian) {
    data.remove_prefix(2);
    if (data.size() % 2 != 0) return std::nullopt;
    std::u16string units(data.size() / 2, u'\0');
    for (std::size_t i = 0; i < units.size(); ++i) {
      const auto first = static_cast<unsigned char>(data[2 * i]);
      const auto second = static_cast<unsigned char>(data[2 * i + 1]);
      units[i] = static_cast<char16_t>(littleEndian ? (second << 8) | first : (first << 8) | second);
    }
    std::optional<AQVString> text = AQVString::FromUTF16(units);
    if (!text) return std::nullopt;
    converted = text->TakeUTF8();
    return std::string_view(converted);
  }
  if (data.size() >= 3 && data.substr(0, 3) == "\xEF\xBB\xBF") data.remove_prefix(3);
  if (!IsValidUTF8(data)) return std::nullopt;
  return data;
}

std::size_t CountLines(std::string_view text) {
  std::size_t lines = 1;
  const char* end = text.data() + text.size();
  for (const char* p = text.data(); (p = static_cast<const char*>(std::memchr(p, '\n', end - p))) != nullptr; ++p) {
    ++lines;
  }
  return lines;
}

bool IsSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f'; }

bool IsUnquotedCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '$' ||
         c == '/' || c == ':' || c == '.' || c == '-';
}

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

AQVString Trusted(std::string_view utf8) {
  AQVString text;
  text.Append(utf8);
  return text;
}

// The classic text form, parsed all or nothing.
class TextParser {
 public:
  explicit TextParser(std::string_view text) : text_(text) {}

  // Entries in file order; `text_` is valid UTF-8, and so is every string
  // read from it.
  bool Parse(std::vector<std::pair<AQVString, AQVString>>& entries) {
    if (!SkipSpaceAndComments()) return false;
    const bool braced = i_ < text_.size() && text_[i_] == '{';
    if (braced) ++i_;
    std::string key;
    std::string value;
    while (true) {
      if (!SkipSpaceAndComments()) return false;
      if (i_ >= text_.size()) return !braced;
      if (braced && text_[i_] == '}') {
        ++i_;
        return SkipSpaceAndComments() && i_ >= text_.size();
      }
      key.clear();
      value.clear();
      if (!ReadString(key) || !SkipSpaceAndComments() || i_ >= text_.size()) return false;
      if (text_[i_] == ';') {
        // `"key";` is short for a value equal to the key.
        value = key;
      } else {
        if (text_[i_] != '=') return false;
        ++i_;
        if (!SkipSpaceAndComments() || !ReadString(value) || !SkipSpaceAndComments()) return false;
        if (i_ >= text_.size() || text_[i_] != ';') return false;
      }
      ++i_;
      entries.emplace_back(Trusted(key), Trusted(value));
    }
  }

 private:
  bool SkipSpaceAndComments() {
    while (i_ < text_.size()) {
      if (IsSpace(text_[i_])) {
        ++i_;
      } else if (text_[i_] != '/') {
        break;
      } else if (text_.compare(i_, 2, "/*") == 0) {
        const std::size_t end = text_.find("*/", i_ + 2);
        if (end == std::string::npos) return false;
        i_ = end + 2;
      } else if (text_.compare(i_, 2, "//") == 0) {
        const std::size_t end = text_.find_first_of("\n\r", i_ + 2);
        i_ = end == std::string::npos ? text_.size() : end + 1;
      } else {
        break;
      }
    }
    return true;
  }

  bool ReadString(std::string& out) {
    if (i_ >= text_.size()) return false;
    if (text_[i_] != '"') {
      const std::size_t start = i_;
      while (i_ < text_.size() && IsUnquotedCharacter(text_[i_])) ++i_;
      out.assign(text_, start, i_ - start);
      return i_ > start;
    }
    ++i_;
    while (i_ < text_.size()) {
      // The closing quote, or an escape before it.
      std::size_t special = text_.find('"', i_);
      if (special == std::string::npos) return false;
      const std::size_t escape = std::string_view(text_).substr(i_, special - i_).find('\\');
      if (escape != std::string_view::npos) special = i_ + escape;
      out.append(text_, i_, special - i_);
      i_ = special + 1;
      if (text_[special] == '"') return true;
      if (!ReadEscape(out)) return false;
    }
    return false;
  }

  // After a backslash.
  bool ReadEscape(std::string& out) {
    if (i_ >= text_.size()) return false;
    const char c = text_[i_++];
    switch (c) {
      case 'a': out += '\a'; return true;
      case 'b': out += '\b'; return true;
      case 'f': out += '\f'; return true;
      case 'n': out += '\n'; return true;
      case 'r': out += '\r'; return true;
      case 't': out += '\t'; return true;
      case 'v': out += '\v'; return true;
      case 'U':
      case 'u': {
        char32_t unit = 0;
        if (!ReadHexUnit(unit)) return false;
        if (unit >= 0xDC00 && unit <= 0xDFFF) return false;
        if (unit >= 0xD800 && unit <= 0xDBFF) {
          char32_t low = 0;
          if (text_.compare(i_, 2, "\\U") != 0 && text_.compare(i_, 2, "\\u") != 0) return false;
          i_ += 2;
          if (!ReadHexUnit(low) || low < 0xDC00 || low > 0xDFFF) return false;
          unit = 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
        }
        AppendUTF8CodePoint(unit, out);
        return true;
      }
      default:
        break;
    }
    if (c >= '0' && c <= '7') {
      char32_t value = static_cast<char32_t>(c - '0');
      for (int digits = 1; digits < 3 && i_ < text_.size() && text_[i_] >= '0' && text_[i_] <= '7'; ++digits) {
        value = value * 8 + static_cast<char32_t>(text_[i_++] - '0');
      }
      AppendUTF8CodePoint(value, out);
      return true;
    }
    // Any other escaped character (quote, backslash, a multi-byte
    // character) stands for itself.
    --i_;
    const auto lead = static_cast<unsigned char>(text_[i_]);
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    out.append(text_, i_, length);
    i_ += length;
    return true;
  }

  // One to four hexadecimal digits.
  bool ReadHexUnit(char32_t& unit) {
    int digits = 0;
    unit = 0;
    while (digits < 4 && i_ < text_.size() && HexDigit(text_[i_]) >= 0) {
      unit = unit * 16 + static_cast<char32_t>(HexDigit(text_[i_++]));
      ++digits;
    }
    return digits > 0;
  }

  std::string_view text_;
  std::size_t i_ = 0;
};

bool ParsePropertyList(std::string_view data, std::vector<std::pair<AQVString, AQVString>>& entries) {
  AValue root;
  ADictionary dictionary;
  if (!APropertyList::Parse(data, root) || !root.GetDictionary(dictionary)) return false;
  for (const auto& [key, value] : dictionary) {
    if (const AQVString* text = value.AsString()) entries.emplace_back(key, *text);
  }
  return true;
}

}  // namespace

bool AStringsTable::ParseEntries(std::string_view data,
                                 std::vector<std::pair<AQVString, AQVString>>& entries) {
  entries.clear();
  if (data.substr(0, 8) == "bplist00") return ParsePropertyList(data, entries);
  std::string converted;
  const std::optional<std::string_view> text = DecodeText(data, converted);
  if (!text) return false;
  const std::size_t first = text->find_first_not_of(" \t\n\r\v\f");
  if (first != std::string::npos && (*text)[first] == '<') return ParsePropertyList(*text, entries);
  // About one entry per line.
  entries.reserve(CountLines(*text));
  if (TextParser(*text).Parse(entries)) return true;
  entries.clear();
  return false;
}

std::optional<ADictionary> AStringsTable::Parse(std::string_view data) {
  std::vector<std::pair<AQVString, AQVString>> entries;
  if (!ParseEntries(data, entries)) return std::nullopt;
  ADictionary::Items table;
  table.reserve(entries.size());
  for (auto& [key, value] : entries) table.emplace_back(std::move(key), AValue(std::move(value)));
  return ADictionary::FromItems(std::move(table));
}

}  // namespace com_qv_print_driver_core_cpp_util_v1
