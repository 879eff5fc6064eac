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
  for (std::size_t i = 0; i < count; ++i) {
    if (i != 0) out += separator;
    out += word;
  }
  return out;
}

struct BuildCase {
  const char* label;
  std::string mainKeyword;
  std::string optionKeyword;
  std::string optionTranslation;
  std::string value;
  PPDValueType type;
  std::string valueTranslation;
  std::string expected;
};

TEST(StatementTest, BuildsEachPartByValueType) {
  const std::vector<BuildCase> cases = {
      {"invocation keeps double brackets", "PageSize", "A4", "A4",
       "<</PageSize[595 842]/ImagingBBox null>>setpagedevice", kPPDInvocationValue, "",
       "*PageSize A4/A4: \"<</PageSize[595 842]/ImagingBBox null>>setpagedevice\""},
      {"invocation keeps stray bracket", "Test", "", "", "a<b", kPPDInvocationValue, "",
       "*Test: \"a<b\""},
      {"quoted escapes stray bracket", "Test", "", "", "a<b", kPPDQuotedValue, "",
       "*Test: \"a<3C>b\""},
      {"quoted keeps tags", "Test", "", "", "<1B>x<3A>", kPPDQuotedValue, "",
       "*Test: \"<1B>x<3A>\""},
      {"colon in option translation", "OutputMode", "Fast", "Ratio 1:2", "x",
       kPPDInvocationValue, "", "*OutputMode Fast/Ratio 1<3A>2: \"x\""},
      {"lone open bracket in translation", "OutputMode", "Fast", "a < b", "x",
       kPPDInvocationValue, "", "*OutputMode Fast/a <3C> b: \"x\""},
      {"lone close bracket in translation", "OutputMode", "Fast", "a > b", "x",
       kPPDInvocationValue, "", "*OutputMode Fast/a <3E> b: \"x\""},
      {"existing tag kept", "OutputMode", "Fast", "Keep <3A> tag", "x", kPPDInvocationValue,
       "", "*OutputMode Fast/Keep <3A> tag: \"x\""},
      {"symbol gets a caret", "cupsUIResolver", "", "", "True", kPPDSymbolValue, "",
       "*cupsUIResolver: ^True"},
      {"string is bare", "ColorDevice", "", "", "True", kPPDStringValue, "",
       "*ColorDevice: True"},
      {"other type is bare", "Test", "", "", "1 2 3", 7, "", "*Test: 1 2 3"},
      {"empty invocation is two quotes", "Test", "", "", "", kPPDInvocationValue, "",
       "*Test: \"\""},
      {"empty quoted is two quotes", "Test", "", "", "", kPPDQuotedValue, "", "*Test: \"\""},
      {"empty string value", "Test", "", "", "", kPPDStringValue, "", "*Test: "},
      {"empty symbol value", "Test", "", "", "", kPPDSymbolValue, "", "*Test: "},
      {"value translation escapes brackets", "Test", "", "", "v", kPPDStringValue, "x > y",
       "*Test: v/x <3E> y"},
      {"value translation keeps colons", "Test", "", "", "v", kPPDStringValue, "a:b",
       "*Test: v/a:b"},
      {"line feed closes with End", "Test", "", "", "line1\nline2", kPPDQuotedValue, "",
       "*Test: \"line1\nline2\"\n*End"},
      {"carriage return closes with End", "Test", "", "", "a\rb", kPPDInvocationValue, "",
       "*Test: \"a\rb\"\n*End"},
      {"other type with line feed has no End", "Test", "", "", "a\nb", 9, "", "*Test: a\nb"},
  };
  for (const BuildCase& c : cases) {
    const APPDStatement statement(c.mainKeyword, c.optionKeyword, c.optionTranslation, c.value,
                                  c.type, c.valueTranslation);
    AError error;
    EXPECT_EQ(statement.GetStringRepresentation(&error), c.expected) << c.label;
    EXPECT_EQ(error, AError()) << c.label;
  }
}

struct BracketCase {
  std::string input;
  std::string expected;
};

