#include "core/ACupsLibrary.h"

#include <mutex>

#include "core/ASharedLibrary.h"

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

}  // namespace

std::string ACupsLibrary::LibraryName() { return ASharedLibrary::NameFrom("PPDFORGE_LIBCUPS", kDefaultLibraryName); }

const ACupsLibrary* ACupsLibrary::Get(std::string* problem) {
  static std::once_flag once;
  static ACupsLibrary* library = nullptr;
  static std::string failure;
  std::call_once(once, [] {
    ASharedLibrary shared;
    if (!shared.Open("libcups", LibraryName(), "libcups2", failure)) return;
    auto* loaded = new ACupsLibrary();
    bool complete = shared.Resolve("ppdOpenFile", loaded->openFile_, failure);
    complete = shared.Resolve("ppdClose", loaded->close_, failure) && complete;
    complete = shared.Resolve("ppdSetConformance", loaded->setConformance_, failure) && complete;
    complete = shared.Resolve("ppdLastError", loaded->lastError_, failure) && complete;
    complete = shared.Resolve("ppdErrorString", loaded->errorString_, failure) && complete;
    if (!complete) {
      delete loaded;
      shared.Close();
      return;
    }
    // Optional: older or other builds may not export it.
    std::string optional;
    shared.Resolve("_ppdOpenFile", loaded->openFileLocalized_, optional);
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
