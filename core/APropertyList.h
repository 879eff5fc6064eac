#pragma once
// Reading property lists (XML or binary, through libplist) into AValue.

#include <filesystem>
#include <string_view>

#include "core/AValue.h"

namespace com_qv_print_driver_core_cpp_util_v1 {

class APropertyList {
 public:
  // Parses XML or binary property-list data into `out`. Returns false with a
  // reason in *problem (when non-null) for data that is not a property list,
  // holds invalid UTF-8 or a lone UTF-16 surrogate in a string, a NUL
  // character in a string of a binary list, an integer outside the signed
  // 64-bit range or a UID, or nests deeper than 256 levels.
  static bool Parse(std::string_view data, AValue& out, AQVString* problem = nullptr);

  // Reads and parses the file at `path`; the reason names an unreadable file too.
  static bool ParseFile(const std::filesystem::path& path, AValue& out, AQVString* problem = nullptr);
};

// Reads a whole file into `out`; false when it cannot be opened or read
// (also for a directory).
bool ReadFileBytes(const std::filesystem::path& path, std::string& out);

}  // namespace com_qv_print_driver_core_cpp_util_v1

namespace ppdforge {
using com_qv_print_driver_core_cpp_util_v1::APropertyList;
using com_qv_print_driver_core_cpp_util_v1::ReadFileBytes;
}