TEST(StatementTest, EscapesStrayAngleBrackets) {
  const std::vector<BracketCase> cases = {
      {"plain", "plain"},
      {"<", "<3C>"},
      {">", "<3E>"},
      {"a < b", "a <3C> b"},
      {"a > b", "a <3E> b"},
      {"<3A>", "<3A>"},
      {"<xyz>", "<xyz>"},
      {"<<a>>", "<<a>>"},
      // "<>" is no tag; the search stops before the last character.
      {"<>", "<3C>>"},
      {"<3A><", "<3A><"},
      {"<3A><x", "<3A><3C>x"},
      // A bracket pair with a further "<" inside is no tag.
      {"<a<b>", "<3C>a<b>"},
      // Brackets around spaces form a tag.
      {"a < b > c", "a < b > c"},
      {"é<", "é<3C>"},
      {"«<é>»", "«<é>»"},
  };
  for (const BracketCase& c : cases) {
    AQVString text(c.input);
    APPDStatement::FindAndReplaceAngleOpenBrackets(text);
    APPDStatement::FindAndReplaceAngleCloseBrackets(text);
    EXPECT_EQ(text, AQVString(c.expected)) << c.input;
  }
}

TEST(StatementTest, CloseBracketScanResumesAfterTheWholeCandidate) {
  // The invalid candidate "<<e<b>>" is 7 units long: after its ">" becomes
  // "<3E>" the scan skips 7 units, and the ">" among them stays.
  const std::vector<BracketCase> cases = {
      {"<<a<b>>>y", "<<a<b><3E>>y"},
      {"<<e<b>>xy>>z", "<<e<b><3E>xy><3E>z"},
      // Positions count UTF-16 units: "é" is one unit although two bytes.
      {"<<é<b>>xy>>z", "<<é<b><3E>xy><3E>z"},
      {"a>", "a<3E>"},
  };
  for (const BracketCase& c : cases) {
    AQVString text(c.input);
    APPDStatement::FindAndReplaceAngleCloseBrackets(text);
    EXPECT_EQ(text, AQVString(c.expected)) << c.input;
  }
}

TEST(StatementTest, RecognisesTags) {
  const std::vector<std::pair<std::string, bool>> cases = {
      {"<3A>", true},   {"<x>", true},    {"<ZZ>", true},  {"<<a>>", true},
      {"<a b>", true},  {"<>", false},    {"<<>>", false}, {"<a<b>", false},
      {"<<a<b>>", false}, {"ab", false},  {"<é>", true},   {"<<é>>", true},
  };
  for (const auto& [text, valid] : cases) {
    EXPECT_EQ(APPDStatement::IsValidPPDTag(AQVString(text)), valid) << text;
  }
}

TEST(StatementTest, EscapesStoredTranslationsInPlace) {
  APPDStatement statement("OutputMode", "Fast", "a<b:c", "x", kPPDQuotedValue, "y > z");
  EXPECT_EQ(statement.GetOptionTranslation(), AQVString("a<b:c"));

  EXPECT_EQ(statement.GetStringRepresentation(nullptr),
            AQVString("*OutputMode Fast/a<3C>b<3A>c: \"x\"/y <3E> z"));
  EXPECT_EQ(statement.GetOptionTranslation(), AQVString("a<3C>b<3A>c"));
  EXPECT_EQ(statement.GetValueTranslation(), AQVString("y <3E> z"));
  EXPECT_EQ(statement.GetValue(), AQVString("x"));

  // A rebuild escapes the escaped text again and leaves it unchanged.
  statement.SetValue("w");
  EXPECT_EQ(statement.GetStringRepresentation(nullptr),
            AQVString("*OutputMode Fast/a<3C>b<3A>c: \"w\"/y <3E> z"));
}

TEST(StatementTest, MeasuresTheTranslationLimitAfterEscaping) {
  // 78 bytes with one colon: 81 bytes once the colon is "<3A>".
  const std::string translation = Repeat("a", 77) + ":";
  const APPDStatement statement("Main", "Option", translation, "v", kPPDStringValue, "");
  AError error;
  EXPECT_EQ(statement.GetStringRepresentation(&error), AQVString());
  EXPECT_EQ(error.code, 4);
  EXPECT_EQ(error.message,
            AQVString("Translation string is longer then the maximum allowed (80 characters): " +
                      Repeat("a", 77) + "<3A>"));
}

TEST(StatementTest, ChecksTheColonOnlyBeforeABuild) {
  const APPDStatement statement("Main", "Option", "a:b", "v", kPPDStringValue, "");
  AError error;
  EXPECT_FALSE(statement.IsValid(&error));
  EXPECT_EQ(error.message, AQVString("Translation keyword contains invalid characters: a:b"));
  EXPECT_EQ(statement.GetStringRepresentation(nullptr), AQVString("*Main Option/a<3A>b: v"));
  EXPECT_TRUE(statement.IsValid(nullptr));
}

