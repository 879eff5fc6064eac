#pragma once
// One sub-command of the ppdforge program. Each command adds its own
// sub-command and options to the program's parser when it is made; the
// program runs the one that the command line selected.

#include <ostream>

#include "core/AError.h"

namespace ppdforge {

class ICommand {
 public:
  virtual ~ICommand() = default;
  // Whether the parsed command line names this command.
  virtual bool WasSelected() const = 0;
  // Runs the command after a successful parse; returns the exit status
  // (0 success, 1 failure of the library or of the output, 2 bad input).
  virtual int Run(std::ostream& out, std::ostream& err) = 0;

  // The program's name, which begins every message line.
  static constexpr const char* kProgram = "ppdforge";
  // Prints a library error as "ppdforge: DOMAIN error CODE: MESSAGE".
  static void PrintError(std::ostream& err, const AError& error) {
    err << kProgram << ": " << error.domain.UTF8() << " error " << error.code << ": " << error.message.UTF8()
        << "\n";
  }
};

}  // namespace ppdforge
