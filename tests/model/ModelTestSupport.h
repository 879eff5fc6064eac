#pragma once
// Documents and string-table bundles shared by the model tests.

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <string>

#include "core/ASharedObject.h"
#include "core/RKPPDMessages.h"
#include "model/IPPD.h"
#include "model/IPPDLocalizer.h"

namespace ppdforge::testing {

// A bundle directory made for one test and removed afterwards.
class TestBundle {
 public:
  TestBundle() {
    static std::atomic<int> counter{0};
    path_ = std::filesystem::temp_directory_path() /
            ("ppdforge-model-" + std::to_string(::getpid()) + "-" + std::to_string(counter++));
    std::filesystem::create_directories(path_);
  }
  ~TestBundle() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TestBundle(const TestBundle&) = delete;
  TestBundle& operator=(const TestBundle&) = delete;

  AQVString Path() const { return AQVString(path_.string()); }
  // Writes `bytes` to the file at `relative` inside the bundle.
  void Write(const std::string& relative, const std::string& bytes) const {
    const std::filesystem::path file = path_ / relative;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << bytes;
  }
  // A table at Resources/LOCALIZATION.lproj/Localizable.strings.
  void WriteTable(const std::string& localization, const std::string& body) const {
    Write("Resources/" + localization + ".lproj/Localizable.strings", body);
  }

 private:
  std::filesystem::path path_;
};

// An owned reference to a borrowed `object`, to watch it after its holder
// lets it go.
template <typename T>
AScopedRef<T> Hold(T* object) {
  object->Retain();
  return AScopedRef<T>(object);
}

// The code 4 error with `message`, or no error when it is empty.
inline AError Code4(const std::string& message) {
  return message.empty() ? AError() : AError{kRKPPDGenerationErrorDomain, 4, message};
}

// A localizer (owned reference) that has read the tables of `bundle`.
inline IPPDLocalizer* MakeLocalizer(const TestBundle& bundle) {
  IPPDLocalizer* localizer = IPPDLocalizer::Create();
  localizer->LoadStrings(bundle.Path(), AQVString());
  return localizer;
}

// A document (owned reference) in English with the additional `languages`
// (no cupsLanguages line when empty) and `localizer`, if any.
inline IPPD* MakeDocument(const AQVString& languages, IPPDLocalizer* localizer) {
  IPPD* ppd = IPPD::Create();
  ppd->SetLocalizer(localizer);
  ppd->AddAttribute("LanguageVersion", "English", "", "", kPPDStringValue, "");
  if (!languages.IsEmpty()) ppd->AddAttribute("cupsLanguages", languages, "", "", kPPDQuotedValue, "");
  return ppd;
}
// The same with a localizer of its own that holds no tables.
inline IPPD* MakeDocument(const AQVString& languages) {
  AScopedRef<IPPDLocalizer> localizer(IPPDLocalizer::Create());
  return MakeDocument(languages, localizer.get());
}

}  // namespace ppdforge::testing
