#pragma once
// Replaces a file in one step, so that readers see either the old content or
// the new one, and a failure leaves no file behind and the old one intact.

#include <filesystem>
#include <string>
#include <string_view>

namespace ppdforge {

class AAtomicFileWriter {
 public:
  // Writes `bytes` to a temporary file in the directory of `path`, flushes
  // it to disk and renames it to `path`. A new file gets the permissions
  // that the umask allows, a replaced one keeps its own. Returns false with
  // a one-line reason in *problem (when non-null); the temporary file is
  // removed then.
  static bool Write(const std::filesystem::path& path, std::string_view bytes,
                    std::string* problem);
};

}  // namespace ppdforge
