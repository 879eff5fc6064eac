#include <gtest/gtest.h>

#include "model/APPDCommentable.h"
#include "model/APPDLocalizable.h"
#include "model/IPPDPaperSize.h"
#include "model/ModelTestSupport.h"

namespace ppdforge {
namespace {

using testing::Code4;
using testing::MakeDocument;

// Rectangle members in order: bottom, left, top, right edge.
IPPDPaperSize* MakeA4(const AQVString& name, const AQVString& sizeType) {
  return IPPDPaperSize::Create("A4", name, RKMediaSizeRectMake(0, 0, 842, 595), RKMediaSizeRectMake(12, 18, 830, 577),
                               sizeType);
}

TEST(PaperSizeTest, WritesEachSizeTypeWithTwoDecimals) {
  const struct {
    const char* id;
    const char* sizeType;
    double width, height;
    const char* comment;
    const char* expected;
    const char* error;
  } cases[] = {
      {"A4", "PaperDimension", 595, 842, "", "*PaperDimension A4/A4 Paper: \"595.00 842.00\"", ""},
      {"A4", "ImageableArea", 595, 842, "", "*ImageableArea A4/A4 Paper: \"18.00 12.00 577.00 830.00\"", ""},
      {"A4", "ImageableArea", 595, 842, "ISO A4", "*% ISO A4\n*ImageableArea A4/A4 Paper: \"18.00 12.00 577.00 830.00\"",
       ""},
      {"A4", "PageSize", 595, 842, "", "", ""},
      {"A4", "imageablearea", 595, 842, "", "", ""},
      {"", "PaperDimension", 595, 842, "", "", ""},
      {"A 4", "ImageableArea", 595, 842, "", "", "Option keyword contains invalid characters: A 4"},
      {"S", "PaperDimension", 595.2756, 841.8898, "", "*PaperDimension S/A4 Paper: \"595.28 841.89\"", ""},
      {"S", "PaperDimension", 1.005, 0.125, "", "*PaperDimension S/A4 Paper: \"1.00 0.12\"", ""},
      {"S", "PaperDimension", 612, 1e6, "", "*PaperDimension S/A4 Paper: \"612.00 1000000.00\"", ""},
      {"S", "PaperDimension", -0.001, 0, "", "*PaperDimension S/A4 Paper: \"-0.00 0.00\"", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.id) + " " + c.sizeType + " " + std::to_string(c.width));
    AScopedRef<IPPDPaperSize> size(IPPDPaperSize::Create(c.id, "A4 Paper", RKMediaSizeRectMake(0, 0, c.height, c.width),
                                                         RKMediaSizeRectMake(12, 18, 830, 577), c.sizeType));
    AScopedRef<APPDCommentable>(size->QueryPPDCommentable())->SetComment(c.comment);
    AError error;
    EXPECT_EQ(size->GetStringRepresentation(&error), AQVString(c.expected));
    EXPECT_EQ(error, Code4(c.error));
    EXPECT_EQ(size->IsValid(), *c.expected != '\0' || *c.error != '\0');
  }
}

TEST(PaperSizeTest, SetPaperSizeRectChangesOnlyWidthAndFirstNumber) {
  AScopedRef<IPPDPaperSize> size(MakeA4("", "PaperDimension"));
  size->SetPaperSizeRect(RKMediaSizeRectMake(700, 10, 100, 610));
  const ARKMediaSizeRect stored = size->GetPaperSizeRect();
  EXPECT_EQ(stored.top, 600);     // first: 700 - 100
  EXPECT_EQ(stored.left, 0);      // kept
  EXPECT_EQ(stored.bottom, 842);  // kept
  EXPECT_EQ(stored.right, 600);   // fourth: 610 - 10
  EXPECT_EQ(size->GetStringRepresentation(nullptr), "*PaperDimension A4/A4: \"600.00 842.00\"");
}

TEST(PaperSizeTest, TranslationLinesPerLanguageLocalizedUnderTheIDWhenUnnamed) {
  AScopedRef<IPPD> ppd(MakeDocument("de ja"));
  AScopedRef<IPPDPaperSize> made(MakeA4("", "PaperDimension"));
  IPPDPaperSize* size = ppd->AddPaperSize(made.get(), false);
  AScopedRef<APPDLocalizable> localizable(size->QueryPPDLocalizable());
  localizable->SetLocalizedString("A4 (de)", "de");
  std::vector<AQVString> keys;
  size->GetLocalizationKeys(keys);
  EXPECT_EQ(keys, std::vector<AQVString>{"A4"});
  // Unlike options, a main text that is not plain stays on the main line.
  localizable->SetLocalizedString("A4 \xC3\xA9", "en");
  EXPECT_EQ(size->GetStringRepresentation(nullptr),
            "*PaperDimension A4/A4 \xC3\xA9: \"595.00 842.00\"\n"
            "*de.PaperDimension A4/A4 (de): \"\"\n"
            "*ja.PaperDimension A4/A4: \"\"");
  // All languages at once, by name or identifier, as one at a time.
  std::vector<AQVString> texts{"stale"};
  localizable->GetLocalizedStrings({"German", "ja", "en"}, texts);
  EXPECT_EQ(texts, (std::vector<AQVString>{"A4 (de)", "A4", "A4 \xC3\xA9"}));
  EXPECT_EQ(texts[0], localizable->GetLocalizedString("de"));
  size->SetName("Named");
  EXPECT_TRUE(localizable->GetLocalizations().empty());
  size->GetLocalizationKeys(keys);
  EXPECT_EQ(keys, std::vector<AQVString>{"Named"});

  // A copy has no document and no translations; the size type is not compared.
  AScopedRef<IPPDPaperSize> copy(size->Clone());
  EXPECT_EQ(copy->GetPPD(), nullptr);
  localizable->SetLocalizedString("A4 (de)", "de");
  EXPECT_TRUE(AScopedRef<APPDLocalizable>(copy->QueryPPDLocalizable())->GetLocalizations().empty());
  EXPECT_EQ(copy->GetSizeType(), "PaperDimension");
  copy->SetSizeType("ImageableArea");
  EXPECT_TRUE(*copy.get() == *size);
  copy->SetImageableRect(RKMediaSizeRectMake(0, 0, 842, 595));
  EXPECT_TRUE(*copy.get() != *size);
}

}  // namespace
}  // namespace ppdforge
