#pragma once
// What libcups and cupstestppd make of a PPD: the independent readers the
// generated text has to satisfy. Text to check is written into a scratch
// directory that lives as long as the oracle.

#include <filesystem>
#include <string>
#include <vector>

namespace ppdforge::testing {

class PPDOracle {
 public:
  struct LoadResult {
    bool loaded = false;
    std::string error;  // libcups' text for the failure, empty when loaded
    int line = 0;       // the line libcups blames, 0 when loaded
    // Empty when loaded, else "<error> on line <line>".
    std::string Problem() const;
  };
  struct CheckResult {
    int exitStatus = -1;  // -1 when cupstestppd could not run or did not exit normally
    std::string output;   // standard output and standard error, interleaved
  };

  // Makes a fresh scratch directory (an empty path when it cannot be made).
  PPDOracle();
  // Removes the scratch directory with everything in it.
  ~PPDOracle();
  PPDOracle(const PPDOracle&) = delete;
  PPDOracle& operator=(const PPDOracle&) = delete;

  const std::filesystem::path& Directory() const { return directory_; }
  // Writes `contents` to `relativePath` under Directory(), making the parent
  // directories; returns the full path.
  std::filesystem::path WriteFile(const std::filesystem::path& relativePath,
                                  const std::string& contents) const;

  // Opens `path` with libcups in strict conformance; never throws.
  static LoadResult LoadFile(const std::filesystem::path& path);
  // Writes `text` to a file of the scratch directory and loads it as LoadFile does.
  LoadResult LoadText(const std::string& text) const;
  // Runs `cupstestppd options... path` without a shell, standard input from /dev/null.
  static CheckResult RunCupsTestPPD(const std::filesystem::path& path,
                                    const std::vector<std::string>& options);
  // The whole content of a file, "" when it cannot be read.
  static std::string ReadFile(const std::filesystem::path& path);

 private:
  std::filesystem::path directory_;
};

}  // namespace ppdforge::testing
