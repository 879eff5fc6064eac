#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "core/ABundle.h"

namespace ppdforge {
namespace {

namespace fs = std::filesystem;

class ABundleTest : public ::testing::Test {
 protected:
  void SetUp() override {
    root_ = fs::temp_directory_path() / ("ppdforge-core-bundle-" + std::to_string(::getpid()));
    fs::remove_all(root_);
    fs::create_directories(root_);
  }
  void TearDown() override { fs::remove_all(root_); }

  static void Touch(const fs::path& path) {
    fs::create_directories(path.parent_path());
    std::ofstream(path) << "x";
  }

  fs::path root_;
};

TEST_F(ABundleTest, ResourcesFolderRules) {
  struct Case {
    const char* name;
    std::vector<const char*> folders;
    const char* resources;
  };
  const Case cases[] = {
      {"contents wins", {"Contents/Resources", "Resources"}, "Contents/Resources"},
      {"plain resources", {"Resources", "Contents"}, "Resources"},
      {"the directory itself", {"Contents"}, ""},
  };
  for (const Case& c : cases) {
    const fs::path bundlePath = root_ / c.name;
    for (const char* folder : c.folders) fs::create_directories(bundlePath / folder);
    const std::optional<ABundle> bundle = ABundle::Open(bundlePath);
    ASSERT_TRUE(bundle) << c.name;
    EXPECT_EQ(bundle->GetResourcesPath(), std::string(c.resources).empty() ? bundlePath : bundlePath / c.resources)
        << c.name;
  }
  EXPECT_FALSE(ABundle::Open(root_ / "missing"));
  Touch(root_ / "file");
  EXPECT_FALSE(ABundle::Open(root_ / "file"));
}

TEST_F(ABundleTest, LocalizationNamesAreSortedLprojFolders) {
  const fs::path resources = root_ / "Driver.bundle" / "Contents" / "Resources";
  for (const char* folder : {"fr.lproj", "English.lproj", "Chinese_Simplified.lproj", "de.lproj", "Images"}) {
    fs::create_directories(resources / folder);
  }
  Touch(resources / "ja.lproj");  // a file, not a localization
  Touch(resources / "fr.lproj" / "Localizable.strings");

  const std::optional<ABundle> bundle = ABundle::Open(root_ / "Driver.bundle");
  ASSERT_TRUE(bundle);
  EXPECT_EQ(bundle->GetLocalizationNames(),
            (std::vector<AQVString>{"Chinese_Simplified", "English", "de", "fr"}));
  const fs::path table = bundle->GetResourceForLocalization("Localizable", "strings", "fr");
  EXPECT_EQ(table, resources / "fr.lproj" / "Localizable.strings");
  EXPECT_TRUE(fs::exists(table));
  EXPECT_FALSE(fs::exists(bundle->GetResourceForLocalization("Localizable", "strings", "de")));
}

}  // namespace
}  // namespace ppdforge
