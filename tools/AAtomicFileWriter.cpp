#include "tools/AAtomicFileWriter.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <vector>

namespace ppdforge {

namespace {

bool Fail(std::string* problem, const std::string& what, int errorNumber) {
  if (problem != nullptr) *problem = what + ": " + std::strerror(errorNumber);
  return false;
}

mode_t ModeForNewFile() {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return static_cast<mode_t>(0666 & ~mask);
}

}  // namespace

bool AAtomicFileWriter::Write(const std::filesystem::path& path, std::string_view bytes,
                              std::string* problem) {
  if (path.filename().empty()) return Fail(problem, path.string(), EISDIR);
  const std::filesystem::path directory =
      path.parent_path().empty() ? std::filesystem::path(".") : path.parent_path();

  mode_t mode = ModeForNewFile();
  struct stat existing {};
  bool replacing = false;
  if (::stat(path.c_str(), &existing) == 0) {
    if (S_ISDIR(existing.st_mode)) return Fail(problem, path.string(), EISDIR);
    mode = existing.st_mode & 07777;
    replacing = true;
  }

  const std::string pattern = (directory / ("." + path.filename().string() + "." + std::string(6, 'X'))).string();
  std::vector<char> name(pattern.begin(), pattern.end());
  name.push_back('\0');
  const int fd = ::mkstemp(name.data());
  if (fd < 0) return Fail(problem, "cannot create a temporary file in " + directory.string(), errno);
  const std::string temporary(name.data());

  auto abandon = [&](const std::string& what, int errorNumber) {
    ::close(fd);
    ::unlink(temporary.c_str());
    return Fail(problem, what, errorNumber);
  };

  std::size_t written = 0;
  while (written < bytes.size()) {
    const ssize_t n = ::write(fd, bytes.data() + written, bytes.size() - written);
    if (n < 0) {
      if (errno == EINTR) continue;
      return abandon("cannot write " + temporary, errno);
    }
    written += static_cast<std::size_t>(n);
  }
  if (::fchmod(fd, mode) != 0) return abandon("cannot set the permissions of " + temporary, errno);
  if (::close(fd) != 0) {
    const int errorNumber = errno;
    ::unlink(temporary.c_str());
    return Fail(problem, "cannot close " + temporary, errorNumber);
  }
  // A file that is replaced trades places with the new one, which is then
  // removed under its temporary name: readers see the same atomic switch as
  // with rename, but ext4 does not write the new data out on the spot (its
  // safeguard when a rename replaces a file), which would cost more than the
  // whole generation. Without that, as without an fsync, a system crash may
  // leave an empty file; the PPD is then simply made again.
  if (replacing &&
      ::renameat2(AT_FDCWD, temporary.c_str(), AT_FDCWD, path.c_str(), RENAME_EXCHANGE) == 0) {
    ::unlink(temporary.c_str());
    return true;
  }
  if (::rename(temporary.c_str(), path.c_str()) != 0) {
    const int errorNumber = errno;
    ::unlink(temporary.c_str());
    return Fail(problem, "cannot replace " + path.string(), errorNumber);
  }
  return true;
}

}  // namespace ppdforge
