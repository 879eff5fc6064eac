#pragma once
// Replaces a file in one step, so that readers see either the old content or
// the new one, and a failure leaves no file behind and the old one intact.

#include <filesystem>
#include <string>
#include <string_view>

namespace ppdforge {

class AAtomicFileWriter {
 public:
  // Writes `bytes` to a temporary file in the directory of `path` and
  // renames it to `path` (an existing file trades places with it and is
  // removed). The replacement is atomic for readers; the data is not forced
  // to disk (that would cost more than the whole generation, and a PPD can
  // always be made again). A new file gets the permissions that the umask
  // allows, a replaced one keeps its own. Returns false with a one-line
  // reason in *problem (when non-null); the temporary file is removed then.
  static bool Write(const std::filesystem::path& path, std::string_view bytes,
                    std::string* problem);
};

}  // namespace ppdforge
