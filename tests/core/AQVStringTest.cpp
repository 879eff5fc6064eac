#include <gtest/gtest.h>

#include <climits>
#include <cmath>

#include "core/AQVString.h"

namespace ppdforge {
namespace {

// "é" is two bytes and one unit, "€" three bytes and one unit, "😀" four
// bytes and two units.
const AQVString kMixed("aé€😀b");

TEST(AQVStringTest, PositionsCountUTF16Units) {
  EXPECT_EQ(kMixed.Length(), 6u);
  EXPECT_EQ(kMixed.ByteLength(), 1u + 2 + 3 + 4 + 1);
  EXPECT_EQ(kMixed.Find("é"), 1u);
  EXPECT_EQ(kMixed.Find("€"), 2u);
  EXPECT_EQ(kMixed.Find("😀"), 3u);
  EXPECT_EQ(kMixed.Find("b"), 5u);
  EXPECT_EQ(kMixed.Find("b", 6), AQVString::npos);
  EXPECT_EQ(kMixed.Find(""), AQVString::npos);
  EXPECT_EQ(kMixed.ReverseFind("a"), 0u);
  EXPECT_EQ(AQVString("x€x€").ReverseFind("€"), 3u);
  EXPECT_EQ(AQVString("x€x€").ReverseFind("€", 3), 1u);
  EXPECT_EQ(AQVString("x€x€").ReverseFind("x", 0), AQVString::npos);
  EXPECT_EQ(kMixed.CharAt(1), u'é');
  EXPECT_EQ(kMixed.CharAt(3), char16_t{0xD83D});
  EXPECT_EQ(kMixed.CharAt(4), char16_t{0xDE00});
  EXPECT_EQ(kMixed.CharAt(6), char16_t{0});
  EXPECT_EQ(kMixed.UTF16(), u"aé€😀b");
}

TEST(AQVStringTest, SubstringAndReplaceUseUnits) {
  EXPECT_EQ(kMixed.GetSubString(1, 2), "é€");
  EXPECT_EQ(kMixed.GetSubString(3, 2), "😀");
  EXPECT_EQ(kMixed.GetSubString(5), "b");
  EXPECT_EQ(kMixed.GetSubString(9, 3), "");
  // A position inside a surrogate pair stands for the start of its character.
  EXPECT_EQ(kMixed.GetSubString(4, 2), "😀b");
  EXPECT_EQ(kMixed.GetSubString(3, 1), "");

  AQVString text = kMixed;
  text.Replace(2, 1, "<20AC>");
  EXPECT_EQ(text, "aé<20AC>😀b");
  text.Replace(0, 100, "z");
  EXPECT_EQ(text, "z");

  AQVString quoted("\"é\" and \"😀\"");
  EXPECT_EQ(quoted.FindAndReplace("\"", "<22>"), 4u);
  EXPECT_EQ(quoted, "<22>é<22> and <22>😀<22>");
  EXPECT_EQ(quoted.FindAndReplace("", "x"), 0u);
  AQVString overlapping("aaa");
  EXPECT_EQ(overlapping.FindAndReplace("aa", "b"), 1u);
  EXPECT_EQ(overlapping, "ba");
}

TEST(AQVStringTest, UTF8Validation) {
  struct Case {
    const char* name;
    std::string bytes;
    bool valid;
  };
  const Case cases[] = {
      {"ascii", "PageSize", true},
      {"two-byte", "\xC3\xA9", true},
      {"three-byte", "\xE2\x82\xAC", true},
      {"four-byte", "\xF0\x9F\x98\x80", true},
      {"highest", "\xF4\x8F\xBF\xBF", true},
      {"overlong two-byte", "\xC0\xAF", false},
      {"overlong three-byte", "\xE0\x80\xAF", false},
      {"overlong four-byte", "\xF0\x80\x80\xAF", false},
      {"surrogate", "\xED\xA0\x80", false},
      {"above U+10FFFF", "\xF4\x90\x80\x80", false},
      {"truncated", "ab\xE2\x82", false},
      {"lone continuation", "\x80", false},
      {"invalid byte", "\xFF", false},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(IsValidUTF8(c.bytes), c.valid) << c.name;
    EXPECT_EQ(AQVString::FromUTF8(c.bytes).has_value(), c.valid) << c.name;
  }
  // Trusted text keeps the invariant by replacing what is invalid.
  EXPECT_EQ(AQVString(std::string("a\xFF" "b")), "a\xEF\xBF\xBD" "b");
}

TEST(AQVStringTest, FromUTF16RejectsLoneSurrogates) {
  EXPECT_EQ(AQVString::FromUTF16(u"é😀")->UTF8(), "é😀");
  const char16_t lead[] = {u'a', 0xD83D, u'b'};
  const char16_t trail[] = {0xDE00, u'a'};
  const char16_t end[] = {u'a', 0xD83D};
  EXPECT_FALSE(AQVString::FromUTF16(std::u16string_view(lead, 3)));
  EXPECT_FALSE(AQVString::FromUTF16(std::u16string_view(trail, 2)));
  EXPECT_FALSE(AQVString::FromUTF16(std::u16string_view(end, 2)));
}

TEST(AQVStringTest, SplitByBufferSizeKeepsCharactersWhole) {
  // 184 ASCII bytes then "€": a 185-byte budget cannot take all three bytes.
  const AQVString text(std::string(184, 'a') + "€" + "bc");
  const std::vector<AQVString> pieces = text.SplitByBufferSize(186);
  ASSERT_EQ(pieces.size(), 2u);
  EXPECT_EQ(pieces[0].UTF8(), std::string(184, 'a'));
  EXPECT_EQ(pieces[1], "€bc");

  const AQVString exact(std::string(182, 'a') + "€");
  ASSERT_EQ(exact.SplitByBufferSize(186).size(), 1u);

  const AQVString many(std::string(400, 'x'));
  const std::vector<AQVString> three = many.SplitByBufferSize(186);
  ASSERT_EQ(three.size(), 3u);
  EXPECT_EQ(three[0].ByteLength(), 185u);
  EXPECT_EQ(three[2].ByteLength(), 30u);

  EXPECT_TRUE(AQVString().SplitByBufferSize(186).empty());
  // A buffer that cannot hold one character gives no pieces.
  EXPECT_TRUE(AQVString("😀").SplitByBufferSize(4).empty());
}

TEST(AQVStringTest, EscapeCharactersPercentEncodesEachByte) {
  const AQVString text("50% off: a/b é€");
  EXPECT_EQ(text.EscapeCharacters({"%", ":", "/", " "}), "50%25%20off%3A%20a%2Fb%20é€");
  EXPECT_EQ(text.EscapeCharacters({"€"}), "50% off: a/b é%E2%82%AC");
  EXPECT_EQ(text.EscapeCharacters({}), text);
}

TEST(AQVStringTest, TrimAndSplitHandleUnicodeSpace) {
  EXPECT_EQ(AQVString(" \t\r\n\v\fa b\xC2\xA0\xE3\x80\x80").TrimWhitespace(), "a b");
  EXPECT_EQ(AQVString("\xE2\x80\x83" "é" "\xE2\x80\xA8").TrimWhitespace(), "é");
  EXPECT_EQ(AQVString(" \t ").TrimWhitespace(), "");

  const std::vector<AQVString> words = AQVString("  a\tb\xC2\xA0" "c  ").SplitAtWhitespace();
  EXPECT_EQ(words, (std::vector<AQVString>{"a", "b", "c"}));
  EXPECT_EQ(AQVString("a  b\tc").SplitAtCharacters(" \t"), (std::vector<AQVString>{"a", "", "b", "c"}));
  EXPECT_EQ(AQVString("a€b").SplitAtCharacters("€"), (std::vector<AQVString>{"a", "b"}));
  EXPECT_EQ(AQVString("").ParseDelimitedString("\n"), (std::vector<AQVString>{""}));
  EXPECT_EQ(AQVString("a\n\nb\n").ParseDelimitedString("\n"), (std::vector<AQVString>{"a", "", "b", ""}));
}

TEST(AQVStringTest, NumberReadingsFollowFoundation) {
  struct Case {
    const char* text;
    long long integer;
    double real;
    bool boolean;
  };
  const Case cases[] = {
      {"42", 42, 42.0, true},
      {"  -17abc", -17, -17.0, true},
      {"+3.75", 3, 3.75, true},
      {"1.5e3", 1, 1500.0, true},
      {"2e", 2, 2.0, true},
      {".5", 0, 0.5, false},
      {"abc", 0, 0.0, false},
      {"", 0, 0.0, false},
      {"-", 0, 0.0, false},
      {"007", 7, 7.0, true},
      {"-0", 0, -0.0, false},
      {"YES", 0, 0.0, true},
      {"true", 0, 0.0, true},
      {"no", 0, 0.0, false},
      {"\xC2\xA0 12", 12, 12.0, true},
      {"99999999999999999999", LLONG_MAX, 1e20, true},
      {"-99999999999999999999", LLONG_MIN, -1e20, true},
      {"-9223372036854775808", LLONG_MIN, -9223372036854775808.0, true},
  };
  for (const Case& c : cases) {
    const AQVString text(c.text);
    EXPECT_EQ(text.IntegerValue(), c.integer) << c.text;
    EXPECT_DOUBLE_EQ(text.DoubleValue(), c.real) << c.text;
    EXPECT_EQ(text.BoolValue(), c.boolean) << c.text;
  }
  EXPECT_TRUE(std::isinf(AQVString("1e999").DoubleValue()));
  EXPECT_EQ(AQVString("1e-999").DoubleValue(), 0.0);
}

}  // namespace
}  // namespace ppdforge
