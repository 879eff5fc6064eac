#include "core/ACupsLibrary.h"

#include <dlfcn.h>

#include <cstdlib>
#include <mutex>

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
#include <cups/ppd.h>
#pragma GCC diagnostic pop

namespace com_qv_print_driver_core_cpp_util_v1 {

namespace {

constexpr const char* kDefaultLibraryName = "libcups.so.2";
// libcups's private selector value that keeps the translations of every
// language (the one cupstestppd uses); the public ppdOpenFile keeps only
// those of the process locale.
constexpr int kLoadAllLocalizations = 3;

template <class Function>
bool Resolve(void* handle, const char* name, Function& function, std::string& problem) {
  function = reinterpret_cast<Function>(dlsym(handle, name));
  if (function != nullptr) return true;
  if (problem.empty()) problem = std::string("the function ") + name + " is missing in " + ACupsLibrary::LibraryName();
  return false;
}

}  // namespace

std::string ACupsLibrary::LibraryName() {
  const char* configured = std::getenv("PPDFORGE_LIBCUPS");
  return configured != nullptr && *configured != '\0' ? configured : kDefaultLibraryName;
}

const ACupsLibrary* ACupsLibrary::Get(std::string* problem) {
  static std::once_flag once;
  static ACupsLibrary* library = nullptr;
  static std::string failure;
  std::call_once(once, [] {
    const std::string name = LibraryName();
    void* handle = dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
      const char* reason = dlerror();
      failure = "libcups (" + name + ") cannot be loaded: " + (reason != nullptr ? reason : "unknown reason") +
                "; install the package libcups2";
      return;
    }
    auto* loaded = new ACupsLibrary();
    bool complete = Resolve(handle, "ppdOpenFile", loaded->openFile_, failure);
    complete = Resolve(handle, "ppdClose", loaded->close_, failure) && complete;
    complete = Resolve(handle, "ppdSetConformance", loaded->setConformance_, failure) && complete;
    complete = Resolve(handle, "ppdLastError", loaded->lastError_, failure) && complete;
    complete = Resolve(handle, "ppdErrorString", loaded->errorString_, failure) && complete;
    if (!complete) {
      delete loaded;
      dlclose(handle);
      return;
    }
    // Optional: older or other builds may not export it.
    loaded->openFileLocalized_ =
        reinterpret_cast<OpenFileLocalizedFunction>(dlsym(handle, "_ppdOpenFile"));
    // The handle stays open for the life of the process, as the functions do.
    library = loaded;
  });
  if (library == nullptr && problem != nullptr) *problem = failure;
  return library;
}

ppd_file_s* ACupsLibrary::OpenFile(const std::string& path, bool strict) const {
  // The conformance level is per thread in libcups; set it every time.
  setConformance_(strict ? PPD_CONFORM_STRICT : PPD_CONFORM_RELAXED);
  if (openFileLocalized_ != nullptr) return openFileLocalized_(path.c_str(), kLoadAllLocalizations);
  return openFile_(path.c_str());
}

void ACupsLibrary::Close(ppd_file_s* ppd) const {
  if (ppd != nullptr) close_(ppd);
}

std::string ACupsLibrary::LastError(int* line) const {
  int where = 0;
  const int status = lastError_(&where);
  if (line != nullptr) *line = where;
  const char* text = errorString_(status);
  return text != nullptr ? text : "unknown error";
}

}  // namespace com_qv_print_driver_core_cpp_util_v1
