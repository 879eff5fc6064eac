#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/ASharedObject.h"
#include "model/APPDAttribute.h"
#include "model/APPDLocalizer.h"
#include "model/AttributeTestDocument.h"
#include "model/LocalizerTestBundle.h"

namespace ppdforge {
namespace {

using testing::AttributeTestDocument;
using testing::LocalizerTestBundle;

AScopedRef<IPPDAttribute> MakeAttribute(const AQVString& name, const AQVString& spec,
                                        const AQVString& text, const AQVString& value,
                                        PPDValueType type, const AQVString& comment = AQVString()) {
  return AScopedRef<IPPDAttribute>(IPPDAttribute::Create(name, spec, text, value, type, comment));
}

// A localizer with French texts for two keys and an empty German table entry.
AScopedRef<IPPDLocalizer> MakeLocalizer(const LocalizerTestBundle& bundle) {
  bundle.WriteTable("fr",
                    "\"Fast Printing\" = \"Impression rapide\";\n"
                    "\"Café\" = \"Café crème\";\n");
  bundle.WriteTable("German", "\"Other\" = \"Andere\";\n");
  AScopedRef<IPPDLocalizer> localizer(IPPDLocalizer::Create());
  localizer->LoadStrings(AQVString(bundle.PathString()), AQVString());
  return localizer;
}

TEST(AttributeTest, DefaultValueTypeByKeyword) {
  const std::vector<std::pair<const char*, PPDValueType>> cases = {
      {"ModelName", kPPDQuotedValue},          {"PPD-Adobe", kPPDQuotedValue},
      {"MaxMediaHeight", kPPDQuotedValue},     {"DefaultOutputOrder", kPPDStringValue},
      {"LanguageVersion", kPPDStringValue},    {"cupsICCQualifier3", kPPDStringValue},
      {"cupsICCProfile", kPPDInvocationValue}, {"cupsPageSizeCategory", kPPDInvocationValue},
      {"modelname", kPPDInvocationValue},      {"Unknown", kPPDInvocationValue},
      {"", kPPDInvocationValue},
  };
  for (const auto& [name, type] : cases) {
    EXPECT_EQ(APPDAttribute::DefaultValueType(name), type) << name;
  }
}

struct WriteCase {
  const char* label;
  std::string name;
  std::string spec;
  std::string text;
  std::string value;
  PPDValueType type;
  std::string comment;
  std::string expected;
};

TEST(AttributeTest, WritesWithoutADocument) {
  const std::vector<WriteCase> cases = {
      {"bare", "ModelName", "", "", "Printer X", kPPDQuotedValue, "", "*ModelName: \"Printer X\""},
      {"spec and text", "APPrinterPreset", "Fast", "Fast Printing", "<</x 1>>",
       kPPDInvocationValue, "", "*APPrinterPreset Fast/Fast Printing: \"<</x 1>>\""},
      {"non-ASCII text stays without languages", "APPrinterPreset", "Fast", "Café", "v",
       kPPDInvocationValue, "", "*APPrinterPreset Fast/Café: \"v\""},
      {"comment before", "ModelName", "", "", "X", kPPDQuotedValue, "Model line\nsecond",
       "*% Model line\n*% second\n*ModelName: \"X\""},
      {"PPD-Adobe comment after", "PPD-Adobe", "", "", "4.3", kPPDQuotedValue, "===\nAdobe",
       "*PPD-Adobe: \"4.3\"\n*% ===\n*% Adobe"},
  };
  for (const WriteCase& c : cases) {
    AScopedRef<IPPDAttribute> attribute =
        MakeAttribute(c.name, c.spec, c.text, c.value, c.type, c.comment);
    AError error;
    EXPECT_EQ(attribute->GetStringRepresentation(&error), AQVString(c.expected)) << c.label;
    EXPECT_EQ(error, AError()) << c.label;
  }
}

TEST(AttributeTest, PassesStatementAndCommentErrorsThrough) {
  AError error;
  EXPECT_EQ(MakeAttribute("Bad Name", "", "", "v", kPPDQuotedValue)->GetStringRepresentation(&error),
            AQVString());
  EXPECT_EQ(error, (AError{kRKPPDGenerationErrorDomain, 4,
                           "Main keyword contains invalid characters: Bad Name"}));

  AError commentError;
  EXPECT_EQ(MakeAttribute("ModelName", "", "", "v", kPPDQuotedValue, std::string(253, 'c'))
                ->GetStringRepresentation(&commentError),
            AQVString());
  EXPECT_EQ(commentError, (AError{kRKPPDGenerationErrorDomain, 4,
                                  "PPDGeneration error: Comment contains too long line:"}));
}

TEST(AttributeTest, WritesOneTranslationLinePerLanguage) {
  LocalizerTestBundle bundle;
  AScopedRef<IPPDLocalizer> localizer = MakeLocalizer(bundle);
  AScopedRef<AttributeTestDocument> document(
      AttributeTestDocument::Create("English", {"fr", "de"}, localizer.get()));

  AScopedRef<IPPDAttribute> attribute =
      MakeAttribute("APPrinterPreset", "Fast", "Fast Printing", "<</x 1>>", kPPDInvocationValue,
                    "Preset");
  attribute->SetPPD(document.get());
  EXPECT_EQ(attribute->GetLocalizer(), localizer.get());
  AError error;
  EXPECT_EQ(attribute->GetStringRepresentation(&error),
            AQVString("*% Preset\n"
                      "*APPrinterPreset Fast/Fast Printing: \"<</x 1>>\"\n"
                      "*fr.APPrinterPreset Fast/Impression rapide: \"\"\n"
                      "*de.APPrinterPreset Fast/Fast Printing: \"\""));
  EXPECT_EQ(error, AError());

  // Explicit translations win over the localizer's.
  ADictionary explicitTexts;
  explicitTexts.Set("de", AValue("Schnelldruck"));
  explicitTexts.Set("it", AValue(7));
  attribute->SetTextLocalizations(explicitTexts);
  EXPECT_EQ(attribute->GetStringRepresentation(nullptr),
            AQVString("*% Preset\n"
                      "*APPrinterPreset Fast/Fast Printing: \"<</x 1>>\"\n"
                      "*fr.APPrinterPreset Fast/Impression rapide: \"\"\n"
                      "*de.APPrinterPreset Fast/Schnelldruck: \"\""));
  attribute->SetPPD(nullptr);
}

TEST(AttributeTest, MovesANonPlainMainTextToATranslationLine) {
  LocalizerTestBundle bundle;
  AScopedRef<IPPDLocalizer> localizer = MakeLocalizer(bundle);
  AScopedRef<AttributeTestDocument> document(
      AttributeTestDocument::Create("English", {"fr"}, localizer.get()));

  const std::vector<WriteCase> cases = {
      {"accented", "APPrinterPreset", "Fast", "Café", "v", kPPDInvocationValue, "",
       "*APPrinterPreset Fast: \"v\"\n"
       "*en.APPrinterPreset Fast/Café: \"\"\n"
       "*fr.APPrinterPreset Fast/Café crème: \"\""},
      {"colon", "APPrinterPreset", "Fast", "Ratio 1:2", "v", kPPDInvocationValue, "",
       "*APPrinterPreset Fast: \"v\"\n"
       "*en.APPrinterPreset Fast/Ratio 1<3A>2: \"\"\n"
       "*fr.APPrinterPreset Fast/Ratio 1<3A>2: \"\""},
      {"empty text writes no translations", "ModelName", "", "", "X", kPPDQuotedValue, "",
       "*ModelName: \"X\""},
  };
  for (const WriteCase& c : cases) {
    AScopedRef<IPPDAttribute> attribute = MakeAttribute(c.name, c.spec, c.text, c.value, c.type);
    attribute->SetPPD(document.get());
    ADictionary explicitTexts;
    explicitTexts.Set("fr", AValue(""));
    if (c.text.empty()) attribute->SetTextLocalizations(explicitTexts);
    EXPECT_EQ(attribute->GetStringRepresentation(nullptr), AQVString(c.expected)) << c.label;
    attribute->SetPPD(nullptr);
  }
}

TEST(AttributeTest, ReturnsTheLinesMadeBeforeABrokenTranslation) {
  LocalizerTestBundle bundle;
  AScopedRef<IPPDLocalizer> localizer = MakeLocalizer(bundle);
  AScopedRef<AttributeTestDocument> document(
      AttributeTestDocument::Create("English", {"fr", "de", "it"}, localizer.get()));
  AScopedRef<IPPDAttribute> attribute =
      MakeAttribute("APPrinterPreset", "Fast", "Fast Printing", "v", kPPDInvocationValue);
  attribute->SetPPD(document.get());
  ADictionary explicitTexts;
  explicitTexts.Set("de", AValue(std::string(81, 'd')));
  attribute->SetTextLocalizations(explicitTexts);

  AError error;
  EXPECT_EQ(attribute->GetStringRepresentation(&error),
            AQVString("*APPrinterPreset Fast/Fast Printing: \"v\"\n"
                      "*fr.APPrinterPreset Fast/Impression rapide: \"\""));
  EXPECT_EQ(error, (AError{kRKPPDGenerationErrorDomain, 4,
                           "Translation string is longer then the maximum allowed (80 characters): " +
                               std::string(81, 'd')}));
  attribute->SetPPD(nullptr);
}

TEST(AttributeTest, WithoutALocalizerEveryLanguageGetsTheKey) {
  AScopedRef<AttributeTestDocument> document(
      AttributeTestDocument::Create("English", {"fr"}, nullptr));
  AScopedRef<IPPDAttribute> attribute =
      MakeAttribute("APPrinterPreset", "Fast", "Fast Printing", "v", kPPDInvocationValue);
  ADictionary explicitTexts;
  explicitTexts.Set("fr", AValue("Rapide"));
  attribute->SetTextLocalizations(explicitTexts);
  attribute->SetPPD(document.get());
  EXPECT_EQ(attribute->GetStringRepresentation(nullptr),
            AQVString("*APPrinterPreset Fast/Fast Printing: \"v\"\n"
                      "*fr.APPrinterPreset Fast/Fast Printing: \"\""));
  attribute->SetPPD(nullptr);
}

TEST(AttributeTest, ComparesNameSpecTextAndValueOnly) {
  AScopedRef<IPPDAttribute> a = MakeAttribute("cupsFilter", "s", "t", "v", kPPDQuotedValue, "one");
  AScopedRef<IPPDAttribute> b = MakeAttribute("cupsFilter", "s", "t", "v", kPPDStringValue, "two");
  EXPECT_TRUE(*a.get() == *b.get());
  EXPECT_FALSE(*a.get() != *b.get());
  for (const char* field : {"name", "spec", "text", "value"}) {
    AScopedRef<IPPDAttribute> c = MakeAttribute("cupsFilter", "s", "t", "v", kPPDQuotedValue);
    const std::string f = field;
    if (f == "name") c->SetName("cupsfilter");
    if (f == "spec") c->SetSpec("S");
    if (f == "text") c->SetText("T");
    if (f == "value") c->SetValue("V");
    EXPECT_FALSE(*a.get() == *c.get()) << field;
    EXPECT_TRUE(*a.get() != *c.get()) << field;
  }
}

TEST(AttributeTest, SetTextAndCopyingDropExplicitTranslations) {
  AScopedRef<AttributeTestDocument> document(AttributeTestDocument::Create("English", {}, nullptr));
  AScopedRef<IPPDAttribute> attribute =
      MakeAttribute("cupsFilter", "s", "t", "v", kPPDStringValue, "note");
  attribute->SetPPD(document.get());
  ADictionary explicitTexts;
  explicitTexts.Set("fr", AValue("texte"));
  attribute->SetTextLocalizations(explicitTexts);

  AScopedRef<APPDLocalizable> localizable(attribute->QueryPPDLocalizable());
  ASSERT_TRUE(localizable);
  EXPECT_EQ(localizable->GetLocalizations().size(), 1u);

  AScopedRef<IPPDAttribute> copy(attribute->Clone());
  ASSERT_TRUE(copy);
  EXPECT_NE(copy.get(), attribute.get());
  EXPECT_TRUE(*copy.get() == *attribute.get());
  EXPECT_EQ(copy->GetValueType(), kPPDStringValue);
  EXPECT_EQ(copy->GetPPD(), nullptr);
  AScopedRef<APPDLocalizable> copyLocalizable(copy->QueryPPDLocalizable());
  EXPECT_TRUE(copyLocalizable->GetLocalizations().empty());
  AScopedRef<APPDCommentable> copyCommentable(copy->QueryPPDCommentable());
  EXPECT_EQ(copyCommentable->GetComment(), AQVString("note"));

  attribute->SetText("new");
  EXPECT_TRUE(localizable->GetLocalizations().empty());
  std::vector<AQVString> keys{"stale"};
  attribute->GetLocalizationKeys(keys);
  EXPECT_EQ(keys, std::vector<AQVString>{AQVString("new")});
  attribute->SetPPD(nullptr);
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

}  // namespace
}  // namespace ppdforge
