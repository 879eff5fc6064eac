#include "core/AError.h"

namespace com_qv_print_driver_core_cpp_util_v1 {

bool SetError(AError* error, long code, const AQVString& message) {
  if (error != nullptr) {
    error->domain = kRKPPDGenerationErrorDomain;
    error->code = code;
    error->message = message;
  }
  return false;
}

}  // namespace com_qv_print_driver_core_cpp_util_v1
