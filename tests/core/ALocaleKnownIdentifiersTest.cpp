// The identifiers that ALocale answers from its own table must be exactly
// those that ICU gives back unchanged.

#include <gtest/gtest.h>
#include <unicode/uloc.h>

#include <algorithm>
#include <string>

#include "core/AICULibrary.h"
#include "core/ALocale.h"

namespace ppdforge {
namespace {

TEST(ALocaleKnownIdentifiers, AreTheirOwnCanonicalFormInICU) {
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

TEST(ALocaleKnownIdentifiers, ICUIsLoadedOnDemand) {
  std::string problem;
  EXPECT_TRUE(AICULibrary::Load(&problem)) << problem;
  EXPECT_EQ(AICULibrary::LibraryName(), std::string("libicuuc.so.") + U_ICU_VERSION_SHORT);
  // An identifier outside the table still goes through ICU.
  EXPECT_EQ(ALocale::CanonicalLocaleIdentifier(AQVString("EN-gb")), AQVString("en_GB"));
}

}  // namespace
}  // namespace ppdforge
