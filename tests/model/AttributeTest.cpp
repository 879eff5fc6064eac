#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "model/APPDAttribute.h"
#include "model/APPDIPPReason.h"
#include "model/ModelTestSupport.h"

namespace ppdforge {
namespace {

using testing::Code4;
using testing::MakeDocument;
using testing::MakeLocalizer;
using testing::TestBundle;

AScopedRef<IPPDAttribute> MakeAttribute(const AQVString& name, const AQVString& spec, const AQVString& text,
                                        const AQVString& value, PPDValueType type,
                                        const AQVString& comment = AQVString()) {
  return AScopedRef<IPPDAttribute>(IPPDAttribute::Create(name, spec, text, value, type, comment));
}

ADictionary Texts(std::initializer_list<std::pair<const char*, AValue>> items) {
  ADictionary texts;
  for (const auto& [language, text] : items) texts.Set(language, text);
  return texts;
}

// A bundle with French texts for two keys and a German table without them.
TestBundle& Tables(TestBundle& bundle) {
  bundle.WriteTable("fr", "\"Fast Printing\" = \"Impression rapide\";\n\"Café\" = \"Café crème\";\n");
  bundle.WriteTable("German", "\"Other\" = \"Andere\";\n");
  return bundle;
}
struct Localized {
  TestBundle bundle;
  AScopedRef<IPPDLocalizer> localizer{MakeLocalizer(Tables(bundle))};
};

TEST(AttributeTest, DefaultValueTypeByKeyword) {
  const std::pair<const char*, PPDValueType> cases[] = {
      {"ModelName", kPPDQuotedValue},          {"PPD-Adobe", kPPDQuotedValue},
      {"MaxMediaHeight", kPPDQuotedValue},     {"DefaultOutputOrder", kPPDStringValue},
      {"LanguageVersion", kPPDStringValue},    {"cupsICCQualifier3", kPPDStringValue},
      {"cupsICCProfile", kPPDInvocationValue}, {"cupsPageSizeCategory", kPPDInvocationValue},
      {"modelname", kPPDInvocationValue},      {"Unknown", kPPDInvocationValue},
      {"", kPPDInvocationValue},
  };
  for (const auto& [name, type] : cases) EXPECT_EQ(APPDAttribute::DefaultValueType(name), type) << name;
}

TEST(AttributeTest, WritesWithoutADocumentOrPassesTheErrorOn) {
  struct Case {
    const char* name;
    const char* spec;
    const char* text;
    const char* value;
    PPDValueType type;
    std::string comment;
    const char* expected;
    const char* error;  // empty: none
  };
  const Case cases[] = {
      {"ModelName", "", "", "Printer X", kPPDQuotedValue, "", "*ModelName: \"Printer X\"", ""},
      {"APPrinterPreset", "Fast", "Fast Printing", "<</x 1>>", kPPDInvocationValue, "",
       "*APPrinterPreset Fast/Fast Printing: \"<</x 1>>\"", ""},
      // Without languages a non-ASCII text stays on the main line.
      {"APPrinterPreset", "Fast", "Café", "v", kPPDInvocationValue, "", "*APPrinterPreset Fast/Café: \"v\"", ""},
      {"ModelName", "", "", "X", kPPDQuotedValue, "Model line\nsecond", "*% Model line\n*% second\n*ModelName: \"X\"", ""},
      {"PPD-Adobe", "", "", "4.3", kPPDQuotedValue, "===\nAdobe", "*PPD-Adobe: \"4.3\"\n*% ===\n*% Adobe", ""},
      {"Bad Name", "", "", "v", kPPDQuotedValue, "", "", "Main keyword contains invalid characters: Bad Name"},
      {"ModelName", "", "", "v", kPPDQuotedValue, std::string(253, 'c'), "",
       "PPDGeneration error: Comment contains too long line:"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.expected);
    AError error;
    EXPECT_EQ(MakeAttribute(c.name, c.spec, c.text, c.value, c.type, c.comment)->GetStringRepresentation(&error),
              AQVString(c.expected));
    EXPECT_EQ(error, Code4(c.error));
  }
}

TEST(AttributeTest, WritesOneTranslationLinePerLanguageExplicitTextsFirst) {
  Localized localized;
  AScopedRef<IPPD> document(MakeDocument("fr de", localized.localizer.get()));
  AScopedRef<IPPDAttribute> attribute =
      MakeAttribute("APPrinterPreset", "Fast", "Fast Printing", "<</x 1>>", kPPDInvocationValue, "Preset");
  attribute->SetPPD(document.get());
  EXPECT_EQ(attribute->GetLocalizer(), localized.localizer.get());
  AError error;
  EXPECT_EQ(attribute->GetStringRepresentation(&error),
            "*% Preset\n"
            "*APPrinterPreset Fast/Fast Printing: \"<</x 1>>\"\n"
            "*fr.APPrinterPreset Fast/Impression rapide: \"\"\n"
            "*de.APPrinterPreset Fast/Fast Printing: \"\"");
  EXPECT_EQ(error, AError());

  // Explicit string texts win over the localizer's; others are ignored.
  attribute->SetTextLocalizations(Texts({{"de", "Schnelldruck"}, {"it", 7}}));
  EXPECT_EQ(attribute->GetStringRepresentation(nullptr),
            "*% Preset\n"
            "*APPrinterPreset Fast/Fast Printing: \"<</x 1>>\"\n"
            "*fr.APPrinterPreset Fast/Impression rapide: \"\"\n"
            "*de.APPrinterPreset Fast/Schnelldruck: \"\"");

  // Lines made before a broken translation are returned with its error.
  document->RemoveAttributesWithNameAndSpec("cupsLanguages", nullptr);
  document->AddAttribute("cupsLanguages", "fr de it", "", "", kPPDQuotedValue, "");
  attribute->SetTextLocalizations(Texts({{"de", AQVString(std::string(81, 'd'))}}));
  EXPECT_EQ(attribute->GetStringRepresentation(&error),
            "*% Preset\n"
            "*APPrinterPreset Fast/Fast Printing: \"<</x 1>>\"\n"
            "*fr.APPrinterPreset Fast/Impression rapide: \"\"");
  EXPECT_EQ(error, (AError{kRKPPDGenerationErrorDomain, 4,
                           "Translation string is longer then the maximum allowed (80 characters): " +
                               std::string(81, 'd')}));
}

TEST(AttributeTest, MovesANonPlainMainTextToATranslationLine) {
  Localized localized;
  AScopedRef<IPPD> document(MakeDocument("fr", localized.localizer.get()));
  const struct {
    const char* name;
    const char* text;
    const char* expected;
  } cases[] = {
      {"APPrinterPreset", "Café",
       "*APPrinterPreset Fast: \"v\"\n*en.APPrinterPreset Fast/Café: \"\"\n*fr.APPrinterPreset Fast/Café crème: \"\""},
      {"APPrinterPreset", "Ratio 1:2",
       "*APPrinterPreset Fast: \"v\"\n*en.APPrinterPreset Fast/Ratio 1<3A>2: \"\"\n"
       "*fr.APPrinterPreset Fast/Ratio 1<3A>2: \"\""},
      // An empty text writes no translation lines, even with explicit ones.
      {"ModelName", "", "*ModelName Fast: \"v\""},
  };
  for (const auto& c : cases) {
    AScopedRef<IPPDAttribute> attribute = MakeAttribute(c.name, "Fast", c.text, "v", kPPDInvocationValue);
    attribute->SetPPD(document.get());
    if (*c.text == '\0') attribute->SetTextLocalizations(Texts({{"fr", ""}}));
    EXPECT_EQ(attribute->GetStringRepresentation(nullptr), AQVString(c.expected)) << c.text;
  }
}

TEST(AttributeTest, WithoutALocalizerEveryLanguageGetsTheKey) {
  AScopedRef<IPPD> document(MakeDocument("fr", nullptr));
  AScopedRef<IPPDAttribute> attribute =
      MakeAttribute("APPrinterPreset", "Fast", "Fast Printing", "v", kPPDInvocationValue);
  attribute->SetTextLocalizations(Texts({{"fr", "Rapide"}}));
  attribute->SetPPD(document.get());
  EXPECT_EQ(attribute->GetStringRepresentation(nullptr),
            "*APPrinterPreset Fast/Fast Printing: \"v\"\n*fr.APPrinterPreset Fast/Fast Printing: \"\"");
}

TEST(AttributeTest, ComparesNameSpecTextAndValueOnly) {
  AScopedRef<IPPDAttribute> a = MakeAttribute("cupsFilter", "s", "t", "v", kPPDQuotedValue, "one");
  AScopedRef<IPPDAttribute> b = MakeAttribute("cupsFilter", "s", "t", "v", kPPDStringValue, "two");
  EXPECT_TRUE(*a.get() == *b.get());
  EXPECT_FALSE(*a.get() != *b.get());
  const char* const others[][4] = {
      {"cupsfilter", "s", "t", "v"}, {"cupsFilter", "S", "t", "v"},
      {"cupsFilter", "s", "T", "v"}, {"cupsFilter", "s", "t", "V"}};
  for (const auto& f : others) {
    AScopedRef<IPPDAttribute> other = MakeAttribute(f[0], f[1], f[2], f[3], kPPDQuotedValue);
    EXPECT_FALSE(*a.get() == *other.get()) << f[0] << f[1] << f[2] << f[3];
    EXPECT_TRUE(*a.get() != *other.get()) << f[0] << f[1] << f[2] << f[3];
  }
}

TEST(AttributeTest, SetTextAndCopyingDropExplicitTranslations) {
  AScopedRef<IPPD> document(MakeDocument("", nullptr));
  AScopedRef<IPPDAttribute> attribute = MakeAttribute("cupsFilter", "s", "t", "v", kPPDStringValue, "note");
  attribute->SetPPD(document.get());
  attribute->SetTextLocalizations(Texts({{"fr", "texte"}}));
  AScopedRef<APPDLocalizable> localizable(attribute->QueryPPDLocalizable());
  EXPECT_EQ(localizable->GetLocalizations().size(), 1u);

  AScopedRef<IPPDAttribute> copy(attribute->Clone());
  EXPECT_NE(copy.get(), attribute.get());
  EXPECT_TRUE(*copy.get() == *attribute.get());
  EXPECT_EQ(copy->GetValueType(), kPPDStringValue);
  EXPECT_EQ(copy->GetPPD(), nullptr);
  EXPECT_TRUE(AScopedRef<APPDLocalizable>(copy->QueryPPDLocalizable())->GetLocalizations().empty());
  EXPECT_EQ(AScopedRef<APPDCommentable>(copy->QueryPPDCommentable())->GetComment(), AQVString("note"));

  attribute->SetText("new");
  EXPECT_TRUE(localizable->GetLocalizations().empty());
  std::vector<AQVString> keys{"stale"};
  attribute->GetLocalizationKeys(keys);
  EXPECT_EQ(keys, std::vector<AQVString>{AQVString("new")});
}

TEST(AttributeTest, QueriesAddAReference) {
  IPPDAttribute* attribute = IPPDAttribute::Create("cupsFilter", "", "", "v", kPPDQuotedValue, "");
  ASSERT_NE(attribute, nullptr);
  APPDCommentable* commentable = attribute->QueryPPDCommentable();
  APPDLocalizable* localizable = attribute->QueryPPDLocalizable();
  EXPECT_EQ(attribute->Release(), 2);
  EXPECT_EQ(commentable->Release(), 1);
  EXPECT_EQ(localizable->Release(), 0);
}

AScopedRef<APPDIPPReason> MakeReason(const AQVString& text, const AQVString& value,
                                     const AQVString& comment = AQVString(),
                                     const AQVString& spec = "com.example-jam-error") {
  return AScopedRef<APPDIPPReason>(APPDIPPReason::Create("cupsIPPReason", spec, text, value, comment));
}

TEST(IPPReasonTest, MakesTextURIsWithoutProhibitedCharacters) {
  AScopedRef<APPDIPPReason> reason = MakeReason("t", "v");
  EXPECT_EQ(reason->GetProhibitedChars(),
            (std::vector<AQVString>{"%", ";", "/", "?", ":", "@", "&", "=", "+", "$", ",", "<", ">",
                                    "#", " ", "\"", "\r", "\n", "\t", "[", "]", "*", "!", "'", "(", ")"}));
  EXPECT_EQ(reason->GetValueType(), kPPDInvocationValue);
  const std::pair<std::string, std::string> cases[] = {
      {"", ""},
      {"Jam", "text:Jam"},
      {"Paper jam: open cover", "text:Paper%20jam%3A%20open%20cover"},
      {"100% <ok>", "text:100%25%20%3Cok%3E"},
      {"a\"b\n(c)", "text:a%22b%0A%28c%29"},
      {"Café", "text:Café"},
  };
  for (const auto& [text, uri] : cases) EXPECT_EQ(reason->GetTextURIFromString(text), AQVString(uri)) << text;

  // "text:a" is 6 bytes; 89 two-byte letters fill 184 bytes, a 90th would not fit.
  std::string e89, e11;
  for (int i = 0; i < 89; ++i) e89 += "é";
  for (int i = 0; i < 11; ++i) e11 += "é";
  EXPECT_EQ(reason->GetSplittedString("text:a" + e89 + e11), AQVString("text:a" + e89 + "\ntext:" + e11));
  EXPECT_EQ(reason->GetSplittedString(AQVString()), AQVString());
}

TEST(IPPReasonTest, WritesOneLineOrSplitsFrom187Bytes) {
  const std::string prefix = "*cupsIPPReason com.example-jam-error: \"";
  const struct {
    std::string text, value, comment, spec;
    std::string expected;
    const char* error;
  } cases[] = {
      {"Paper jam: open cover", "Paper jam", "", "com.example-jam-error",
       prefix + "text:Paper%20jam%3A%20open%20cover\"", ""},
      // Without a text the value is the text.
      {"", "Paper jam", "", "com.example-jam-error", prefix + "text:Paper%20jam\"", ""},
      {"Jam", "v", "Reason\nline", "com.example-jam-error", "*% Reason\n*% line\n" + prefix + "text:Jam\"", ""},
      // "text:" and 181 letters make a URI of 186 bytes: one line.
      {std::string(181, 'a'), "v", "", "com.example-jam-error", prefix + "text:" + std::string(181, 'a') + "\"", ""},
      // From 187 bytes the URI is cut into pieces of at most 185 bytes, each
      // further one a "text:" URI of its own, and the value closes with *End.
      {std::string(182, 'a'), "v", "", "com.example-jam-error",
       prefix + "text:" + std::string(180, 'a') + "\ntext:aa\"\n*End", ""},
      {"Jam", "v", "", "bad spec", "", "Option keyword contains invalid characters: bad spec"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    AError error;
    EXPECT_EQ(MakeReason(c.text, c.value, c.comment, c.spec)->GetStringRepresentation(&error), AQVString(c.expected));
    EXPECT_EQ(error, Code4(c.error));
  }
}

TEST(IPPReasonTest, WritesALinePerLanguageAndTheCopyDropsExplicitTexts) {
  TestBundle bundle;
  bundle.WriteTable("fr", "\"Paper jam\" = \"Bourrage papier\";\n");
  AScopedRef<IPPDLocalizer> localizer(MakeLocalizer(bundle));
  AScopedRef<IPPD> document(MakeDocument("fr de", localizer.get()));
  AScopedRef<APPDIPPReason> reason = MakeReason("Paper jam", "Jam", "IPP reasons");
  reason->SetPPD(document.get());
  reason->SetTextLocalizations(Texts({{"de", "Papierstau"}}));
  const std::string lines =
      "*% IPP reasons\n"
      "*cupsIPPReason com.example-jam-error: \"text:Paper%20jam\"\n"
      "*fr.cupsIPPReason com.example-jam-error: \"text:Bourrage%20papier\"\n";
  AError error;
  EXPECT_EQ(reason->GetStringRepresentation(&error),
            lines + "*de.cupsIPPReason com.example-jam-error: \"text:Papierstau\"");
  EXPECT_EQ(error, AError());

  AScopedRef<IPPDAttribute> copy(reason->Clone());
  ASSERT_NE(dynamic_cast<APPDIPPReason*>(copy.get()), nullptr);
  copy->SetPPD(document.get());
  EXPECT_EQ(copy->GetStringRepresentation(nullptr),
            lines + "*de.cupsIPPReason com.example-jam-error: \"text:Paper%20jam\"");
}

}  // namespace
}  // namespace ppdforge
