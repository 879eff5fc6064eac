#pragma once
// libplist, loaded on first use: product descriptions and string tables in
// XML are read by this library's own reader, and only binary property lists
// (and XML that reader declines) need libplist.

#include <plist/plist.h>

#include <string>

namespace com_qv_print_driver_core_cpp_util_v1 {

class APlistLibrary {
 public:
  // The library, loaded and resolved once per process (thread-safe); null
  // when it cannot be loaded, with the reason in *problem (when non-null).
  // The result lives until the process ends.
  static const APlistLibrary* Get(std::string* problem);

  // The file name that is loaded: the environment variable PPDFORGE_LIBPLIST
  // when set and not empty, else "libplist-2.0.so.3".
  static std::string LibraryName();

  // libplist's functions of the same names.
  decltype(&::plist_from_bin) fromBinary = nullptr;
  decltype(&::plist_from_xml) fromXML = nullptr;
  decltype(&::plist_to_xml) toXML = nullptr;
  decltype(&::plist_free) freeNode = nullptr;
  decltype(&::plist_get_node_type) nodeType = nullptr;
  decltype(&::plist_get_bool_val) boolValue = nullptr;
  decltype(&::plist_get_uint_val) unsignedValue = nullptr;
  decltype(&::plist_get_real_val) realValue = nullptr;
  decltype(&::plist_get_date_val) dateValue = nullptr;
  decltype(&::plist_get_string_ptr) stringBytes = nullptr;
  decltype(&::plist_get_data_ptr) dataBytes = nullptr;
  decltype(&::plist_array_new_iter) newArrayIterator = nullptr;
  decltype(&::plist_array_next_item) nextArrayItem = nullptr;
  decltype(&::plist_dict_new_iter) newDictionaryIterator = nullptr;
  decltype(&::plist_dict_next_item) nextDictionaryItem = nullptr;

  // Releases memory that libplist handed over (XML text, keys, iterators)
  // with the allocator libplist uses, which in a static program (built with
  // PPDFORGE_STATIC_PROGRAM) is not the program's own.
  void Release(void* memory) const { release_(memory); }

 private:
  APlistLibrary() = default;

  void (*release_)(void*) = nullptr;
};

}  // namespace com_qv_print_driver_core_cpp_util_v1

namespace ppdforge {
using com_qv_print_driver_core_cpp_util_v1::APlistLibrary;
}
