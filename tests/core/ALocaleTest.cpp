#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "core/ALocale.h"

namespace ppdforge {
namespace {

TEST(ALocaleTest, CanonicalIdentifiers) {
  const std::pair<const char*, const char*> cases[] = {
      {"English", "en"}, {"French", "fr"},     {"German", "de"},        {"Japanese", "ja"},
      {"Norwegian", "nb"}, {"Hebrew", "he"},   {"Chinese", "zh"},       {"en-US", "en_US"},
      {"FR", "fr"},      {"zh_TW", "zh_TW"},   {"zh-Hans", "zh_Hans"},  {"pt_BR", "pt_BR"},
  };
  for (const auto& [text, expected] : cases) {
    const std::optional<AQVString> id = ALocale::CanonicalLocaleIdentifier(text);
    ASSERT_TRUE(id) << text;
    EXPECT_EQ(*id, expected) << text;
  }
  for (const char* text : {"", "en US", "@calendar=x", "Français"}) {
    EXPECT_FALSE(ALocale::CanonicalLocaleIdentifier(text)) << text;
  }
}

TEST(ALocaleTest, EnglishDisplayNames) {
  const std::pair<const char*, const char*> cases[] = {
      {"fr", "French"}, {"de", "German"}, {"ja", "Japanese"}, {"en", "English"}, {"pt_BR", "Portuguese (Brazil)"},
  };
  for (const auto& [id, expected] : cases) {
    const std::optional<AQVString> name = ALocale::EnglishDisplayName(id);
    ASSERT_TRUE(name) << id;
    EXPECT_EQ(*name, expected) << id;
  }
  for (const char* id : {"xx", "", "not a locale"}) EXPECT_FALSE(ALocale::EnglishDisplayName(id)) << id;
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
