#include "model/APPDStatement.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "core/RKPPDMessages.h"
#include "model/RKPPDConstants.h"

namespace ppdforge {

namespace {

constexpr std::size_t kMaxKeywordBytes = 40;
constexpr std::size_t kMaxTranslationBytes = 80;
// A line of this many bytes or more breaks the 255-byte PPD line limit.
constexpr std::size_t kLineLimitBytes = 256;
constexpr std::size_t kCommentLineLimit = 256 - 3;  // minus the length of "*% "

// The literal that replaces a stray bracket, in the code unit type of the scan.
template <class C>
std::basic_string<C> Literal(const char* ascii) {
  std::basic_string<C> out;
  for (const char* p = ascii; *p != '\0'; ++p) out.push_back(static_cast<C>(*p));
  return out;
}

template <class C>
bool IsTagView(std::basic_string_view<C> text) {
  const std::size_t length = text.size();
  if (length < 3) return false;
  std::basic_string_view<C> interior;
  if (text[1] == C('<') && text[length - 2] == C('>')) {
    if (length < 5) return false;
    interior = text.substr(2, length - 3);
  } else {
    interior = text.substr(1, length - 2);
  }
  return !interior.empty() && interior.find(C('<')) == std::basic_string_view<C>::npos;
}

// Index of the last character of the tag that the "<" at `position` opens, or npos.
template <class C>
std::size_t TagEnd(const std::basic_string<C>& text, std::size_t position) {
  using S = std::basic_string<C>;
  if (position + 1 >= text.size()) return S::npos;
  if (text[position + 1] == C('<')) {
    static const S kDoubleClose = Literal<C>(">>");
    const std::size_t found = text.find(kDoubleClose, position);
    return found == S::npos ? S::npos : found + 1;
  }
  return text.find(C('>'), position);
}

// Index of the "<" (or "<<") that the ">" at `position` would close, or npos.
template <class C>
std::size_t TagStart(const std::basic_string<C>& text, std::size_t position) {
  using V = std::basic_string_view<C>;
  if (position == 0) return V::npos;
  const V before = V(text).substr(0, position);
  if (text[position - 1] == C('>')) {
    static const std::basic_string<C> kDoubleOpen = Literal<C>("<<");
    return before.rfind(kDoubleOpen);
  }
  return before.rfind(C('<'));
}

template <class C>
bool ReplaceOpenBrackets(std::basic_string<C>& text) {
  using S = std::basic_string<C>;
  static const S kEscaped = Literal<C>("<3C>");
  bool changed = false;
  std::size_t position = 0;
  for (;;) {
    const std::size_t open = text.find(C('<'), position);
    if (open == S::npos) break;
    const std::size_t end = TagEnd(text, open);
    if (end != S::npos && IsTagView(std::basic_string_view<C>(text).substr(open, end - open + 1))) {
      position = end + 1;
    } else {
      text.replace(open, 1, kEscaped);
      position = open + kEscaped.size();
      changed = true;
    }
    if (position == text.size() - 1) break;
  }
  return changed;
}

template <class C>
bool ReplaceCloseBrackets(std::basic_string<C>& text) {
  using S = std::basic_string<C>;
  static const S kEscaped = Literal<C>("<3E>");
  bool changed = false;
  std::size_t position = 0;
  for (;;) {
    const std::size_t close = text.find(C('>'), position);
    if (close == S::npos) break;
    const std::size_t start = TagStart(text, close);
    if (start != S::npos) {
      const std::size_t candidateLength = close - start + 1;
      if (IsTagView(std::basic_string_view<C>(text).substr(start, candidateLength))) {
        position = close + 1;
      } else {
        text.replace(close, 1, kEscaped);
        // Resumes after the whole candidate, not after the inserted text: a
        // ">" within that distance stays as it is.
        position = close + candidateLength;
        changed = true;
      }
    } else {
      text.replace(close, 1, kEscaped);
      position = close;
      changed = true;
    }
    if (position == text.size() - 1) break;
  }
  return changed;
}

// Whether step A would replace anything in ASCII `text` (the scan of
// ReplaceOpenBrackets up to its first replacement).
bool WouldReplaceOpenBrackets(std::string_view text) {
  std::size_t position = 0;
  for (;;) {
    const std::size_t open = text.find('<', position);
    if (open == std::string_view::npos) return false;
    std::size_t end = std::string_view::npos;
    if (open + 1 < text.size()) {
      if (text[open + 1] == '<') {
        const std::size_t found = text.find(">>", open);
        end = found == std::string_view::npos ? found : found + 1;
      } else {
        end = text.find('>', open);
      }
    }
    if (end == std::string_view::npos || !IsTagView(text.substr(open, end - open + 1))) return true;
    position = end + 1;
    if (position == text.size() - 1) return false;
  }
}

// The same for step B (ReplaceCloseBrackets), on text that step A left alone.
bool WouldReplaceCloseBrackets(std::string_view text) {
  std::size_t position = 0;
  for (;;) {
    const std::size_t close = text.find('>', position);
    if (close == std::string_view::npos) return false;
    if (close == 0) return true;
    const std::string_view before = text.substr(0, close);
    const std::size_t start = text[close - 1] == '>' ? before.rfind("<<") : before.rfind('<');
    if (start == std::string_view::npos || !IsTagView(text.substr(start, close - start + 1))) return true;
    position = close + 1;
    if (position == text.size() - 1) return false;
  }
}

// Word-at-a-time byte tests: every statement part passes through several
// checks, and nearly all of it is plain text that none of them stops at.
constexpr std::uint64_t kEveryByte = 0x0101010101010101ULL;
constexpr std::uint64_t kHighBits = 0x8080808080808080ULL;

// Non-zero when a byte of `word` is below `limit` (at most 128).
constexpr std::uint64_t BytesBelow(std::uint64_t word, unsigned limit) {
  return (word - kEveryByte * limit) & ~word & kHighBits;
}

// Non-zero when a byte of `word` equals `c`.
constexpr std::uint64_t BytesEqual(std::uint64_t word, char c) {
  return BytesBelow(word ^ (kEveryByte * static_cast<unsigned char>(c)), 1);
}

// A word read from `p`, which need not be aligned.
template <class Word>
Word Load(const char* p) {
  Word word;
  std::memcpy(&word, p, sizeof word);
  return word;
}

// Whether any 8-byte word of `text` passes `hits`. The last bytes are read
// as one word that overlaps bytes already tested (the tests ask whether any
// byte matches, so bytes read twice do no harm); a text under 8 bytes is
// read the same way from smaller loads and filled up with `padding`, which
// must not pass. Fixed-size loads stay inline, where a copy of a variable
// size would call the C library.
template <class Hits>
bool AnyWordHits(std::string_view text, Hits hits, unsigned char padding) {
  const char* p = text.data();
  const std::size_t size = text.size();
  if (size >= 8) {
    for (std::size_t i = 0; i + 8 <= size; i += 8) {
      if (hits(Load<std::uint64_t>(p + i))) return true;
    }
    return size % 8 != 0 && hits(Load<std::uint64_t>(p + size - 8));
  }
  if (size == 0) return false;
  std::uint64_t word;
  if (size >= 4) {
    word = Load<std::uint32_t>(p) | std::uint64_t{Load<std::uint32_t>(p + size - 4)} << 32;
  } else {
    word = kEveryByte * padding;
    word = (word & ~std::uint64_t{0xFFFFFF}) | static_cast<unsigned char>(p[0]) |
           std::uint64_t{static_cast<unsigned char>(p[size / 2])} << 8 |
           std::uint64_t{static_cast<unsigned char>(p[size - 1])} << 16;
  }
  return hits(word);
}

// Whether any byte of `text` is one of `characters` or below `below`.
template <std::size_t N>
bool ContainsAny(std::string_view text, const char (&characters)[N], unsigned below = 0) {
  const auto hits = [&characters, below](std::uint64_t word) {
    std::uint64_t hit = below == 0 ? 0 : BytesBelow(word, below);
    for (std::size_t c = 0; c + 1 < N; ++c) hit |= BytesEqual(word, characters[c]);
    return hit != 0;
  };
  // The characters are ASCII, and a byte with its high bit set is never
  // below the limit: such bytes match nothing.
  return AnyWordHits(text, hits, 0x80);
}

bool IsASCII(std::string_view bytes) {
  return !AnyWordHits(bytes, [](std::uint64_t word) { return (word & kHighBits) != 0; }, 'A');
}

// Whether every byte of `text` is printable ASCII other than the colon and
// the slash: the rule of keywords.
bool IsKeywordText(std::string_view text) {
  return !AnyWordHits(
      text,
      [](std::uint64_t word) {
        return (BytesBelow(word, 33) | (word & kHighBits) | BytesEqual(word, '\x7F') | BytesEqual(word, ':') |
                BytesEqual(word, '/')) != 0;
      },
      'A');
}

// Positions of the scan are UTF-16 units; for ASCII text they equal byte
// offsets, so the UTF-8 bytes are scanned directly.
bool EscapeBrackets(std::string& utf8, bool open) {
  if (utf8.find(open ? '<' : '>') == std::string::npos) return false;
  if (IsASCII(utf8)) return open ? ReplaceOpenBrackets(utf8) : ReplaceCloseBrackets(utf8);
  std::u16string units = AQVString(utf8).UTF16();
  const bool changed = open ? ReplaceOpenBrackets(units) : ReplaceCloseBrackets(units);
  if (changed) {
    if (std::optional<AQVString> converted = AQVString::FromUTF16(units)) utf8 = converted->UTF8();
  }
  return changed;
}

// Steps A and B in order on UTF-8 text; true when anything was replaced.
bool EscapeStrayBrackets(std::string& utf8) {
  const bool opened = EscapeBrackets(utf8, true);
  const bool closed = EscapeBrackets(utf8, false);
  return opened || closed;
}

bool ReplaceAll(std::string& text, char what, std::string_view with) {
  std::size_t position = text.find(what);
  if (position == std::string::npos) return false;
  std::string out;
  out.reserve(text.size() + with.size() * 4);
  std::size_t from = 0;
  while (position != std::string::npos) {
    out.append(text, from, position - from);
    out.append(with);
    from = position + 1;
    position = text.find(what, from);
  }
  out.append(text, from, std::string::npos);
  text.swap(out);
  return true;
}

// Escapes a stored translation in place; only rewrites the member when
// something changed, so that a second build costs nothing.
void EscapeStoredTranslation(AQVString& translation, bool escapeColons) {
  const std::string_view stored = translation.UTF8();
  bool needed = false;
  for (const char c : stored) {
    if (c == '<' || c == '>' || (escapeColons && c == ':')) {
      needed = true;
      break;
    }
  }
  if (!needed) return;
  std::string text(stored);
  bool changed = EscapeStrayBrackets(text);
  if (escapeColons) changed = ReplaceAll(text, ':', "<3A>") || changed;
  if (changed) translation = AQVString(std::move(text));
}

bool HasAngleBracket(std::string_view text) { return ContainsAny(text, "<>"); }

bool HasLineBreak(std::string_view text) { return ContainsAny(text, "\n\r"); }

// The character test as a table of the acceptable byte values.
class CharacterRule {
 public:
  CharacterRule(unsigned lowest, unsigned highest, std::string_view invalid) {
    const std::string_view allowedLow = kRKPPDAllowedPPDCharsUnder33;
    for (unsigned byte = 0; byte < 256; ++byte) {
      const bool low = byte < lowest && allowedLow.find(static_cast<char>(byte)) == std::string_view::npos;
      accepted_[byte] = !low && byte <= highest;
    }
    for (const char c : invalid) accepted_[static_cast<unsigned char>(c)] = false;
  }

