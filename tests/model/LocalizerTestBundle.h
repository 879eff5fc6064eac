#pragma once
// A bundle directory made for one test and removed afterwards.

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <unistd.h>

namespace ppdforge::testing {

class LocalizerTestBundle {
 public:
  LocalizerTestBundle() {
    static std::atomic<int> counter{0};
    path_ = std::filesystem::temp_directory_path() /
            ("ppdforge-localizer-" + std::to_string(::getpid()) + "-" +
             std::to_string(counter.fetch_add(1)));
    std::filesystem::remove_all(path_);
    std::filesystem::create_directories(path_);
  }
  ~LocalizerTestBundle() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  LocalizerTestBundle(const LocalizerTestBundle&) = delete;
  LocalizerTestBundle& operator=(const LocalizerTestBundle&) = delete;

  const std::filesystem::path& Path() const { return path_; }
  std::string PathString() const { return path_.string(); }

  // Writes `bytes` to the file at `relative` inside the bundle.
  void Write(const std::filesystem::path& relative, std::string_view bytes) const {
    const std::filesystem::path file = path_ / relative;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream out(file, std::ios::binary);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    ASSERT_TRUE(out.good()) << file;
  }

  // A classic-form table at Resources/LOCALIZATION.lproj/Localizable.strings.
  void WriteTable(std::string_view localization, std::string_view body) const {
    Write(std::filesystem::path("Resources") / (std::string(localization) + ".lproj") /
              "Localizable.strings",
          body);
  }

 private:
  std::filesystem::path path_;
};

}  // namespace ppdforge::testing
