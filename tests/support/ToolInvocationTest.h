#pragma once
// Table tests of the ppdforge program: each row is one command line and
// the exit status, standard error and standard output it must give.

#include <gtest/gtest.h>

#include <string>

#include "support/ProcessRunner.h"
#include "support/TemporaryDirectory.h"

namespace ppdforge::testing {

struct ToolInvocation {
  std::string arguments;  // split at blanks; "@" stands for the test's directory
  int exitCode;
  std::string err;  // "@" as above; a final "*" compares the beginning only
  std::string out;  // the same
};
void PrintTo(const ToolInvocation& invocation, std::ostream* out);

// A fixture over a fresh directory, which a derived fixture fills in SetUp.
class ToolInvocationTest : public ::testing::TestWithParam<ToolInvocation> {
 protected:
  // `text` with every "@" replaced by the directory and a slash.
  std::string Expand(const std::string& text) const;
  ProcessResult Run(const std::string& arguments) const;
  // Runs GetParam() and compares its answers. A failing run must leave the
  // directory as it was, and an existing "-o @out.ppd" untouched.
  void RunAndCompare() const;

  TemporaryDirectory directory_;
};

}  // namespace ppdforge::testing
