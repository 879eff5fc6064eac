#pragma once
// The text type of every model object: UTF-8 storage with the positions of
// search, replace and split counted in UTF-16 code units, and byte limits in
// UTF-8 bytes.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace com_qv_print_driver_core_cpp_util_v1 {

class AQVString {
 public:
  static constexpr std::size_t npos = static_cast<std::size_t>(-1);

  AQVString() = default;
  // Trusted text (literals, text already validated). Invalid UTF-8 in it is
  // replaced by U+FFFD so that the invariant "always valid UTF-8" holds.
  AQVString(const char* utf8);            // NOLINT(google-explicit-constructor)
  AQVString(std::string_view utf8);       // NOLINT(google-explicit-constructor)
  AQVString(const std::string& utf8);     // NOLINT(google-explicit-constructor)
  AQVString(std::string&& utf8);          // NOLINT(google-explicit-constructor)

  // Returns the text, or nothing when `bytes` is not valid UTF-8 (the
  // caller reports the input error).
  static std::optional<AQVString> FromUTF8(std::string_view bytes);
  // Converts UTF-16; a lone surrogate gives nothing.
  static std::optional<AQVString> FromUTF16(std::u16string_view units);
  // Decimal text of a number.
  static AQVString FromInteger(long long value);
  // Takes over bytes that are valid UTF-8 by construction (text the library
  // assembled from valid strings) without checking them again.
  static AQVString FromTrustedUTF8(std::string&& utf8) {
    AQVString text;
    text.text_ = std::move(utf8);
    return text;
  }

  // The UTF-8 bytes (always valid UTF-8).
  const std::string& UTF8() const { return text_; }
  // Moves the UTF-8 bytes out (no copy of a large text); this string is
  // left empty.
  std::string TakeUTF8() {
    std::string out;
    out.swap(text_);
    return out;
  }
  const char* CString() const { return text_.c_str(); }
  std::u16string UTF16() const;

  bool IsEmpty() const { return text_.empty(); }
  // Length in UTF-16 code units.
  std::size_t Length() const;
  // Length in UTF-8 bytes (the unit of every PPD limit).
  std::size_t ByteLength() const { return text_.size(); }
  // Makes room for `bytes` bytes of text, so that appending up to them does
  // not reallocate.
  void Reserve(std::size_t bytes) { text_.reserve(bytes); }
  bool IsASCII() const;

  // Searches; positions and results are UTF-16 units, npos when not found
  // (always for an empty `what`). A position inside a surrogate pair stands
  // for the start of its character, here and in the cuts below.
  std::size_t Find(const AQVString& what, std::size_t from = 0) const;
  // Last occurrence that starts before `before` (npos: anywhere).
  std::size_t ReverseFind(const AQVString& what, std::size_t before = npos) const;
  bool Contains(const AQVString& what) const { return text_.find(what.text_) != std::string::npos; }
  bool StartsWith(const AQVString& prefix) const;
  bool EndsWith(const AQVString& suffix) const;
  // The UTF-16 unit at `pos` (0 past the end).
  char16_t CharAt(std::size_t pos) const;

  // Substring by UTF-16 position and length (clamped to the text).
  AQVString GetSubString(std::size_t pos, std::size_t length = npos) const;
  // Replaces `length` units at `pos` by `with` (clamped to the text).
  void Replace(std::size_t pos, std::size_t length, const AQVString& with);
  // Replaces every occurrence of `what` (non-empty) by `with`; returns the count.
  std::size_t FindAndReplace(const AQVString& what, const AQVString& with);
  void Insert(std::size_t pos, const AQVString& what) { Replace(pos, 0, what); }

  // Splits at every occurrence of `delimiter`; an empty text gives one empty piece,
  // two delimiters in a row give an empty piece.
  std::vector<AQVString> ParseDelimitedString(const AQVString& delimiter) const;
  // Splits at every character that is in `separators`.
  std::vector<AQVString> SplitAtCharacters(const AQVString& separators) const;
  // Splits at runs of white space, dropping empty pieces.
  std::vector<AQVString> SplitAtWhitespace() const;
  // Without leading and trailing white space (space, TAB, LF, CR, VT, FF and
  // the Unicode spaces).
  AQVString TrimWhitespace() const;

  // Percent-encodes (%XX of each UTF-8 byte, upper-case hex) every character
  // that is one of `characters` (each a one-character string).
  AQVString EscapeCharacters(const std::vector<AQVString>& characters) const;
  // Cuts the text into pieces of at most `bufferSize - 1` UTF-8 bytes each
  // (the buffer keeps a terminating byte), never inside a character. An
  // empty text, or a buffer too small for one of its characters, gives no
  // pieces.
  std::vector<AQVString> SplitByBufferSize(std::size_t bufferSize) const;

  // Foundation-like number readings: leading white space skipped, then an
  // optional sign and digits; no number gives 0. IntegerValue saturates at
  // the limits of long long; DoubleValue reads a decimal fraction and exponent.
  long long IntegerValue() const;
  double DoubleValue() const;
  // True for a leading "Y", "y", "T", "t" or a digit 1-9 (after white space and sign/zeros).
  bool BoolValue() const;

  AQVString& operator+=(const AQVString& other) { text_ += other.text_; return *this; }
  AQVString& operator+=(const char* other) { text_ += other; return *this; }
  AQVString& Append(std::string_view utf8Trusted) { text_.append(utf8Trusted); return *this; }
  friend AQVString operator+(AQVString a, const AQVString& b) { a += b; return a; }
  friend AQVString operator+(AQVString a, const char* b) { a += b; return a; }
  friend AQVString operator+(const char* a, const AQVString& b) { AQVString r(a); r += b; return r; }

  friend bool operator==(const AQVString& a, const AQVString& b) { return a.text_ == b.text_; }
  friend bool operator==(const AQVString& a, const char* b) { return a.text_ == b; }
  friend auto operator<=>(const AQVString& a, const AQVString& b) { return a.text_ <=> b.text_; }
  // Lets maps keyed by AQVString be searched with a C string, without a
  // temporary AQVString (std::less<>).
  friend auto operator<=>(const AQVString& a, const char* b) { return std::string_view(a.text_) <=> std::string_view(b); }

 private:
  // Byte offset of the UTF-16 position `pos` (clamped to the end).
  std::size_t ByteOffset(std::size_t pos) const;
  std::size_t UnitsUpTo(std::size_t byteOffset) const;

  std::string text_;
};

// Whether `bytes` is well-formed UTF-8 (no surrogates, no overlong forms).
bool IsValidUTF8(std::string_view bytes);
// Appends the UTF-8 form of the code point `c` (at most U+10FFFF) to `out`.
void AppendUTF8CodePoint(char32_t c, std::string& out);

// Writes the UTF-8 text (test failure messages and logs print it readably).
std::ostream& operator<<(std::ostream& stream, const AQVString& text);

}  // namespace com_qv_print_driver_core_cpp_util_v1

template <>
struct std::hash<com_qv_print_driver_core_cpp_util_v1::AQVString> {
  std::size_t operator()(const com_qv_print_driver_core_cpp_util_v1::AQVString& s) const noexcept {
    return std::hash<std::string>()(s.UTF8());
  }
};

namespace ppdforge {
using com_qv_print_driver_core_cpp_util_v1::AQVString;
using com_qv_print_driver_core_cpp_util_v1::IsValidUTF8;
}
