#include "core/ABundle.h"

#include <algorithm>
#include <system_error>

namespace com_qv_print_driver_core_cpp_util_v1 {

namespace {

namespace fs = std::filesystem;

bool IsDirectory(const fs::path& path) {
  std::error_code error;
  return fs::is_directory(path, error) && !error;
}

}  // namespace

std::optional<ABundle> ABundle::Open(const std::filesystem::path& path) {
  if (path.empty() || !IsDirectory(path)) return std::nullopt;
  // A directory that cannot be listed is not readable.
  std::error_code error;
  fs::directory_iterator probe(path, error);
  if (error) return std::nullopt;

  ABundle bundle;
  bundle.path_ = path;
  if (IsDirectory(path / "Contents" / "Resources")) {
    bundle.resources_ = path / "Contents" / "Resources";
  } else if (IsDirectory(path / "Resources")) {
    bundle.resources_ = path / "Resources";
  } else {
    bundle.resources_ = path;
  }
  return bundle;
}

std::vector<AQVString> ABundle::GetLocalizationNames() const {
  static constexpr std::string_view kSuffix = ".lproj";
  std::vector<AQVString> names;
  std::error_code error;
  fs::directory_iterator entries(resources_, error);
  if (error) return names;
  for (fs::directory_iterator end; entries != end; entries.increment(error)) {
    if (error) break;
    const std::string fileName = entries->path().filename().string();
    if (fileName.size() <= kSuffix.size() || fileName.compare(fileName.size() - kSuffix.size(), kSuffix.size(), kSuffix) != 0) {
      continue;
    }
    std::error_code typeError;
    if (!entries->is_directory(typeError) || typeError) continue;
    std::optional<AQVString> name = AQVString::FromUTF8(std::string_view(fileName).substr(0, fileName.size() - kSuffix.size()));
    if (name) names.push_back(std::move(*name));
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::filesystem::path ABundle::GetResourceForLocalization(const AQVString& name, const AQVString& type,
                                                          const AQVString& localizationName) const {
  std::string fileName = name.UTF8();
  if (!type.IsEmpty()) fileName += "." + type.UTF8();
  return resources_ / (localizationName.UTF8() + ".lproj") / fileName;
}

}  // namespace com_qv_print_driver_core_cpp_util_v1
