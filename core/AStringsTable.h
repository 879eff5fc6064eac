#pragma once
// Reading a ".strings" string table: a property list (XML or binary) whose
// root is a dictionary, or the classic text form `"key" = "value";` in UTF-8
// or UTF-16 with a byte-order mark, with /* */ and // comments and backslash
// escapes (\" \\ \n \t \r \U1234 \u1234 and octal).

#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "core/ADictionary.h"

namespace com_qv_print_driver_core_cpp_util_v1 {

class AStringsTable {
 public:
  // The table (string keys to string values); nothing when the data is
  // neither form. Entries whose value is not a string are dropped.
  static std::optional<ADictionary> Parse(std::string_view data);
  // The same table as its entries: in file order for the text form, where
  // a later entry of the same key replaces an earlier one, in key order for
  // a property list. False when the data is neither form.
  static bool ParseEntries(std::string_view data, std::vector<std::pair<AQVString, AQVString>>& entries);
};

}  // namespace com_qv_print_driver_core_cpp_util_v1

namespace ppdforge {
using com_qv_print_driver_core_cpp_util_v1::AStringsTable;
}
