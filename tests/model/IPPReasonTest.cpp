#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/ASharedObject.h"
#include "model/APPDIPPReason.h"
#include "model/AttributeTestDocument.h"
#include "model/LocalizerTestBundle.h"

namespace ppdforge {
namespace {

using testing::AttributeTestDocument;
using testing::LocalizerTestBundle;

AScopedRef<APPDIPPReason> MakeReason(const AQVString& text, const AQVString& value,
                                     const AQVString& comment = AQVString()) {
  return AScopedRef<APPDIPPReason>(
      APPDIPPReason::Create("cupsIPPReason", "com.example-jam-error", text, value, comment));
}

TEST(IPPReasonTest, ProhibitedCharactersInOrder) {
  AScopedRef<APPDIPPReason> reason = MakeReason("t", "v");
  const std::vector<AQVString> expected = {"%", ";", "/", "?", ":", "@", "&", "=", "+",
                                           "$", ",", "<", ">", "#", " ", "\"", "\r", "\n",
                                           "\t", "[", "]", "*", "!", "'", "(", ")"};
  EXPECT_EQ(reason->GetProhibitedChars(), expected);
  EXPECT_EQ(reason->GetValueType(), kPPDInvocationValue);
}

TEST(IPPReasonTest, MakesTextURIs) {
  AScopedRef<APPDIPPReason> reason = MakeReason("t", "v");
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"", ""},
      {"Jam", "text:Jam"},
      {"Paper jam: open cover", "text:Paper%20jam%3A%20open%20cover"},
      {"100% <ok>", "text:100%25%20%3Cok%3E"},
      {"a\"b\n(c)", "text:a%22b%0A%28c%29"},
      {"Café", "text:Café"},
  };
  for (const auto& [text, uri] : cases) {
    EXPECT_EQ(reason->GetTextURIFromString(text), AQVString(uri)) << text;
  }
}

TEST(IPPReasonTest, WritesOneLineWithoutADocument) {
  AError error;
  EXPECT_EQ(MakeReason("Paper jam: open cover", "Paper jam")->GetStringRepresentation(&error),
            AQVString("*cupsIPPReason com.example-jam-error: \"text:Paper%20jam%3A%20open%20cover\""));
  EXPECT_EQ(error, AError());
  EXPECT_EQ(MakeReason("", "Paper jam")->GetStringRepresentation(nullptr),
            AQVString("*cupsIPPReason com.example-jam-error: \"text:Paper%20jam\""));
  EXPECT_EQ(MakeReason("Jam", "v", "Reason\nline")->GetStringRepresentation(nullptr),
            AQVString("*% Reason\n*% line\n*cupsIPPReason com.example-jam-error: \"text:Jam\""));
}

TEST(IPPReasonTest, SplitsFromOneHundredEightySevenBytes) {
  const std::string prefix = "*cupsIPPReason com.example-jam-error: \"";
  // "text:" and 181 letters make a URI of 186 bytes: one line.
  EXPECT_EQ(MakeReason(std::string(181, 'a'), "v")->GetStringRepresentation(nullptr),
            AQVString(prefix + "text:" + std::string(181, 'a') + "\""));
  // At 187 bytes the URI is cut into pieces of at most 185 bytes, each further
  // one a "text:" URI of its own, and the value is closed by *End.
  AError error;
  EXPECT_EQ(MakeReason(std::string(182, 'a'), "v")->GetStringRepresentation(&error),
            AQVString(prefix + "text:" + std::string(180, 'a') + "\ntext:aa\"\n*End"));
  EXPECT_EQ(error, AError());
}

TEST(IPPReasonTest, NeverSplitsInsideACharacter) {
  AScopedRef<APPDIPPReason> reason = MakeReason("t", "v");
  // "text:a" is 6 bytes; 89 two-byte letters fill 184 bytes, a 90th would not fit.
  const std::string uri = "text:a" + [] {
    std::string s;
    for (int i = 0; i < 100; ++i) s += "é";
    return s;
  }();
  std::string first = "text:a";
  for (int i = 0; i < 89; ++i) first += "é";
  std::string second = "text:";
  for (int i = 0; i < 11; ++i) second += "é";
  EXPECT_EQ(reason->GetSplittedString(uri), AQVString(first + "\n" + second));
  EXPECT_EQ(reason->GetSplittedString(AQVString()), AQVString());
}

TEST(IPPReasonTest, WritesALinePerLanguage) {
  LocalizerTestBundle bundle;
  bundle.WriteTable("fr", "\"Paper jam\" = \"Bourrage papier\";\n");
  AScopedRef<IPPDLocalizer> localizer(IPPDLocalizer::Create());
  localizer->LoadStrings(AQVString(bundle.PathString()), AQVString());
  AScopedRef<AttributeTestDocument> document(
      AttributeTestDocument::Create("English", {"fr", "de"}, localizer.get()));

  AScopedRef<APPDIPPReason> reason = MakeReason("Paper jam", "Jam", "IPP reasons");
  reason->SetPPD(document.get());
  ADictionary explicitTexts;
  explicitTexts.Set("de", AValue("Papierstau"));
  reason->SetTextLocalizations(explicitTexts);

  AError error;
  EXPECT_EQ(reason->GetStringRepresentation(&error),
            AQVString("*% IPP reasons\n"
                      "*cupsIPPReason com.example-jam-error: \"text:Paper%20jam\"\n"
                      "*fr.cupsIPPReason com.example-jam-error: \"text:Bourrage%20papier\"\n"
                      "*de.cupsIPPReason com.example-jam-error: \"text:Papierstau\""));
  EXPECT_EQ(error, AError());

  AScopedRef<IPPDAttribute> copy(reason->Clone());
  ASSERT_NE(dynamic_cast<APPDIPPReason*>(copy.get()), nullptr);
  copy->SetPPD(document.get());
  EXPECT_EQ(copy->GetStringRepresentation(nullptr),
            AQVString("*% IPP reasons\n"
                      "*cupsIPPReason com.example-jam-error: \"text:Paper%20jam\"\n"
                      "*fr.cupsIPPReason com.example-jam-error: \"text:Bourrage%20papier\"\n"
                      "*de.cupsIPPReason com.example-jam-error: \"text:Paper%20jam\""));
  copy->SetPPD(nullptr);
  reason->SetPPD(nullptr);
}

TEST(IPPReasonTest, PassesStatementErrorsThrough) {
  AScopedRef<APPDIPPReason> reason(
      APPDIPPReason::Create("cupsIPPReason", "bad spec", "Jam", "v", AQVString()));
  AError error;
  EXPECT_EQ(reason->GetStringRepresentation(&error), AQVString());
  EXPECT_EQ(error, (AError{kRKPPDGenerationErrorDomain, 4,
                           "Option keyword contains invalid characters: bad spec"}));
}

}  // namespace
}  // namespace ppdforge
