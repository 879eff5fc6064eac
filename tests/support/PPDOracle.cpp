#include "support/PPDOracle.h"

// ppdOpenFile and friends are deprecated in favour of IPP, but they are the
// reader the generated files are written for.
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

namespace ppdforge::testing {

namespace {

void Close(ppd_file_t* ppd) { ppdClose(ppd); }

}  // namespace

PPDOracle::File PPDOracle::Open(const std::filesystem::path& path, bool strict, std::string* problem) {
  ppdSetConformance(strict ? PPD_CONFORM_STRICT : PPD_CONFORM_RELAXED);
  File ppd(ppdOpenFile(path.c_str()), Close);
  ppdSetConformance(PPD_CONFORM_RELAXED);
  if (!ppd && problem != nullptr) {
    int line = 0;
    const ppd_status_t status = ppdLastError(&line);
    *problem = std::string(ppdErrorString(status)) + " on line " + std::to_string(line);
  }
  return ppd;
}

ProcessResult PPDOracle::CupsTestPPD(const std::filesystem::path& path, const std::vector<std::string>& options) {
  std::vector<std::string> arguments = options;
  arguments.push_back(path.string());
  return ProcessRunner::Run("cupstestppd", arguments);
}

std::string PPDOracle::Rejections(const std::filesystem::path& path, const std::vector<std::string>& options) {
  std::string problem;
  if (!Open(path, true, &problem)) return "libcups: " + problem;
  if (!ProcessRunner::IsInstalled("cupstestppd")) return "cupstestppd is missing: install cups-client";
  std::vector<std::string> verbose{"-v"};
  verbose.insert(verbose.end(), options.begin(), options.end());
  const ProcessResult check = CupsTestPPD(path, verbose);
  if (check.exitCode == 0 && check.out.find("WARN") == std::string::npos) return "";
  return "cupstestppd: " + check.out + check.err;
}

}  // namespace ppdforge::testing
