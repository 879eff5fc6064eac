#include "core/AXMLPropertyListReader.h"

#include <charconv>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "core/AArray.h"
#include "core/ADictionary.h"
#include "core/AWorkerPool.h"

namespace com_qv_print_driver_core_cpp_util_v1 {

namespace {

// Far below the 256 levels that the libplist path accepts; deeper lists are
// left to it.
constexpr int kMaxDepth = 64;
// Integers of up to 18 digits fit a signed 64-bit value whatever they are.
constexpr std::size_t kMaxIntegerDigits = 18;

// One test and a bit lookup per byte: the indentation of a property list is
// most of its bytes.
constexpr std::uint64_t kSpaceBits = (1ULL << ' ') | (1ULL << '\t') | (1ULL << '\n') | (1ULL << '\r');
bool IsSpace(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte <= ' ' && ((kSpaceBits >> byte) & 1) != 0;
}

// Whether `tag` is the name `name`; a comparison of a known size stays
// inline, where one of a computed size calls the C library.
template <std::size_t N>
bool IsTag(std::string_view tag, const char (&name)[N]) {
  return tag.size() == N - 1 && std::memcmp(tag.data(), name, N - 1) == 0;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}

  bool ReadDocument(AValue& out) {
    // Checked once for the whole text, so that every string cut from it
    // (at ASCII delimiters) is valid too.
    if (!IsValidUTF8(text_) || !ReadProlog()) return false;
    AValue value;
    if (!ReadValue(value, 0) || !ReadEpilog()) return false;
    out = std::move(value);
    return true;
  }

  // The members of the root dictionary before `stop`, which must be where
  // one of them starts; the text before `stop` is checked alone.
  bool ReadHead(std::size_t stop, ADictionary::Items& items) {
    if (!IsValidUTF8(text_.substr(0, stop)) || !ReadProlog()) return false;
    std::string_view tag;
    bool empty = false;
    if (!ReadOpenTag(tag, empty) || tag != "dict" || empty) return false;
    return ReadMembers(0, stop, items) && position_ == stop;
  }

  // The members of the root dictionary from `start` on, the end of the
  // document after them; the text from `start` on is checked alone.
  bool ReadTail(std::size_t start, ADictionary::Items& items) {
    if (!IsValidUTF8(text_.substr(start))) return false;
    position_ = start;
    return ReadMembers(0, std::string_view::npos, items) && ReadCloseTag("dict") && ReadEpilog();
  }

 private:
  // Everything before the root value.
  bool ReadProlog() {
    SkipSpace();
    if (Consume("<?xml")) {
      if (!SkipPast("?>")) return false;
    }
    if (!SkipMisc()) return false;
    if (Consume("<!DOCTYPE")) {
      // A DOCTYPE with an internal subset is left to libplist.
      const std::size_t end = text_.find('>', position_);
      if (end == std::string_view::npos ||
          text_.substr(position_, end - position_).find('[') != std::string_view::npos) {
        return false;
      }
      position_ = end + 1;
    }
    if (!SkipMisc()) return false;
    if (!Consume("<plist")) return false;
    if (position_ >= text_.size() || (!IsSpace(text_[position_]) && text_[position_] != '>')) return false;
    if (!SkipPast(">") || text_[position_ - 2] == '/') return false;
    return SkipMisc();
  }

  // Everything after the root value, up to the end.
  bool ReadEpilog() {
    return SkipMisc() && Consume("</plist>") && SkipMisc() && position_ == text_.size();
  }

  bool AtEnd() const { return position_ >= text_.size(); }
  bool AtCloseTag() const {
    return text_.size() - position_ >= 2 && text_[position_] == '<' && text_[position_ + 1] == '/';
  }

  bool Consume(std::string_view literal) {
    if (text_.size() - position_ < literal.size()) return false;
    for (std::size_t i = 0; i < literal.size(); ++i) {
      if (text_[position_ + i] != literal[i]) return false;
    }
    position_ += literal.size();
    return true;
  }

  bool SkipPast(std::string_view literal) {
    const std::size_t found = text_.find(literal, position_);
    if (found == std::string_view::npos) return false;
    position_ = found + literal.size();
    return true;
  }

  void SkipSpace() {
    const std::size_t size = text_.size();
    const char* data = text_.data();
    std::size_t i = position_;
    while (i < size && IsSpace(data[i])) ++i;
    position_ = i;
  }

  // White space and comments between elements.
  bool SkipMisc() {
    for (;;) {
      SkipSpace();
      if (text_.size() - position_ < 4 || text_[position_ + 1] != '!' ||
          text_.compare(position_, 4, "<!--") != 0) {
        return true;
      }
      const std::size_t end = text_.find("-->", position_ + 4);
      if (end == std::string_view::npos) return false;
      position_ = end + 3;
    }
  }

