#pragma once
// One sub-command of the ppdforge program. Each command adds its own
// sub-command and options to the program's parser when it is made; the
// program runs the one that the command line selected.

#include <iosfwd>

namespace ppdforge {

class ICommand {
 public:
  virtual ~ICommand() = default;
  // Whether the parsed command line names this command.
  virtual bool WasSelected() const = 0;
  // Runs the command after a successful parse; returns the exit status
  // (0 success, 1 failure of the library or of the output, 2 bad input).
  virtual int Run(std::ostream& out, std::ostream& err) = 0;
};

}  // namespace ppdforge
