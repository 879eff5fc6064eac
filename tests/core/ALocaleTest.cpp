#include <gtest/gtest.h>
#include <unicode/uloc.h>

#include <algorithm>
#include <string>
#include <thread>
#include <vector>

#include "core/AICULibrary.h"
#include "core/ALocale.h"

namespace ppdforge {
namespace {

TEST(ALocaleTest, CanonicalIdentifiersAndEnglishNames) {
  const std::pair<const char*, const char*> identifiers[] = {
      {"English", "en"}, {"French", "fr"},     {"German", "de"},        {"Japanese", "ja"},
      {"Norwegian", "nb"}, {"Hebrew", "he"},   {"Chinese", "zh"},       {"en-US", "en_US"},
      {"FR", "fr"},      {"zh_TW", "zh_TW"},   {"zh-Hans", "zh_Hans"},  {"pt_BR", "pt_BR"},
      {"EN-gb", "en_GB"},  // outside the known table: answered by ICU
  };
  for (const auto& [text, expected] : identifiers) {
    EXPECT_EQ(ALocale::CanonicalLocaleIdentifier(text), std::optional<AQVString>(expected)) << text;
  }
  for (const char* text : {"", "en US", "@calendar=x", "Français"}) {
    EXPECT_FALSE(ALocale::CanonicalLocaleIdentifier(text)) << text;
  }
  const std::pair<const char*, const char*> names[] = {
      {"fr", "French"}, {"de", "German"}, {"ja", "Japanese"}, {"en", "English"}, {"pt_BR", "Portuguese (Brazil)"},
  };
  for (const auto& [id, expected] : names) {
    EXPECT_EQ(ALocale::EnglishDisplayName(id), std::optional<AQVString>(expected)) << id;
  }
  for (const char* id : {"xx", "", "not a locale"}) EXPECT_FALSE(ALocale::EnglishDisplayName(id)) << id;
}

// The identifiers answered from ALocale's own table must be exactly those
// that ICU gives back unchanged.
TEST(ALocaleTest, KnownIdentifiersAreTheirOwnCanonicalFormInICU) {
  std::string problem;
  ASSERT_TRUE(AICULibrary::Load(&problem)) << problem;
  EXPECT_EQ(AICULibrary::LibraryName(), std::string("libicuuc.so.") + U_ICU_VERSION_SHORT);
  const std::vector<std::string_view> identifiers = ALocale::KnownCanonicalIdentifiers();
  ASSERT_FALSE(identifiers.empty());
  for (const std::string_view identifier : identifiers) {
    const std::string text(identifier);
    char buffer[ULOC_FULLNAME_CAPACITY + 1] = {};
    UErrorCode status = U_ZERO_ERROR;
    const int32_t length = uloc_canonicalize(text.c_str(), buffer, ULOC_FULLNAME_CAPACITY, &status);
    ASSERT_TRUE(U_SUCCESS(status)) << text;
    std::string canonical(buffer, static_cast<std::size_t>(length));
    std::replace(canonical.begin(), canonical.end(), '-', '_');
    EXPECT_EQ(canonical, text);
    EXPECT_EQ(ALocale::CanonicalLocaleIdentifier(AQVString(text)), AQVString(text));
  }
}

TEST(ALocaleTest, AnswersFromSeveralThreads) {
  std::vector<std::thread> threads;
  std::vector<int> failures(4, 0);
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([t, &failures] {
      for (int i = 0; i < 200; ++i) {
        if (ALocale::CanonicalLocaleIdentifier("de-AT") != std::optional<AQVString>("de_AT")) ++failures[t];
        if (ALocale::EnglishDisplayName("sv") != std::optional<AQVString>("Swedish")) ++failures[t];
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(failures, std::vector<int>(4, 0));
}

}  // namespace
}  // namespace ppdforge
