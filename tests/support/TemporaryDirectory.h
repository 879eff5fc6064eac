#pragma once
// A fresh directory for one test, removed with everything in it at the end,
// also what a test made unreadable.

#include <filesystem>
#include <string>
#include <vector>

namespace ppdforge::testing {

class TemporaryDirectory {
 public:
  TemporaryDirectory();
  ~TemporaryDirectory();
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  const std::filesystem::path& Path() const { return path_; }
  // Path() / name as a string.
  std::string File(const std::string& name) const;
  // Writes `bytes` to Path() / name, making the parent directories; returns the path.
  std::string Write(const std::string& name, const std::string& bytes) const;
  // The names of the entries of Path() / name, sorted.
  std::vector<std::string> Entries(const std::string& name = "") const;

 private:
  std::filesystem::path path_;
};

// The whole content of a file ("" when it cannot be read).
std::string ReadFile(const std::filesystem::path& path);

}  // namespace ppdforge::testing
