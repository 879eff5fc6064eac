// ppdforge: writes the PPD file of a printer product from its product
// description. Each sub-command lives in its own class; main only parses.

#include <CLI/CLI.hpp>

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <string_view>
#include <vector>

#include "tools/ACheckCommand.h"
#include "tools/AConvertCommand.h"
#include "tools/AGenerateCommand.h"

namespace {

// Ends the process as soon as its output is out: releasing a large model, the
// worker pool and the libraries one by one costs more than a small
// generation. Builds with leak checkers take the ordinary way out.
int Finish(int status) {
#if defined(PPDFORGE_TUNED_PROCESS)
  std::cout.flush();
  std::cerr.flush();
  std::fflush(nullptr);
  std::_Exit(status);
#else
  return status;
#endif
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App program{
      "ppdforge writes the PPD (PostScript Printer Description) file of a printer product "
      "from its product description.",
      "ppdforge"};
  program.set_version_flag("--version", std::string("ppdforge ") + PPDFORGE_VERSION);
  program.require_subcommand(1);

  // A run names its command first: only that one is set up (setting up all
  // three costs a good part of a small generation). Anything else, such as
  // --help, gets them all.
  const std::string_view first = argc > 1 ? argv[1] : "";
  const bool all = first != "generate" && first != "check" && first != "convert";
  std::vector<std::unique_ptr<ppdforge::ICommand>> commands;
  if (all || first == "generate") commands.push_back(std::make_unique<ppdforge::AGenerateCommand>(program));
  if (all || first == "check") commands.push_back(std::make_unique<ppdforge::ACheckCommand>(program));
  if (all || first == "convert") commands.push_back(std::make_unique<ppdforge::AConvertCommand>(program));

  try {
    program.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    if (e.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) return program.exit(e);
    std::cerr << "ppdforge: " << e.what() << "\n"
              << "Run 'ppdforge --help' or 'ppdforge generate --help' for more information.\n";
    return 2;
  }
  for (const auto& command : commands) {
    if (command->WasSelected()) return Finish(command->Run(std::cout, std::cerr));
  }
  return 2;
}
