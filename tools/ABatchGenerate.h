#pragma once
// `ppdforge generate A.plist B.plist ... -o DIRECTORY`: writes the PPD of
// every product into one directory, on all cores. Each product is generated
// exactly as a single `generate` would (same messages, same atomic write);
// the products share nothing but the library's read-only registry and its
// locked locale caches.
//
// Output names: the product file's name with its last extension replaced by
// ".ppd" ("examples/big20/alp9100.plist" gives "DIRECTORY/alp9100.ppd",
// "printer" gives "printer.ppd", "a.b.plist" gives "a.b.ppd").

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

namespace ppdforge {

class ABatchGenerate {
 public:
  // Generates one product into the file `output`, writing its messages to
  // `err`; returns the exit status of a single generation (0, 1 or 2).
  // Called from several threads at once.
  using GenerateOne = std::function<int(const std::string& product, const std::string& output,
                                        std::ostream& err)>;

  // The output file name of `product` (no directory), by the rule above.
  static std::string OutputNameFor(const std::string& product);

  // Whether `err` is the process's standard error and that is a terminal,
  // the only case in which a progress bar is drawn.
  static bool IsTerminal(const std::ostream& err);

  // Generates every product into `directory` (created when missing) with
  // one worker per core. Two products with the same output name are refused
  // before anything is generated (2). Messages are written to `err` after
  // the run, in the order of the products, each line naming its product.
  // With `progress`, a bar on `err` shows the products done so far and is
  // erased at the end. Returns 0 when every product succeeded, else the
  // highest status of a failed one (2 before 1).
  static int Run(const std::vector<std::string>& products, const std::string& directory,
                 const GenerateOne& generate, std::ostream& err, bool progress);
};

}  // namespace ppdforge
