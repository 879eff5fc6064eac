#include "support/ProcessRunner.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "support/TemporaryDirectory.h"

extern char** environ;

namespace ppdforge::testing {

ProcessResult ProcessRunner::Run(const std::string& program, const std::vector<std::string>& arguments) {
  ProcessResult result;
  // Files rather than pipes: nothing can block on a full pipe.
  const TemporaryDirectory scratch;
  const std::string outPath = scratch.File("out");
  const std::string errPath = scratch.File("err");
  std::vector<std::string> words{program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 1, outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  posix_spawn_file_actions_addopen(&actions, 2, errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  pid_t pid = 0;
  const int spawned = posix_spawnp(&pid, program.c_str(), &actions, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (spawned != 0) {
    result.err = "cannot start " + program;
    return result;
  }
  int status = 0;
  while (::waitpid(pid, &status, 0) < 0) {
    if (errno != EINTR) return result;
  }
  if (WIFEXITED(status)) result.exitCode = WEXITSTATUS(status);
  result.out = ReadFile(outPath);
  result.err = ReadFile(errPath);
  return result;
}

ProcessResult ProcessRunner::RunTool(const std::vector<std::string>& arguments) {
  return Run(PPDFORGE_TOOL_PATH, arguments);
}

bool ProcessRunner::IsInstalled(const std::string& program) {
  const char* path = std::getenv("PATH");
  std::stringstream directories(path != nullptr ? path : "");
  std::string directory;
  while (std::getline(directories, directory, ':')) {
    if (!directory.empty() && ::access((directory + "/" + program).c_str(), X_OK) == 0) return true;
  }
  return false;
}

}  // namespace ppdforge::testing