struct InvalidCase {
  const char* label;
  std::string mainKeyword;
  std::string optionKeyword;
  std::string optionTranslation;
  std::string value;
  PPDValueType type;
  std::string valueTranslation;
  std::string message;
};

TEST(StatementTest, ReportsEachRuleWithCodeFour) {
  const std::string longKeyword = Repeat("K", 41);
  const std::string longTranslation = Repeat("é", 40) + "a";  // 41 characters, 81 bytes
  const std::vector<InvalidCase> cases = {
      {"missing main", "", "A4", "", "v", kPPDStringValue, "", "Missing  main keyword"},
      {"long main", longKeyword, "", "", "v", kPPDStringValue, "",
       "Main keyword is longer then the maximum allowed (40 characters): " + longKeyword},
      {"space in main", "Page Size", "", "", "v", kPPDStringValue, "",
       "Main keyword contains invalid characters: Page Size"},
      {"colon in main", "Page:Size", "", "", "v", kPPDStringValue, "",
       "Main keyword contains invalid characters: Page:Size"},
      {"slash in main", "Page/Size", "", "", "v", kPPDStringValue, "",
       "Main keyword contains invalid characters: Page/Size"},
      {"non-ASCII main", "Pagé", "", "", "v", kPPDStringValue, "",
       "Main keyword contains invalid characters: Pagé"},
      {"long option", "Main", longKeyword, "", "v", kPPDStringValue, "",
       "Option keyword is longer then the maximum allowed (40 characters): " + longKeyword},
      {"tab in option", "Main", "A\t4", "", "v", kPPDStringValue, "",
       "Option keyword contains invalid characters: A\t4"},
      {"long option translation", "Main", "A4", longTranslation, "v", kPPDStringValue, "",
       "Translation string is longer then the maximum allowed (80 characters): " +
           longTranslation},
      {"line feed in option translation", "Main", "A4", "a\nb", "v", kPPDStringValue, "",
       "Translation keyword contains invalid characters: a\nb"},
      {"control byte in option translation", "Main", "A4", "a\x01", "v", kPPDStringValue, "",
       "Translation keyword contains invalid characters: a\x01"},
      {"caret starts string", "Main", "", "", "^abc", kPPDStringValue, "",
       "String value: ^abc begins with invalid character: ^"},
      {"quote starts string", "Main", "", "", "\"abc", kPPDStringValue, "",
       "String value: \"abc begins with invalid character: \""},
      {"slash in string", "Main", "", "", "a/b", kPPDStringValue, "",
       "Value contains invalid characters: a/b"},
      {"quote in quoted", "Main", "", "", "say \"hi\"", kPPDQuotedValue, "",
       "Value contains invalid characters: say \"hi\""},
      {"quote in invocation", "Main", "", "", "a\"b", kPPDInvocationValue, "",
       "Value contains invalid characters: a\"b"},
      {"space in symbol", "Main", "", "", "a b", kPPDSymbolValue, "",
       "Value contains invalid characters: a b"},
      {"non-ASCII symbol", "Main", "", "", "Tr\xC3\xA9", kPPDSymbolValue, "",
       "Value contains invalid characters: Tr\xC3\xA9"},
      {"non-ASCII other type", "Main", "", "", "é", 5, "",
       "Value contains invalid characters: é"},
      {"control byte in other type", "Main", "", "", "a\x02", 5, "",
       "Value contains invalid characters: a\x02"},
      {"long value translation", "Main", "", "", "v", kPPDStringValue, longTranslation,
       "Translation string is longer then the maximum allowed (80 characters): " +
           longTranslation},
      {"carriage return in value translation", "Main", "", "", "v", kPPDStringValue, "a\rb",
       "Translation keyword contains invalid characters: a\rb"},
      {"translation without option", "Main", "", "Text", "v", kPPDStringValue, "",
       "Option keyword is absent for translation string: Text"},
      {"value translation without value", "Main", "", "", "", kPPDStringValue, "VT",
       "Value is empty for value translation string: VT"},
      {"symbol with translation", "Main", "", "", "True", kPPDSymbolValue, "VT",
       "Symbol value: True cannot have translation string: VT"},
      {"unbreakable line", "Test", "", "", Repeat("x", 247), kPPDQuotedValue, "",
       "Line longer then the maximum allowed: 255 characters in statement: *Test: \"" +
           Repeat("x", 247) + "\""},
      {"first failure decides", "Bad Main", longKeyword, "", "^v", kPPDStringValue, "",
       "Main keyword contains invalid characters: Bad Main"},
  };
  for (const InvalidCase& c : cases) {
    const APPDStatement statement(c.mainKeyword, c.optionKeyword, c.optionTranslation, c.value,
                                  c.type, c.valueTranslation);
    AError error;
    EXPECT_EQ(statement.GetStringRepresentation(&error), AQVString()) << c.label;
    EXPECT_EQ(error, (AError{kRKPPDGenerationErrorDomain, 4, c.message})) << c.label;
    // A second request fails the same way.
    EXPECT_EQ(statement.GetStringRepresentation(nullptr), AQVString()) << c.label;
  }
}

