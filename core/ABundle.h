#pragma once
// A bundle is a directory; its resources folder is "Contents/Resources" if
// present, else "Resources" if present, else the directory itself; its
// localizations are the NAME.lproj folders of the resources folder.

#include <filesystem>
#include <optional>
#include <vector>

#include "core/AQVString.h"

namespace com_qv_print_driver_core_cpp_util_v1 {

class ABundle {
 public:
  // The bundle at `path`; nothing when the path is not a readable directory.
  static std::optional<ABundle> Open(const std::filesystem::path& path);

  const std::filesystem::path& GetPath() const { return path_; }
  const std::filesystem::path& GetResourcesPath() const { return resources_; }
  // The localization names (the NAME of each NAME.lproj folder), sorted.
  std::vector<AQVString> GetLocalizationNames() const;
  // RESOURCES/LOCALIZATION.lproj/NAME.TYPE; the file may not exist.
  std::filesystem::path GetResourceForLocalization(const AQVString& name, const AQVString& type,
                                                   const AQVString& localizationName) const;

 private:
  std::filesystem::path path_;
  std::filesystem::path resources_;
};

}  // namespace com_qv_print_driver_core_cpp_util_v1

namespace ppdforge {
using com_qv_print_driver_core_cpp_util_v1::ABundle;
}
