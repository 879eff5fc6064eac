// String tables are read when their language is first asked for, and
// indexed so that a key finds the text of the first table that holds it.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/ASharedObject.h"
#include "model/IPPDLocalizer.h"
#include "model/LocalizerTestBundle.h"

namespace ppdforge {
namespace {

using testing::LocalizerTestBundle;

TEST(LocalizerTableReading, WithinATableTheLastEntryOfAKeyWins) {
  LocalizerTestBundle first;
  first.WriteTable("de", "\"Tray\" = \"Fach\";\n\"Tray\" = \"Schacht\";\n\"Empty\" = \"Leer\";\n\"Empty\" = \"\";\n");
  LocalizerTestBundle second;
  second.WriteTable("de", "\"Tray\" = \"Kassette\";\n\"Empty\" = \"Nichts\";\n");
  AScopedRef<IPPDLocalizer> localizer(IPPDLocalizer::Create());
  localizer->LoadStrings(AQVString(first.PathString()), AQVString());
  localizer->LoadStrings(AQVString(second.PathString()), AQVString());
  EXPECT_EQ(localizer->Localize("Tray", "de"), AQVString("Schacht"));
  // The first table holds the key with an empty text: the key itself.
  EXPECT_EQ(localizer->Localize("Empty", "German"), AQVString("Empty"));
}

TEST(LocalizerTableReading, ATableIsReadWhenItsLanguageIsFirstAskedFor) {
  LocalizerTestBundle bundle;
  bundle.WriteTable("de", "\"Tray\" = \"Fach\";\n");
  bundle.WriteTable("fr", "\"Tray\" = \"Bac\";\n");
  AScopedRef<IPPDLocalizer> localizer(IPPDLocalizer::Create());
  localizer->LoadStrings(AQVString(bundle.PathString()), AQVString());
  EXPECT_EQ(localizer->Localize("Tray", "de"), AQVString("Fach"));
  // French has not been asked for yet; its file is read now, as it stands.
  bundle.WriteTable("fr", "\"Tray\" = \"Magasin\";\n");
  bundle.WriteTable("de", "\"Tray\" = \"Schacht\";\n");
  EXPECT_EQ(localizer->Localize("Tray", "fr"), AQVString("Magasin"));
  EXPECT_EQ(localizer->Localize("Tray", "de"), AQVString("Fach"));
}

TEST(LocalizerTableReading, ALanguageWhoseTablesAreUnreadableHasNoTables) {
  LocalizerTestBundle bundle;
  bundle.WriteTable("de", "not a table {");
  bundle.WriteTable("fr", "\"Tray\" = \"Bac\";\n");
  AScopedRef<IPPDLocalizer> localizer(IPPDLocalizer::Create());
  localizer->LoadStrings(AQVString(bundle.PathString()), AQVString());
  EXPECT_EQ(localizer->Localize("Tray", "de"), AQVString("Tray"));
  localizer->SetCurrentLocaleID("de");
  EXPECT_EQ(localizer->GetCurrentLocaleID(), AQVString());
  std::vector<AQVString> locales;
  localizer->GetPossibleLocales(locales);
  EXPECT_EQ(locales, std::vector<AQVString>{AQVString("fr")});
}

TEST(LocalizerTableReading, TablesAddedLaterAreFoundForALanguageAskedBefore) {
  LocalizerTestBundle first;
  first.WriteTable("fr", "\"Tray\" = \"Bac\";\n");
  LocalizerTestBundle second;
  second.WriteTable("de", "\"Tray\" = \"Fach\";\n");
  second.WriteTable("fr", "\"Tray\" = \"Magasin\";\n\"Quality\" = \"Qualité\";\n");
  AScopedRef<IPPDLocalizer> localizer(IPPDLocalizer::Create());
  localizer->LoadStrings(AQVString(first.PathString()), AQVString());
  EXPECT_EQ(localizer->Localize("Tray", "de"), AQVString("Tray"));
  EXPECT_EQ(localizer->Localize("Quality", "fr"), AQVString("Quality"));
  localizer->LoadStrings(AQVString(second.PathString()), AQVString());
  EXPECT_EQ(localizer->Localize("Tray", "de"), AQVString("Fach"));
  EXPECT_EQ(localizer->Localize("Tray", "fr"), AQVString("Bac"));
  EXPECT_EQ(localizer->Localize("Quality", "fr"), AQVString("Qualité"));
}

}  // namespace
}  // namespace ppdforge
