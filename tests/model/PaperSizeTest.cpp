#include <gtest/gtest.h>

#include "core/ASharedObject.h"
#include "model/APPDCommentable.h"
#include "model/APPDLocalizable.h"
#include "model/IPPD.h"
#include "model/IPPDLocalizer.h"
#include "model/IPPDPaperSize.h"

namespace ppdforge {
namespace {

// Members in order: bottom, left, top, right edge.
IPPDPaperSize* MakeA4(const AQVString& name, const AQVString& sizeType) {
  return IPPDPaperSize::Create("A4", name, RKMediaSizeRectMake(0, 0, 842, 595),
                               RKMediaSizeRectMake(12, 18, 830, 577), sizeType);
}

TEST(PaperSizeTest, WritesEachSizeType) {
  const struct {
    const char* sizeType;
    const char* expected;
  } cases[] = {
      {"PaperDimension", "*PaperDimension A4/A4 Paper: \"595.00 842.00\""},
      {"ImageableArea", "*ImageableArea A4/A4 Paper: \"18.00 12.00 577.00 830.00\""},
      {"PageSize", ""},
      {"imageablearea", ""},
  };
  for (const auto& c : cases) {
    AScopedRef<IPPDPaperSize> size(MakeA4("A4 Paper", c.sizeType));
    AError error;
    EXPECT_EQ(size->GetStringRepresentation(&error), c.expected) << c.sizeType;
    EXPECT_EQ(error.code, 0);
    EXPECT_EQ(size->IsValid(), *c.expected != '\0');
  }
}

TEST(PaperSizeTest, EmptyIDWritesNothing) {
  AScopedRef<IPPDPaperSize> size(MakeA4("", "PaperDimension"));
  size->SetID("");
  EXPECT_FALSE(size->IsValid());
  EXPECT_EQ(size->GetStringRepresentation(nullptr), "");
}

TEST(PaperSizeTest, NumbersHaveTwoDecimals) {
  const struct {
    double width;
    double height;
    const char* expected;
  } cases[] = {
      {595.2756, 841.8898, "*PaperDimension S/S: \"595.28 841.89\""},
      {1.005, 0.125, "*PaperDimension S/S: \"1.00 0.12\""},
      {612, 1e6, "*PaperDimension S/S: \"612.00 1000000.00\""},
      {-0.001, 0, "*PaperDimension S/S: \"-0.00 0.00\""},
  };
  for (const auto& c : cases) {
    AScopedRef<IPPDPaperSize> size(IPPDPaperSize::Create(
        "S", "", RKMediaSizeRectMake(0, 0, c.height, c.width), {}, "PaperDimension"));
    EXPECT_EQ(size->GetStringRepresentation(nullptr), c.expected);
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

TEST(PaperSizeTest, CommentComesFirst) {
  AScopedRef<IPPDPaperSize> size(MakeA4("", "ImageableArea"));
  AScopedRef<APPDCommentable> commentable(size->QueryPPDCommentable());
  commentable->SetComment("ISO A4");
  EXPECT_EQ(size->GetStringRepresentation(nullptr),
            "*% ISO A4\n*ImageableArea A4/A4: \"18.00 12.00 577.00 830.00\"");
}

TEST(PaperSizeTest, TranslationLinesPerLanguageLocalizedUnderTheIDWhenUnnamed) {
  AScopedRef<IPPD> ppd(IPPD::Create());
  AScopedRef<IPPDLocalizer> localizer(IPPDLocalizer::Create());
  ppd->SetLocalizer(localizer.get());
  ppd->AddAttribute("LanguageVersion", "English", "", "", kPPDStringValue, "");
  ppd->AddAttribute("cupsLanguages", "de ja", "", "", kPPDQuotedValue, "");
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

  size->SetName("Named");
  EXPECT_TRUE(localizable->GetLocalizations().empty());
  size->GetLocalizationKeys(keys);
  EXPECT_EQ(keys, std::vector<AQVString>{"Named"});
}

TEST(PaperSizeTest, StatementErrorIsPassedOn) {
  AScopedRef<IPPDPaperSize> size(MakeA4("", "ImageableArea"));
  size->SetID("A 4");
  AError error;
  EXPECT_EQ(size->GetStringRepresentation(&error), "");
  EXPECT_EQ(error.code, 4);
  EXPECT_EQ(error.message, "Option keyword contains invalid characters: A 4");
}

TEST(PaperSizeTest, CopyAndEquality) {
  AScopedRef<IPPD> ppd(IPPD::Create());
  AScopedRef<IPPDPaperSize> made(MakeA4("A4", "ImageableArea"));
  IPPDPaperSize* size = ppd->AddPaperSize(made.get(), false);
  AScopedRef<APPDLocalizable> localizable(size->QueryPPDLocalizable());
  localizable->SetLocalizedString("A4 (de)", "de");

  AScopedRef<IPPDPaperSize> copy(size->Clone());
  EXPECT_EQ(copy->GetPPD(), nullptr);
  AScopedRef<APPDLocalizable> copied(copy->QueryPPDLocalizable());
  EXPECT_TRUE(copied->GetLocalizations().empty());
  EXPECT_EQ(copy->GetSizeType(), "ImageableArea");
  EXPECT_TRUE(*copy.get() == *size);

  copy->SetSizeType("PaperDimension");
  EXPECT_TRUE(*copy.get() == *size);
  copy->SetImageableRect(RKMediaSizeRectMake(0, 0, 842, 595));
  EXPECT_TRUE(*copy.get() != *size);
}

}  // namespace
}  // namespace ppdforge
