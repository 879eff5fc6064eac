#include "core/ASharedLibrary.h"

#include <dlfcn.h>

#include <cstdlib>

namespace com_qv_print_driver_core_cpp_util_v1 {

std::string ASharedLibrary::NameFrom(const char* variable, const char* name) {
  const char* configured = std::getenv(variable);
  return configured != nullptr && *configured != '\0' ? configured : name;
}

bool ASharedLibrary::Open(const std::string& what, const std::string& name, const std::string& package,
                          std::string& problem) {
  name_ = name;
  handle_ = dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle_ != nullptr) return true;
  const char* reason = dlerror();
  problem = what + " (" + name + ") cannot be loaded: " + (reason != nullptr ? reason : "unknown reason");
  if (!package.empty()) problem += "; install the package " + package;
  return false;
}

void ASharedLibrary::Close() {
  if (handle_ != nullptr) dlclose(handle_);
  handle_ = nullptr;
}

void* ASharedLibrary::Address(const char* symbol) const {
  return handle_ == nullptr ? nullptr : dlsym(handle_, symbol);
}

std::string ASharedLibrary::MissingFunction(const char* symbol) const {
  return std::string("the function ") + symbol + " is missing in " + name_;
}

}  // namespace com_qv_print_driver_core_cpp_util_v1
