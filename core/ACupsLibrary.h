#pragma once
// libcups, loaded on first use: the reading side of the library needs a few
// of its PPD functions, and the generate path must not pay for loading it.

#include <string>

struct ppd_file_s;

namespace com_qv_print_driver_core_cpp_util_v1 {

class ACupsLibrary {
 public:
  using OpenFileFunction = ppd_file_s* (*)(const char* path);
  using OpenFileLocalizedFunction = ppd_file_s* (*)(const char* path, int localization);
  using CloseFunction = void (*)(ppd_file_s* ppd);
  using SetConformanceFunction = void (*)(int level);
  using LastErrorFunction = int (*)(int* line);
  using ErrorStringFunction = const char* (*)(int status);

  // The library, loaded and resolved once per process (thread-safe); null
  // when it cannot be loaded, with the reason in *problem (when non-null).
  // The result lives until the process ends.
  static const ACupsLibrary* Get(std::string* problem);

  // The file name that is loaded: the environment variable PPDFORGE_LIBCUPS
  // when set and not empty, else "libcups.so.2".
  static std::string LibraryName();

  // Opens a PPD file with every localization kept ("ll.Keyword" lines of all
  // languages) when libcups offers that, else as ppdOpenFile does. Relaxed
  // conformance unless `strict`. Null on failure: then LastError tells why.
  ppd_file_s* OpenFile(const std::string& path, bool strict) const;
  void Close(ppd_file_s* ppd) const;
  // libcups's text of the last error of this thread and its line number.
  std::string LastError(int* line) const;

 private:
  ACupsLibrary() = default;

  OpenFileFunction openFile_ = nullptr;
  OpenFileLocalizedFunction openFileLocalized_ = nullptr;
  CloseFunction close_ = nullptr;
  SetConformanceFunction setConformance_ = nullptr;
  LastErrorFunction lastError_ = nullptr;
  ErrorStringFunction errorString_ = nullptr;
};

}  // namespace com_qv_print_driver_core_cpp_util_v1

namespace ppdforge {
using com_qv_print_driver_core_cpp_util_v1::ACupsLibrary;
}