struct LimitCase {
  const char* label;
  std::string mainKeyword;
  std::string optionKeyword;
  std::string optionTranslation;
  std::string value;
  PPDValueType type;
  bool valid;
};

TEST(StatementTest, CountsLimitsInUTF8Bytes) {
  const std::vector<LimitCase> cases = {
      {"main 40", Repeat("K", 40), "", "", "v", kPPDStringValue, true},
      {"main 41", Repeat("K", 41), "", "", "v", kPPDStringValue, false},
      {"option 40", "Main", Repeat("o", 40), "", "v", kPPDStringValue, true},
      {"option 41", "Main", Repeat("o", 41), "", "v", kPPDStringValue, false},
      {"translation 80 bytes", "Main", "A4", Repeat("é", 40), "v", kPPDStringValue, true},
      {"translation 81 bytes", "Main", "A4", Repeat("é", 40) + "a", "v", kPPDStringValue, false},
      {"translation 80 ASCII", "Main", "A4", Repeat("t", 80), "v", kPPDStringValue, true},
      {"translation 81 ASCII", "Main", "A4", Repeat("t", 81), "v", kPPDStringValue, false},
      // "*Test: " is 7 bytes, so a 248-byte string value makes a 255-byte line.
      {"line 255", "Test", "", "", Repeat("x", 248), kPPDStringValue, true},
      {"line 256", "Test", "", "", Repeat("x", 249), kPPDStringValue, false},
      {"line 255 with multibyte", "Test", "", "", Repeat("é", 123), 0, true},
      {"tab below 33 in value", "Test", "", "", "a\tb", 5, true},
  };
  for (const LimitCase& c : cases) {
    const APPDStatement statement(c.mainKeyword, c.optionKeyword, c.optionTranslation, c.value,
                                  c.type, "");
    AError error;
    EXPECT_EQ(statement.GetStringRepresentation(&error).IsEmpty(), !c.valid) << c.label;
    EXPECT_EQ(error.code, c.valid ? 0 : 4) << c.label;
  }
}

TEST(StatementTest, WrapsLongQuotedValuesAtSpaces) {
  // "*Test: \"" is 8 bytes; each word with its space 5. A word joins the line
  // while the line stays below 255 bytes, so 49 words fit on the first line.
  const std::string value = Words("abcd", 60);
  const std::string expected =
      "*Test: \"" + Words("abcd", 49) + "\n" + Words("abcd", 11) + "\"\n*End";
  for (const std::string& separator : {std::string(" "), std::string("\t")}) {
    const APPDStatement statement("Test", "", "", Words("abcd", 60, separator), kPPDQuotedValue,
                                  "");
    AError error;
    EXPECT_EQ(statement.GetStringRepresentation(&error), AQVString(expected));
    EXPECT_EQ(error.code, 0);
  }
  EXPECT_EQ(value.size(), 299u);
}

TEST(StatementTest, WrapsOnlyFromTwoHundredFiftySixBytes) {
  // 49 words (244 bytes) and " x": the line is exactly 255 bytes.
  const std::string fits = Words("abcd", 49) + " x";
  EXPECT_EQ(APPDStatement("Test", "", "", fits, kPPDInvocationValue, "")
                .GetStringRepresentation(nullptr),
            AQVString("*Test: \"" + fits + "\""));

  const std::string wraps = Words("abcd", 49) + " xy";
  EXPECT_EQ(APPDStatement("Test", "", "", wraps, kPPDInvocationValue, "")
                .GetStringRepresentation(nullptr),
            AQVString("*Test: \"" + Words("abcd", 49) + "\nxy\"\n*End"));
}

