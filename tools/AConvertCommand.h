#pragma once
// `ppdforge convert [--strict] INPUT [-o OUTPUT]`: reads a PPD file (plain
// or gzip-compressed) through libcups into the document model and writes
// the normalised document.

#include <string>

#include "tools/ICommand.h"

namespace CLI {
class App;
}

namespace ppdforge {

class AConvertCommand final : public ICommand {
 public:
  // Adds the "convert" sub-command to `program`, which must outlive this object.
  explicit AConvertCommand(CLI::App& program);

  bool WasSelected() const override;
  // Reads the input (2 with the reason on `err` when it cannot be read or
  // libcups rejects it), writes the document (1 with the library's error
  // line when a statement breaks a rule) to the output, atomically, or to
  // `out` (1 when writing fails).
  int Run(std::ostream& out, std::ostream& err) override;

 private:
  CLI::App* command_ = nullptr;
  std::string input_;
  std::string output_;
  bool strict_ = false;
};

}  // namespace ppdforge
