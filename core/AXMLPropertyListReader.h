#pragma once
// A fast reader of the plain XML property lists that descriptions and string
// tables are written in: one pass over the text, straight into AValue, with
// no intermediate tree. It reads only what it can read exactly as libplist
// does and declines everything else (comments inside text, CDATA, numeric
// character references, dates, data, unusual numbers, invalid UTF-8, deep
// nesting, malformed text), so that APropertyList's libplist path decides
// those cases and reports their errors.

#include <string_view>

#include "core/AValue.h"

namespace com_qv_print_driver_core_cpp_util_v1 {

class AXMLPropertyListReader {
 public:
  // Reads the XML property list `text` (without a byte-order mark) into
  // `out`. False, with `out` untouched, when the text is not one this reader
  // takes on; that says nothing about whether it is a property list.
  static bool Read(std::string_view text, AValue& out);
};

}  // namespace com_qv_print_driver_core_cpp_util_v1

namespace ppdforge {
using com_qv_print_driver_core_cpp_util_v1::AXMLPropertyListReader;
}
