#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/RKPPDMessages.h"
#include "model/APPDStatement.h"

namespace ppdforge {
namespace {

std::string Repeat(const std::string& piece, std::size_t count) {
  std::string out;
  for (std::size_t i = 0; i < count; ++i) out += piece;
  return out;
}

// `count` copies of `word` joined by `separator`.
std::string Words(const std::string& word, std::size_t count, const std::string& separator = " ") {
  std::string out;
  for (std::size_t i = 0; i < count; ++i) out += (i != 0 ? separator : "") + word;
  return out;
}

const AError kEarlier{kRKPPDGenerationErrorDomain, 1, "earlier"};

// Each row is written by a statement object and by Append, which must give
// the same text and error; a failed Append adds nothing, and a success never
// touches an earlier error.
TEST(StatementTest, WritesEachPartOrReportsTheFirstBrokenRule) {
  struct Case {
    const char* label;
    std::string main, option, optionTranslation, value;
    PPDValueType type;
    std::string valueTranslation;
    std::string expected;  // the text, or the message of a code 4 error
    bool valid = true;
  };
  const std::string k40 = Repeat("K", 40), k41 = Repeat("K", 41);
  const std::string e80 = Repeat("é", 40), e81 = Repeat("é", 40) + "a";  // 41 characters, 81 bytes
  const std::string kCode = "<</cupsString1(a > b)>>setpagedevice", kCodeBreak = " <</cupsString1(a >\nb)>>setpagedevice ";
  const std::string kTooLong = "Translation string is longer then the maximum allowed (80 characters): ";
  const Case cases[] = {
      {"invocation keeps double brackets", "PageSize", "A4", "A4", "<</PageSize[595 842]/ImagingBBox null>>setpagedevice",
       kPPDInvocationValue, "", "*PageSize A4/A4: \"<</PageSize[595 842]/ImagingBBox null>>setpagedevice\""},
      {"invocation keeps stray bracket", "Test", "", "", "a<b", kPPDInvocationValue, "", "*Test: \"a<b\""},
      {"quoted escapes stray bracket", "Test", "", "", "a<b", kPPDQuotedValue, "", "*Test: \"a<3C>b\""},
      {"quoted keeps tags", "Test", "", "", "<1B>x<3A>", kPPDQuotedValue, "", "*Test: \"<1B>x<3A>\""},
      {"quoted stray brackets", "Option", "Choice", "", "a < b > c <<x>> <3C> >> <", kPPDQuotedValue, "",
       "*Option Choice: \"a < b > c <<x>> <3C> ><3E> <3C>\""},
      {"non-ASCII brackets", "Option", "Choice", "Ü < ü >", "ä < b >> «x» >", kPPDQuotedValue, "",
       "*Option Choice/Ü < ü >: \"ä < b ><3E> «x» >\""},
      {"colon in option translation", "OutputMode", "Fast", "Ratio 1:2", "x", kPPDInvocationValue, "",
       "*OutputMode Fast/Ratio 1<3A>2: \"x\""},
      // Lone brackets and colons are escaped; tags, also around blanks, stay.
      {"escaped translation", "Duplex", "None", "Off: < 1 > <3A> é < x", "", kPPDQuotedValue, "",
       "*Duplex None/Off<3A> < 1 > <3A> é <3C> x: \"\""},
      {"symbol gets a caret", "cupsUIResolver", "", "", "True", kPPDSymbolValue, "", "*cupsUIResolver: ^True"},
      {"string is bare", "ColorDevice", "", "", "True", kPPDStringValue, "", "*ColorDevice: True"},
      {"other type is bare", "Test", "", "", "1 2 3", 7, "", "*Test: 1 2 3"},
      {"tab below 33 in other type", "Test", "", "", "a\tb", 5, "", "*Test: a\tb"},
      {"empty invocation is two quotes", "Test", "", "", "", kPPDInvocationValue, "", "*Test: \"\""},
      {"empty quoted is two quotes", "Test", "", "", "", kPPDQuotedValue, "", "*Test: \"\""},
      {"empty string value", "Test", "", "", "", kPPDStringValue, "", "*Test: "},
      {"empty symbol value", "Test", "", "", "", kPPDSymbolValue, "", "*Test: "},
      {"value translation escapes brackets", "OpenGroup", "", "", "Finishing", kPPDStringValue, "Finition: <a",
       "*OpenGroup: Finishing/Finition: <3C>a"},
      {"line feed closes with End", "Test", "", "", "line1\nline2", kPPDQuotedValue, "", "*Test: \"line1\nline2\"\n*End"},
      {"carriage return closes with End", "Test", "", "", "a\rb", kPPDInvocationValue, "", "*Test: \"a\rb\"\n*End"},
      {"other type with line feed has no End", "Test", "", "", "a\nb", 9, "", "*Test: a\nb"},
      // Limits count UTF-8 bytes.
      {"main 40", k40, "", "", "v", kPPDStringValue, "", "*" + k40 + ": v"},
      {"option 40", "Main", k40, "", "v", kPPDStringValue, "", "*Main " + k40 + ": v"},
      {"translation 80 bytes", "Main", "A4", e80, "v", kPPDStringValue, "", "*Main A4/" + e80 + ": v"},
      // "*Test: " is 7 bytes, so a 248-byte string value makes a 255-byte line.
      {"line 255", "Test", "", "", Repeat("x", 248), kPPDStringValue, "", "*Test: " + Repeat("x", 248)},
      {"line 255 with multibyte", "Test", "", "", Repeat("é", 123), kPPDInvocationValue, "",
       "*Test: \"" + Repeat("é", 123) + "\""},
      // A piece joins the line while it stays below 255 bytes: "*Test: \"" is 8
      // bytes and each word with its blank 5, so 49 words fit.
      {"wraps at blanks", "Test", "", "", Words("abcd", 60), kPPDQuotedValue, "",
       "*Test: \"" + Words("abcd", 49) + "\n" + Words("abcd", 11) + "\"\n*End"},
      {"wraps at tabs", "Test", "", "", Words("abcd", 60, "\t"), kPPDQuotedValue, "",
       "*Test: \"" + Words("abcd", 49) + "\n" + Words("abcd", 11) + "\"\n*End"},
      {"255 bytes do not wrap", "Test", "", "", Words("abcd", 49) + " x", kPPDInvocationValue, "",
       "*Test: \"" + Words("abcd", 49) + " x\""},
      {"256 bytes wrap", "Test", "", "", Words("abcd", 49) + " xy", kPPDInvocationValue, "",
       "*Test: \"" + Words("abcd", 49) + "\nxy\"\n*End"},
      {"empty piece between blanks kept", "Test", "", "", Repeat("x", 240) + "  " + Repeat("y", 20), kPPDQuotedValue, "",
       "*Test: \"" + Repeat("x", 240) + " \n" + Repeat("y", 20) + "\"\n*End"},
      {"value with a line break is never rewrapped", "Test", "", "", "first\n" + Words("abcd", 49), kPPDQuotedValue, "",
       "*Test: \"first\n" + Words("abcd", 49) + "\"\n*End"},
      {"wrapped code", "AcmeLongOption", "Choice", "Text", Words(kCode, 30), kPPDQuotedValue, "",
       "*AcmeLongOption Choice/Text: \"" + Words(kCode, 6) + "\n" + Words(kCode, 6) + kCodeBreak + Words(kCode, 6) + "\n" +
           Words(kCode, 6) + kCodeBreak + Words(kCode, 4) + "\"\n*End"},
      // Every blank and tab separates a piece, empty ones too; 250 bytes and
      // " word" would make 255.
      {"wrapped tabs and double blanks", "Option", "Choice", "", Words("word\t  x", 60), kPPDQuotedValue, "",
       "*Option Choice: \"" + Words("word   x", 26) + "\n" + Words("word   x", 28) + "\n" + Words("word   x", 6) +
           "\"\n*End"},
      // Broken rules.
      {"missing main", "", "A4", "", "v", kPPDStringValue, "", "Missing  main keyword", false},
      {"long main", k41, "", "", "v", kPPDStringValue, "",
       "Main keyword is longer then the maximum allowed (40 characters): " + k41, false},
      {"space in main", "Page Size", "", "", "v", kPPDStringValue, "", "Main keyword contains invalid characters: Page Size",
       false},
      {"colon in main", "Page:Size", "", "", "v", kPPDStringValue, "", "Main keyword contains invalid characters: Page:Size",
       false},
      {"slash in main", "Page/Size", "", "", "v", kPPDStringValue, "", "Main keyword contains invalid characters: Page/Size",
       false},
      {"non-ASCII main", "Pagé", "", "", "v", kPPDStringValue, "", "Main keyword contains invalid characters: Pagé",
       false},
      {"long option", "Main", k41, "", "v", kPPDStringValue, "",
       "Option keyword is longer then the maximum allowed (40 characters): " + k41, false},
      {"tab in option", "Main", "A\t4", "", "v", kPPDStringValue, "", "Option keyword contains invalid characters: A\t4",
       false},
      {"translation 81 bytes", "Main", "A4", e81, "v", kPPDStringValue, "", kTooLong + e81, false},
      // 78 bytes with one colon: 81 bytes once the colon is "<3A>".
      {"translation measured after escaping", "Main", "Option", Repeat("a", 77) + ":", "v", kPPDStringValue, "",
       kTooLong + Repeat("a", 77) + "<3A>", false},
      {"line feed in option translation", "Main", "A4", "a\nb", "v", kPPDStringValue, "",
       "Translation keyword contains invalid characters: a\nb", false},
      {"control byte in option translation", "Main", "A4", "a\x01", "v", kPPDStringValue, "",
       "Translation keyword contains invalid characters: a\x01", false},
      {"caret starts string", "Main", "", "", "^abc", kPPDStringValue, "",
       "String value: ^abc begins with invalid character: ^", false},
      {"quote starts string", "Main", "", "", "\"abc", kPPDStringValue, "",
       "String value: \"abc begins with invalid character: \"", false},
      {"slash in string", "Main", "", "", "a/b", kPPDStringValue, "", "Value contains invalid characters: a/b", false},
      {"quote in quoted", "Main", "", "", "say \"hi\"", kPPDQuotedValue, "",
       "Value contains invalid characters: say \"hi\"", false},
      {"quote in invocation", "Main", "", "", "a\"b", kPPDInvocationValue, "", "Value contains invalid characters: a\"b",
       false},
      {"space in symbol", "Main", "", "", "a b", kPPDSymbolValue, "", "Value contains invalid characters: a b", false},
      {"non-ASCII symbol", "Main", "", "", "Tr\xC3\xA9", kPPDSymbolValue, "",
       "Value contains invalid characters: Tr\xC3\xA9", false},
      {"non-ASCII other type", "Main", "", "", "é", 5, "", "Value contains invalid characters: é", false},
      {"control byte in other type", "Main", "", "", "a\x02", 5, "", "Value contains invalid characters: a\x02", false},
      {"long value translation", "Main", "", "", "v", kPPDStringValue, e81, kTooLong + e81, false},
      {"carriage return in value translation", "Main", "", "", "v", kPPDStringValue, "a\rb",
       "Translation keyword contains invalid characters: a\rb", false},
      {"translation without option", "Main", "", "Text", "v", kPPDStringValue, "",
       "Option keyword is absent for translation string: Text", false},
      {"value translation without value", "Main", "", "", "", kPPDStringValue, "VT",
       "Value is empty for value translation string: VT", false},
      {"symbol with translation", "Main", "", "", "True", kPPDSymbolValue, "VT",
       "Symbol value: True cannot have translation string: VT", false},
      {"line 256", "Test", "", "", Repeat("x", 249), kPPDStringValue, "",
       "Line longer then the maximum allowed: 255 characters in statement: *Test: " + Repeat("x", 249), false},
      {"unbreakable line", "Test", "", "", Repeat("x", 247), kPPDQuotedValue, "",
       "Line longer then the maximum allowed: 255 characters in statement: *Test: \"" + Repeat("x", 247) + "\"", false},
      {"first failure decides", "Bad Main", k41, "", "^v", kPPDStringValue, "",
       "Main keyword contains invalid characters: Bad Main", false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    const APPDStatement statement(c.main, c.option, c.optionTranslation, c.value, c.type, c.valueTranslation);
    const AQVString text = c.valid ? AQVString(c.expected) : AQVString();
    const AError expectedError = c.valid ? kEarlier : AError{kRKPPDGenerationErrorDomain, 4, c.expected};
    AError error = kEarlier;
    EXPECT_EQ(statement.GetStringRepresentation(&error), text);
    EXPECT_EQ(error, expectedError);
    // A second request gives the same.
    EXPECT_EQ(statement.GetStringRepresentation(nullptr), text);

    const std::string before = "*Earlier: line\n";
    std::string out = before;
    AError appendError = kEarlier;
    EXPECT_EQ(APPDStatement::Append(out, c.main, c.option, c.optionTranslation, c.value, c.type, c.valueTranslation,
                                    &appendError),
              c.valid);
    EXPECT_EQ(out, before + text.UTF8());
    EXPECT_EQ(appendError, expectedError);
  }
  std::string out;
  EXPECT_FALSE(APPDStatement::Append(out, "", "", "", "", kPPDQuotedValue, "", nullptr));
  EXPECT_TRUE(APPDStatement::Append(out, "ColorDevice", "", "", "True", kPPDStringValue, "", nullptr));
  EXPECT_EQ(out, "*ColorDevice: True");
}

// Translation lines check their keywords once for all languages; every
// line and every refusal must still be Append's, line by line.
TEST(StatementTest, TranslationLinesAreAppendsOneLanguageAfterAnother) {
  const std::string long36(36, 'K');
  struct Case {
    const char* name;
    std::string keyword;
    std::string option;
    std::vector<AQVString> languages;
    std::vector<AQVString> texts;
  };
  const std::vector<Case> cases = {
      {"plain", "Resolution", "600dpi", {"de", "zh_CN", ""}, {"Hoch", "高", "High"}},
      {"escaped texts", "PageSize", "A4", {"fr", "ja"}, {"A4 \"large\"", "<A4>"}},
      {"text with a colon", "PageSize", "A4", {"fr", "de"}, {"A4", "A4: big"}},
      {"text with a line end", "PageSize", "A4", {"fr"}, {"A4\nbig"}},
      {"no option keyword", "Translation", "", {"de"}, {"Text"}},
      {"bad option keyword", "PageSize", "A/4", {"de"}, {"A4"}},
      {"bad keyword", "Page:Size", "A4", {"de"}, {"A4"}},
      {"bad language", "PageSize", "A4", {"de", "d e"}, {"A4", "A4"}},
      {"too long with the second language", long36, "A4", {"de", "zh_CN"}, {"A4", "A4"}},
      {"too long a line", "PageSize", "A4", {"de"}, {AQVString(std::string(250, 'x'))}},
      {"empty keyword", "", "A4", {"de"}, {"A4"}},
      {"texts of 80 and 81 bytes", "PageSize", "A4", {"de", "fr"},
       {AQVString(std::string(80, 'x')), AQVString(std::string(81, 'x'))}},
      {"quote, DEL and an empty text", "PageSize", "A4", {"de", "fr", "it"}, {"A4 \"x\"", "A4\x7F", ""}},
      {"text with a TAB", "PageSize", "A4", {"de"}, {"A4\tbig"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    std::string expected = "*Earlier: line";
    AError expectedError = kEarlier;
    bool expectedResult = true;
    for (std::size_t i = 0; i < c.languages.size() && expectedResult; ++i) {
      expected += "\n";
      const std::string keyword = c.languages[i].UTF8() + "." + c.keyword;
      expectedResult = APPDStatement::Append(expected, keyword, c.option, c.texts[i].UTF8(), "", kPPDQuotedValue, "",
                                             &expectedError);
      if (!expectedResult) expected.pop_back();
    }
    std::string out = "*Earlier: line";
    AError error = kEarlier;
    EXPECT_EQ(APPDStatement::AppendTranslationLines(out, c.keyword, c.option, c.languages, c.texts, &error),
              expectedResult);
    EXPECT_EQ(out, expected);
    EXPECT_EQ(error, expectedError);
  }
}

TEST(StatementTest, EscapesStrayAngleBrackets) {
  struct Case {
    std::string input;
    std::string expected;
    bool closeOnly;
  };
  const Case cases[] = {
      {"plain", "plain", false},
      {"<", "<3C>", false},
      {">", "<3E>", false},
      {"a < b", "a <3C> b", false},
      {"a > b", "a <3E> b", false},
      {"<3A>", "<3A>", false},
      {"<xyz>", "<xyz>", false},
      {"<<a>>", "<<a>>", false},
      // "<>" is no tag; the search stops before the last character.
      {"<>", "<3C>>", false},
      {"<3A><", "<3A><", false},
      {"<3A><x", "<3A><3C>x", false},
      // A bracket pair with a further "<" inside is no tag.
      {"<a<b>", "<3C>a<b>", false},
      // Brackets around spaces form a tag.
      {"a < b > c", "a < b > c", false},
      {"é<", "é<3C>", false},
      {"«<é>»", "«<é>»", false},
      // The invalid candidate "<<e<b>>" is 7 units long: after its ">" becomes
      // "<3E>" the scan skips 7 units, and the ">" among them stays.
      {"<<a<b>>>y", "<<a<b><3E>>y", true},
      {"<<e<b>>xy>>z", "<<e<b><3E>xy><3E>z", true},
      // Positions count UTF-16 units: "é" is one unit although two bytes.
      {"<<é<b>>xy>>z", "<<é<b><3E>xy><3E>z", true},
      {"a>", "a<3E>", true},
  };
  for (const Case& c : cases) {
    AQVString text(c.input);
    if (!c.closeOnly) APPDStatement::FindAndReplaceAngleOpenBrackets(text);
    APPDStatement::FindAndReplaceAngleCloseBrackets(text);
    EXPECT_EQ(text, AQVString(c.expected)) << c.input;
  }
  const std::pair<std::string, bool> tags[] = {
      {"<3A>", true},   {"<x>", true},    {"<ZZ>", true},  {"<<a>>", true},
      {"<a b>", true},  {"<>", false},    {"<<>>", false}, {"<a<b>", false},
      {"<<a<b>>", false}, {"ab", false},  {"<é>", true},   {"<<é>>", true},
  };
  for (const auto& [text, valid] : tags) EXPECT_EQ(APPDStatement::IsValidPPDTag(AQVString(text)), valid) << text;
}

TEST(StatementTest, EscapesStoredTranslationsInPlaceAndSettersDropTheCachedText) {
  APPDStatement statement("OutputMode", "Fast", "a<b:c", "x", kPPDQuotedValue, "y > z");
  EXPECT_EQ(statement.GetOptionTranslation(), AQVString("a<b:c"));
  EXPECT_EQ(statement.GetStringRepresentation(nullptr), AQVString("*OutputMode Fast/a<3C>b<3A>c: \"x\"/y <3E> z"));
  EXPECT_EQ(statement.GetOptionTranslation(), AQVString("a<3C>b<3A>c"));
  EXPECT_EQ(statement.GetValueTranslation(), AQVString("y <3E> z"));
  // A rebuild escapes the escaped text again and leaves it unchanged.
  statement.SetValue("w");
  EXPECT_EQ(statement.GetStringRepresentation(nullptr), AQVString("*OutputMode Fast/a<3C>b<3A>c: \"w\"/y <3E> z"));

  APPDStatement other("Test", "", "", "a", kPPDStringValue, "");
  EXPECT_EQ(other.GetStringRepresentation(nullptr), AQVString("*Test: a"));
  other.SetValueType(kPPDQuotedValue);
  EXPECT_EQ(other.GetStringRepresentation(nullptr), AQVString("*Test: \"a\""));
  other.SetMainKeyword("Other");
  other.SetOptionKeyword("Opt");
  other.SetOptionTranslation("T:");
  other.SetValueTranslation("V");
  EXPECT_EQ(other.GetStringRepresentation(nullptr), AQVString("*Other Opt/T<3A>: \"a\"/V"));

  // The colon is checked before the build escapes it.
  const APPDStatement colon("Main", "Option", "a:b", "v", kPPDStringValue, "");
  AError error;
  EXPECT_FALSE(colon.IsValid(&error));
  EXPECT_EQ(error, (AError{kRKPPDGenerationErrorDomain, 4, "Translation keyword contains invalid characters: a:b"}));
  EXPECT_EQ(colon.GetStringRepresentation(nullptr), AQVString("*Main Option/a<3A>b: v"));
  EXPECT_TRUE(colon.IsValid(nullptr));
}

TEST(StatementTest, WritesCommentLines) {
  struct Case {
    const char* label;
    std::string comment;
    std::string expected;  // empty: refused
  };
  const Case cases[] = {
      {"empty", "", ""},
      {"one line", "hello", "*% hello"},
      {"lines trimmed", "  one \n\ttwo\t\n", "*% one\n*% two\n*% "},
      {"252 characters", Repeat("c", 252), "*% " + Repeat("c", 252)},
      {"252 after trimming", "   " + Repeat("c", 252) + "  ", "*% " + Repeat("c", 252)},
      {"253 characters", Repeat("c", 253), ""},
      {"252 multibyte characters", Repeat("é", 252), "*% " + Repeat("é", 252)},
      {"253 multibyte characters", Repeat("é", 253), ""},
      {"one long line fails all", "short\n" + Repeat("c", 253), ""},
  };
  for (const Case& c : cases) {
    AError error;
    EXPECT_EQ(APPDStatement::CommentLines(c.comment, &error), AQVString(c.expected)) << c.label;
    const bool refused = c.expected.empty() && !c.comment.empty();
    const AError expected =
        refused ? AError{kRKPPDGenerationErrorDomain, 4, "PPDGeneration error: Comment contains too long line:"} : AError();
    EXPECT_EQ(error, expected) << c.label;
  }
}

// The byte tests read texts a word at a time, with short texts and the last
// bytes read specially: every byte value at every position of texts around
// the word size must be judged as the rule says.
TEST(StatementTest, JudgesEveryByteAtEveryPositionOfShortAndLongParts) {
  struct Part {
    const char* name;
    const char* message;
    bool (*allowed)(unsigned char);
  };
  const Part parts[] = {
      {"main keyword", "Main keyword contains invalid characters: ",
       [](unsigned char b) { return b >= 33 && b <= 126 && b != ':' && b != '/'; }},
      {"option keyword", "Option keyword contains invalid characters: ",
       [](unsigned char b) { return b >= 33 && b <= 126 && b != ':' && b != '/'; }},
      {"value translation", "Translation keyword contains invalid characters: ",
       [](unsigned char b) { return b >= 32 || b == '\t'; }},
  };
  for (std::size_t part = 0; part < std::size(parts); ++part) {
    for (const std::size_t length : {1, 2, 3, 4, 5, 7, 8, 9, 12, 15, 16, 17, 23, 24, 25, 40}) {
      for (std::size_t position = 0; position < length; ++position) {
        for (unsigned byte = 1; byte < 256; ++byte) {
          std::string text(length, 'K');
          text[position] = static_cast<char>(byte);
          const std::string_view main = part == 0 ? std::string_view(text) : "Keyword";
          const std::string_view option = part == 1 ? std::string_view(text) : "Option";
          const std::string_view translation = part == 2 ? std::string_view(text) : "";
          std::string out;
          AError error;
          const bool written =
              APPDStatement::Append(out, main, option, "", "Value", kPPDStringValue, translation, &error);
          const bool allowed = parts[part].allowed(static_cast<unsigned char>(byte));
          ASSERT_EQ(written, allowed) << parts[part].name << ", length " << length << ", byte " << byte
                                      << " at " << position;
          if (!allowed) {
            ASSERT_EQ(error.code, 4);
            ASSERT_EQ(error.message.UTF8().rfind(parts[part].message, 0), 0u) << error.message.UTF8();
          }
        }
      }
    }
  }
}

TEST(StatementTest, TestsCharacterRanges) {
  EXPECT_TRUE(APPDStatement::IsValidCharacters("a\tb\nc\rd e", 33, 126, ""));
  EXPECT_FALSE(APPDStatement::IsValidCharacters("a\x1f", 32, 255, ""));
  EXPECT_FALSE(APPDStatement::IsValidCharacters("é", 32, 126, ""));
  EXPECT_TRUE(APPDStatement::IsValidCharacters("é", 32, 255, ""));
  EXPECT_FALSE(APPDStatement::IsValidCharacters("a/b", 32, 126, "/"));
  for (const char* plain : {"Fast Printing", "a\tb"}) EXPECT_TRUE(APPDStatement::IsPlainMainTranslation(plain));
  for (const char* other : {"Café", "Ratio 1:2", "a\nb"}) EXPECT_FALSE(APPDStatement::IsPlainMainTranslation(other));
}

}  // namespace
}  // namespace ppdforge
