#pragma once
// A shared library opened on first use and kept until the process ends:
// libcups, libplist and ICU serve only some runs, and loading them at
// start-up would cost more than a whole generation.

#include <string>

namespace com_qv_print_driver_core_cpp_util_v1 {

class ASharedLibrary {
 public:
  // The file name to load: the environment variable `variable` when it is
  // set and not empty (the tests name a missing library so), else `name`.
  static std::string NameFrom(const char* variable, const char* name);

  // Opens the file `name` (searched as dlopen does). False when it cannot be
  // opened, with "<what> (<name>) cannot be loaded: <reason>" in `problem`,
  // followed by "; install the package <package>" when `package` is not empty.
  bool Open(const std::string& what, const std::string& name, const std::string& package,
            std::string& problem);

  // Sets `function` to the address of `symbol` in the opened library or its
  // dependencies. False when it is missing; the first missing name goes to
  // `problem` when that is still empty.
  template <class Function>
  bool Resolve(const char* symbol, Function& function, std::string& problem) const {
    function = reinterpret_cast<Function>(Address(symbol));
    if (function == nullptr && problem.empty()) problem = MissingFunction(symbol);
    return function != nullptr;
  }

  // Closes the library again (after a failed resolution); its functions
  // must not be called afterwards.
  void Close();

 private:
  void* Address(const char* symbol) const;
  std::string MissingFunction(const char* symbol) const;

  void* handle_ = nullptr;
  std::string name_;
};

}  // namespace com_qv_print_driver_core_cpp_util_v1

namespace ppdforge {
using com_qv_print_driver_core_cpp_util_v1::ASharedLibrary;
}
