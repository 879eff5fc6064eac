#include "support/TemporaryDirectory.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <system_error>

namespace ppdforge::testing {

namespace fs = std::filesystem;

namespace {

// Gives the owner every permission again, depth first, so that the tree can be removed.
void Unlock(const fs::path& path) {
  std::error_code ignored;
  fs::permissions(path, fs::perms::owner_all, fs::perm_options::add, ignored);
  if (!fs::is_directory(fs::symlink_status(path, ignored))) return;
  for (const auto& entry : fs::directory_iterator(path, ignored)) Unlock(entry.path());
}

}  // namespace

TemporaryDirectory::TemporaryDirectory() {
  std::string pattern = (fs::temp_directory_path() / "ppdforge-test-XXXXXX").string();
  if (::mkdtemp(pattern.data()) != nullptr) path_ = pattern;
}

TemporaryDirectory::~TemporaryDirectory() {
  if (path_.empty()) return;
  Unlock(path_);
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

std::string TemporaryDirectory::File(const std::string& name) const { return (path_ / name).string(); }

std::string TemporaryDirectory::Write(const std::string& name, const std::string& bytes) const {
  const fs::path path = path_ / name;
  std::error_code ignored;
  fs::create_directories(path.parent_path(), ignored);
  std::ofstream(path, std::ios::binary) << bytes;
  return path.string();
}

std::vector<std::string> TemporaryDirectory::Entries(const std::string& name) const {
  std::vector<std::string> names;
  std::error_code ignored;
  for (const auto& entry : fs::directory_iterator(path_ / name, ignored)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string ReadFile(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream bytes;
  bytes << in.rdbuf();
  return bytes.str();
}

}  // namespace ppdforge::testing
