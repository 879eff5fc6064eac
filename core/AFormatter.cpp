#include "core/AFormatter.h"

#include <fmt/printf.h>

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

namespace com_qv_print_driver_core_cpp_util_v1 {

namespace {

// Widths and precisions come from description files; a huge one would only
// make a huge line, so it is refused.
constexpr long kMaxWidthOrPrecision = 4096;

enum class Kind { kString, kInteger, kCharacter, kReal };

struct Conversion {
  std::string flags;
  long width = -1;
  long precision = -1;
  std::string length;
  char type = 0;
  Kind kind = Kind::kString;
};

const char* ArgumentTypeName(const AFormatter::Argument& argument) {
  switch (argument.index()) {
    case 0: return "a string";
    case 1: return "an integer";
    default: return "a real number";
  }
}

std::string Quoted(std::string_view conversion) {
  std::string text = "conversion \"";
  text.append(conversion);
  text += '"';
  return text;
}

std::string CountOfArguments(std::size_t count) {
  return std::to_string(count) + (count == 1 ? " argument was passed" : " arguments were passed");
}

std::size_t CharacterLength(unsigned char lead) {
  return lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

// Pads `text` (of `units` UTF-16 units) to the width, on the left unless "-".
void AppendPadded(std::string_view text, std::size_t units, const Conversion& conversion, std::string& out) {
  const bool leftAligned = conversion.flags.find('-') != std::string::npos;
  const std::size_t width = conversion.width < 0 ? 0 : static_cast<std::size_t>(conversion.width);
  const std::size_t padding = width > units ? width - units : 0;
  if (!leftAligned) out.append(padding, ' ');
  out.append(text);
  if (leftAligned) out.append(padding, ' ');
}

class FormatRun {
 public:
  FormatRun(const std::string& format, const std::vector<AFormatter::Argument>& arguments, bool allowCString)
      : format_(format), arguments_(arguments), allowCString_(allowCString) {}

  bool Run(std::string& out, std::string& problem);

 private:
  bool ParseConversion(std::size_t& i, Conversion& conversion, std::size_t& argumentIndex, std::string& problem);
  bool Produce(std::string_view written, const Conversion& conversion, const AFormatter::Argument& argument,
               std::string& out, std::string& problem) const;
  static bool ReadNumber(const std::string& text, std::size_t& i, long& value);

  const std::string& format_;
  const std::vector<AFormatter::Argument>& arguments_;
  const bool allowCString_;
  std::size_t nextSequential_ = 0;
  bool usedSequential_ = false;
  bool usedPositional_ = false;
};

bool FormatRun::ReadNumber(const std::string& text, std::size_t& i, long& value) {
  value = 0;
  bool tooLarge = false;
  while (i < text.size() && text[i] >= '0' && text[i] <= '9') {
    if (value <= kMaxWidthOrPrecision) value = value * 10 + (text[i] - '0');
    if (value > kMaxWidthOrPrecision) tooLarge = true;
    ++i;
  }
  return !tooLarge;
}

bool FormatRun::Run(std::string& out, std::string& problem) {
  std::size_t literalStart = 0;
  std::size_t i = 0;
  while (true) {
    const std::size_t percent = format_.find('%', i);
    out.append(format_, literalStart, percent == std::string::npos ? std::string::npos : percent - literalStart);
    if (percent == std::string::npos) return true;
    if (percent + 1 < format_.size() && format_[percent + 1] == '%') {
      out += '%';
      i = literalStart = percent + 2;
      continue;
    }
    i = percent + 1;
    Conversion conversion;
    std::size_t argumentIndex = 0;
    if (!ParseConversion(i, conversion, argumentIndex, problem)) return false;
    const std::string_view written = std::string_view(format_).substr(percent, i - percent);
    if (argumentIndex >= arguments_.size()) {
      problem = Quoted(written) + " needs argument " + std::to_string(argumentIndex + 1) + ", but " +
                CountOfArguments(arguments_.size());
      return false;
    }
    if (!Produce(written, conversion, arguments_[argumentIndex], out, problem)) return false;
    literalStart = i;
  }
}

// Reads one conversion after its "%"; `i` ends after the conversion character.
bool FormatRun::ParseConversion(std::size_t& i, Conversion& conversion, std::size_t& argumentIndex,
                                std::string& problem) {
  const std::size_t start = i - 1;
  auto writtenSoFar = [&](std::size_t end) {
    return std::string_view(format_).substr(start, end - start);
  };

  // A positional index is digits (not starting with 0, which is a flag) and "$".
  bool positional = false;
  if (i < format_.size() && format_[i] >= '1' && format_[i] <= '9') {
    std::size_t j = i;
    while (j < format_.size() && format_[j] >= '0' && format_[j] <= '9') ++j;
    if (j < format_.size() && format_[j] == '$') {
      std::size_t index = 0;
      for (std::size_t k = i; k < j; ++k) {
        index = index * 10 + static_cast<std::size_t>(format_[k] - '0');
        if (index > 999999) index = 999999;
      }
      argumentIndex = index - 1;
      positional = true;
      i = j + 1;
    }
  }

  while (i < format_.size() && std::strchr("-+ #0", format_[i]) != nullptr && format_[i] != '\0') {
    conversion.flags += format_[i++];
  }
  if (i < format_.size() && format_[i] == '*') {
    problem = Quoted(writtenSoFar(i + 1)) + " uses \"*\" for a width or precision, which is not allowed";
    return false;
  }
  if (i < format_.size() && format_[i] >= '0' && format_[i] <= '9' &&
      !ReadNumber(format_, i, conversion.width)) {
    problem = Quoted(writtenSoFar(i)) + " has a width above " + std::to_string(kMaxWidthOrPrecision);
    return false;
  }
  if (i < format_.size() && format_[i] == '.') {
    ++i;
    if (i < format_.size() && format_[i] == '*') {
      problem = Quoted(writtenSoFar(i + 1)) + " uses \"*\" for a width or precision, which is not allowed";
      return false;
    }
    if (!ReadNumber(format_, i, conversion.precision)) {
      problem = Quoted(writtenSoFar(i)) + " has a precision above " + std::to_string(kMaxWidthOrPrecision);
      return false;
    }
  }
  while (i < format_.size() && std::strchr("hlqztjL", format_[i]) != nullptr && format_[i] != '\0' &&
         conversion.length.size() < 2) {
    conversion.length += format_[i++];
  }
  if (i >= format_.size()) {
    problem = Quoted(writtenSoFar(i)) + " is incomplete at the end of the format";
    return false;
  }

  const char type = format_[i];
  const std::size_t typeLength = CharacterLength(static_cast<unsigned char>(type));
  i = std::min(format_.size(), i + typeLength);
  const std::string_view written = writtenSoFar(i);
  conversion.type = type;
  switch (type) {
    case '@':
      conversion.kind = Kind::kString;
      break;
    case 's':
      if (!allowCString_) {
        problem = Quoted(written) + " is not allowed (a string is written with \"%@\")";
        return false;
      }
      conversion.kind = Kind::kString;
      break;
    case 'd': case 'i': case 'u': case 'x': case 'X': case 'o':
      conversion.kind = Kind::kInteger;
      break;
    case 'c':
      conversion.kind = Kind::kCharacter;
      break;
    case 'f': case 'F': case 'e': case 'E': case 'g': case 'G': case 'a': case 'A':
      conversion.kind = Kind::kReal;
      break;
    case 'n': case 'p':
      problem = Quoted(written) + " is not allowed";
      return false;
    default:
      problem = "unknown " + Quoted(written);
      return false;
  }

  const std::string& length = conversion.length;
  bool lengthFits = true;
  switch (conversion.kind) {
    case Kind::kString:
      lengthFits = length.empty();
      break;
    case Kind::kInteger:
    case Kind::kCharacter:
      lengthFits = length.empty() || length == "h" || length == "hh" || length == "l" || length == "ll" ||
                   length == "q" || length == "z" || length == "t" || length == "j";
      break;
    case Kind::kReal:
      lengthFits = length.empty() || length == "L" || length == "l";
      break;
  }
  if (!lengthFits) {
    problem = Quoted(written) + " has a length modifier that does not fit its conversion";
    return false;
  }
  if ((conversion.kind == Kind::kString || conversion.kind == Kind::kCharacter) &&
      conversion.flags.find_first_not_of('-') != std::string::npos) {
    problem = Quoted(written) + " has a flag that does not fit its conversion";
    return false;
  }
  if (conversion.kind == Kind::kCharacter && conversion.precision >= 0) {
    problem = Quoted(written) + " has a precision, which does not fit its conversion";
    return false;
  }

  if (positional) {
    usedPositional_ = true;
  } else {
    usedSequential_ = true;
    argumentIndex = nextSequential_++;
  }
  if (usedPositional_ && usedSequential_) {
    problem = Quoted(written) + " mixes numbered and unnumbered arguments in one format";
    return false;
  }
  return true;
}

bool FormatRun::Produce(std::string_view written, const Conversion& conversion,
                        const AFormatter::Argument& argument, std::string& out, std::string& problem) const {
  switch (conversion.kind) {
    case Kind::kString: {
      const AQVString* text = std::get_if<AQVString>(&argument);
      if (text == nullptr) {
        problem = Quoted(written) + " needs a string argument, not " + ArgumentTypeName(argument);
        return false;
      }
      if (conversion.precision < 0 && conversion.width < 0) {
        out += text->UTF8();
        return true;
      }
      const AQVString shown = conversion.precision >= 0
                                  ? text->GetSubString(0, static_cast<std::size_t>(conversion.precision))
                                  : *text;
      AppendPadded(shown.UTF8(), shown.Length(), conversion, out);
      return true;
    }
    case Kind::kCharacter: {
      const long long* code = std::get_if<long long>(&argument);
      if (code == nullptr) {
        problem = Quoted(written) + " needs an integer argument, not " + ArgumentTypeName(argument);
        return false;
      }
      if (*code <= 0 || *code > 0x10FFFF || (*code >= 0xD800 && *code <= 0xDFFF)) {
        problem = Quoted(written) + " needs a character code, not " + std::to_string(*code);
        return false;
      }
      std::string character;
      AppendUTF8CodePoint(static_cast<char32_t>(*code), character);
      AppendPadded(character, *code >= 0x10000 ? 2 : 1, conversion, out);
      return true;
    }
    case Kind::kInteger:
    case Kind::kReal:
      break;
  }

  std::string spec = "%" + conversion.flags;
  if (conversion.width >= 0) spec += std::to_string(conversion.width);
  if (conversion.precision >= 0) spec += "." + std::to_string(conversion.precision);
  try {
    if (conversion.kind == Kind::kInteger) {
      const long long* value = std::get_if<long long>(&argument);
      if (value == nullptr) {
        problem = Quoted(written) + " needs an integer argument, not " + ArgumentTypeName(argument);
        return false;
      }
      spec += conversion.length == "q" ? "ll" : conversion.length;
      spec += conversion.type;
      out += fmt::sprintf(spec, *value);
    } else {
      double value;
      if (const double* real = std::get_if<double>(&argument)) {
        value = *real;
      } else if (const long long* integer = std::get_if<long long>(&argument)) {
        value = static_cast<double>(*integer);
      } else {
        problem = Quoted(written) + " needs a number argument, not " + ArgumentTypeName(argument);
        return false;
      }
      spec += conversion.type;
      out += fmt::sprintf(spec, value);
    }
  } catch (const std::exception&) {
    problem = Quoted(written) + " cannot be formatted";
    return false;
  }
  return true;
}

}  // namespace

bool AFormatter::Format(const AQVString& format, const std::vector<Argument>& arguments, AQVString& out,
                        AQVString* problem, bool allowCString) {
  // Most choice codes are plain PostScript without a conversion.
  if (format.UTF8().find('%') == std::string::npos) {
    out = format;
    return true;
  }
  std::string text;
  std::string reason;
  bool formatted = false;
  try {
    text.reserve(format.ByteLength() + 16 * arguments.size());
    formatted = FormatRun(format.UTF8(), arguments, allowCString).Run(text, reason);
  } catch (const std::exception&) {
    reason = "the format cannot be formatted";
  }
  if (!formatted) {
    if (problem != nullptr) *problem = AQVString(std::move(reason));
    return false;
  }
  out = AQVString(std::move(text));
  return true;
}

AQVString AFormatter::FormatTrusted(const AQVString& format, const std::vector<Argument>& arguments) {
  AQVString out;
  if (!Format(format, arguments, out, nullptr, true)) return format;
  return out;
}

void AFormatter::AppendTwoDecimals(std::string& out, double value) {
  // Sizes are nearly always whole, half or quarter points: then the value
  // times 100 is an exact integer and its digits are the exact answer,
  // without the general (and much slower) rounding conversion.
  const double quarters = value * 4;
  if (std::fabs(value) < 1e12 && quarters == std::floor(quarters)) {
    const long long hundredths = std::llabs(static_cast<long long>(quarters) * 25);
    if (std::signbit(value)) out += '-';
    char digits[24];
    const auto whole = std::to_chars(digits, digits + sizeof(digits), hundredths / 100);
    out.append(digits, whole.ptr);
    out += '.';
    out += static_cast<char>('0' + hundredths % 100 / 10);
    out += static_cast<char>('0' + hundredths % 10);
    return;
  }
  // The longest "%.2f" of a double has 309 digits before the point.
  char buffer[400];
  const auto written = std::to_chars(buffer, buffer + sizeof(buffer), value, std::chars_format::fixed, 2);
  if (written.ec == std::errc()) {
    out.append(buffer, written.ptr);
  } else {
    out += fmt::sprintf("%.2f", value);
  }
}

}  // namespace com_qv_print_driver_core_cpp_util_v1
