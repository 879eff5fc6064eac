// Reading PPD files: the record factories, the text decoder, the
// normalisation of a read document and its equality after a round trip.

#include <gtest/gtest.h>

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
#include <cups/ppd.h>
#pragma GCC diagnostic pop

#include <unistd.h>

#include <atomic>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "core/ASharedObject.h"
#include "model/APPD.h"
#include "model/APPDIPPReason.h"
#include "model/APPDReader.h"
#include "model/APPDTextDecoder.h"
#include "model/IPPD.h"

namespace ppdforge {
namespace {

namespace fs = std::filesystem;

// A file in a fresh directory that is removed at the end of the test.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& bytes, const std::string& name = "test.ppd") {
    static std::atomic<int> counter{0};
    directory_ = fs::temp_directory_path() /
                 ("ppdforge-reader-" + std::to_string(::getpid()) + "-" + std::to_string(counter++));
    fs::create_directories(directory_);
    path_ = directory_ / name;
    std::ofstream(path_, std::ios::binary) << bytes;
  }
  ~TemporaryFile() {
    std::error_code ignored;
    fs::remove_all(directory_, ignored);
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  AQVString Path() const { return AQVString(path_.string()); }
  AQVString Directory() const { return AQVString(directory_.string()); }

 private:
  fs::path directory_;
  fs::path path_;
};

AQVString Render(const IPPD& ppd) {
  AError error;
  const AQVString text = ppd.GetStringRepresentation(&error);
  EXPECT_EQ(error.code, 0) << error.message;
  return text;
}

template <std::size_t N>
void Copy(char (&field)[N], const char* text) {
  std::strncpy(field, text, N - 1);
  field[N - 1] = '\0';
}

// Record factories.

TEST(ReaderRecords, NullRecordsGiveEmptyObjects) {
  AScopedRef<IPPDAttribute> attribute(IPPDAttribute::Create(static_cast<const ppd_attr_s*>(nullptr)));
  ASSERT_TRUE(attribute);
  EXPECT_EQ(attribute->GetName(), "");
  EXPECT_EQ(attribute->GetValue(), "");
  EXPECT_EQ(attribute->GetValueType(), kPPDInvocationValue);
  AScopedRef<IPPDChoice> choice(IPPDChoice::Create(static_cast<const ppd_choice_s*>(nullptr)));
  ASSERT_TRUE(choice);
  EXPECT_EQ(choice->GetID(), "");
  AScopedRef<IPPDOption> option(IPPDOption::Create(static_cast<const ppd_option_s*>(nullptr)));
  ASSERT_TRUE(option);
  EXPECT_EQ(option->GetUIType(), PPD_UI_BOOLEAN);
  EXPECT_TRUE(option->GetChoices().empty());
  AScopedRef<IPPDGroup> group(IPPDGroup::Create(static_cast<const ppd_group_s*>(nullptr)));
  ASSERT_TRUE(group);
  EXPECT_TRUE(group->GetOptions().empty());
  AScopedRef<IPPDPaperSize> size(IPPDPaperSize::Create(static_cast<const ppd_size_s*>(nullptr)));
  ASSERT_TRUE(size);
  EXPECT_EQ(size->GetSizeType(), kRKPPDImageableAreaSizeType);
  EXPECT_EQ(IPPD::Create(static_cast<const ppd_file_s*>(nullptr)), nullptr);
}

TEST(ReaderRecords, AttributeTakesItsValueKindFromTheKeywordTable) {
  struct Case {
    const char* name;
    PPDValueType type;
  };
  for (const Case& c : {Case{"ModelName", kPPDQuotedValue}, Case{"DefaultOutputOrder", kPPDStringValue},
                        Case{"cupsICCProfile", kPPDInvocationValue},
                        Case{"SomethingElse", kPPDInvocationValue}}) {
    ppd_attr_t record{};
    Copy(record.name, c.name);
    Copy(record.spec, "Spec");
    Copy(record.text, "Text");
    char value[] = "Value";
    record.value = value;
    AScopedRef<IPPDAttribute> attribute(IPPDAttribute::Create(&record));
    ASSERT_TRUE(attribute);
    EXPECT_EQ(attribute->GetName(), c.name);
    EXPECT_EQ(attribute->GetSpec(), "Spec");
    EXPECT_EQ(attribute->GetText(), "Text");
    EXPECT_EQ(attribute->GetValue(), "Value");
    EXPECT_EQ(attribute->GetValueType(), c.type) << c.name;
  }
}

TEST(ReaderRecords, TextsAreDecodedByKindAndControlCharactersBecomeHexStrings) {
  APPDTextDecoder latin1("ISOLatin1", true);
  ppd_attr_t record{};
  Copy(record.name, "fr.Translation");
  Copy(record.spec, "Mode");
  // UTF-8 on a translation line, as CUPS writes them.
  Copy(record.text, "R\xC3\xA9glage\nsuite");
  AScopedRef<IPPDAttribute> translation(IPPDAttribute::Create(&record, &latin1));
  EXPECT_EQ(translation->GetText(), "R\xC3\xA9glage<0A>suite");

  Copy(record.name, "NickName");
  Copy(record.text, "");
  char value[] = "Imprimante \xE9tudiant";
  record.value = value;
  AScopedRef<IPPDAttribute> nickName(IPPDAttribute::Create(&record, &latin1));
  EXPECT_EQ(nickName->GetValue(), "Imprimante \xC3\xA9tudiant");
  EXPECT_FALSE(latin1.Failed());
}

TEST(ReaderRecords, OptionHoldsAChoicePerRecordInOrder) {
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
  ppd_group_t group{};
  Copy(group.name, "Quality");
  Copy(group.text, "Print Quality");
  group.num_options = 1;
  group.options = &option;
  group.num_subgroups = 1;
  group.subgroups = &sub;

  AScopedRef<IPPDGroup> made(IPPDGroup::Create(&group));
  ASSERT_TRUE(made);
  EXPECT_EQ(made->GetID(), "Quality");
  EXPECT_EQ(made->GetName(), "Print Quality");
  ASSERT_EQ(made->GetSubGroups().size(), 1U);
  EXPECT_TRUE(made->GetSubGroups()[0]->IsSubGroup());
  EXPECT_EQ(made->GetSubGroups()[0]->GetName(), "Sub Group");
  ASSERT_EQ(made->GetOptions().size(), 1U);
  const IPPDOption* mode = made->GetOptions()[0];
  EXPECT_EQ(mode->GetID(), "Mode");
  EXPECT_EQ(mode->GetName(), "Print Mode");
  EXPECT_EQ(mode->GetDefaultChoice(), "Fine");
  EXPECT_EQ(mode->GetUIType(), PPD_UI_PICKMANY);
  ASSERT_EQ(mode->GetChoices().size(), 2U);
  EXPECT_EQ(mode->GetChoices()[0]->GetID(), "Fast");
  EXPECT_EQ(mode->GetChoices()[0]->GetCode(), "<</Speed 2>>setpagedevice");
  EXPECT_EQ(mode->GetChoices()[0]->GetOption(), mode);
  EXPECT_EQ(mode->GetChoices()[1]->GetName(), "Fine Mode");
  EXPECT_EQ(mode->GetChoices()[1]->GetCode(), "");
}

TEST(ReaderRecords, PaperSizeAndConstraintMapTheirFields) {
  ppd_size_t record{};
  Copy(record.name, "A4");
  record.width = 595;
  record.length = 842;
  record.left = 18;
  record.bottom = 36;
  record.right = 577;
  record.top = 806;
  AScopedRef<IPPDPaperSize> size(IPPDPaperSize::Create(&record));
  ASSERT_TRUE(size);
  EXPECT_TRUE(RKMediaSizeRectIsEqualToRect(size->GetPaperSizeRect(), RKMediaSizeRectMake(0, 0, 842, 595)));
  EXPECT_TRUE(RKMediaSizeRectIsEqualToRect(size->GetImageableRect(), RKMediaSizeRectMake(36, 18, 806, 577)));
  EXPECT_EQ(size->GetName(), "");
  EXPECT_EQ(size->GetStringRepresentation(nullptr), "*ImageableArea A4/A4: \"18.00 36.00 577.00 806.00\"");
  size->SetSizeType(kRKPPDPaperDimensionSizeType);
  EXPECT_EQ(size->GetStringRepresentation(nullptr), "*PaperDimension A4/A4: \"595.00 842.00\"");

  ppd_const_t constraint{};
  Copy(constraint.option1, "Duplex");
  Copy(constraint.option2, "MediaType");
  Copy(constraint.choice2, "Labels");
  AScopedRef<IPPDConstraint> made(IPPDConstraint::Create(&constraint));
  ASSERT_TRUE(made);
  EXPECT_TRUE(made->GetOptions() == (AArray{"Duplex", "MediaType"}));
  EXPECT_TRUE(made->GetChoices() == (AArray{"", "Labels"}));
  EXPECT_EQ(made->GetResolver(), "");
  EXPECT_FALSE(made->IsCUPSUIConstraint());
  EXPECT_FALSE(made->IsNonUI());
}

// Text decoding.

struct DecodeCase {
  const char* encoding;
  bool declared;
  const char* bytes;
  APPDTextDecoder::Kind kind;
  const char* expected;  // null: the text cannot be decoded
};

class ReaderDecoding : public ::testing::TestWithParam<DecodeCase> {};

TEST_P(ReaderDecoding, GivesUTF8OrRemembersTheFailure) {
  const DecodeCase& c = GetParam();
  APPDTextDecoder decoder(c.encoding, c.declared);
  const AQVString text = decoder.Decode(c.bytes, c.kind);
  if (c.expected == nullptr) {
    EXPECT_TRUE(decoder.Failed());
  } else {
    EXPECT_FALSE(decoder.Failed());
    EXPECT_EQ(text, c.expected);
  }
}

using Kind = APPDTextDecoder::Kind;
INSTANTIATE_TEST_SUITE_P(
    Encodings, ReaderDecoding,
    ::testing::Values(DecodeCase{"ISOLatin1", true, "Qualit\xE9", Kind::kRaw, "Qualit\xC3\xA9"},
                      DecodeCase{"", false, "Qualit\xE9", Kind::kRaw, "Qualit\xC3\xA9"},
                      DecodeCase{"WindowsANSI", true, "5 \x80", Kind::kRaw, "5 \xE2\x82\xAC"},
                      DecodeCase{"MacStandard", true, "\x8E", Kind::kRaw, "\xC3\xA9"},
                      DecodeCase{"ISOLatin1", true, "\xC3\xA9", Kind::kConverted, "\xC3\xA9"},
                      DecodeCase{"ISOLatin1", true, "\xC3\xA9", Kind::kTranslation, "\xC3\xA9"},
                      DecodeCase{"ISOLatin1", true, "\xE9t\xE9", Kind::kTranslation, "\xC3\xA9t\xC3\xA9"},
                      DecodeCase{"UTF-8", true, "\xC3\xA9", Kind::kRaw, "\xC3\xA9"},
                      DecodeCase{"UTF-8", true, "\xE9", Kind::kRaw, nullptr},
                      DecodeCase{"UTF-8", true, "\xE9", Kind::kConverted, nullptr},
                      DecodeCase{"UTF-8", true, "\xE9", Kind::kTranslation, nullptr},
                      DecodeCase{"Klingon", true, "\xC3\xA9", Kind::kRaw, "\xC3\xA9"}));

TEST(ReaderDecoding, NamesTheFirstTextThatFailed) {
  APPDTextDecoder decoder("UTF-8", true);
  decoder.Decode("Foo \xE9\x01", Kind::kRaw);
  decoder.Decode("Bar \xFF", Kind::kRaw);
  EXPECT_EQ(decoder.FailedText(), "Foo \\xE9\\x01");
  EXPECT_EQ(APPDTextDecoder("Klingon", true).EncodingName(), "Klingon (read as UTF-8)");
}

TEST(ReaderDecoding, RecognisesTranslationKeywords) {
  struct Case {
    const char* keyword;
    const char* language;  // null: not a translation keyword
    const char* rest;
  };
  for (const Case& c : {Case{"fr.Translation", "fr", "Translation"}, Case{"zh_CN.PageSize", "zh_CN", "PageSize"},
                        Case{"pt_BR.cupsIPPReason", "pt_BR", "cupsIPPReason"}, Case{"Fr.Translation", nullptr, nullptr},
                        Case{"f.Translation", nullptr, nullptr}, Case{"fr.", nullptr, nullptr},
                        Case{"fr_.X", nullptr, nullptr}, Case{"fra.X", nullptr, nullptr},
                        Case{"cupsFilter", nullptr, nullptr}}) {
    std::string_view language;
    std::string_view rest;
    const bool is = APPDTextDecoder::IsTranslationKeyword(c.keyword, &language, &rest);
    EXPECT_EQ(is, c.language != nullptr) << c.keyword;
    if (is && c.language != nullptr) {
      EXPECT_EQ(language, c.language);
      EXPECT_EQ(rest, c.rest);
    }
  }
}

TEST(ReaderEncoding, FindsNonASCIIOnlyOutsideTranslationLines) {
  struct Case {
    const char* text;
    bool expected;
  };
  for (const Case& c : {Case{"*NickName: \"Plain\"\n*OpenGroup: Q/Quality\n", false},
                        Case{"*NickName: \"\xC3\xA9\"\n", true},
                        Case{"*fr.Translation Mode/R\xC3\xA9glage: \"\"\n*zh_CN.Mode A/\xE4\xB8\xAD: \"\"\n", false},
                        Case{"*APPrinterPreset P/P: \"*Mode A\nnot \xC3\xA9\"\n*End\n", true},
                        Case{"*fr.APPrinterPreset P/\xC3\xA9: \"\"\n*Mode A: \"\xC3\xA9\"\n", true},
                        Case{"*% comment \xC3\xA9\n", true}}) {
    EXPECT_EQ(APPDReader::HasNonASCIIBaseText(c.text), c.expected) << c.text;
  }
}

// Normalisation.

const char* const kSmallPPD =
    "*PPD-Adobe: \"4.3\"\n"
    "*% A comment that is not kept\n"
    "*FormatVersion: \"4.3\"\n"
    "*LanguageVersion: English\n"
    "*LanguageEncoding: ISOLatin1\n"
    "*cupsLanguages: \"fr\"\n"
    "*ModelName: \"Small Printer\"\n"
    "*cupsMarkerName black/Black Ink: \"\"\n"
    "*fr.cupsMarkerName black/Encre noire: \"\"\n"
    "*fr.Translation ModelName/Petite imprimante: \"\"\n"
    "*de.Translation PageSize/Papierformat: \"\"\n"
    "*CustomPageSize True: \"pop pop pop <</PageSize[5 -2 roll]>>setpagedevice\"\n"
    "*ParamCustomPageSize Width: 1 points 72 612\n"
    "*ParamCustomPageSize Height: 2 points 72 792\n"
    "*ParamCustomPageSize WidthOffset: 3 points 0 0\n"
    "*ParamCustomPageSize HeightOffset: 4 points 0 0\n"
    "*ParamCustomPageSize Orientation: 5 int 0 0\n"
    "*OpenUI *PageSize/Media Size: PickOne\n"
    "*fr.Translation PageSize/Taille du papier: \"\"\n"
    "*OrderDependency: 10 AnySetup *PageSize\n"
    "*DefaultPageSize: A4\n"
    "*PageSize A4/A4: \"<</PageSize[595 842]>>setpagedevice\"\n"
    "*fr.PageSize A4/A4: \"\"\n"
    "*PageSize Letter/US Letter: \"<</PageSize[612 792]>>setpagedevice\"\n"
    "*fr.PageSize Letter/Lettre US: \"\"\n"
    "*CloseUI: *PageSize\n"
    "*DefaultImageableArea: A4\n"
    "*ImageableArea A4/A4: \"18 36 577 806\"\n"
    "*ImageableArea Letter/US Letter: \"18 36 594 756\"\n"
    "*DefaultPaperDimension: A4\n"
    "*PaperDimension A4/A4: \"595 842\"\n"
    "*PaperDimension Letter/US Letter: \"612 792\"\n"
    "*OpenGroup: Finishing/Finishing\n"
    "*fr.Translation Finishing/Finition: \"\"\n"
    "*OpenUI *Staple/Staple: Boolean\n"
    "*fr.Translation Staple/Agrafage: \"\"\n"
    "*OrderDependency: 20 AnySetup *Staple\n"
    "*DefaultStaple: False\n"
    "*Staple True/Yes: \"\"\n"
    "*fr.Staple True/Oui: \"\"\n"
    "*Staple False/No: \"\"\n"
    "*fr.Staple False/Non: \"\"\n"
    "*CloseUI: *Staple\n"
    "*CloseGroup: Finishing\n"
    "*UIConstraints: *PageSize Letter *Staple True\n"
    "*UIConstraints: *Staple True *PageSize Letter\n"
    "*cupsUIResolver fix: \"*Staple False\"\n"
    "*cupsUIConstraints fix: \"*PageSize Letter *Staple True\"\n"
    "*cupsIPPReason com.example-jam-error: \"text:Paper%20jam.\"\n"
    "*fr.cupsIPPReason com.example-jam-error: \"text:Bourrage%20papier.\"\n"
    "*DefaultFont: Courier\n";

const char* const kSmallNormalised =
    "*PPD-Adobe: \"4.3\"\n"
    "*% =================================\n"
    "*% Adobe Systems PostScript(R) Printer Description File\n"
    "*% Copyright (C) the ppdforge authors. All rights reserved.\n"
    "*% PPD Version for Apple Macintosh\n"
    "*% =================================\n"
    "*FormatVersion: \"4.3\"\n"
    "*LanguageVersion: English\n"
    "*LanguageEncoding: ISOLatin1\n"
    "*cupsLanguages: \"fr\"\n"
    "*ModelName: \"Small Printer\"\n"
    "*cupsMarkerName black/Black Ink: \"\"\n"
    "*fr.cupsMarkerName black/Encre noire: \"\"\n"
    "*fr.Translation ModelName/Petite imprimante: \"\"\n"
    "*de.Translation PageSize/Papierformat: \"\"\n"
    "*CustomPageSize True: \"pop pop pop <</PageSize[5 -2 roll]>>setpagedevice\"\n"
    "*ParamCustomPageSize Width: 1 points 72 612\n"
    "*ParamCustomPageSize Height: 2 points 72 792\n"
    "*ParamCustomPageSize WidthOffset: 3 points 0 0\n"
    "*ParamCustomPageSize HeightOffset: 4 points 0 0\n"
    "*ParamCustomPageSize Orientation: 5 int 0 0\n"
    "*cupsUIResolver fix: \"*Staple False\"\n"
    "*DefaultFont: Courier\n"
    "\n"
    "*OpenUI *PageSize/Media Size: PickOne\n"
    "*fr.Translation PageSize/Taille du papier: \"\"\n"
    "*OrderDependency: 10.0 AnySetup *PageSize\n"
    "*DefaultPageSize: A4\n"
    "*PageSize A4/A4: \"<</PageSize[595 842]>>setpagedevice\"\n"
    "*fr.PageSize A4/A4: \"\"\n"
    "*PageSize Letter/US Letter: \"<</PageSize[612 792]>>setpagedevice\"\n"
    "*fr.PageSize Letter/Lettre US: \"\"\n"
    "*CloseUI: *PageSize\n"
    "\n"
    "\n"
    "*DefaultImageableArea: A4\n"
    "*ImageableArea A4/A4: \"18.00 36.00 577.00 806.00\"\n"
    "*fr.ImageableArea A4/A4: \"\"\n"
    "*ImageableArea Letter/US Letter: \"18.00 36.00 594.00 756.00\"\n"
    "*fr.ImageableArea Letter/Lettre US: \"\"\n"
    "\n"
    "*DefaultPaperDimension: A4\n"
    "*PaperDimension A4/A4: \"595.00 842.00\"\n"
    "*fr.PaperDimension A4/A4: \"\"\n"
    "*PaperDimension Letter/US Letter: \"612.00 792.00\"\n"
    "*fr.PaperDimension Letter/Lettre US: \"\"\n"
    "\n"
    "*OpenGroup: Finishing/Finishing\n"
    "*fr.Translation Finishing/Finition: \"\"\n"
    "\n"
    "*OpenUI *Staple/Staple: Boolean\n"
    "*fr.Translation Staple/Agrafage: \"\"\n"
    "*OrderDependency: 10.0 AnySetup *Staple\n"
    "*DefaultStaple: False\n"
    "*Staple True/Yes: \"\"\n"
    "*fr.Staple True/Oui: \"\"\n"
    "*Staple False/No: \"\"\n"
    "*fr.Staple False/Non: \"\"\n"
    "*CloseUI: *Staple\n"
    "\n"
    "*CloseGroup: Finishing\n"
    "\n"
    "*UIConstraints: *PageSize Letter *Staple True\n"
    "*UIConstraints: *Staple True *PageSize Letter\n"
    "*cupsUIConstraints fix: \"*PageSize Letter *Staple True\"\n"
    "*cupsIPPReason com.example-jam-error: \"text:Paper%20jam.\"\n"
    "*fr.cupsIPPReason com.example-jam-error: \"text:Bourrage%20papier.\"\n"
    "\n";

TEST(ReaderNormalisation, GivesTheWholeNormalisedText) {
  const TemporaryFile file(kSmallPPD);
  AError error;
  AScopedRef<IPPD> ppd(APPDReader::Read(file.Path(), &error));
  ASSERT_TRUE(ppd) << error.message;
  EXPECT_EQ(Render(*ppd.get()), kSmallNormalised);
}

TEST(ReaderNormalisation, TurnsLinesIntoObjects) {
  const TemporaryFile file(kSmallPPD);
  AScopedRef<IPPD> ppd(IPPD::Create(file.Path()));
  ASSERT_TRUE(ppd);
  const IPPD& document = *ppd.get();

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
  for (const char* removed : {"DefaultPageSize", "DefaultStaple", "DefaultImageableArea", "fr.Staple",
                              "fr.cupsIPPReason", "cupsUIConstraints"}) {
    document.GetAttributesWithNameAndSpec(removed, nullptr, attributes);
    EXPECT_TRUE(attributes.empty()) << removed;
  }
}

TEST(ReaderNormalisation, AWrittenDocumentReadsBackEqualAndWritesTheSameText) {
  const TemporaryFile file(kSmallPPD);
  AScopedRef<IPPD> first(IPPD::Create(file.Path()));
  ASSERT_TRUE(first);
  const TemporaryFile written(Render(*first.get()).UTF8());
  AScopedRef<IPPD> second(IPPD::Create(written.Path()));
  ASSERT_TRUE(second);
  EXPECT_TRUE(*second.get() == *first.get());
  EXPECT_EQ(Render(*second.get()), Render(*first.get()));

  // A changed choice makes the documents differ.
  second->GetOptionWithID("Staple")->GetChoiceWithID("True")->SetName("Always");
  EXPECT_TRUE(*second.get() != *first.get());
}

TEST(ReaderNormalisation, StepsLeaveANormalisedDocumentAlone) {
  const TemporaryFile file(kSmallPPD);
  AScopedRef<IPPD> ppd(IPPD::Create(file.Path()));
  ASSERT_TRUE(ppd);
  auto& document = dynamic_cast<APPD&>(*ppd.get());
  const AQVString before = Render(document);
  APPDReader::NormaliseHeader(document);
  APPDReader::RemoveDefaultAttributes(document);
  APPDReader::PostprocessCustomPaperSizes(document);
  APPDReader::FillPaperSizeNames(document);
  APPDReader::FillLocalizationCaches(document);
  APPDReader::ObtainConstraintsFromAttributes(document);
  APPDReader::ChooseLanguageEncoding(document);
  EXPECT_EQ(Render(document), before);
}

TEST(ReaderNormalisation, ConstraintAttributesBecomeConstraintsAndMirrorsMerge) {
  AScopedRef<IPPD> ppd(IPPD::Create());
  auto& document = dynamic_cast<APPD&>(*ppd.get());
  document.AddAttribute("UIConstraints", "*Duplex *MediaType Labels", "", "", kPPDStringValue, "");
  document.AddAttribute("UIConstraints", "*MediaType Labels *Duplex", "", "", kPPDStringValue, "");
  document.AddAttribute("NonUIConstraints", "*InputSlot Manual *Duplex True", "", "", kPPDStringValue, "");
  document.AddAttribute("NonUIConstraints", "*Duplex True *InputSlot Manual", "", "", kPPDStringValue, "");
  document.AddAttribute("UIConstraints", "*Duplex True *InputSlot Manual", "", "", kPPDStringValue, "");
  // Not a pair: kept as it stands.
  document.AddAttribute("UIConstraints", "Labels *Duplex", "", "", kPPDStringValue, "");
  document.AddAttribute("cupsUIConstraints", "*A x *B *C z", "res", "", kPPDQuotedValue, "");
  APPDReader::ObtainConstraintsFromAttributes(document);

  const std::vector<IPPDConstraint*>& constraints = document.GetConstraints();
  ASSERT_EQ(constraints.size(), 4U);
  EXPECT_TRUE(constraints[0]->GetChoices() == (AArray{"", "Labels"}));
  EXPECT_FALSE(constraints[0]->IsNonUI());
  EXPECT_TRUE(constraints[1]->GetOptions() == (AArray{"Duplex", "InputSlot"}));
  EXPECT_FALSE(constraints[1]->IsNonUI());
  // The same pair under the other keyword is a constraint of its own.
  EXPECT_TRUE(constraints[2]->GetOptions() == (AArray{"InputSlot", "Duplex"}));
  EXPECT_TRUE(constraints[2]->IsNonUI());
  EXPECT_TRUE(constraints[3]->IsCUPSUIConstraint());
  EXPECT_TRUE(constraints[3]->GetOptions() == (AArray{"A", "B", "C"}));
  EXPECT_TRUE(constraints[3]->GetChoices() == (AArray{"x", "", "z"}));
  std::vector<IPPDAttribute*> left;
  document.GetAttributesWithNameAndSpec("UIConstraints", nullptr, left);
  ASSERT_EQ(left.size(), 1U);
  EXPECT_EQ(left[0]->GetValue(), "Labels *Duplex");
}

TEST(ReaderNormalisation, HeaderComesFirstOnce) {
  AScopedRef<IPPD> ppd(IPPD::Create());
  auto& document = dynamic_cast<APPD&>(*ppd.get());
  document.AddAttribute("FormatVersion", "4.3", "", "", kPPDQuotedValue, "");
  document.AddAttribute("PPD-Adobe", "4.0", "", "", kPPDQuotedValue, "");
  APPDReader::NormaliseHeader(document);
  APPDReader::NormaliseHeader(document);
  EXPECT_EQ(Render(document),
            std::string("*PPD-Adobe: \"4.3\"\n") +
                "*% =================================\n"
                "*% Adobe Systems PostScript(R) Printer Description File\n"
                "*% Copyright (C) the ppdforge authors. All rights reserved.\n"
                "*% PPD Version for Apple Macintosh\n"
                "*% =================================\n"
                "*FormatVersion: \"4.3\"\n\n\n");
}

TEST(ReaderNormalisation, EncodingBecomesUTF8OnlyForNonASCIIBaseText) {
  AScopedRef<IPPD> ppd(IPPD::Create());
  auto& document = dynamic_cast<APPD&>(*ppd.get());
  document.AddAttribute("LanguageEncoding", "ISOLatin1", "", "", kPPDStringValue, "");
  document.AddAttribute("NickName", "Plain", "", "", kPPDQuotedValue, "");
  APPDReader::ChooseLanguageEncoding(document);
  EXPECT_EQ(document.GetAttributeValueWithNameAndSpec("LanguageEncoding", nullptr), "ISOLatin1");
  document.AddAttribute("ShortNickName", "R\xC3\xA9sum\xC3\xA9", "", "", kPPDQuotedValue, "");
  APPDReader::ChooseLanguageEncoding(document);
  EXPECT_EQ(document.GetAttributeValueWithNameAndSpec("LanguageEncoding", nullptr), "UTF-8");
}

// Reading errors.

TEST(ReaderErrors, ReportsMissingFilesDirectoriesAndLibcupsErrors) {
  const TemporaryFile file("*PPD-Adobe: \"4.3\"\n*OpenUI *Foo: PickOne\n*Foo A: \"\"\n*Broken\n");
  AError error;
  const AQVString missing = file.Directory() + "/missing.ppd";
  EXPECT_EQ(APPDReader::Read(missing, &error), nullptr);
  EXPECT_EQ(error, (AError{"RKPPDGeneration", 6, missing + ": cannot read the PPD file: no such file"}));
  EXPECT_EQ(APPDReader::Read(file.Directory(), &error), nullptr);
  EXPECT_EQ(error.message, file.Directory() + ": cannot read the PPD file: it is a directory");
  EXPECT_EQ(APPDReader::Read(file.Path(), &error, true), nullptr);
  EXPECT_EQ(error.message, file.Path() + ": libcups rejects the PPD file: Missing value string on line 4");
  EXPECT_EQ(IPPD::Create(missing), nullptr);
}

TEST(ReaderErrors, RejectsAUTF8FileWithOtherBytes) {
  const TemporaryFile file(
      "*PPD-Adobe: \"4.3\"\n*LanguageEncoding: UTF-8\n*NickName: \"Caf\xE9\"\n");
  AError error;
  EXPECT_EQ(APPDReader::Read(file.Path(), &error), nullptr);
  EXPECT_EQ(error.code, 6);
  EXPECT_EQ(error.message,
            file.Path() + ": text that is not valid in the file's LanguageEncoding UTF-8: \"Caf\\xE9\"");
}

}  // namespace
}  // namespace ppdforge