  // The name of the tag at the position ("<name>" or "<name/>"); `empty`
  // tells the second form. Tags with attributes are declined.
  bool ReadOpenTag(std::string_view& name, bool& empty) {
    if (AtEnd() || text_[position_] != '<') return false;
    const std::size_t start = position_ + 1;
    std::size_t i = start;
    while (i < text_.size() && text_[i] >= 'a' && text_[i] <= 'z') ++i;
    if (i == start || i >= text_.size()) return false;
    name = text_.substr(start, i - start);
    if (text_[i] == '>') {
      empty = false;
      position_ = i + 1;
      return true;
    }
    if (text_[i] == '/' && i + 1 < text_.size() && text_[i + 1] == '>') {
      empty = true;
      position_ = i + 2;
      return true;
    }
    return false;
  }

  bool ReadCloseTag(std::string_view name) {
    const std::size_t length = name.size() + 3;
    if (text_.size() - position_ < length || text_[position_] != '<' || text_[position_ + 1] != '/' ||
        text_[position_ + length - 1] != '>' || text_.substr(position_ + 2, name.size()) != name) {
      return false;
    }
    position_ += length;
    return true;
  }

  // Character data up to the next "<", with the five predefined entities
  // replaced; anything else that XML would treat specially is declined.
  bool ReadText(std::string& out) {
    const std::size_t end = text_.find('<', position_);
    if (end == std::string_view::npos) return false;
    const std::string_view raw = text_.substr(position_, end - position_);
    // Two memchr scans are quicker than one loop testing both characters.
    if (raw.find('&') == std::string_view::npos && raw.find('\r') == std::string_view::npos) {
      out.assign(raw);
    } else {
      out.clear();
      out.reserve(raw.size());
      for (std::size_t i = 0; i < raw.size(); ++i) {
        const char c = raw[i];
        if (c == '\r') return false;
        if (c != '&') {
          out.push_back(c);
          continue;
        }
        const std::string_view rest = raw.substr(i);
        if (rest.compare(0, 5, "&amp;") == 0) {
          out.push_back('&');
          i += 4;
        } else if (rest.compare(0, 4, "&lt;") == 0) {
          out.push_back('<');
          i += 3;
        } else if (rest.compare(0, 4, "&gt;") == 0) {
          out.push_back('>');
          i += 3;
        } else if (rest.compare(0, 6, "&quot;") == 0) {
          out.push_back('"');
          i += 5;
        } else if (rest.compare(0, 6, "&apos;") == 0) {
          out.push_back('\'');
          i += 5;
        } else {
          return false;
        }
      }
    }
    position_ = end;
    return true;
  }

  bool ReadString(std::string_view tag, bool empty, AQVString& out) {
    if (empty) {
      out = AQVString();
      return true;
    }
    std::string text;
    if (!ReadText(text) || !ReadCloseTag(tag)) return false;
    out = AQVString::FromTrustedUTF8(std::move(text));
    return true;
  }

  // A plain decimal integer: an optional minus sign and up to 18 digits,
  // without a leading zero (libplist would read "010" as octal).
  bool ReadInteger(AValue& out) {
    const std::size_t end = text_.find('<', position_);
    if (end == std::string_view::npos) return false;
    std::string_view digits = text_.substr(position_, end - position_);
    const bool negative = !digits.empty() && digits.front() == '-';
    if (negative) digits.remove_prefix(1);
    if (digits.empty() || digits.size() > kMaxIntegerDigits) return false;
    if (digits.size() > 1 && digits.front() == '0') return false;
    std::int64_t value = 0;
    for (const char c : digits) {
      if (!IsDigit(c)) return false;
      value = value * 10 + (c - '0');
    }
    position_ = end;
    if (!ReadCloseTag("integer")) return false;
    out = AValue(static_cast<long long>(negative ? -value : value));
    return true;
  }

  // [-]digits[.digits][(e|E)[+|-]digits], which strtod and from_chars read
  // alike (both round correctly).
  bool ReadReal(AValue& out) {
    const std::size_t end = text_.find('<', position_);
    if (end == std::string_view::npos) return false;
    const std::string_view number = text_.substr(position_, end - position_);
    std::size_t i = 0;
    if (i < number.size() && number[i] == '-') ++i;
    const std::size_t integerStart = i;
    while (i < number.size() && IsDigit(number[i])) ++i;
    if (i == integerStart) return false;
    if (i < number.size() && number[i] == '.') {
      const std::size_t fractionStart = ++i;
      while (i < number.size() && IsDigit(number[i])) ++i;
      if (i == fractionStart) return false;
    }
    if (i < number.size() && (number[i] == 'e' || number[i] == 'E')) {
      ++i;
      if (i < number.size() && (number[i] == '+' || number[i] == '-')) ++i;
      const std::size_t exponentStart = i;
      while (i < number.size() && IsDigit(number[i])) ++i;
      if (i == exponentStart) return false;
    }
    if (i != number.size()) return false;
    double value = 0;
    const auto [last, code] = std::from_chars(number.data(), number.data() + number.size(), value);
    if (code != std::errc() || last != number.data() + number.size()) return false;
    position_ = end;
    if (!ReadCloseTag("real")) return false;
    out = AValue(value);
    return true;
  }

