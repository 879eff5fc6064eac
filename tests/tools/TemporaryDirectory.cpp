#include "tools/TemporaryDirectory.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <system_error>

namespace ppdforge::testing {

TemporaryDirectory::TemporaryDirectory() {
  std::string pattern = (std::filesystem::temp_directory_path() / "ppdforge-test-XXXXXX").string();
  if (::mkdtemp(pattern.data()) != nullptr) path_ = pattern;
}

TemporaryDirectory::~TemporaryDirectory() {
  std::error_code ignored;
  if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
}

std::string TemporaryDirectory::File(const std::string& name) const { return (path_ / name).string(); }

std::string TemporaryDirectory::Write(const std::string& name, const std::string& bytes) const {
  const std::string path = File(name);
  std::ofstream(path, std::ios::binary) << bytes;
  return path;
}

std::vector<std::string> TemporaryDirectory::Entries() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(path_)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream bytes;
  bytes << in.rdbuf();
  return bytes.str();
}

}  // namespace ppdforge::testing
