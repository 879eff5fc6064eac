#pragma once
// The one error type of the library: a domain, a code and a message.
// Every fallible operation takes a nullable `AError*`; the error is stored
// only when the pointer is non-null, a later error overwrites an earlier one,
// and a success never clears one.

#include "core/AQVString.h"

namespace com_qv_print_driver_core_cpp_util_v1 {

struct AError {
  AQVString domain;
  long code = 0;
  AQVString message;

  friend bool operator==(const AError&, const AError&) = default;
};

// The domain of every error this library makes.
inline constexpr const char* kRKPPDGenerationErrorDomain = "RKPPDGeneration";

// Stores {kRKPPDGenerationErrorDomain, code, message} in *error when error is
// non-null; does nothing otherwise. Always returns false, so that callers can
// write `return SetError(error, 1, text);`.
bool SetError(AError* error, long code, const AQVString& message);

}  // namespace com_qv_print_driver_core_cpp_util_v1

namespace ppdforge {
using com_qv_print_driver_core_cpp_util_v1::AError;
using com_qv_print_driver_core_cpp_util_v1::kRKPPDGenerationErrorDomain;
using com_qv_print_driver_core_cpp_util_v1::SetError;
}
