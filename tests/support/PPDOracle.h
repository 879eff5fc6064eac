#pragma once
// What libcups and cupstestppd make of a PPD file: the independent readers
// that generated and converted text has to satisfy.

#include <cups/ppd.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "support/ProcessRunner.h"

namespace ppdforge::testing {

class PPDOracle {
 public:
  using File = std::unique_ptr<ppd_file_t, void (*)(ppd_file_t*)>;

  // Opens `path` with libcups in strict or relaxed conformance; null when
  // libcups refuses it, with "<error> on line <n>" in *problem when given.
  static File Open(const std::filesystem::path& path, bool strict, std::string* problem = nullptr);
  // Runs `cupstestppd options... path`.
  static ProcessResult CupsTestPPD(const std::filesystem::path& path, const std::vector<std::string>& options);
  // "" when libcups opens `path` strictly and `cupstestppd -v options...`
  // passes it without a warning; else what went wrong.
  static std::string Rejections(const std::filesystem::path& path, const std::vector<std::string>& options);
};

}  // namespace ppdforge::testing
