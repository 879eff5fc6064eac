#include <gtest/gtest.h>

#include <cstdio>

#include "core/AFormatter.h"

namespace ppdforge {
namespace {

using Args = std::vector<AFormatter::Argument>;

// A row either formats to `expected` or is refused with `problem`, leaving
// the output alone.
TEST(AFormatterTest, FormatsOrRefusesWithAReason) {
  struct Case {
    const char* format;
    Args arguments;
    const char* expected;  // null: refused
    const char* problem;
  };
  const Case cases[] = {
      {"Cannot add PPD group: %@", {AQVString("Général")}, "Cannot add PPD group: Général", ""},
      {"%@ %@: %@", {AQVString("a"), AQVString("b"), AQVString("c")}, "a b: c", ""},
      {"%d|%i|%5d|%-5d|%05d|%+d", {7LL, -7LL, 42LL, 42LL, 42LL, 3LL}, "7|-7|   42|42   |00042|+3", ""},
      {"%ld %lld %qd %zd %jd %td", {1LL, 2LL, 3LL, 4LL, 5LL, 6LL}, "1 2 3 4 5 6", ""},
      {"%d", {5000000000LL}, "5000000000", ""},
      {"%hhd %hd", {300LL, 70000LL}, "44 4464", ""},
      {"%x %X %#o %u", {255LL, 255LL, 8LL, 12LL}, "ff FF 010 12", ""},
      {"%.2f %f %e %g", {3.14159, 1.5, 1234.5, 0.0001}, "3.14 1.500000 1.234500e+03 0.0001", ""},
      {"%.1f %Lf %lf", {2LL, 0.5, 0.25}, "2.0 0.500000 0.250000", ""},
      {"%2$@ %1$@ %2$@", {AQVString("x"), AQVString("y")}, "y x y", ""},
      {"100%% %@", {AQVString("sure")}, "100% sure", ""},
      {"[%5@|%-4@|%.2@]", {AQVString("ab"), AQVString("é"), AQVString("€uro")}, "[   ab|é   |€u]", ""},
      {"%c%c%3c", {65LL, 0x20ACLL, 0x1F600LL}, "A€ 😀", ""},
      {"%@", {AQVString("a"), 5LL}, "a", ""},
      {"no conversions", {}, "no conversions", ""},
      {"%n", {1LL}, nullptr, "conversion \"%n\" is not allowed"},
      {"%p", {1LL}, nullptr, "conversion \"%p\" is not allowed"},
      {"%s", {AQVString("a")}, nullptr, "conversion \"%s\" is not allowed (a string is written with \"%@\")"},
      {"%*d", {1LL, 2LL}, nullptr, "conversion \"%*\" uses \"*\" for a width or precision, which is not allowed"},
      {"%.*f", {1LL, 2.0}, nullptr, "conversion \"%.*\" uses \"*\" for a width or precision, which is not allowed"},
      {"%k", {}, nullptr, "unknown conversion \"%k\""},
      {"%é", {}, nullptr, "unknown conversion \"%é\""},
      {"%0$d", {1LL}, nullptr, "unknown conversion \"%0$\""},
      {"100%", {}, nullptr, "conversion \"%\" is incomplete at the end of the format"},
      {"%-5", {}, nullptr, "conversion \"%-5\" is incomplete at the end of the format"},
      {"%@ %@", {AQVString("a")}, nullptr, "conversion \"%@\" needs argument 2, but 1 argument was passed"},
      {"%3$@", {AQVString("a"), AQVString("b")}, nullptr,
       "conversion \"%3$@\" needs argument 3, but 2 arguments were passed"},
      {"%d", {}, nullptr, "conversion \"%d\" needs argument 1, but 0 arguments were passed"},
      {"%1$@ %@", {AQVString("a"), AQVString("b")}, nullptr,
       "conversion \"%@\" mixes numbered and unnumbered arguments in one format"},
      {"%@ %2$@", {AQVString("a"), AQVString("b")}, nullptr,
       "conversion \"%2$@\" mixes numbered and unnumbered arguments in one format"},
      {"%d", {AQVString("1")}, nullptr, "conversion \"%d\" needs an integer argument, not a string"},
      {"%d", {1.5}, nullptr, "conversion \"%d\" needs an integer argument, not a real number"},
      {"%f", {AQVString("1")}, nullptr, "conversion \"%f\" needs a number argument, not a string"},
      {"%@", {5LL}, nullptr, "conversion \"%@\" needs a string argument, not an integer"},
      {"%@", {5.0}, nullptr, "conversion \"%@\" needs a string argument, not a real number"},
      {"%c", {1.0}, nullptr, "conversion \"%c\" needs an integer argument, not a real number"},
      {"%c", {0xD800LL}, nullptr, "conversion \"%c\" needs a character code, not 55296"},
      {"%c", {0LL}, nullptr, "conversion \"%c\" needs a character code, not 0"},
      {"%.2c", {65LL}, nullptr, "conversion \"%.2c\" has a precision, which does not fit its conversion"},
      {"%l@", {AQVString("a")}, nullptr, "conversion \"%l@\" has a length modifier that does not fit its conversion"},
      {"%Ld", {1LL}, nullptr, "conversion \"%Ld\" has a length modifier that does not fit its conversion"},
      {"%hf", {1.0}, nullptr, "conversion \"%hf\" has a length modifier that does not fit its conversion"},
      {"%+@", {AQVString("a")}, nullptr, "conversion \"%+@\" has a flag that does not fit its conversion"},
      {"%99999d", {1LL}, nullptr, "conversion \"%99999\" has a width above 4096"},
      {"%.5000f", {1.0}, nullptr, "conversion \"%.5000\" has a precision above 4096"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.format);
    AQVString out = "untouched";
    AQVString problem;
    EXPECT_EQ(AFormatter::Format(c.format, c.arguments, out, &problem), c.expected != nullptr);
    EXPECT_EQ(out, c.expected != nullptr ? c.expected : "untouched");
    EXPECT_EQ(problem, c.problem);
  }
}

TEST(AFormatterTest, CStringsOnlyWhenAllowed) {
  AQVString out;
  EXPECT_TRUE(AFormatter::Format("name %s.", {AQVString("R1")}, out, nullptr, true));
  EXPECT_EQ(out, "name R1.");
  EXPECT_EQ(AFormatter::FormatTrusted("Can not add CUPS UI Resolver with name %s.", {AQVString("R1")}),
            "Can not add CUPS UI Resolver with name R1.");
  // A mismatch in a trusted format gives the format itself.
  EXPECT_EQ(AFormatter::FormatTrusted("Cannot add PPD group: %@", {}), "Cannot add PPD group: %@");
}

TEST(AFormatterTest, TwoDecimalsAreExactlyPrintfs) {
  for (const double value : {612.0, 792.5, 8.25, 0.125, 0.375, -0.0, -17.75, 2.675, 1.005, 0.1, 1e12, 1e300,
                             -1e-300, 123456789.123}) {
    std::string out = "x";
    AFormatter::AppendTwoDecimals(out, value);
    char expected[400];
    std::snprintf(expected, sizeof(expected), "x%.2f", value);
    EXPECT_EQ(out, expected) << value;
  }
}

}  // namespace
}  // namespace ppdforge