TEST(StatementTest, KeepsEmptyPiecesBetweenAdjacentSeparators) {
  const std::string value = Repeat("x", 240) + "  " + Repeat("y", 20);
  EXPECT_EQ(APPDStatement("Test", "", "", value, kPPDQuotedValue, "")
                .GetStringRepresentation(nullptr),
            AQVString("*Test: \"" + Repeat("x", 240) + " \n" + Repeat("y", 20) + "\"\n*End"));
}

TEST(StatementTest, NeverRewrapsAValueWithLineBreaks) {
  const std::string value = "first\n" + Words("abcd", 49);
  EXPECT_EQ(APPDStatement("Test", "", "", value, kPPDQuotedValue, "")
                .GetStringRepresentation(nullptr),
            AQVString("*Test: \"first\n" + Words("abcd", 49) + "\"\n*End"));
}

TEST(StatementTest, SettersDropTheCachedText) {
  APPDStatement statement("Test", "", "", "a", kPPDStringValue, "");
  EXPECT_EQ(statement.GetStringRepresentation(nullptr), AQVString("*Test: a"));
  statement.SetValueType(kPPDQuotedValue);
  EXPECT_EQ(statement.GetStringRepresentation(nullptr), AQVString("*Test: \"a\""));
  statement.SetMainKeyword("Other");
  statement.SetOptionKeyword("Opt");
  statement.SetOptionTranslation("T:");
  statement.SetValueTranslation("V");
  EXPECT_EQ(statement.GetStringRepresentation(nullptr), AQVString("*Other Opt/T<3A>: \"a\"/V"));
}

TEST(StatementTest, SuccessLeavesAnEarlierErrorAlone) {
  AError error{kRKPPDGenerationErrorDomain, 1, "earlier"};
  EXPECT_FALSE(
      APPDStatement("Test", "", "", "v", kPPDStringValue, "").GetStringRepresentation(&error).IsEmpty());
  EXPECT_EQ(error, (AError{kRKPPDGenerationErrorDomain, 1, "earlier"}));
}

struct CommentCase {
  const char* label;
  std::string comment;
  std::string expected;
  bool valid;
};

TEST(StatementTest, WritesCommentLines) {
  const std::vector<CommentCase> cases = {
      {"empty", "", "", true},
      {"one line", "hello", "*% hello", true},
      {"lines trimmed", "  one \n\ttwo\t\n", "*% one\n*% two\n*% ", true},
      {"252 characters", Repeat("c", 252), "*% " + Repeat("c", 252), true},
      {"252 after trimming", "   " + Repeat("c", 252) + "  ", "*% " + Repeat("c", 252), true},
      {"253 characters", Repeat("c", 253), "", false},
      {"252 multibyte characters", Repeat("é", 252), "*% " + Repeat("é", 252), true},
      {"253 multibyte characters", Repeat("é", 253), "", false},
      {"one long line fails all", "short\n" + Repeat("c", 253), "", false},
  };
  for (const CommentCase& c : cases) {
    AError error;
    EXPECT_EQ(APPDStatement::CommentLines(c.comment, &error), AQVString(c.expected)) << c.label;
    if (c.valid) {
      EXPECT_EQ(error, AError()) << c.label;
    } else {
      EXPECT_EQ(error, (AError{kRKPPDGenerationErrorDomain, 4,
                               "PPDGeneration error: Comment contains too long line:"}))
          << c.label;
    }
  }
}

TEST(StatementTest, TestsCharacterRanges) {
  EXPECT_TRUE(APPDStatement::IsValidCharacters("a\tb\nc\rd e", 33, 126, ""));
  EXPECT_FALSE(APPDStatement::IsValidCharacters("a\x1f", 32, 255, ""));
  EXPECT_FALSE(APPDStatement::IsValidCharacters("é", 32, 126, ""));
  EXPECT_TRUE(APPDStatement::IsValidCharacters("é", 32, 255, ""));
  EXPECT_FALSE(APPDStatement::IsValidCharacters("a/b", 32, 126, "/"));

  EXPECT_TRUE(APPDStatement::IsPlainMainTranslation("Fast Printing"));
  EXPECT_TRUE(APPDStatement::IsPlainMainTranslation("a\tb"));
  EXPECT_FALSE(APPDStatement::IsPlainMainTranslation("Café"));
  EXPECT_FALSE(APPDStatement::IsPlainMainTranslation("Ratio 1:2"));
  EXPECT_FALSE(APPDStatement::IsPlainMainTranslation("a\nb"));
}

}  // namespace
}  // namespace ppdforge
