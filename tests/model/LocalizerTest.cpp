#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/ALocale.h"
#include "core/ASharedObject.h"
#include "model/IPPDLocalizer.h"
#include "model/LocalizerTestBundle.h"

namespace ppdforge {
namespace {

using testing::LocalizerTestBundle;

std::vector<AQVString> PossibleLocales(const IPPDLocalizer& localizer) {
  std::vector<AQVString> ids{"stale"};
  localizer.GetPossibleLocales(ids);
  return ids;
}

TEST(LocalizerTest, LocaleIDOfALanguage) {
  const std::vector<std::pair<const char*, const char*>> cases = {
      {"Chinese_Simplified", "zh_CN"}, {"Chinese_Traditional", "zh_TW"},
      {"English", "en"},               {"French", "fr"},
      {"German", "de"},                {"Japanese", "ja"},
      {"fr", "fr"},                    {"", "en"},
  };
  for (const auto& [language, id] : cases) {
    EXPECT_EQ(IPPDLocalizer::GetLocaleID(language), AQVString(id)) << language;
    // A second request is answered from the cache with the same text.
    EXPECT_EQ(IPPDLocalizer::GetLocaleID(language), AQVString(id)) << language;
  }
  // Only the exact names of the two Chinese rows bypass the platform.
  for (const char* language : {"zh_TW", "chinese_simplified", "Klingon"}) {
    EXPECT_EQ(IPPDLocalizer::GetLocaleID(language),
              ALocale::CanonicalLocaleIdentifier(language).value_or(AQVString("en")))
        << language;
  }
  EXPECT_NE(IPPDLocalizer::GetLocaleID("chinese_simplified"), AQVString("zh_CN"));
}

TEST(LocalizerTest, LocalizationNameOfALocaleID) {
  const std::vector<std::pair<const char*, const char*>> cases = {
      {"zh_CN", "Chinese_Simplified"}, {"zh_TW", "Chinese_Traditional"},
      {"fr", "French"},                {"de", "German"},
      {"en", "English"},
  };
  for (const auto& [id, name] : cases) {
    EXPECT_EQ(IPPDLocalizer::GetLocalizationName(id), AQVString(name)) << id;
  }
}

TEST(LocalizerTest, LocalizesFromTheFirstTableHoldingTheKey) {
  LocalizerTestBundle first;
  first.WriteTable("fr",
                   "/* product texts */\n"
                   "\"Paper Size\" = \"Taille du papier\";\n"
                   "\"Empty\" = \"\";\n");
  first.WriteTable("French", "\"Quality\" = \"Qualité\";\n");
  LocalizerTestBundle second;
  second.WriteTable("fr",
                    "\"Paper Size\" = \"Format\";\n"
                    "\"Empty\" = \"Vide\";\n"
                    "\"Tray\" = \"Bac\";\n");

  AScopedRef<IPPDLocalizer> localizer(IPPDLocalizer::Create());
  ASSERT_TRUE(localizer);
  localizer->LoadStrings(AQVString(first.PathString()), AQVString());
  localizer->LoadStrings(AQVString(second.PathString()), AQVString());

  const std::vector<std::pair<const char*, const char*>> cases = {
      {"Paper Size", "Taille du papier"},  // the earlier table wins
      {"Quality", "Qualité"},              // "French" and "fr" share one locale
      {"Tray", "Bac"},                     // a later table supplies missing keys
      {"Empty", "Empty"},                  // an empty text gives the key
      {"Missing", "Missing"},
  };
  for (const auto& [key, text] : cases) {
    EXPECT_EQ(localizer->Localize(key, "fr"), AQVString(text)) << key;
    EXPECT_EQ(localizer->Localize(key, "French"), AQVString(text)) << key;
  }
  EXPECT_EQ(localizer->Localize("Paper Size", "de"), AQVString("Paper Size"));
  EXPECT_EQ(PossibleLocales(*localizer.get()), std::vector<AQVString>{AQVString("fr")});
}

TEST(LocalizerTest, LoadsTheNamedTable) {
  LocalizerTestBundle bundle;
  bundle.Write("Resources/de.lproj/Options.strings", "\"Tray\" = \"Fach\";\n");
  bundle.WriteTable("de", "\"Tray\" = \"Schacht\";\n");
  AScopedRef<IPPDLocalizer> localizer(IPPDLocalizer::Create());
  localizer->LoadStrings(AQVString(bundle.PathString()), AQVString("Options"));
  EXPECT_EQ(localizer->Localize("Tray", "de"), AQVString("Fach"));
}

TEST(LocalizerTest, ReadsPropertyListTables) {
  LocalizerTestBundle bundle;
  bundle.WriteTable("ja",
                    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                    "<plist version=\"1.0\"><dict>"
                    "<key>Tray</key><string>トレイ</string>"
                    "</dict></plist>\n");
  AScopedRef<IPPDLocalizer> localizer(IPPDLocalizer::Create());
  localizer->LoadStrings(AQVString(bundle.PathString()), AQVString());
  EXPECT_EQ(localizer->Localize("Tray", "Japanese"), AQVString("トレイ"));
}

TEST(LocalizerTest, IgnoresWhatIsNoStringTable) {
  LocalizerTestBundle bundle;
  static const char kGarbage[] = "\x00\x01\x02 not a table {";
  bundle.WriteTable("fr", std::string(kGarbage, sizeof kGarbage - 1));
  bundle.Write("Resources/de.lproj/Other.strings", "\"Tray\" = \"Fach\";\n");
  AScopedRef<IPPDLocalizer> localizer(IPPDLocalizer::Create());
  localizer->LoadStrings(AQVString(bundle.PathString()), AQVString());
  localizer->LoadStrings(AQVString(bundle.PathString() + "/missing"), AQVString());
  localizer->LoadStrings(AQVString(), AQVString());
  EXPECT_TRUE(PossibleLocales(*localizer.get()).empty());
  EXPECT_EQ(localizer->Localize("Tray", "fr"), AQVString("Tray"));
  EXPECT_EQ(localizer->GetCurrentLocaleID(), AQVString());
}

TEST(LocalizerTest, ABundleWithoutLocalizationsGivesItsEnglishTable) {
  LocalizerTestBundle bundle;
  bundle.Write("Resources/Localizable.strings", "\"Tray\" = \"Paper tray\";\n");
  AScopedRef<IPPDLocalizer> localizer(IPPDLocalizer::Create());
  localizer->LoadStrings(AQVString(bundle.PathString()), AQVString());
  EXPECT_EQ(PossibleLocales(*localizer.get()), std::vector<AQVString>{AQVString("en")});
  EXPECT_EQ(localizer->Localize("Tray", "English"), AQVString("Paper tray"));
}

TEST(LocalizerTest, CurrentLocaleFallsBackToEnglish) {
  LocalizerTestBundle bundle;
  bundle.WriteTable("English", "\"Tray\" = \"Paper tray\";\n");
  bundle.WriteTable("Chinese_Simplified", "\"Tray\" = \"纸盒\";\n");
  bundle.WriteTable("fr", "\"Tray\" = \"Bac\";\n");
  AScopedRef<IPPDLocalizer> localizer(IPPDLocalizer::Create());
  // Nothing was loaded at construction, so nothing is current yet.
  EXPECT_EQ(localizer->GetCurrentLocaleID(), AQVString());
  localizer->LoadStrings(AQVString(bundle.PathString()), AQVString());
  EXPECT_EQ(PossibleLocales(*localizer.get()),
            (std::vector<AQVString>{AQVString("en"), AQVString("fr"), AQVString("zh_CN")}));

  localizer->SetCurrentLocaleID("French");
  EXPECT_EQ(localizer->GetCurrentLocaleID(), AQVString("fr"));
  EXPECT_EQ(localizer->Localize("Tray", AQVString()), AQVString("Bac"));

  localizer->SetCurrentLocaleID("Chinese_Simplified");
  EXPECT_EQ(localizer->GetCurrentLocaleID(), AQVString("zh_CN"));
  EXPECT_EQ(localizer->Localize("Tray", AQVString()), AQVString("纸盒"));

  localizer->SetCurrentLocaleID("German");
  EXPECT_EQ(localizer->GetCurrentLocaleID(), AQVString("en"));
  EXPECT_EQ(localizer->Localize("Tray", AQVString()), AQVString("Paper tray"));
}

}  // namespace
}  // namespace ppdforge
