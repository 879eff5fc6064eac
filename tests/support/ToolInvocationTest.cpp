#include "support/ToolInvocationTest.h"

#include <regex>
#include <sstream>
#include <vector>

namespace ppdforge::testing {

void PrintTo(const ToolInvocation& invocation, std::ostream* out) { *out << "ppdforge " << invocation.arguments; }

std::string ToolInvocationTest::Expand(const std::string& text) const {
  return std::regex_replace(text, std::regex("@"), directory_.Path().string() + "/");
}

ProcessResult ToolInvocationTest::Run(const std::string& arguments) const {
  std::vector<std::string> words;
  std::istringstream stream(Expand(arguments));
  for (std::string word; stream >> word;) words.push_back(word);
  return ProcessRunner::RunTool(words);
}

void ToolInvocationTest::RunAndCompare() const {
  const ToolInvocation& expected = GetParam();
  const auto compare = [this](const std::string& actual, const std::string& wanted) {
    if (!wanted.empty() && wanted.back() == '*') {
      EXPECT_EQ(actual.substr(0, Expand(wanted).size() - 1), Expand(wanted.substr(0, wanted.size() - 1)));
    } else {
      EXPECT_EQ(actual, Expand(wanted));
    }
  };
  const std::vector<std::string> before = directory_.Entries();
  const ProcessResult result = Run(expected.arguments);
  EXPECT_EQ(result.exitCode, expected.exitCode);
  compare(result.err, expected.err);
  compare(result.out, expected.out);
  if (result.exitCode == 0) return;
  EXPECT_EQ(directory_.Entries(), before);
  if (expected.arguments.find("-o @out.ppd") == std::string::npos) return;
  directory_.Write("out.ppd", "previous\n");
  EXPECT_EQ(Run(expected.arguments).exitCode, expected.exitCode);
  EXPECT_EQ(ReadFile(directory_.File("out.ppd")), "previous\n");
}

}  // namespace ppdforge::testing
