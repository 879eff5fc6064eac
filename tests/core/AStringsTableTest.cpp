#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "core/AStringsTable.h"

namespace ppdforge {
namespace {

using Entries = std::vector<std::pair<AQVString, AQVString>>;

std::map<std::string, std::string> Strings(const ADictionary& table) {
  std::map<std::string, std::string> entries;
  for (const auto& [key, value] : table) entries[key.UTF8()] = value.AsString() ? value.AsString()->UTF8() : "<not a string>";
  return entries;
}

// UTF-16 bytes of ASCII-and-BMP `text` with a byte-order mark.
std::string UTF16Bytes(const std::u16string& text, bool littleEndian) {
  std::string bytes = littleEndian ? "\xFF\xFE" : "\xFE\xFF";
  for (char16_t unit : text) {
    const char high = static_cast<char>(unit >> 8);
    const char low = static_cast<char>(unit & 0xFF);
    bytes += littleEndian ? low : high;
    bytes += littleEndian ? high : low;
  }
  return bytes;
}

TEST(AStringsTableTest, ReadsTheTextForm) {
  struct Case {
    const char* name;
    std::string data;
    std::map<std::string, std::string> expected;
  };
  const std::u16string utf16 = u"/* Général */\n\"Duplex\" = \"Recto verso €\";\n\"Emoji\" = \"\\UD83D\\UDE00\";\n";
  const std::map<std::string, std::string> utf16Expected = {{"Duplex", "Recto verso €"}, {"Emoji", "😀"}};
  const Case cases[] = {
      {"plain", "\"Paper\" = \"Papier\";", {{"Paper", "Papier"}}},
      {"BOM and comments",
       "\xEF\xBB\xBF/* a\n comment */ \"a\" /* x */ = // y\n \"b\" ;\n// last line",
       {{"a", "b"}}},
      {"escapes",
       R"("k" = "q\" b\\ n\n t\t r\r u\u00e9 U\U20AC o\101\351 x\x";)",
       {{"k", "q\" b\\ n\n t\t r\r u\u00e9 U\u20ac oA\u00e9 xx"}}},
      {"unquoted", "Key_1.a-b = value;\n\"s\" = 12;", {{"Key_1.a-b", "value"}, {"s", "12"}}},
      {"short form", "\"Same\";", {{"Same", "Same"}}},
      {"later wins", "\"a\" = \"1\"; \"a\" = \"2\";", {{"a", "2"}}},
      {"empty", "  /* nothing */ ", {}},
      {"UTF-16LE", UTF16Bytes(utf16, true), utf16Expected},
      {"UTF-16BE", UTF16Bytes(utf16, false), utf16Expected},
  };
  for (const Case& c : cases) {
    const std::optional<ADictionary> table = AStringsTable::Parse(c.data);
    ASSERT_TRUE(table) << c.name;
    EXPECT_EQ(Strings(*table), c.expected) << c.name;
  }
}

TEST(AStringsTableTest, MalformedGivesNothing) {
  struct Case {
    const char* name;
    std::string data;
  };
  const Case cases[] = {
      {"missing semicolon", "\"a\" = \"b\"\n\"c\" = \"d\";"},
      {"missing value", "\"a\" = ;"},
      {"unterminated string", "\"a\" = \"b;"},
      {"unterminated comment", "\"a\" = \"b\"; /* open"},
      {"bad escape digits", R"("a" = "\Uzz";)"},
      {"lone surrogate escape", R"("a" = "\UD83D";)"},
      {"lone trail escape", R"("a" = "\UDE00x";)"},
      {"invalid UTF-8", "\"a\" = \"\xC3\x28\";"},
      {"odd UTF-16 length", std::string("\xFF\xFE\x22\x00\x61", 5)},
      {"UTF-16 lone surrogate", std::string("\xFF\xFE\x00\xD8", 4)},
      {"stray token", "\"a\" = \"b\"; }"},
      {"unclosed brace", "{ \"a\" = \"b\";"},
      {"plist with array root", "<plist><array/></plist>"},
      {"truncated after an entry", "\"a\" = \"1\";\n\"b\" = "},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_FALSE(AStringsTable::Parse(c.data));
    Entries entries{{"stale", "entry"}};
    EXPECT_FALSE(AStringsTable::ParseEntries(c.data, entries));
    EXPECT_TRUE(entries.empty());
  }
}

TEST(AStringsTableTest, PropertyListKeepsStringsOnly) {
  const std::string plist =
      "<?xml version=\"1.0\"?>\n<plist version=\"1.0\"><dict><key>Tray</key><string>Bac</string>"
      "<key>Count</key><integer>2</integer><key>List</key><array/><key>A</key><string>first</string></dict></plist>";
  const std::optional<ADictionary> table = AStringsTable::Parse(plist);
  ASSERT_TRUE(table);
  EXPECT_EQ(Strings(*table), (std::map<std::string, std::string>{{"A", "first"}, {"Tray", "Bac"}}));
  // Entries of a property list come in key order.
  Entries entries{{"stale", "entry"}};
  ASSERT_TRUE(AStringsTable::ParseEntries(plist, entries));
  EXPECT_EQ(entries, (Entries{{"A", "first"}, {"Tray", "Bac"}}));

  const std::optional<ADictionary> braced = AStringsTable::Parse("{ \"a\" = \"b\"; }");
  ASSERT_TRUE(braced);
  EXPECT_EQ(braced->GetString("a"), "b");
}

// Entries keep the file order and every duplicate; the table keeps the last.
TEST(AStringsTableTest, EntriesKeepFileOrderAndDuplicates) {
  Entries entries;
  ASSERT_TRUE(AStringsTable::ParseEntries("\"b\" = \"1\";\n/* c */ \"a\" = \"x\\ty\";\n\"b\" = \"2\";\n\"k\";\n",
                                          entries));
  EXPECT_EQ(entries, (Entries{{"b", "1"}, {"a", "x\ty"}, {"b", "2"}, {"k", "k"}}));
}

}  // namespace
}  // namespace ppdforge