  bool ReadArray(bool empty, int depth, AValue& out) {
    std::vector<AValue> items;
    if (!empty) {
      for (;;) {
        if (!SkipMisc()) return false;
        if (AtCloseTag()) break;
        AValue item;
        if (!ReadValue(item, depth + 1)) return false;
        items.push_back(std::move(item));
      }
      if (!ReadCloseTag("array")) return false;
    }
    out = AValue(AArray::FromValues(std::move(items)));
    return true;
  }

  // Key and value pairs up to the close tag, or up to `stop` (where one
  // must start).
  bool ReadMembers(int depth, std::size_t stop, ADictionary::Items& items) {
    for (;;) {
      if (!SkipMisc()) return false;
      if (position_ >= stop) return position_ == stop;
      if (AtCloseTag()) return true;
      std::string_view tag;
      bool emptyKey = false;
      // libplist refuses "<key/>".
      if (!ReadOpenTag(tag, emptyKey) || !IsTag(tag, "key") || emptyKey) return false;
      AQVString key;
      if (!ReadString(tag, false, key)) return false;
      if (!SkipMisc()) return false;
      AValue item;
      if (!ReadValue(item, depth + 1)) return false;
      items.emplace_back(std::move(key), std::move(item));
    }
  }

  bool ReadDictionary(bool empty, int depth, AValue& out) {
    ADictionary::Items items;
    if (!empty) {
      // Most dictionaries of a product hold a few keys: one allocation.
      items.reserve(8);
      if (!ReadMembers(depth, std::string_view::npos, items) || !ReadCloseTag("dict")) return false;
    }
    out = AValue(ADictionary::FromItems(std::move(items)));
    return true;
  }

  bool ReadValue(AValue& out, int depth) {
    if (depth > kMaxDepth) return false;
    std::string_view tag;
    bool empty = false;
    if (!ReadOpenTag(tag, empty)) return false;
    if (IsTag(tag, "string")) {
      AQVString text;
      if (!ReadString(tag, empty, text)) return false;
      out = AValue(std::move(text));
      return true;
    }
    if (IsTag(tag, "dict")) return ReadDictionary(empty, depth, out);
    if (IsTag(tag, "array")) return ReadArray(empty, depth, out);
    if (IsTag(tag, "integer")) return !empty && ReadInteger(out);
    if (IsTag(tag, "real")) return !empty && ReadReal(out);
    if (IsTag(tag, "true") || IsTag(tag, "false")) {
      if (!empty) return false;
      out = AValue(IsTag(tag, "true"));
      return true;
    }
    return false;
  }

  std::string_view text_;
  std::size_t position_ = 0;
};

// Texts from this size on are read in two halves side by side when the
// process has helper threads.
constexpr std::size_t kSplitFrom = 64 * 1024;

// Where a member of the root dictionary seems to start near the middle: a
// key on a line of its own, indented once. Any other layout is read whole.
std::size_t SplitPoint(std::string_view text) {
  const std::size_t found = text.find("\n\t<key>", text.size() / 2);
  return found == std::string_view::npos ? found : found + 2;
}

}  // namespace

bool AXMLPropertyListReader::Read(std::string_view text, AValue& out) {
  const std::size_t split = text.size() >= kSplitFrom ? SplitPoint(text) : std::string_view::npos;
  if (split != std::string_view::npos && AWorkerPool::Shared().Threads() > 1) {
    ADictionary::Items halves[2];
    bool read[2] = {false, false};
    AWorkerPool::Shared().ForEach(2, 2, [&](std::size_t half) {
      read[half] = half == 0 ? Reader(text).ReadHead(split, halves[0])
                             : Reader(text).ReadTail(split, halves[1]);
    });
    // The split is right when the first half ends exactly there; anything
    // else (or a failure, whose exact place the whole reading tells) is read
    // again as one.
    if (read[0] && read[1]) {
      ADictionary::Items& items = halves[0];
      items.reserve(items.size() + halves[1].size());
      std::move(halves[1].begin(), halves[1].end(), std::back_inserter(items));
      out = AValue(ADictionary::FromItems(std::move(items)));
      return true;
    }
  }
  return Reader(text).ReadDocument(out);
}

}  // namespace com_qv_print_driver_core_cpp_util_v1
