// APPDStatement::Append writes the lines of the model's hot paths without a
// statement object; it must give exactly the text and the error of a
// statement made of the same parts, and append nothing when that fails.

#include <gtest/gtest.h>

#include <string>

#include "model/APPDStatement.h"

namespace ppdforge {
namespace {

struct Parts {
  const char* label;
  std::string mainKeyword;
  std::string optionKeyword;
  std::string optionTranslation;
  std::string value;
  PPDValueType type;
  std::string valueTranslation;
};

std::string Words(const std::string& word, std::size_t count, char separator = ' ') {
  std::string out;
  for (std::size_t i = 0; i < count; ++i) {
    if (i != 0) out += separator;
    out += word;
  }
  return out;
}

class StatementAppend : public ::testing::TestWithParam<Parts> {};

TEST_P(StatementAppend, GivesTheStatementsTextAndError) {
  const Parts& p = GetParam();
  const APPDStatement statement(AQVString(p.mainKeyword), AQVString(p.optionKeyword),
                                AQVString(p.optionTranslation), AQVString(p.value), p.type,
                                AQVString(p.valueTranslation));
  AError expectedError;
  const AQVString expected = statement.GetStringRepresentation(&expectedError);

  const std::string before = "*Earlier: line\n";
  std::string out = before;
  AError error;
  const bool appended = APPDStatement::Append(out, p.mainKeyword, p.optionKeyword, p.optionTranslation,
                                              p.value, p.type, p.valueTranslation, &error);
  EXPECT_EQ(appended, !expected.IsEmpty());
  EXPECT_EQ(out, before + expected.UTF8());
  EXPECT_EQ(error.code, expectedError.code);
  EXPECT_EQ(error.message, expectedError.message);
}

INSTANTIATE_TEST_SUITE_P(
    Statements, StatementAppend,
    ::testing::Values(
        Parts{"Choice", "PageSize", "A4", "A4 (210 x 297 mm)",
              "<</PageSize[595.00 842.00] /ImagingBBox null>> setpagedevice", kPPDQuotedValue, ""},
        Parts{"Invocation", "CustomPageSize", "True", "", "pop <</PageSize[5 -2 roll]>>setpagedevice \"x\"",
              kPPDInvocationValue, ""},
        Parts{"Symbol", "Font", "Courier", "", "CourierData", kPPDSymbolValue, ""},
        Parts{"StringWithValueTranslation", "OpenGroup", "", "", "Finishing", kPPDStringValue, "Finition: <a"},
        Parts{"OtherType", "Custom", "", "", "a\tb", static_cast<PPDValueType>(7), ""},
        Parts{"EscapedTranslation", "Duplex", "None", "Off: < 1 > <3A> é < x", "", kPPDQuotedValue, ""},
        Parts{"StrayBracketsInValue", "Option", "Choice", "", "a < b > c <<x>> <3C> >> <", kPPDQuotedValue, ""},
        Parts{"NonASCIIBrackets", "Option", "Choice", "Ü < ü >", "ä < b >> «x» >", kPPDQuotedValue, ""},
        Parts{"QuoteInInvocation", "Option", "Choice", "", "say \"hi\"", kPPDInvocationValue, ""},
        Parts{"LineBreakValue", "Option", "Choice", "", "line one\nline two", kPPDQuotedValue, ""},
        Parts{"WrappedValue", "AcmeLongOption", "Choice", "Text",
              Words("<</cupsString1(a > b)>>setpagedevice", 30), kPPDQuotedValue, ""},
        Parts{"WrappedWithTabsAndDoubleBlanks", "Option", "Choice", "", Words("word\t  x", 60), kPPDQuotedValue,
              ""},
        Parts{"UnbreakableLongValue", "Option", "Choice", "", std::string(300, 'x'), kPPDQuotedValue, ""},
        Parts{"MissingMainKeyword", "", "A4", "A4", "v", kPPDQuotedValue, ""},
        Parts{"LongMainKeyword", std::string(41, 'K'), "", "", "v", kPPDQuotedValue, ""},
        Parts{"BadOptionKeyword", "Option", "A B", "", "v", kPPDQuotedValue, ""},
        Parts{"LongTranslationAfterEscaping", "Option", "Choice", std::string(78, 'a') + ":", "v",
              kPPDQuotedValue, ""},
        Parts{"BadStringStart", "Option", "", "", "^x", kPPDStringValue, ""},
        Parts{"QuoteInQuotedValue", "Option", "", "", "a\"b", kPPDQuotedValue, ""},
        Parts{"TranslationWithoutKeyword", "Option", "", "Text", "v", kPPDQuotedValue, ""},
        Parts{"ValueTranslationWithoutValue", "Option", "", "", "", kPPDStringValue, "Text"},
        Parts{"SymbolWithTranslation", "Option", "", "", "Sym", kPPDSymbolValue, "Text"},
        Parts{"LongStringLine", "Option", "", "", std::string(250, 's'), kPPDStringValue, ""}),
    [](const ::testing::TestParamInfo<Parts>& param) { return std::string(param.param.label); });

TEST(StatementAppend, AcceptsANullErrorPointer) {
  std::string out;
  EXPECT_FALSE(APPDStatement::Append(out, "", "", "", "", kPPDQuotedValue, "", nullptr));
  EXPECT_EQ(out, "");
  EXPECT_TRUE(APPDStatement::Append(out, "ColorDevice", "", "", "True", kPPDStringValue, "", nullptr));
  EXPECT_EQ(out, "*ColorDevice: True");
}

}  // namespace
}  // namespace ppdforge
