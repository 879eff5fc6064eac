#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "core/ALocale.h"
#include "model/ModelTestSupport.h"

namespace ppdforge {
namespace {

using testing::MakeLocalizer;
using testing::TestBundle;

std::vector<AQVString> PossibleLocales(const IPPDLocalizer& localizer) {
  std::vector<AQVString> ids{"stale"};
  localizer.GetPossibleLocales(ids);
  return ids;
}

TEST(LocalizerTest, LocaleIDsAndLocalizationNames) {
  const std::pair<const char*, const char*> ids[] = {
      {"Chinese_Simplified", "zh_CN"}, {"Chinese_Traditional", "zh_TW"}, {"English", "en"}, {"French", "fr"},
      {"German", "de"},                {"Japanese", "ja"},               {"fr", "fr"},      {"", "en"},
  };
  for (const auto& [language, id] : ids) {
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
  const std::pair<const char*, const char*> names[] = {
      {"zh_CN", "Chinese_Simplified"}, {"zh_TW", "Chinese_Traditional"}, {"fr", "French"}, {"de", "German"},
      {"en", "English"},
  };
  for (const auto& [id, name] : names) EXPECT_EQ(IPPDLocalizer::GetLocalizationName(id), AQVString(name)) << id;
}

TEST(LocalizerTest, LocalizesFromTheFirstTableHoldingTheKey) {
  TestBundle first;
  first.WriteTable("fr",
                   "/* product texts */\n\"Paper Size\" = \"Taille du papier\";\n\"Empty\" = \"\";\n"
                   "\"Tray\" = \"Casier\";\n\"Tray\" = \"Bac\";\n");
  first.WriteTable("French", "\"Quality\" = \"Qualité\";\n");
  TestBundle second;
  second.WriteTable("fr",
                    "\"Paper Size\" = \"Format\";\n\"Empty\" = \"Vide\";\n\"Tray\" = \"Magasin\";\n\"Door\" = \"Porte\";\n");
  AScopedRef<IPPDLocalizer> localizer(MakeLocalizer(first));
  localizer->LoadStrings(second.Path(), AQVString());

  const std::pair<const char*, const char*> cases[] = {
      {"Paper Size", "Taille du papier"},  // the earlier table wins
      {"Tray", "Bac"},                     // within a table the last entry of a key wins
      {"Quality", "Qualité"},              // "French" and "fr" share one locale
      {"Door", "Porte"},                   // a later table supplies missing keys
      {"Empty", "Empty"},                  // an empty text in the first table gives the key
      {"Missing", "Missing"},
  };
  for (const auto& [key, text] : cases) {
    EXPECT_EQ(localizer->Localize(key, "fr"), AQVString(text)) << key;
    EXPECT_EQ(localizer->Localize(key, "French"), AQVString(text)) << key;
  }
  EXPECT_EQ(localizer->Localize("Paper Size", "de"), AQVString("Paper Size"));
  EXPECT_EQ(PossibleLocales(*localizer.get()), std::vector<AQVString>{AQVString("fr")});

  // One lookup for several languages gives what Localize gives for each,
  // whatever the list held before.
  const std::vector<AQVString> languages = {"fr", "de", "French", "", "Klingon", "fr"};
  std::vector<AQVString> texts = {"stale text longer than any answer", "x"};
  for (const auto& [key, text] : cases) {
    localizer->LocalizeEach(key, languages, texts);
    ASSERT_EQ(texts.size(), languages.size()) << key;
    for (std::size_t i = 0; i < languages.size(); ++i) {
      EXPECT_EQ(texts[i], localizer->Localize(key, languages[i])) << key << " in " << languages[i];
    }
  }
  localizer->LocalizeEach("Tray", {}, texts);
  EXPECT_TRUE(texts.empty());
}

TEST(LocalizerTest, ATableIsReadWhenItsLanguageIsFirstAskedFor) {
  TestBundle bundle;
  bundle.WriteTable("de", "\"Tray\" = \"Fach\";\n");
  bundle.WriteTable("fr", "\"Tray\" = \"Bac\";\n");
  AScopedRef<IPPDLocalizer> localizer(MakeLocalizer(bundle));
  EXPECT_EQ(localizer->Localize("Tray", "de"), AQVString("Fach"));
  // French has not been asked for yet; its file is read now, as it stands.
  bundle.WriteTable("fr", "\"Tray\" = \"Magasin\";\n");
  bundle.WriteTable("de", "\"Tray\" = \"Schacht\";\n");
  EXPECT_EQ(localizer->Localize("Tray", "fr"), AQVString("Magasin"));
  EXPECT_EQ(localizer->Localize("Tray", "de"), AQVString("Fach"));
}

TEST(LocalizerTest, TablesAddedLaterAreFoundForALanguageAskedBefore) {
  TestBundle first;
  first.WriteTable("fr", "\"Tray\" = \"Bac\";\n");
  TestBundle second;
  second.WriteTable("de", "\"Tray\" = \"Fach\";\n");
  second.WriteTable("fr", "\"Tray\" = \"Magasin\";\n\"Quality\" = \"Qualité\";\n");
  AScopedRef<IPPDLocalizer> localizer(MakeLocalizer(first));
  EXPECT_EQ(localizer->Localize("Tray", "de"), AQVString("Tray"));
  EXPECT_EQ(localizer->Localize("Quality", "fr"), AQVString("Quality"));
  localizer->LoadStrings(second.Path(), AQVString());
  EXPECT_EQ(localizer->Localize("Tray", "de"), AQVString("Fach"));
  EXPECT_EQ(localizer->Localize("Tray", "fr"), AQVString("Bac"));
  EXPECT_EQ(localizer->Localize("Quality", "fr"), AQVString("Qualité"));
}

TEST(LocalizerTest, ReadsNamedAndPropertyListTablesAndIgnoresWhatIsNoTable) {
  TestBundle bundle;
  bundle.Write("Resources/de.lproj/Options.strings", "\"Tray\" = \"Fach\";\n");
  bundle.WriteTable("de", "\"Tray\" = \"Schacht\";\n");
  AScopedRef<IPPDLocalizer> named(IPPDLocalizer::Create());
  named->LoadStrings(bundle.Path(), AQVString("Options"));
  EXPECT_EQ(named->Localize("Tray", "de"), AQVString("Fach"));

  bundle.WriteTable("ja",
                    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
                    "<key>Tray</key><string>トレイ</string></dict></plist>\n");
  bundle.WriteTable("de", std::string("\x00\x01\x02 not a table {", 17));
  bundle.Write("Resources/it.lproj/Other.strings", "\"Tray\" = \"Vassoio\";\n");
  AScopedRef<IPPDLocalizer> localizer(MakeLocalizer(bundle));
  localizer->LoadStrings(bundle.Path() + "/missing", AQVString());
  localizer->LoadStrings(AQVString(), AQVString());
  EXPECT_EQ(localizer->Localize("Tray", "Japanese"), AQVString("トレイ"));
  EXPECT_EQ(localizer->Localize("Tray", "de"), AQVString("Tray"));
  EXPECT_EQ(localizer->Localize("Tray", "it"), AQVString("Tray"));
  // A language whose tables are unreadable has none and cannot become current.
  EXPECT_EQ(PossibleLocales(*localizer.get()), std::vector<AQVString>{AQVString("ja")});
  localizer->SetCurrentLocaleID("de");
  EXPECT_EQ(localizer->GetCurrentLocaleID(), AQVString());
}

TEST(LocalizerTest, ABundleWithoutLocalizationsGivesItsEnglishTable) {
  TestBundle bundle;
  bundle.Write("Resources/Localizable.strings", "\"Tray\" = \"Paper tray\";\n");
  AScopedRef<IPPDLocalizer> localizer(MakeLocalizer(bundle));
  EXPECT_EQ(PossibleLocales(*localizer.get()), std::vector<AQVString>{AQVString("en")});
  EXPECT_EQ(localizer->Localize("Tray", "English"), AQVString("Paper tray"));
}

TEST(LocalizerTest, CurrentLocaleFallsBackToEnglish) {
  TestBundle bundle;
  bundle.WriteTable("English", "\"Tray\" = \"Paper tray\";\n");
  bundle.WriteTable("Chinese_Simplified", "\"Tray\" = \"纸盒\";\n");
  bundle.WriteTable("fr", "\"Tray\" = \"Bac\";\n");
  AScopedRef<IPPDLocalizer> localizer(IPPDLocalizer::Create());
  // Nothing was loaded at construction, so nothing is current yet.
  EXPECT_EQ(localizer->GetCurrentLocaleID(), AQVString());
  localizer->LoadStrings(bundle.Path(), AQVString());
  EXPECT_EQ(PossibleLocales(*localizer.get()), (std::vector<AQVString>{"en", "fr", "zh_CN"}));
  const std::pair<const char*, const char*> cases[][2] = {
      {{"French", "fr"}, {"Tray", "Bac"}},
      {{"Chinese_Simplified", "zh_CN"}, {"Tray", "纸盒"}},
      {{"German", "en"}, {"Tray", "Paper tray"}},
  };
  for (const auto& c : cases) {
    localizer->SetCurrentLocaleID(c[0].first);
    EXPECT_EQ(localizer->GetCurrentLocaleID(), AQVString(c[0].second));
    EXPECT_EQ(localizer->Localize(c[1].first, AQVString()), AQVString(c[1].second));
  }
}

}  // namespace
}  // namespace ppdforge
