#include "core/APlistLibrary.h"

#include <cstdlib>
#include <mutex>

#include "core/ASharedLibrary.h"

namespace com_qv_print_driver_core_cpp_util_v1 {

namespace {

constexpr const char* kDefaultLibraryName = "libplist-2.0.so.3";

}  // namespace

std::string APlistLibrary::LibraryName() { return ASharedLibrary::NameFrom("PPDFORGE_LIBPLIST", kDefaultLibraryName); }

const APlistLibrary* APlistLibrary::Get(std::string* problem) {
  static std::once_flag once;
  static APlistLibrary* library = nullptr;
  static std::string failure;
  std::call_once(once, [] {
    ASharedLibrary shared;
    if (!shared.Open("libplist", LibraryName(), "libplist3", failure)) return;
    auto* loaded = new APlistLibrary();
    bool complete = shared.Resolve("plist_from_bin", loaded->fromBinary, failure);
    complete = shared.Resolve("plist_from_xml", loaded->fromXML, failure) && complete;
    complete = shared.Resolve("plist_to_xml", loaded->toXML, failure) && complete;
    complete = shared.Resolve("plist_free", loaded->freeNode, failure) && complete;
    complete = shared.Resolve("plist_get_node_type", loaded->nodeType, failure) && complete;
    complete = shared.Resolve("plist_get_bool_val", loaded->boolValue, failure) && complete;
    complete = shared.Resolve("plist_get_uint_val", loaded->unsignedValue, failure) && complete;
    complete = shared.Resolve("plist_get_real_val", loaded->realValue, failure) && complete;
    complete = shared.Resolve("plist_get_date_val", loaded->dateValue, failure) && complete;
    complete = shared.Resolve("plist_get_string_ptr", loaded->stringBytes, failure) && complete;
    complete = shared.Resolve("plist_get_data_ptr", loaded->dataBytes, failure) && complete;
    complete = shared.Resolve("plist_array_new_iter", loaded->newArrayIterator, failure) && complete;
    complete = shared.Resolve("plist_array_next_item", loaded->nextArrayItem, failure) && complete;
    complete = shared.Resolve("plist_dict_new_iter", loaded->newDictionaryIterator, failure) && complete;
    complete = shared.Resolve("plist_dict_next_item", loaded->nextDictionaryItem, failure) && complete;
#if defined(PPDFORGE_STATIC_PROGRAM)
    // In a static program libplist brings a C library (and heap) of its own.
    complete = shared.Resolve("free", loaded->release_, failure) && complete;
#else
    // libplist allocates as the program does (through a sanitizer, if any).
    loaded->release_ = [](void* memory) { std::free(memory); };
#endif
    if (!complete) {
      delete loaded;
      shared.Close();
      return;
    }
    library = loaded;
  });
  if (library == nullptr && problem != nullptr) *problem = failure;
  return library;
}

}  // namespace com_qv_print_driver_core_cpp_util_v1
