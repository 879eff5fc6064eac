#include "support/PPDOracle.h"

#include <cups/ppd.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <sstream>

extern char** environ;

namespace ppdforge::testing {

std::string PPDOracle::LoadResult::Problem() const {
  return loaded ? "" : error + " on line " + std::to_string(line);
}

PPDOracle::PPDOracle() {
  std::string pattern =
      (std::filesystem::temp_directory_path() / "ppdforge-oracle-XXXXXX").string();
  if (::mkdtemp(pattern.data()) != nullptr) directory_ = pattern;
}

PPDOracle::~PPDOracle() {
  if (directory_.empty()) return;
  std::error_code ignored;
  std::filesystem::remove_all(directory_, ignored);
}

std::filesystem::path PPDOracle::WriteFile(const std::filesystem::path& relativePath,
                                           const std::string& contents) const {
  const std::filesystem::path file = directory_ / relativePath;
  std::error_code ignored;
  std::filesystem::create_directories(file.parent_path(), ignored);
  std::ofstream(file, std::ios::binary) << contents;
  return file;
}

// ppdOpenFile and friends are deprecated in favour of IPP, but they are the
// reader the generated files are written for.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
PPDOracle::LoadResult PPDOracle::LoadFile(const std::filesystem::path& path) {
  LoadResult result;
  ppdSetConformance(PPD_CONFORM_STRICT);
  ppd_file_t* ppd = ppdOpenFile(path.c_str());
  if (ppd != nullptr) {
    ppdClose(ppd);
    result.loaded = true;
    return result;
  }
  const ppd_status_t status = ppdLastError(&result.line);
  result.error = ppdErrorString(status);
  return result;
}
#pragma GCC diagnostic pop

PPDOracle::LoadResult PPDOracle::LoadText(const std::string& text) const {
  return LoadFile(WriteFile("loaded.ppd", text));
}

PPDOracle::CheckResult PPDOracle::RunCupsTestPPD(const std::filesystem::path& path,
                                                 const std::vector<std::string>& options) {
  CheckResult result;
  std::vector<std::string> arguments{"cupstestppd"};
  arguments.insert(arguments.end(), options.begin(), options.end());
  arguments.push_back(path.string());
  std::vector<char*> argv;
  for (std::string& argument : arguments) argv.push_back(argument.data());
  argv.push_back(nullptr);

  int pipeEnds[2];
  if (::pipe(pipeEnds) != 0) return result;
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, pipeEnds[1], STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, pipeEnds[1], STDERR_FILENO);
  posix_spawn_file_actions_addclose(&actions, pipeEnds[0]);
  posix_spawn_file_actions_addclose(&actions, pipeEnds[1]);
  pid_t child = 0;
  const int spawned = ::posix_spawnp(&child, argv[0], &actions, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  ::close(pipeEnds[1]);

  char buffer[4096];
  for (;;) {
    const ssize_t count = ::read(pipeEnds[0], buffer, sizeof buffer);
    if (count > 0) {
      result.output.append(buffer, static_cast<std::size_t>(count));
    } else if (count == 0 || errno != EINTR) {
      break;
    }
  }
  ::close(pipeEnds[0]);
  if (spawned != 0) return result;

  int status = 0;
  while (::waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) return result;
  }
  result.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return result;
}

std::string PPDOracle::ReadFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

}  // namespace ppdforge::testing
