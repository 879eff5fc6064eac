#include "core/AQVString.h"

#include <charconv>
#include <climits>
#include <cmath>
#include <cstring>
#include <limits>
#include <ostream>

namespace com_qv_print_driver_core_cpp_util_v1 {

namespace {

constexpr std::uint64_t kHighBits = 0x8080808080808080ULL;

// Word-at-a-time check; most PPD text is ASCII, where a byte is a unit.
bool AllASCII(const char* data, std::size_t size) {
  std::size_t i = 0;
  for (; i + 8 <= size; i += 8) {
    std::uint64_t word;
    std::memcpy(&word, data + i, 8);
    if ((word & kHighBits) != 0) return false;
  }
  for (; i < size; ++i) {
    if (static_cast<unsigned char>(data[i]) >= 0x80) return false;
  }
  return true;
}

bool IsContinuation(unsigned char byte) { return (byte & 0xC0) == 0x80; }

// Length of the well-formed UTF-8 sequence at `p` (of `n` bytes), 0 when it
// is ill-formed (overlong, surrogate, above U+10FFFF or truncated).
std::size_t SequenceLength(const unsigned char* p, std::size_t n) {
  const unsigned char b = p[0];
  if (b < 0x80) return 1;
  if (b < 0xC2) return 0;
  if (b < 0xE0) return (n >= 2 && IsContinuation(p[1])) ? 2 : 0;
  if (b < 0xF0) {
    if (n < 3 || !IsContinuation(p[2])) return 0;
    const unsigned char lo = (b == 0xE0) ? 0xA0 : 0x80;
    const unsigned char hi = (b == 0xED) ? 0x9F : 0xBF;
    return (p[1] >= lo && p[1] <= hi) ? 3 : 0;
  }
  if (b < 0xF5) {
    if (n < 4 || !IsContinuation(p[2]) || !IsContinuation(p[3])) return 0;
    const unsigned char lo = (b == 0xF0) ? 0x90 : 0x80;
    const unsigned char hi = (b == 0xF4) ? 0x8F : 0xBF;
    return (p[1] >= lo && p[1] <= hi) ? 4 : 0;
  }
  return 0;
}

// The code point of the (valid) sequence at `p` and its length.
char32_t Decode(const unsigned char* p, std::size_t& length) {
  const unsigned char b = p[0];
  if (b < 0x80) { length = 1; return b; }
  if (b < 0xE0) { length = 2; return (char32_t(b & 0x1F) << 6) | (p[1] & 0x3F); }
  if (b < 0xF0) {
    length = 3;
    return (char32_t(b & 0x0F) << 12) | (char32_t(p[1] & 0x3F) << 6) | (p[2] & 0x3F);
  }
  length = 4;
  return (char32_t(b & 0x07) << 18) | (char32_t(p[1] & 0x3F) << 12) | (char32_t(p[2] & 0x3F) << 6) |
         (p[3] & 0x3F);
}

std::string Sanitize(std::string_view bytes) {
  std::string out;
  out.reserve(bytes.size());
  const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
  std::size_t i = 0;
  while (i < bytes.size()) {
    const std::size_t length = SequenceLength(p + i, bytes.size() - i);
    if (length == 0) {
      out += "\xEF\xBF\xBD";
      ++i;
    } else {
      out.append(bytes.data() + i, length);
      i += length;
    }
  }
  return out;
}

bool IsWhitespace(char32_t c) {
  switch (c) {
    case 0x09: case 0x0A: case 0x0B: case 0x0C: case 0x0D: case 0x20:
    case 0x85: case 0xA0: case 0x1680: case 0x2028: case 0x2029:
    case 0x202F: case 0x205F: case 0x3000:
      return true;
    default:
      return c >= 0x2000 && c <= 0x200A;
  }
}

// Byte length of the white space that starts at `offset` (0 when none).
std::size_t WhitespaceAt(const std::string& text, std::size_t offset) {
  const auto* p = reinterpret_cast<const unsigned char*>(text.data()) + offset;
  std::size_t length = 0;
  const char32_t c = Decode(p, length);
  return IsWhitespace(c) ? length : 0;
}

std::size_t SkipLeadingWhitespace(const std::string& text) {
  std::size_t i = 0;
  while (i < text.size()) {
    const std::size_t length = WhitespaceAt(text, i);
    if (length == 0) break;
    i += length;
  }
  return i;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

void AppendUTF8CodePoint(char32_t c, std::string& out) {
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += static_cast<char>(0xC0 | (c >> 6));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    out += static_cast<char>(0xE0 | (c >> 12));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (c >> 18));
    out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  }
}

bool IsValidUTF8(std::string_view bytes) {
  const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
  const std::size_t size = bytes.size();
  std::size_t i = 0;
  while (i < size) {
    if (p[i] < 0x80) {
      if (i + 8 <= size) {
        std::uint64_t word;
        std::memcpy(&word, p + i, 8);
        if ((word & kHighBits) == 0) {
          i += 8;
          continue;
        }
      }
      ++i;
      continue;
    }
    const std::size_t length = SequenceLength(p + i, size - i);
    if (length == 0) return false;
    i += length;
  }
  return true;
}

std::ostream& operator<<(std::ostream& stream, const AQVString& text) { return stream << text.UTF8(); }

AQVString::AQVString(const char* utf8) : AQVString(std::string_view(utf8 == nullptr ? "" : utf8)) {}

AQVString::AQVString(std::string_view utf8)
    : text_(IsValidUTF8(utf8) ? std::string(utf8) : Sanitize(utf8)) {}

AQVString::AQVString(const std::string& utf8)
    : text_(IsValidUTF8(utf8) ? utf8 : Sanitize(utf8)) {}

AQVString::AQVString(std::string&& utf8) : text_(std::move(utf8)) {
  if (!IsValidUTF8(text_)) text_ = Sanitize(text_);
}

std::optional<AQVString> AQVString::FromUTF8(std::string_view bytes) {
  if (!IsValidUTF8(bytes)) return std::nullopt;
  return AQVString(bytes);
}

std::optional<AQVString> AQVString::FromUTF16(std::u16string_view units) {
  std::string out;
  out.reserve(units.size());
  for (std::size_t i = 0; i < units.size(); ++i) {
    const char16_t u = units[i];
    if (u >= 0xD800 && u <= 0xDBFF) {
      if (i + 1 >= units.size() || units[i + 1] < 0xDC00 || units[i + 1] > 0xDFFF) return std::nullopt;
      const char32_t c = 0x10000 + ((char32_t(u) - 0xD800) << 10) + (char32_t(units[i + 1]) - 0xDC00);
      AppendUTF8CodePoint(c, out);
      ++i;
    } else if (u >= 0xDC00 && u <= 0xDFFF) {
      return std::nullopt;
    } else {
      AppendUTF8CodePoint(u, out);
    }
  }
  AQVString result;
  result.text_ = std::move(out);
  return result;
}

AQVString AQVString::FromInteger(long long value) {
  char buffer[24];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
  AQVString result;
  result.text_.assign(buffer, end);
  return result;
}

std::u16string AQVString::UTF16() const {
  std::u16string out;
  out.reserve(text_.size());
  const auto* p = reinterpret_cast<const unsigned char*>(text_.data());
  std::size_t i = 0;
  while (i < text_.size()) {
    std::size_t length = 0;
    const char32_t c = Decode(p + i, length);
    if (c >= 0x10000) {
      out += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
      out += static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
    } else {
      out += static_cast<char16_t>(c);
    }
    i += length;
  }
  return out;
}

std::size_t AQVString::Length() const { return UnitsUpTo(text_.size()); }

bool AQVString::IsASCII() const { return AllASCII(text_.data(), text_.size()); }

std::size_t AQVString::UnitsUpTo(std::size_t byteOffset) const {
  if (byteOffset > text_.size()) byteOffset = text_.size();
  if (AllASCII(text_.data(), byteOffset)) return byteOffset;
  std::size_t units = 0;
  for (std::size_t i = 0; i < byteOffset; ++i) {
    const auto b = static_cast<unsigned char>(text_[i]);
    if (!IsContinuation(b)) units += (b >= 0xF0) ? 2 : 1;
  }
  return units;
}

// A position inside a surrogate pair falls back to the start of its character,
// so that no cut ever splits one.
std::size_t AQVString::ByteOffset(std::size_t pos) const {
  const std::size_t size = text_.size();
  if (pos >= size) {
    if (AllASCII(text_.data(), size)) return size;
  } else if (AllASCII(text_.data(), pos)) {
    return pos;
  }
  std::size_t units = 0;
  std::size_t i = 0;
  while (i < size) {
    const auto b = static_cast<unsigned char>(text_[i]);
    const std::size_t width = b < 0x80 ? 1 : b < 0xE0 ? 2 : b < 0xF0 ? 3 : 4;
    const std::size_t charUnits = width == 4 ? 2 : 1;
    if (units + charUnits > pos) return i;
    units += charUnits;
    i += width;
  }
  return size;
}

std::size_t AQVString::Find(const AQVString& what, std::size_t from) const {
  if (what.text_.empty()) return npos;
  const std::size_t start = ByteOffset(from);
  const std::size_t found = text_.find(what.text_, start);
  return found == std::string::npos ? npos : UnitsUpTo(found);
}

std::size_t AQVString::ReverseFind(const AQVString& what, std::size_t before) const {
  if (what.text_.empty()) return npos;
  std::size_t found;
  if (before == npos) {
    found = text_.rfind(what.text_);
  } else {
    const std::size_t limit = ByteOffset(before);
    if (limit == 0) return npos;
    found = text_.rfind(what.text_, limit - 1);
  }
  return found == std::string::npos ? npos : UnitsUpTo(found);
}

bool AQVString::StartsWith(const AQVString& prefix) const { return text_.starts_with(prefix.text_); }

bool AQVString::EndsWith(const AQVString& suffix) const { return text_.ends_with(suffix.text_); }

char16_t AQVString::CharAt(std::size_t pos) const {
  if (pos < text_.size() && AllASCII(text_.data(), pos + 1)) return static_cast<char16_t>(text_[pos]);
  const auto* p = reinterpret_cast<const unsigned char*>(text_.data());
  std::size_t units = 0;
  std::size_t i = 0;
  while (i < text_.size()) {
    std::size_t length = 0;
    const char32_t c = Decode(p + i, length);
    if (c >= 0x10000) {
      if (pos == units) return static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
      if (pos == units + 1) return static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
      units += 2;
    } else {
      if (pos == units) return static_cast<char16_t>(c);
      units += 1;
    }
    i += length;
  }
  return 0;
}

AQVString AQVString::GetSubString(std::size_t pos, std::size_t length) const {
  const std::size_t start = ByteOffset(pos);
  const std::size_t end = (length == npos || pos + length < pos) ? text_.size() : ByteOffset(pos + length);
  AQVString result;
  if (end > start) result.text_.assign(text_, start, end - start);
  return result;
}

void AQVString::Replace(std::size_t pos, std::size_t length, const AQVString& with) {
  const std::size_t start = ByteOffset(pos);
  const std::size_t end = (length == npos || pos + length < pos) ? text_.size() : ByteOffset(pos + length);
  text_.replace(start, end > start ? end - start : 0, with.text_);
}

std::size_t AQVString::FindAndReplace(const AQVString& what, const AQVString& with) {
  if (what.text_.empty()) return 0;
  std::size_t found = text_.find(what.text_);
  if (found == std::string::npos) return 0;
  std::string out;
  out.reserve(text_.size());
  std::size_t count = 0;
  std::size_t copied = 0;
  while (found != std::string::npos) {
    out.append(text_, copied, found - copied);
    out += with.text_;
    copied = found + what.text_.size();
    ++count;
    found = text_.find(what.text_, copied);
  }
  out.append(text_, copied, std::string::npos);
  text_ = std::move(out);
  return count;
}

std::vector<AQVString> AQVString::ParseDelimitedString(const AQVString& delimiter) const {
  std::vector<AQVString> pieces;
  if (delimiter.text_.empty()) {
    pieces.push_back(*this);
    return pieces;
  }
  std::size_t start = 0;
  while (true) {
    const std::size_t found = text_.find(delimiter.text_, start);
    AQVString piece;
    piece.text_.assign(text_, start, found == std::string::npos ? std::string::npos : found - start);
    pieces.push_back(std::move(piece));
    if (found == std::string::npos) break;
    start = found + delimiter.text_.size();
  }
  return pieces;
}

std::vector<AQVString> AQVString::SplitAtCharacters(const AQVString& separators) const {
  std::vector<AQVString> pieces;
  const bool asciiSeparators = separators.IsASCII();
  const auto* p = reinterpret_cast<const unsigned char*>(text_.data());
  std::size_t start = 0;
  std::size_t i = 0;
  while (i < text_.size()) {
    std::size_t length = 1;
    bool separator;
    if (p[i] < 0x80) {
      separator = separators.text_.find(static_cast<char>(p[i])) != std::string::npos;
    } else {
      Decode(p + i, length);
      separator = !asciiSeparators &&
                  separators.text_.find(std::string_view(text_).substr(i, length)) != std::string::npos;
    }
    if (separator) {
      AQVString piece;
      piece.text_.assign(text_, start, i - start);
      pieces.push_back(std::move(piece));
      start = i + length;
    }
    i += length;
  }
  AQVString last;
  last.text_.assign(text_, start, std::string::npos);
  pieces.push_back(std::move(last));
  return pieces;
}

std::vector<AQVString> AQVString::SplitAtWhitespace() const {
  std::vector<AQVString> pieces;
  std::size_t i = 0;
  std::size_t start = 0;
  while (i < text_.size()) {
    const std::size_t space = WhitespaceAt(text_, i);
    if (space == 0) {
      const auto b = static_cast<unsigned char>(text_[i]);
      i += b < 0x80 ? 1 : b < 0xE0 ? 2 : b < 0xF0 ? 3 : 4;
      continue;
    }
    if (i > start) {
      AQVString piece;
      piece.text_.assign(text_, start, i - start);
      pieces.push_back(std::move(piece));
    }
    i += space;
    start = i;
  }
  if (start < text_.size()) {
    AQVString piece;
    piece.text_.assign(text_, start, std::string::npos);
    pieces.push_back(std::move(piece));
  }
  return pieces;
}

AQVString AQVString::TrimWhitespace() const {
  const std::size_t start = SkipLeadingWhitespace(text_);
  std::size_t end = text_.size();
  while (end > start) {
    std::size_t lead = end - 1;
    while (lead > start && IsContinuation(static_cast<unsigned char>(text_[lead]))) --lead;
    if (WhitespaceAt(text_, lead) != end - lead) break;
    end = lead;
  }
  AQVString result;
  result.text_.assign(text_, start, end - start);
  return result;
}

AQVString AQVString::EscapeCharacters(const std::vector<AQVString>& characters) const {
  bool asciiSet[128] = {};
  std::vector<std::string_view> others;
  for (const AQVString& character : characters) {
    if (character.text_.size() == 1) {
      asciiSet[static_cast<unsigned char>(character.text_[0])] = true;
    } else if (!character.text_.empty()) {
      others.push_back(character.text_);
    }
  }
  static constexpr char kHex[] = "0123456789ABCDEF";
  AQVString result;
  result.text_.reserve(text_.size());
  const auto* p = reinterpret_cast<const unsigned char*>(text_.data());
  std::size_t i = 0;
  while (i < text_.size()) {
    std::size_t length = 1;
    bool escape;
    if (p[i] < 0x80) {
      escape = asciiSet[p[i]];
    } else {
      Decode(p + i, length);
      const std::string_view character = std::string_view(text_).substr(i, length);
      escape = false;
      for (std::string_view other : others) {
        if (other == character) {
          escape = true;
          break;
        }
      }
    }
    if (escape) {
      for (std::size_t k = 0; k < length; ++k) {
        result.text_ += '%';
        result.text_ += kHex[p[i + k] >> 4];
        result.text_ += kHex[p[i + k] & 0x0F];
      }
    } else {
      result.text_.append(text_, i, length);
    }
    i += length;
  }
  return result;
}

std::vector<AQVString> AQVString::SplitByBufferSize(std::size_t bufferSize) const {
  std::vector<AQVString> pieces;
  if (text_.empty() || bufferSize < 2) return pieces;
  const std::size_t budget = bufferSize - 1;
  std::size_t start = 0;
  while (start < text_.size()) {
    std::size_t end = start + budget;
    if (end >= text_.size()) {
      end = text_.size();
    } else {
      while (end > start && IsContinuation(static_cast<unsigned char>(text_[end]))) --end;
      if (end == start) return {};
    }
    AQVString piece;
    piece.text_.assign(text_, start, end - start);
    pieces.push_back(std::move(piece));
    start = end;
  }
  return pieces;
}

long long AQVString::IntegerValue() const {
  std::size_t i = SkipLeadingWhitespace(text_);
  bool negative = false;
  if (i < text_.size() && (text_[i] == '+' || text_[i] == '-')) {
    negative = text_[i] == '-';
    ++i;
  }
  unsigned long long magnitude = 0;
  bool overflow = false;
  for (; i < text_.size() && IsDigit(text_[i]); ++i) {
    const unsigned digit = static_cast<unsigned>(text_[i] - '0');
    if (magnitude > (std::numeric_limits<unsigned long long>::max() - digit) / 10) {
      overflow = true;
    } else {
      magnitude = magnitude * 10 + digit;
    }
  }
  constexpr unsigned long long kMaxPositive = static_cast<unsigned long long>(LLONG_MAX);
  if (negative) {
    if (overflow || magnitude > kMaxPositive + 1) return LLONG_MIN;
    return magnitude == kMaxPositive + 1 ? LLONG_MIN : -static_cast<long long>(magnitude);
  }
  if (overflow || magnitude > kMaxPositive) return LLONG_MAX;
  return static_cast<long long>(magnitude);
}

double AQVString::DoubleValue() const {
  const std::size_t begin = SkipLeadingWhitespace(text_);
  std::size_t i = begin;
  bool negative = false;
  if (i < text_.size() && (text_[i] == '+' || text_[i] == '-')) {
    negative = text_[i] == '-';
    ++i;
  }
  const std::size_t mantissaStart = i;
  long long significantIntegerDigits = 0;
  bool seenNonZero = false;
  std::size_t digits = 0;
  for (; i < text_.size() && IsDigit(text_[i]); ++i, ++digits) {
    if (text_[i] != '0') seenNonZero = true;
    if (seenNonZero) ++significantIntegerDigits;
  }
  long long leadingFractionZeros = 0;
  if (i < text_.size() && text_[i] == '.') {
    ++i;
    for (; i < text_.size() && IsDigit(text_[i]); ++i, ++digits) {
      if (text_[i] != '0') seenNonZero = true;
      if (!seenNonZero) ++leadingFractionZeros;
    }
  }
  if (digits == 0) return 0.0;
  long long exponent = 0;
  if (i < text_.size() && (text_[i] == 'e' || text_[i] == 'E')) {
    std::size_t j = i + 1;
    bool negativeExponent = false;
    if (j < text_.size() && (text_[j] == '+' || text_[j] == '-')) {
      negativeExponent = text_[j] == '-';
      ++j;
    }
    if (j < text_.size() && IsDigit(text_[j])) {
      for (; j < text_.size() && IsDigit(text_[j]); ++j) {
        if (exponent < 1000000) exponent = exponent * 10 + (text_[j] - '0');
      }
      if (negativeExponent) exponent = -exponent;
      i = j;
    }
  }
  double value = 0.0;
  const char* first = text_.data() + mantissaStart;
  const auto [ptr, ec] = std::from_chars(first, text_.data() + i, value, std::chars_format::general);
  if (ec == std::errc::result_out_of_range) {
    const long long magnitude =
        significantIntegerDigits > 0 ? significantIntegerDigits + exponent : exponent - leadingFractionZeros;
    value = magnitude > 0 ? std::numeric_limits<double>::infinity() : 0.0;
  } else if (ec != std::errc() || ptr == first) {
    return 0.0;
  }
  return negative ? -value : value;
}

bool AQVString::BoolValue() const {
  std::size_t i = SkipLeadingWhitespace(text_);
  if (i < text_.size() && (text_[i] == '+' || text_[i] == '-')) ++i;
  while (i < text_.size() && text_[i] == '0') ++i;
  if (i >= text_.size()) return false;
  const char c = text_[i];
  return c == 'Y' || c == 'y' || c == 'T' || c == 't' || (c >= '1' && c <= '9');
}

}  // namespace com_qv_print_driver_core_cpp_util_v1
