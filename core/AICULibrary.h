#pragma once
// ICU's common library (libicuuc), loaded on first use. Locale names outside
// the legacy table and legacy PPD encodings need it; a generation in the
// common languages does not, and loading it at start-up (with the C++
// runtime it brings along) would cost more than the whole generation.
//
// The library keeps calling ICU's C functions as usual: AICULibrary.cpp
// defines the ICU functions that the library uses (hidden, so that neither
// ICU nor a program sees them) and each forwards to the loaded libicuuc.
// Using a further ICU function means adding its forwarder there; the link
// names the missing one. Without ICU every forwarder fails with
// U_MISSING_RESOURCE_ERROR (a close does nothing), which the callers treat
// as "no answer". A program that links ICU itself (the static tool) builds
// this file with PPDFORGE_STATIC_PROGRAM, and the calls go straight to ICU.

#include <string>

namespace com_qv_print_driver_core_cpp_util_v1 {

class AICULibrary {
 public:
  // Whether libicuuc is loaded, loading it on the first call (thread-safe);
  // false with the reason in *problem (when non-null) when it cannot be.
  // Always true where ICU is linked in.
  static bool Load(std::string* problem = nullptr);

  // The file that is loaded: "libicuuc.so.N" of the ICU headers' version N.
  static std::string LibraryName();
};

}  // namespace com_qv_print_driver_core_cpp_util_v1

namespace ppdforge {
using com_qv_print_driver_core_cpp_util_v1::AICULibrary;
}
