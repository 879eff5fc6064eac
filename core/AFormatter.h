#pragma once
// printf-style formatting with "%@" for strings, safe against format strings
// that come from description files: every conversion is checked against the
// type of its argument and nothing is ever read that was not passed.
//
// Accepted conversions: "%@" (string), "%d" "%i" "%u" "%x" "%X" "%o" "%c"
// with the length modifiers h hh l ll q z t j (integer), "%f" "%F" "%e" "%E"
// "%g" "%G" "%a" "%A" with optional L (real; an integer argument is accepted
// and converted), "%%". Flags, width and precision as in printf ("*" is not
// accepted; at most 4096), and positional arguments "%1$@" (not mixed with
// sequential ones). "%s" is accepted only when the caller allows C strings
// (the library's own messages); "%n" and "%p" never. Width and precision of
// "%@" count UTF-16 units; "%c" takes a Unicode code point.

#include <initializer_list>
#include <variant>
#include <vector>

#include "core/AQVString.h"

namespace com_qv_print_driver_core_cpp_util_v1 {

class AFormatter {
 public:
  using Argument = std::variant<AQVString, long long, double>;

  // Formats `format` with `arguments` into `out`. Returns false, with `out`
  // untouched and a one-line reason in *problem (when non-null), when a
  // conversion is unknown or forbidden, does not fit the type of its argument,
  // or names an argument that was not passed. Extra arguments are ignored.
  static bool Format(const AQVString& format, const std::vector<Argument>& arguments,
                     AQVString& out, AQVString* problem = nullptr, bool allowCString = false);

  // For the library's own message formats, which are known to fit: formats,
  // and on a mismatch (a programming error) returns the format unformatted.
  static AQVString FormatTrusted(const AQVString& format, const std::vector<Argument>& arguments);

  // Appends `value` as printf's "%.2f" writes it in the C locale (sizes in
  // points, written for every media size of a product). Never fails.
  static void AppendTwoDecimals(std::string& out, double value);
};

}  // namespace com_qv_print_driver_core_cpp_util_v1

namespace ppdforge {
using com_qv_print_driver_core_cpp_util_v1::AFormatter;
}
