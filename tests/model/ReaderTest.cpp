// Reading PPD files: the record factories, the text decoder, the
// normalisation of a read document and its equality after a round trip.

#include <gtest/gtest.h>

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
#include <cups/ppd.h>
#pragma GCC diagnostic pop

#include <cstring>
#include <string>
#include <vector>

#include "model/APPD.h"
#include "model/APPDIPPReason.h"
#include "model/APPDReader.h"
#include "model/APPDTextDecoder.h"
#include "model/ModelTestSupport.h"

namespace ppdforge {
namespace {

using testing::TestBundle;

// A PPD file in a bundle directory of its own.
struct TemporaryFile {
  explicit TemporaryFile(const std::string& bytes) { bundle.Write("test.ppd", bytes); }
  AQVString Path() const { return bundle.Path() + "/test.ppd"; }
  TestBundle bundle;
};

AQVString Render(const IPPD& ppd) {
  AError error;
  const AQVString text = ppd.GetStringRepresentation(&error);
  EXPECT_EQ(error, AError());
  return text;
}

template <std::size_t N>
void Copy(char (&field)[N], const char* text) {
  std::strncpy(field, text, N - 1);
  field[N - 1] = '\0';
}

TEST(ReaderRecords, AttributesTakeTheirKindFromTheKeywordAndDecodeByKind) {
  // The value kind comes from the keyword: quoted, string or invocation.
  const std::pair<const char*, const char*> kinds[] = {{"ModelName", "*ModelName Spec/Text: \"a<3C>b\""},
                                                       {"DefaultOutputOrder", "*DefaultOutputOrder Spec/Text: a<b"},
                                                       {"Other", "*Other Spec/Text: \"a<b\""}};
  for (const auto& [name, expected] : kinds) {
    ppd_attr_t record{};
    Copy(record.name, name);
    Copy(record.spec, "Spec");
    Copy(record.text, "Text");
    char value[] = "a<b";
    record.value = value;
    EXPECT_EQ(AScopedRef<IPPDAttribute>(IPPDAttribute::Create(&record))->GetStringRepresentation(nullptr), expected);
  }
  APPDTextDecoder latin1("ISOLatin1", true);
  ppd_attr_t record{};
  Copy(record.name, "fr.Translation");
  Copy(record.spec, "Mode");
  // UTF-8 on a translation line, as CUPS writes them; a control character
  // becomes a hex string.
  Copy(record.text, "R\xC3\xA9glage\nsuite");
  EXPECT_EQ(AScopedRef<IPPDAttribute>(IPPDAttribute::Create(&record, &latin1))->GetText(), "R\xC3\xA9glage<0A>suite");
  Copy(record.name, "NickName");
  Copy(record.text, "");
  char value[] = "Imprimante \xE9tudiant";
  record.value = value;
  EXPECT_EQ(AScopedRef<IPPDAttribute>(IPPDAttribute::Create(&record, &latin1))->GetValue(),
            "Imprimante \xC3\xA9tudiant");
  EXPECT_FALSE(latin1.Failed());
}

// Sizes and constraints are read from records too; the whole-file tests below
// cover them.
TEST(ReaderRecords, GroupsSubGroupsOptionsAndChoicesMapTheirFields) {
  ppd_choice_t choices[2]{};
  Copy(choices[0].choice, "Fast");
  Copy(choices[0].text, "Fast Mode");
  char code[] = "<</Speed 2>>setpagedevice";
  choices[0].code = code;
  Copy(choices[1].choice, "Fine");
  Copy(choices[1].text, "Fine Mode");
  ppd_option_t option{};
  Copy(option.keyword, "Mode");
  Copy(option.defchoice, "Fine");
  Copy(option.text, "Print Mode");
  option.ui = PPD_UI_PICKMANY;
  option.num_choices = 2;
  option.choices = choices;
  ppd_group_t sub{};
  Copy(sub.name, "Sub");
  Copy(sub.text, "Sub Group");
  sub.num_options = 1;
  sub.options = &option;
  ppd_group_t group = sub;
  Copy(group.name, "Quality");
  Copy(group.text, "Print Quality");
  group.num_subgroups = 1;
  group.subgroups = &sub;
  AScopedRef<IPPDGroup> made(IPPDGroup::Create(&group));
  const IPPDGroup* heldSub = made->GetSubGroupWithID("Sub");
  ASSERT_NE(heldSub, nullptr);
  EXPECT_TRUE(heldSub->IsSubGroup());
  EXPECT_EQ(heldSub->GetOptions()[0]->GetChoices()[0]->GetOption(), heldSub->GetOptions()[0]);
  const std::string mode =
      "*OpenUI *Mode/Print Mode: PickMany\n"
      "*OrderDependency: 10.0 AnySetup *Mode\n"
      "*DefaultMode: Fine\n"
      "*Mode Fast/Fast Mode: \"<</Speed 2>>setpagedevice\"\n"
      "*Mode Fine/Fine Mode: \"\"\n"
      "*CloseUI: *Mode\n";
  EXPECT_EQ(made->GetStringRepresentation(nullptr), "*OpenGroup: Quality/Print Quality\n\n*OpenSubGroup: Sub/Sub Group\n\n" +
                                                        mode + "\n*CloseSubGroup: Sub\n\n" + mode +
                                                        "\n*CloseGroup: Quality\n");
}

TEST(ReaderDecoding, GivesUTF8OrRemembersTheFirstFailure) {
  using Kind = APPDTextDecoder::Kind;
  const struct {
    const char* encoding;
    bool declared;
    const char* bytes;
    Kind kind;
    const char* expected;  // null: the text cannot be decoded
  } cases[] = {
      {"ISOLatin1", true, "Qualit\xE9", Kind::kRaw, "Qualit\xC3\xA9"},
      {"", false, "Qualit\xE9", Kind::kRaw, "Qualit\xC3\xA9"},
      {"WindowsANSI", true, "5 \x80", Kind::kRaw, "5 \xE2\x82\xAC"},
      {"MacStandard", true, "\x8E", Kind::kRaw, "\xC3\xA9"},
      {"ISOLatin1", true, "\xC3\xA9", Kind::kConverted, "\xC3\xA9"},
      {"ISOLatin1", true, "\xC3\xA9", Kind::kTranslation, "\xC3\xA9"},
      {"ISOLatin1", true, "\xE9t\xE9", Kind::kTranslation, "\xC3\xA9t\xC3\xA9"},
      {"UTF-8", true, "\xC3\xA9", Kind::kRaw, "\xC3\xA9"},
      {"UTF-8", true, "\xE9", Kind::kRaw, nullptr},
      {"UTF-8", true, "\xE9", Kind::kConverted, nullptr},
      {"UTF-8", true, "\xE9", Kind::kTranslation, nullptr},
      {"Klingon", true, "\xC3\xA9", Kind::kRaw, "\xC3\xA9"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.encoding) + " " + c.bytes);
    APPDTextDecoder decoder(c.encoding, c.declared);
    const AQVString text = decoder.Decode(c.bytes, c.kind);
    EXPECT_EQ(decoder.Failed(), c.expected == nullptr);
    if (c.expected != nullptr) {
      EXPECT_EQ(text, c.expected);
    }
  }
  APPDTextDecoder decoder("UTF-8", true);
  decoder.Decode("Foo \xE9\x01", Kind::kRaw);
  decoder.Decode("Bar \xFF", Kind::kRaw);
  EXPECT_EQ(decoder.FailedText(), "Foo \\xE9\\x01");
  EXPECT_EQ(APPDTextDecoder("Klingon", true).EncodingName(), "Klingon (read as UTF-8)");
}

TEST(ReaderDecoding, RecognisesTranslationKeywordsAndNonASCIIBaseText) {
  const struct {
    const char* keyword;
    const char* language;  // null: not a translation keyword
    const char* rest;
  } keywords[] = {{"fr.Translation", "fr", "Translation"}, {"zh_CN.PageSize", "zh_CN", "PageSize"},
                  {"pt_BR.cupsIPPReason", "pt_BR", "cupsIPPReason"}, {"Fr.Translation", nullptr, nullptr},
                  {"f.Translation", nullptr, nullptr}, {"fr.", nullptr, nullptr}, {"fr_.X", nullptr, nullptr},
                  {"fra.X", nullptr, nullptr}, {"cupsFilter", nullptr, nullptr}};
  for (const auto& c : keywords) {
    std::string_view language;
    std::string_view rest;
    ASSERT_EQ(APPDTextDecoder::IsTranslationKeyword(c.keyword, &language, &rest), c.language != nullptr) << c.keyword;
    if (c.language != nullptr) {
      EXPECT_EQ(std::string(language) + "|" + std::string(rest), std::string(c.language) + "|" + c.rest);
    }
  }
  const std::pair<const char*, bool> texts[] = {
      {"*NickName: \"Plain\"\n*OpenGroup: Q/Quality\n", false},
      {"*NickName: \"\xC3\xA9\"\n", true},
      {"*fr.Translation Mode/R\xC3\xA9glage: \"\"\n*zh_CN.Mode A/\xE4\xB8\xAD: \"\"\n", false},
      // Continuation lines belong to the statement that opened them.
      {"*APPrinterPreset P/P: \"*Mode A\nnot \xC3\xA9\"\n*End\n", true},
      {"*fr.APPrinterPreset P/\xC3\xA9: \"\"\n*Mode A: \"\xC3\xA9\"\n", true},
      {"*% comment \xC3\xA9\n", true},
  };
  for (const auto& [text, expected] : texts) EXPECT_EQ(APPDReader::HasNonASCIIBaseText(text), expected) << text;
}

const char* const kHeaderComment =
    "*% =================================\n"
    "*% Adobe Systems PostScript(R) Printer Description File\n"
    "*% Copyright (C) the ppdforge authors. All rights reserved.\n"
    "*% PPD Version for Apple Macintosh\n"
    "*% =================================";

// A small PPD file line by line, each read line with what the normalised
// text writes for it: sizes get two decimals and the translations of their
// choices, order dependencies are written anew, defaults and translations
// that belong to objects leave the attributes, and the remaining attributes
// keep their first place.
const char* const kAsRead = "(as read)";
struct Line {
  const char* read;  // null: only written
  const char* written = kAsRead;  // null: not written
};
const Line kSmallPPD[] = {
    {"*PPD-Adobe: \"4.3\""},
    {"*% A comment that is not kept", nullptr},
    {nullptr, kHeaderComment},
    {"*FormatVersion: \"4.3\""},
    {"*LanguageVersion: English"},
    {"*LanguageEncoding: ISOLatin1"},
    {"*cupsLanguages: \"fr\""},
    {"*ModelName: \"Small Printer\""},
    {"*cupsMarkerName black/Black Ink: \"\""},
    {"*fr.cupsMarkerName black/Encre noire: \"\""},
    {"*fr.Translation ModelName/Petite imprimante: \"\""},
    {"*de.Translation PageSize/Papierformat: \"\""},
    {"*CustomPageSize True: \"pop pop pop <</PageSize[5 -2 roll]>>setpagedevice\""},
    {"*ParamCustomPageSize Width: 1 points 72 612"},
    {"*ParamCustomPageSize Height: 2 points 72 792"},
    {"*ParamCustomPageSize WidthOffset: 3 points 0 0"},
    {"*ParamCustomPageSize HeightOffset: 4 points 0 0"},
    {"*ParamCustomPageSize Orientation: 5 int 0 0"},
    {nullptr, "*cupsUIResolver fix: \"*Staple False\""},
    {nullptr, "*DefaultFont: Courier"},
    {nullptr, ""},
    {"*OpenUI *PageSize/Media Size: PickOne"},
    {"*fr.Translation PageSize/Taille du papier: \"\""},
    {"*OrderDependency: 10 AnySetup *PageSize", "*OrderDependency: 10.0 AnySetup *PageSize"},
    {"*DefaultPageSize: A4"},
    {"*PageSize A4/A4: \"<</PageSize[595 842]>>setpagedevice\""},
    {"*fr.PageSize A4/A4: \"\""},
    {"*PageSize Letter/US Letter: \"<</PageSize[612 792]>>setpagedevice\""},
    {"*fr.PageSize Letter/Lettre US: \"\""},
    {"*CloseUI: *PageSize"},
    {nullptr, ""},
    {nullptr, ""},
    {"*DefaultImageableArea: A4"},
    {"*ImageableArea A4/A4: \"18 36 577 806\"", "*ImageableArea A4/A4: \"18.00 36.00 577.00 806.00\""},
    {nullptr, "*fr.ImageableArea A4/A4: \"\""},
    {"*ImageableArea Letter/US Letter: \"18 36 594 756\"", "*ImageableArea Letter/US Letter: \"18.00 36.00 594.00 756.00\""},
    {nullptr, "*fr.ImageableArea Letter/Lettre US: \"\""},
    {nullptr, ""},
    {"*DefaultPaperDimension: A4"},
    {"*PaperDimension A4/A4: \"595 842\"", "*PaperDimension A4/A4: \"595.00 842.00\""},
    {nullptr, "*fr.PaperDimension A4/A4: \"\""},
    {"*PaperDimension Letter/US Letter: \"612 792\"", "*PaperDimension Letter/US Letter: \"612.00 792.00\""},
    {nullptr, "*fr.PaperDimension Letter/Lettre US: \"\""},
    {nullptr, ""},
    {"*OpenGroup: Finishing/Finishing"},
    {"*fr.Translation Finishing/Finition: \"\""},
    {nullptr, ""},
    {"*OpenUI *Staple/Staple: Boolean"},
    {"*fr.Translation Staple/Agrafage: \"\""},
    {"*OrderDependency: 20 AnySetup *Staple", "*OrderDependency: 10.0 AnySetup *Staple"},
    {"*DefaultStaple: False"},
    {"*Staple True/Yes: \"\""},
    {"*fr.Staple True/Oui: \"\""},
    {"*Staple False/No: \"\""},
    {"*fr.Staple False/Non: \"\""},
    {"*CloseUI: *Staple"},
    {nullptr, ""},
    {"*CloseGroup: Finishing"},
    {nullptr, ""},
    {"*UIConstraints: *PageSize Letter *Staple True"},
    {"*UIConstraints: *Staple True *PageSize Letter"},
    {"*cupsUIResolver fix: \"*Staple False\"", nullptr},
    {"*cupsUIConstraints fix: \"*PageSize Letter *Staple True\""},
    {"*cupsIPPReason com.example-jam-error: \"text:Paper%20jam.\""},
    {"*fr.cupsIPPReason com.example-jam-error: \"text:Bourrage%20papier.\""},
    {"*DefaultFont: Courier", nullptr},
    {nullptr, ""},
};

// The read (true) or the written text of kSmallPPD.
std::string SmallPPD(bool read) {
  std::string text;
  for (const Line& line : kSmallPPD) {
    const char* chosen = read ? line.read : (line.written == kAsRead ? line.read : line.written);
    if (chosen != nullptr) text += std::string(chosen) + "\n";
  }
  return text;
}

TEST(ReaderNormalisation, TurnsLinesIntoObjectsAndGivesTheWholeNormalisedText) {
  const TemporaryFile file(SmallPPD(true));
  AError error;
  AScopedRef<IPPD> ppd(APPDReader::Read(file.Path(), &error));
  ASSERT_TRUE(ppd) << error.message;
  const IPPD& document = *ppd.get();
  EXPECT_EQ(Render(document), SmallPPD(false));

  // The placeholder "Custom" choice and size of libcups are gone.
  EXPECT_EQ(document.GetOptionWithID("PageSize")->GetChoiceWithID("Custom"), nullptr);
  EXPECT_EQ(document.GetPaperSizeWithID("Custom"), nullptr);
  EXPECT_EQ(document.GetPaperSizeWithID("Letter")->GetName(), "US Letter");
  // The mirrored pair is one constraint; the CUPS one has its resolver.
  ASSERT_EQ(document.GetConstraints().size(), 2U);
  EXPECT_TRUE(document.GetConstraints()[0]->GetOptions() == (AArray{"PageSize", "Staple"}));
  EXPECT_TRUE(document.GetConstraints()[1]->IsCUPSUIConstraint());
  EXPECT_EQ(document.GetConstraints()[1]->GetResolver(), "fix");
  // Translations of a listed language belong to their objects.
  const auto* staple = dynamic_cast<const APPDLocalizable*>(document.GetOptionWithID("Staple"));
  ASSERT_NE(staple, nullptr);
  EXPECT_EQ(staple->GetLocalizations().at("fr"), "Agrafage");
  std::vector<IPPDAttribute*> attributes;
  document.GetAttributesWithNameAndSpec("fr.Translation", nullptr, attributes);
  ASSERT_EQ(attributes.size(), 1U);
  EXPECT_EQ(attributes[0]->GetSpec(), "ModelName");
  document.GetAttributesWithNameAndSpec("cupsIPPReason", nullptr, attributes);
  ASSERT_EQ(attributes.size(), 1U);
  ASSERT_NE(dynamic_cast<APPDIPPReason*>(attributes[0]), nullptr);
  EXPECT_EQ(attributes[0]->GetText(), "Paper jam.");
  for (const char* removed :
       {"DefaultPageSize", "DefaultStaple", "DefaultImageableArea", "fr.Staple", "fr.cupsIPPReason", "cupsUIConstraints"}) {
    document.GetAttributesWithNameAndSpec(removed, nullptr, attributes);
    EXPECT_TRUE(attributes.empty()) << removed;
  }
}

TEST(ReaderNormalisation, AWrittenDocumentReadsBackEqualAndStepsLeaveItAlone) {
  const TemporaryFile file(SmallPPD(true));
  AScopedRef<IPPD> first(IPPD::Create(file.Path()));
  ASSERT_TRUE(first);
  const TemporaryFile written(Render(*first.get()).UTF8());
  AScopedRef<IPPD> second(IPPD::Create(written.Path()));
  ASSERT_TRUE(second);
  EXPECT_TRUE(*second.get() == *first.get());
  EXPECT_EQ(Render(*second.get()), SmallPPD(false));

  auto& document = dynamic_cast<APPD&>(*first.get());
  APPDReader::NormaliseHeader(document);
  APPDReader::RemoveDefaultAttributes(document);
  APPDReader::PostprocessCustomPaperSizes(document);
  APPDReader::FillPaperSizeNames(document);
  APPDReader::FillLocalizationCaches(document);
  APPDReader::ObtainConstraintsFromAttributes(document);
  APPDReader::ChooseLanguageEncoding(document);
  EXPECT_EQ(Render(document), SmallPPD(false));

  // A changed choice makes the documents differ.
  second->GetOptionWithID("Staple")->GetChoiceWithID("True")->SetName("Always");
  EXPECT_TRUE(*second.get() != *first.get());
}

TEST(ReaderNormalisation, ConstraintAttributesBecomeConstraintsAndMirrorsMerge) {
  AScopedRef<IPPD> ppd(IPPD::Create());
  auto& document = dynamic_cast<APPD&>(*ppd.get());
  const std::pair<const char*, const char*> attributes[] = {
      {"UIConstraints", "*Duplex *MediaType Labels"},         {"UIConstraints", "*MediaType Labels *Duplex"},
      {"NonUIConstraints", "*InputSlot Manual *Duplex True"}, {"NonUIConstraints", "*Duplex True *InputSlot Manual"},
      {"UIConstraints", "*Duplex True *InputSlot Manual"},
      {"UIConstraints", "Labels *Duplex"},  // not a pair: kept as it stands
  };
  for (const auto& [name, value] : attributes) document.AddAttribute(name, value, "", "", kPPDStringValue, "");
  document.AddAttribute("cupsUIConstraints", "*A x *B *C z", "res", "", kPPDQuotedValue, "");
  APPDReader::ObtainConstraintsFromAttributes(document);

  // The same pair under the other keyword is a constraint of its own.
  EXPECT_EQ(Render(document),
            "*UIConstraints: Labels *Duplex\n"
            "\n"
            "*UIConstraints: *Duplex *MediaType Labels\n"
            "*UIConstraints: *MediaType Labels *Duplex\n"
            "*UIConstraints: *Duplex True *InputSlot Manual\n"
            "*UIConstraints: *InputSlot Manual *Duplex True\n"
            "*NonUIConstraints: *InputSlot Manual *Duplex True\n"
            "*NonUIConstraints: *Duplex True *InputSlot Manual\n"
            "*cupsUIConstraints res: \"*A x *B *C z\"\n"
            "\n");
}

TEST(ReaderNormalisation, HeaderComesFirstOnceAndEncodingBecomesUTF8ForNonASCIIBaseText) {
  AScopedRef<IPPD> ppd(IPPD::Create());
  auto& document = dynamic_cast<APPD&>(*ppd.get());
  document.AddAttribute("FormatVersion", "4.3", "", "", kPPDQuotedValue, "");
  document.AddAttribute("PPD-Adobe", "4.0", "", "", kPPDQuotedValue, "");
  APPDReader::NormaliseHeader(document);
  APPDReader::NormaliseHeader(document);
  EXPECT_EQ(Render(document), std::string("*PPD-Adobe: \"4.3\"\n") + kHeaderComment + "\n*FormatVersion: \"4.3\"\n\n\n");

  document.AddAttribute("LanguageEncoding", "ISOLatin1", "", "", kPPDStringValue, "");
  document.AddAttribute("NickName", "Plain", "", "", kPPDQuotedValue, "");
  APPDReader::ChooseLanguageEncoding(document);
  EXPECT_EQ(document.GetAttributeValueWithNameAndSpec("LanguageEncoding", nullptr), "ISOLatin1");
  document.AddAttribute("ShortNickName", "R\xC3\xA9sum\xC3\xA9", "", "", kPPDQuotedValue, "");
  APPDReader::ChooseLanguageEncoding(document);
  EXPECT_EQ(document.GetAttributeValueWithNameAndSpec("LanguageEncoding", nullptr), "UTF-8");
}

TEST(ReaderErrors, ReportsUnreadableFilesLibcupsErrorsAndUndecodableText) {
  const TemporaryFile broken("*PPD-Adobe: \"4.3\"\n*OpenUI *Foo: PickOne\n*Foo A: \"\"\n*Broken\n");
  const TemporaryFile notUTF8("*PPD-Adobe: \"4.3\"\n*LanguageEncoding: UTF-8\n*NickName: \"Caf\xE9\"\n");
  const AQVString missing = broken.bundle.Path() + "/missing.ppd";
  const struct {
    AQVString path;
    bool strict;
    AQVString message;
  } cases[] = {
      {missing, false, missing + ": cannot read the PPD file: no such file"},
      {broken.bundle.Path(), false, broken.bundle.Path() + ": cannot read the PPD file: it is a directory"},
      {broken.Path(), true, broken.Path() + ": libcups rejects the PPD file: Missing value string on line 4"},
      {notUTF8.Path(), false,
       notUTF8.Path() + ": text that is not valid in the file's LanguageEncoding UTF-8: \"Caf\\xE9\""},
  };
  for (const auto& c : cases) {
    AError error;
    EXPECT_EQ(APPDReader::Read(c.path, &error, c.strict), nullptr) << c.message.UTF8();
    EXPECT_EQ(error, (AError{kRKPPDGenerationErrorDomain, 6, c.message}));
  }
  EXPECT_EQ(IPPD::Create(missing), nullptr);
  EXPECT_EQ(IPPD::Create(static_cast<const ppd_file_s*>(nullptr)), nullptr);
}

}  // namespace
}  // namespace ppdforge
