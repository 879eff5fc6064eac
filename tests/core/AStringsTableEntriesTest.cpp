#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "core/AStringsTable.h"

namespace ppdforge {
namespace {

using Entries = std::vector<std::pair<AQVString, AQVString>>;

TEST(AStringsTableEntries, TextFormKeepsFileOrderAndDuplicates) {
  Entries entries;
  ASSERT_TRUE(AStringsTable::ParseEntries("\"b\" = \"1\";\n/* c */ \"a\" = \"x\\ty\";\n\"b\" = \"2\";\n\"k\";\n",
                                          entries));
  const Entries expected{{"b", "1"}, {"a", "x\ty"}, {"b", "2"}, {"k", "k"}};
  EXPECT_EQ(entries, expected);
  // The dictionary form keeps the last entry of a key.
  const std::optional<ADictionary> table = AStringsTable::Parse("\"b\" = \"1\";\n\"b\" = \"2\";\n");
  ASSERT_TRUE(table);
  EXPECT_EQ(table->GetString("b"), AQVString("2"));
}

TEST(AStringsTableEntries, PropertyListFormGivesStringsInKeyOrder) {
  Entries entries{{"stale", "entry"}};
  ASSERT_TRUE(AStringsTable::ParseEntries(
      "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>z</key><string>last</string>"
      "<key>n</key><integer>3</integer><key>a</key><string>first</string></dict></plist>",
      entries));
  const Entries expected{{"a", "first"}, {"z", "last"}};
  EXPECT_EQ(entries, expected);
}

TEST(AStringsTableEntries, NoTableGivesNoEntries) {
  Entries entries{{"stale", "entry"}};
  EXPECT_FALSE(AStringsTable::ParseEntries("\"a\" = \"1\";\n\"b\" = ", entries));
  EXPECT_TRUE(entries.empty());
  EXPECT_FALSE(AStringsTable::ParseEntries("\xC3\x28", entries));
}

}  // namespace
}  // namespace ppdforge