  bool Accepts(std::string_view bytes) const {
    for (const char c : bytes) {
      if (!accepted_[static_cast<unsigned char>(c)]) return false;
    }
    return true;
  }

 private:
  bool accepted_[256];
};

// The fixed rules of the statement parts, built once.
const CharacterRule& OptionTranslationRule() {
  static const CharacterRule rule(32, 255, "\n\r:");
  return rule;
}
const CharacterRule& ValueTranslationRule() {
  static const CharacterRule rule(32, 255, "\n\r");
  return rule;
}
const CharacterRule& QuotedValueRule() {
  static const CharacterRule rule(32, 255, kRKPPDDoubleQuote);
  return rule;
}
const CharacterRule& SymbolValueRule() {
  static const CharacterRule rule(32, 126, "\r\n\t ");
  return rule;
}
const CharacterRule& StringValueRule() {
  static const CharacterRule rule(32, 126, "/\n\r");
  return rule;
}
const CharacterRule& OtherValueRule() {
  static const CharacterRule rule(32, 126, std::string_view());
  return rule;
}
const CharacterRule& PlainMainTranslationRule() {
  static const CharacterRule rule(32, 126, "\n\r:");
  return rule;
}

// Whether `text` is ASCII whose only brackets are one "<<" and a later ">>"
// with something between them: the form of nearly every PostScript code, which
// both escaping steps keep as a tag.
bool IsOneDictionaryTag(std::string_view text) {
  constexpr std::size_t npos = std::string_view::npos;
  const std::size_t open = text.find('<');
  if (open == npos || open + 1 >= text.size() || text[open + 1] != '<' || text.find('<', open + 2) != npos) {
    return false;
  }
  const std::size_t close = text.find('>');
  if (close == npos || close + 1 >= text.size() || text[close + 1] != '>' || text.find('>', close + 2) != npos) {
    return false;
  }
  return close >= open + 3 && IsASCII(text);
}

// Whether the stray-bracket escaping would change `text`.
bool NeedsBracketEscaping(std::string_view text) {
  if (!HasAngleBracket(text)) return false;
  if (IsOneDictionaryTag(text)) return false;
  if (!IsASCII(text)) return true;
  return WouldReplaceOpenBrackets(text) || WouldReplaceCloseBrackets(text);
}

// A translation as the build writes it: stray brackets (and colons) escaped.
// A view of `stored` when nothing changes, else of `scratch`.
std::string_view EscapedTranslation(std::string_view stored, bool escapeColons, std::string& scratch) {
  if (!(escapeColons ? ContainsAny(stored, "<>:") : ContainsAny(stored, "<>"))) return stored;
  const bool colons = escapeColons && stored.find(':') != std::string_view::npos;
  if (!colons && !NeedsBracketEscaping(stored)) return stored;
  scratch.assign(stored);
  bool changed = EscapeStrayBrackets(scratch);
  if (escapeColons) changed = ReplaceAll(scratch, ':', "<3A>") || changed;
  return changed ? std::string_view(scratch) : stored;
}

bool CheckMainKeyword(std::string_view keyword, AError* error) {
  if (keyword.empty()) return messages::Report(error, messages::kMissingMainKeyword);
  if (keyword.size() > kMaxKeywordBytes) {
    return messages::Report(error, messages::kMainKeywordTooLong, {AQVString(keyword)});
  }
  if (!IsKeywordText(keyword)) {
    return messages::Report(error, messages::kMainKeywordInvalid, {AQVString(keyword)});
  }
  return true;
}

bool CheckOptionKeyword(std::string_view keyword, AError* error) {
  if (keyword.empty()) return true;
  if (keyword.size() > kMaxKeywordBytes) {
    return messages::Report(error, messages::kOptionKeywordTooLong, {AQVString(keyword)});
  }
  if (!IsKeywordText(keyword)) {
    return messages::Report(error, messages::kOptionKeywordInvalid, {AQVString(keyword)});
  }
  return true;
}

bool CheckTranslation(std::string_view translation, bool isOptionTranslation, AError* error) {
  if (translation.size() > kMaxTranslationBytes) {
    return messages::Report(error, messages::kTranslationTooLong, {AQVString(translation)});
  }
  // Both rules take every byte from the blank up, but for the colon of an
  // option translation; only text with a control character needs the table.
  const bool plain = isOptionTranslation ? !ContainsAny(translation, ":", 32) : !ContainsAny(translation, "", 32);
  if (!plain && !(isOptionTranslation ? OptionTranslationRule() : ValueTranslationRule()).Accepts(translation)) {
    return messages::Report(error, messages::kTranslationInvalid, {AQVString(translation)});
  }
  return true;
}

bool CheckValue(std::string_view value, PPDValueType type, AError* error) {
  bool valid = true;
  switch (type) {
    case kPPDInvocationValue:
    case kPPDQuotedValue:
      // Every byte from the blank up but the double quote passes.
      valid = !ContainsAny(value, "\"", 32) || QuotedValueRule().Accepts(value);
      break;
    case kPPDSymbolValue:
      valid = SymbolValueRule().Accepts(value);
      break;
    case kPPDStringValue:
      if (!value.empty() && (value[0] == *kRKPPDCaret || value[0] == *kRKPPDDoubleQuote)) {
        return messages::Report(error, messages::kStringValueBadStart,
                                {AQVString(value), AQVString(value.substr(0, 1))});
      }
      valid = StringValueRule().Accepts(value);
      break;
    default:
      valid = OtherValueRule().Accepts(value);
      break;
  }
  return valid || messages::Report(error, messages::kValueInvalid, {AQVString(value)});
}

// Checks 1 to 8 of a statement, in order; the translations as written.
// The checks that follow those of the two keywords.
bool CheckRest(std::string_view optionKeyword, std::string_view optionTranslation, std::string_view value,
               PPDValueType type, std::string_view valueTranslation, AError* error) {
  return CheckTranslation(optionTranslation, true, error) && CheckValue(value, type, error) &&
         CheckTranslation(valueTranslation, false, error) &&
         (optionTranslation.empty() || !optionKeyword.empty() ||
          messages::Report(error, messages::kOptionKeywordAbsent, {AQVString(optionTranslation)})) &&
         (valueTranslation.empty() || !value.empty() ||
          messages::Report(error, messages::kValueEmptyForTranslation, {AQVString(valueTranslation)})) &&
         (type != kPPDSymbolValue || valueTranslation.empty() ||
          messages::Report(error, messages::kSymbolValueTranslation,
                           {AQVString(value), AQVString(valueTranslation)}));
}

bool CheckParts(std::string_view mainKeyword, std::string_view optionKeyword,
                std::string_view optionTranslation, std::string_view value, PPDValueType type,
                std::string_view valueTranslation, AError* error) {
  return CheckMainKeyword(mainKeyword, error) && CheckOptionKeyword(optionKeyword, error) &&
         CheckRest(optionKeyword, optionTranslation, value, type, valueTranslation, error);
}

// Check 9: no line of the representation has 256 bytes or more.
bool CheckLines(std::string_view text, AError* error) {
  std::size_t lineStart = 0;
  for (;;) {
    const std::size_t lineEnd = text.find('\n', lineStart);
    const std::size_t length = (lineEnd == std::string_view::npos ? text.size() : lineEnd) - lineStart;
    if (length >= kLineLimitBytes) return messages::Report(error, messages::kLineTooLong, {AQVString(text)});
    if (lineEnd == std::string_view::npos) return true;
    lineStart = lineEnd + 1;
  }
}

// Builds the representation at the end of `out` (which holds `base` bytes of
// other text before it); the translations come escaped.
void AppendBody(std::string& out, std::string_view mainKeyword, std::string_view optionKeyword,
                std::string_view optionTranslation, std::string_view value, PPDValueType type,
                std::string_view valueTranslation) {
  const bool quoted = type == kPPDInvocationValue || type == kPPDQuotedValue;
  // The written copy of the value; only made when something is escaped.
  std::string escaped;
  std::string_view body = value;
  if (quoted) {
    if (type == kPPDQuotedValue && NeedsBracketEscaping(value)) {
      escaped = value;
      EscapeStrayBrackets(escaped);
      body = escaped;
    }
    if (body.find(*kRKPPDDoubleQuote) != std::string_view::npos) {
      if (escaped.empty()) escaped = value;
      ReplaceAll(escaped, *kRKPPDDoubleQuote, "<22>");
      body = escaped;
    }
  }
  const std::size_t headLength = (mainKeyword.empty() ? 0 : 1 + mainKeyword.size()) +
                                 (optionKeyword.empty() ? 0 : 1 + optionKeyword.size()) +
                                 (optionTranslation.empty() ? 0 : 1 + optionTranslation.size()) + 2;
  const bool hadLineBreak = quoted && HasLineBreak(body);
  // The opening quote is part of the line when the wrap is decided.
  const bool wraps = quoted && !hadLineBreak && body.size() + 1 + headLength + 1 >= kLineLimitBytes;

  const std::size_t base = out.size();
  std::size_t length = headLength + (valueTranslation.empty() ? 0 : 1 + valueTranslation.size());
  if (!wraps) {
    if (quoted) {
      length += body.size() + 2 + (hadLineBreak ? 5 : 0);
    } else if (!value.empty()) {
      length += value.size() + (type == kPPDSymbolValue ? 1 : 0);
    }
  }
  out.resize(base + (wraps ? headLength + 1 : length));
  char* cursor = out.data() + base;
  const auto put = [&cursor](std::string_view text) {
    // An empty view may have no storage at all, and memcpy wants a real pointer.
    if (text.empty()) return;
    std::memcpy(cursor, text.data(), text.size());
    cursor += text.size();
  };
  const auto mark = [&cursor](char c) { *cursor++ = c; };
  if (!mainKeyword.empty()) {
    mark(*kRKPPDAsterisk);
    put(mainKeyword);
  }
  if (!optionKeyword.empty()) {
    mark(*kRKPPDSpace);
    put(optionKeyword);
  }
  if (!optionTranslation.empty()) {
    mark(*kRKPPDSlash);
    put(optionTranslation);
  }
  mark(*kRKPPDColon);
  mark(*kRKPPDSpace);

  if (wraps) {
    mark(*kRKPPDDoubleQuote);
    // Split at every blank and TAB (two in a row give an empty piece) and
    // join again within the line budget.
    const std::string text = std::string(body) + *kRKPPDDoubleQuote;
    std::size_t running = out.size() - base;
    bool wrapped = false;
    std::size_t start = 0;
    for (std::size_t i = 0; i <= text.size(); ++i) {
      if (i < text.size() && text[i] != ' ' && text[i] != '\t') continue;
      const std::string_view piece = std::string_view(text).substr(start, i - start);
      if (start == 0) {
        running += piece.size();
      } else if (running + 1 + piece.size() < kLineLimitBytes - 1) {
        out += ' ';
        running += 1 + piece.size();
      } else {
        out += '\n';
        running = piece.size();
        wrapped = true;
      }
      out += piece;
      start = i + 1;
    }
    if (wrapped) {
      out += *kRKPPDNewLine;
      out += *kRKPPDAsterisk;
      out += kRKPPDEndKeyword;
    }
    if (!valueTranslation.empty()) {
      out += *kRKPPDSlash;
      out += valueTranslation;
    }
    return;
  }

  if (quoted) {
    mark(*kRKPPDDoubleQuote);
    put(body);
    mark(*kRKPPDDoubleQuote);
    if (hadLineBreak) {
      mark(*kRKPPDNewLine);
      mark(*kRKPPDAsterisk);
      put(kRKPPDEndKeyword);
    }
  } else if (!value.empty()) {
    if (type == kPPDSymbolValue) mark(*kRKPPDCaret);
    put(value);
  }
  if (!valueTranslation.empty()) {
    mark(*kRKPPDSlash);
    put(valueTranslation);
  }
}

}  // namespace

namespace {

// Append's work; `keywordsChecked` when both keywords are known to pass
// their checks.
bool AppendStatement(std::string& out, std::string_view mainKeyword, std::string_view optionKeyword,
                     std::string_view optionTranslation, std::string_view value, PPDValueType valueType,
                     std::string_view valueTranslation, bool keywordsChecked, AError* error) {
  std::string optionScratch;
  std::string valueScratch;
  const std::string_view option =
      optionTranslation.empty() ? optionTranslation : EscapedTranslation(optionTranslation, true, optionScratch);
  const std::string_view valueText =
      valueTranslation.empty() ? valueTranslation : EscapedTranslation(valueTranslation, false, valueScratch);
  if (!(keywordsChecked ? CheckRest(optionKeyword, option, value, valueType, valueText, error)
                        : CheckParts(mainKeyword, optionKeyword, option, value, valueType, valueText, error))) {
    return false;
  }
  const std::size_t base = out.size();
  AppendBody(out, mainKeyword, optionKeyword, option, value, valueType, valueText);
  // A text shorter than the limit cannot hold a line that breaks it.
  if (out.size() - base < kLineLimitBytes || CheckLines(std::string_view(out).substr(base), error)) return true;
  out.resize(base);
  return false;
}

// Nearly every translation line is plain: a short text that no escaping
// changes and no check stops at. Such a line is written here in one go,
// as AppendStatement would write it; anything else is left to that.
// `middle` is ".KEYWORD OPTION/" with a non-empty option keyword.
bool AppendPlainTranslationLine(std::string& out, std::string_view language, std::string_view middle,
                                std::string_view text) {
  if (text.empty() || text.size() > kMaxTranslationBytes || ContainsAny(text, "<>:", 32)) return false;
  // "\n*LANGUAGE.KEYWORD OPTION/TEXT: \"\"", whose line (without the line
  // end) must stay below the limit: it fits a buffer of the limit's size.
  const std::size_t line = 1 + language.size() + middle.size() + text.size() + 4;
  if (line >= kLineLimitBytes) return false;
  char buffer[kLineLimitBytes];
  char* cursor = buffer;
  const auto put = [&cursor](std::string_view part) {
    std::memcpy(cursor, part.data(), part.size());
    cursor += part.size();
  };
  *cursor++ = *kRKPPDNewLine;
  *cursor++ = *kRKPPDAsterisk;
  put(language);
  put(middle);
  put(text);
  *cursor++ = *kRKPPDColon;
  *cursor++ = *kRKPPDSpace;
  *cursor++ = *kRKPPDDoubleQuote;
  *cursor++ = *kRKPPDDoubleQuote;
  out.append(buffer, static_cast<std::size_t>(cursor - buffer));
  return true;
}

}  // namespace

bool APPDStatement::Append(std::string& out, std::string_view mainKeyword,
                           std::string_view optionKeyword, std::string_view optionTranslation,
                           std::string_view value, PPDValueType valueType,
                           std::string_view valueTranslation, AError* error) {
  return AppendStatement(out, mainKeyword, optionKeyword, optionTranslation, value, valueType, valueTranslation,
                         false, error);
}

bool APPDStatement::AppendTranslationLines(std::string& out, std::string_view keyword,
                                           std::string_view optionKeyword,
                                           const std::vector<AQVString>& languages,
                                           const std::vector<AQVString>& texts, AError* error) {
  // The keyword rule takes each byte on its own and accepts the dot, so
  // LANGUAGE.KEYWORD passes when both parts do and it is short enough; the
  // option keyword is the same on every line. A line that may fail takes
  // the whole check, and so the same error.
  const bool shared = !keyword.empty() && IsKeywordText(keyword) && CheckOptionKeyword(optionKeyword, nullptr);
  // The part of a plain line that every language shares.
  std::string middle;
  if (shared && !optionKeyword.empty()) {
    middle.reserve(keyword.size() + optionKeyword.size() + 3);
    middle += '.';
    middle += keyword;
    middle += *kRKPPDSpace;
    middle += optionKeyword;
    middle += *kRKPPDSlash;
  }
  std::string fullKeyword;
  for (std::size_t i = 0; i < languages.size() && i < texts.size(); ++i) {
    const std::string& prefix = languages[i].UTF8();
    const bool checked =
        shared && prefix.size() + 1 + keyword.size() <= kMaxKeywordBytes && IsKeywordText(prefix);
    if (checked && !middle.empty() && AppendPlainTranslationLine(out, prefix, middle, texts[i].UTF8())) continue;
    fullKeyword.assign(prefix);
    fullKeyword += '.';
    fullKeyword += keyword;
    out += kRKPPDNewLine;
    if (!AppendStatement(out, fullKeyword, optionKeyword, texts[i].UTF8(), std::string_view(), kPPDQuotedValue,
                         std::string_view(), checked, error)) {
      out.pop_back();
      return false;
    }
  }
  return true;
}

APPDStatement::APPDStatement(const AQVString& mainKeyword, const AQVString& optionKeyword,
                             const AQVString& optionTranslation, const AQVString& value,
                             PPDValueType valueType, const AQVString& valueTranslation)
    : mainKeyword_(mainKeyword),
      optionKeyword_(optionKeyword),
      optionTranslation_(optionTranslation),
      value_(value),
      valueType_(valueType),
      valueTranslation_(valueTranslation) {}

void APPDStatement::SetMainKeyword(const AQVString& keyword) {
  mainKeyword_ = keyword;
  representation_ = AQVString();
}

void APPDStatement::SetOptionKeyword(const AQVString& keyword) {
  optionKeyword_ = keyword;
  representation_ = AQVString();
}

void APPDStatement::SetOptionTranslation(const AQVString& translation) {
  optionTranslation_ = translation;
  representation_ = AQVString();
}

void APPDStatement::SetValue(const AQVString& value) {
  value_ = value;
  representation_ = AQVString();
}

void APPDStatement::SetValueType(PPDValueType type) {
  valueType_ = type;
  representation_ = AQVString();
}

void APPDStatement::SetValueTranslation(const AQVString& translation) {
  valueTranslation_ = translation;
  representation_ = AQVString();
}

AQVString APPDStatement::GetStringRepresentation(AError* error) const {
  BuildStringRepresentationIfNeeded();
  if (!IsValid(error)) return AQVString();
  return representation_;
}

bool APPDStatement::IsValid(AError* error) const {
  return CheckParts(mainKeyword_.UTF8(), optionKeyword_.UTF8(), optionTranslation_.UTF8(), value_.UTF8(),
                    valueType_, valueTranslation_.UTF8(), error) &&
         IsValidLineLength(error);
}

void APPDStatement::BuildStringRepresentationIfNeeded() const {
  if (!representation_.IsEmpty()) return;
  if (!optionTranslation_.IsEmpty()) EscapeStoredTranslation(optionTranslation_, true);
  if (!valueTranslation_.IsEmpty()) EscapeStoredTranslation(valueTranslation_, false);
  std::string out;
  out.reserve(mainKeyword_.ByteLength() + optionKeyword_.ByteLength() +
              optionTranslation_.ByteLength() + value_.ByteLength() + valueTranslation_.ByteLength() + 16);
  AppendBody(out, mainKeyword_.UTF8(), optionKeyword_.UTF8(), optionTranslation_.UTF8(), value_.UTF8(),
             valueType_, valueTranslation_.UTF8());
  representation_ = AQVString(std::move(out));
}

bool APPDStatement::IsValidMainKeyword(AError* error) const {
  return CheckMainKeyword(mainKeyword_.UTF8(), error);
}

bool APPDStatement::IsValidOptionKeyword(AError* error) const {
  return CheckOptionKeyword(optionKeyword_.UTF8(), error);
}

bool APPDStatement::IsValidTranslationString(bool isOptionTranslation, AError* error) const {
  return CheckTranslation(isOptionTranslation ? optionTranslation_.UTF8() : valueTranslation_.UTF8(),
                          isOptionTranslation, error);
}

bool APPDStatement::IsValidValue(AError* error) const {
  return CheckValue(value_.UTF8(), valueType_, error);
}

bool APPDStatement::IsValidLineLength(AError* error) const {
  BuildStringRepresentationIfNeeded();
  return CheckLines(representation_.UTF8(), error);
}

AQVString APPDStatement::CommentLines(const AQVString& comment, AError* error) {
  if (comment.IsEmpty()) return AQVString();
  const std::string_view text = comment.UTF8();
  std::string out;
  out.reserve(text.size() + 16);
  std::size_t lineStart = 0;
  for (;;) {
    const std::size_t lineEnd = text.find('\n', lineStart);
    const std::string_view line = text.substr(
        lineStart, lineEnd == std::string_view::npos ? std::string_view::npos : lineEnd - lineStart);
    const AQVString trimmed = AQVString(line).TrimWhitespace();
    // UTF-16 units never outnumber UTF-8 bytes, so short lines skip the count.
    if (trimmed.ByteLength() >= kCommentLineLimit && trimmed.Length() >= kCommentLineLimit) {
      messages::Report(error, messages::kCommentLineTooLong);
      return AQVString();
    }
    if (!out.empty()) out += *kRKPPDNewLine;
    out += kRKPPDCommentPrefix;
    out += trimmed.UTF8();
    if (lineEnd == std::string_view::npos) break;
    lineStart = lineEnd + 1;
  }
  return AQVString(std::move(out));
}

bool APPDStatement::IsValidCharacters(const AQVString& text, unsigned lowest, unsigned highest,
                                      std::string_view invalid) {
  return CharacterRule(lowest, highest, invalid).Accepts(text.UTF8());
}

bool APPDStatement::IsPlainMainTranslation(const AQVString& text) {
  return PlainMainTranslationRule().Accepts(text.UTF8());
}

void APPDStatement::FindAndReplaceAngleOpenBrackets(AQVString& text) {
  std::string bytes = text.UTF8();
  if (EscapeBrackets(bytes, true)) text = AQVString(std::move(bytes));
}

void APPDStatement::FindAndReplaceAngleCloseBrackets(AQVString& text) {
  std::string bytes = text.UTF8();
  if (EscapeBrackets(bytes, false)) text = AQVString(std::move(bytes));
}

bool APPDStatement::IsValidPPDTag(const AQVString& text) {
  if (IsASCII(text.UTF8())) return IsTagView(std::string_view(text.UTF8()));
  const std::u16string units = text.UTF16();
  return IsTagView(std::u16string_view(units));
}

std::size_t APPDStatement::FindTagStart(const std::u16string& text, std::size_t position) {
  return TagStart(text, position);
}

std::size_t APPDStatement::FindTagEnd(const std::u16string& text, std::size_t position) {
  return TagEnd(text, position);
}

void APPDStatement::DivideString(const AQVString& text, const AQVString& separators,
                                 std::vector<AQVString>& pieces) {
  pieces.clear();
  const std::string_view bytes = text.UTF8();
  // Separators are ASCII, so they never match inside a multibyte character.
  std::uint64_t separatorBits[2] = {0, 0};
  for (const char c : separators.UTF8()) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 128) separatorBits[byte >> 6] |= std::uint64_t{1} << (byte & 63);
  }
  std::size_t start = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    if (byte < 128 && ((separatorBits[byte >> 6] >> (byte & 63)) & 1) != 0) {
      pieces.emplace_back(bytes.substr(start, i - start));
      start = i + 1;
    }
  }
  pieces.emplace_back(bytes.substr(start));
}

}  // namespace ppdforge
