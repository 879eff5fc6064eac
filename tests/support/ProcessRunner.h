#pragma once
// Runs a program without a shell and collects its exit status and outputs.

#include <string>
#include <vector>

namespace ppdforge::testing {

struct ProcessResult {
  int exitCode = -1;  // -1 when the program could not start or did not exit normally
  std::string out;
  std::string err;
};

class ProcessRunner {
 public:
  // Runs `program` (looked up in PATH when it has no slash) with
  // `arguments`, standard input from /dev/null.
  static ProcessResult Run(const std::string& program, const std::vector<std::string>& arguments);
  // Runs the ppdforge program that this build made.
  static ProcessResult RunTool(const std::vector<std::string>& arguments);
  // Whether `program` is found in PATH.
  static bool IsInstalled(const std::string& program);
};

}  // namespace ppdforge::testing
