#include <gtest/gtest.h>
#include <plist/plist.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <vector>

#include "core/AArray.h"
#include "core/ADictionary.h"
#include "core/APropertyList.h"
#include "core/AStringsTable.h"

namespace ppdforge {
namespace {

const char kXML[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
  <key>name</key><string>Général €</string>
  <key>count</key><integer>-42</integer>
  <key>big</key><integer>9223372036854775807</integer>
  <key>ratio</key><real>0.5</real>
  <key>duplex</key><true/>
  <key>when</key><date>2001-01-01T00:01:00Z</date>
  <key>blob</key><data>AAEC</data>
  <key>sizes</key><array><string>A4</string><integer>3</integer><dict/></array>
</dict>
</plist>
)";

// Binary form of `root` as libplist writes it; frees `root`.
std::string ToBinary(plist_t root) {
  char* bytes = nullptr;
  std::uint32_t length = 0;
  plist_to_bin(root, &bytes, &length);
  plist_free(root);
  std::string out(bytes, length);
  plist_to_bin_free(bytes);
  return out;
}

// A binary list of one dictionary {key: value} whose first `pattern` gets a
// NUL character in place of its "#" (such keys made libplist abort).
std::string BinaryWithNul(const char* key, const char* value, std::string pattern) {
  plist_t root = plist_new_dict();
  plist_dict_set_item(root, key, plist_new_string(value));
  std::string out = ToBinary(root);
  const std::size_t at = out.find(pattern);
  const std::size_t hash = pattern.find('#');
  pattern[hash] = '\0';
  if (at != std::string::npos) out.replace(at, pattern.size(), pattern);
  return out;
}

// A binary property list of `levels` nested one-element arrays around an
// empty one (4-byte references and offsets); `cycle` makes the last array
// hold the first instead.
std::string NestedBinaryArrays(std::uint32_t levels, bool cycle = false) {
  std::string data = "bplist00";
  std::vector<std::uint32_t> offsets;
  auto put32 = [&data](std::uint32_t v) {
    for (int shift = 24; shift >= 0; shift -= 8) data += static_cast<char>(v >> shift);
  };
  auto put64 = [&data](std::uint64_t v) {
    for (int shift = 56; shift >= 0; shift -= 8) data += static_cast<char>(v >> shift);
  };
  for (std::uint32_t i = 0; i < levels; ++i) {
    offsets.push_back(static_cast<std::uint32_t>(data.size()));
    data += '\xA1';
    put32(cycle && i + 1 == levels ? 0 : i + 1);
  }
  if (!cycle) {
    offsets.push_back(static_cast<std::uint32_t>(data.size()));
    data += '\xA0';
  }
  const std::uint64_t table = data.size();
  for (std::uint32_t offset : offsets) put32(offset);
  data += std::string(6, '\0') + "\x04\x04";
  put64(offsets.size());
  put64(0);
  put64(table);
  return data;
}

void ExpectSampleContent(const AValue& value) {
  ADictionary root;
  ASSERT_TRUE(value.GetDictionary(root));
  EXPECT_EQ(root.GetString("name"), "Général €");
  EXPECT_EQ(root.Get("count")->IntegerValue(), -42);
  EXPECT_EQ(root.Get("count")->GetType(), AValue::Type::kInteger);
  EXPECT_EQ(root.Get("big")->IntegerValue(), 9223372036854775807LL);
  EXPECT_EQ(root.Get("ratio")->DoubleValue(), 0.5);
  EXPECT_TRUE(root.Get("duplex")->IsBoolean());
  EXPECT_EQ(root.Get("when")->DateValue(), 60.0);
  EXPECT_EQ(*root.Get("blob")->AsData(), std::string("\x00\x01\x02", 3));
  AArray sizes;
  ASSERT_TRUE(root.GetArray("sizes", sizes));
  EXPECT_EQ(sizes.GetStringAt(0), "A4");
  EXPECT_EQ(sizes[1], AValue(3));
  EXPECT_TRUE(sizes[2].IsDictionary());
}

TEST(APropertyListTest, ReadsXMLAndBinary) {
  AValue fromXML;
  AQVString problem;
  ASSERT_TRUE(APropertyList::Parse(kXML, fromXML, &problem)) << problem.UTF8();
  ExpectSampleContent(fromXML);

  plist_t root = nullptr;
  plist_from_xml(kXML, sizeof kXML - 1, &root);
  ASSERT_NE(root, nullptr);
  const std::string binary = ToBinary(root);
  AValue fromBinary;
  ASSERT_TRUE(APropertyList::Parse(binary, fromBinary, &problem)) << problem.UTF8();
  ExpectSampleContent(fromBinary);
  EXPECT_EQ(fromXML, fromBinary);
}

TEST(APropertyListTest, RejectsBadStringsAndShapes) {
  // libplist silently drops a lone surrogate when it reads UTF-16 text, so
  // these are written by hand: one-element arrays of a UTF-16 string.
  const auto oneStringArray = [](const std::string& object) {
    return "bplist00\xA1\x01" + object + "\x08\x0A" + std::string(6, '\0') + "\x01\x01" + std::string(7, '\0') +
           "\x02" + std::string(15, '\0') + static_cast<char>(10 + object.size());
  };
  const std::string loneSurrogate = oneStringArray(std::string("\x63\x00\x61\xD8\x00\x00\x62", 7));  // a U+D800 b
  const std::string pairedSurrogates = oneStringArray(std::string("\x62\xD8\x3D\xDE\x00", 5));
  AValue value;
  AQVString problem;
  ASSERT_TRUE(APropertyList::Parse(pairedSurrogates, value, &problem)) << problem.UTF8();
  AArray items;
  ASSERT_TRUE(value.GetArray(items));
  EXPECT_EQ(items.GetStringAt(0), "😀");

  std::string deep;
  for (int i = 0; i < 257; ++i) deep += "<array>";
  for (int i = 0; i < 257; ++i) deep += "</array>";
  std::string shallow = deep.substr(7, deep.size() - 15);
  std::string hugeXML;
  for (int i = 0; i < 1000000; ++i) hugeXML += "<dict><key>k</key>";

  const std::string kNul = "a string in the property list holds a NUL character";
  struct Case {
    const char* name;
    std::string data;
    std::string problem;
  };
  const Case cases[] = {
      {"lone surrogate", loneSurrogate, "a string in the property list holds a lone UTF-16 surrogate"},
      {"invalid UTF-8 in XML", "<plist><string>a\xFF</string></plist>", "a string in the property list is not valid UTF-8"},
      {"invalid UTF-8 in a key", "<plist><dict><key>\xC0\xAF</key><true/></dict></plist>",
       "a string in the property list is not valid UTF-8"},
      {"too deep", "<plist>" + deep + "</plist>", "the property list nests deeper than 256 levels"},
      {"far too deep", "<plist>" + hugeXML, "the property list nests deeper than 256 levels"},
      {"too deep binary", NestedBinaryArrays(256), "the property list nests deeper than 256 levels"},
      {"far too deep binary", NestedBinaryArrays(200000), "the property list nests deeper than 256 levels"},
      {"reference cycle", NestedBinaryArrays(3, true), "the data is not a property list"},
      {"truncated binary", NestedBinaryArrays(3).substr(0, 20), "the data is not a property list"},
      {"not a property list", "\"key\" = \"value\";", "the data is not a property list"},
      {"empty", "", "the data is not a property list"},
      {"broken XML", "<plist><dict><key>a</key><strin>x</string></dict></plist>", "the data is not a property list"},
      {"too large integer", "<plist><integer>9223372036854775808</integer></plist>",
       "an integer in the property list is out of the signed 64-bit range"},
      {"NUL in a key", BinaryWithNul("Paper#Size", "Format", "Paper#Size"), kNul},
      // libplist writes non-ASCII text as UTF-16, whose "#" is 00 23.
      {"NUL in a UTF-16 key", BinaryWithNul("Qualit\xC3\xA9#", "x", std::string("\x00\xE9\x00#", 4)),
       kNul},
      {"NUL in a value", BinaryWithNul("Quality", "Qual#ity", "Qual#ity"), kNul},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    AQVString reason;
    EXPECT_FALSE(APropertyList::Parse(c.data, value, &reason));
    EXPECT_EQ(reason, c.problem);
    // Strings tables read binary lists through the same check.
    if (c.problem == kNul) {
      EXPECT_FALSE(AStringsTable::Parse(c.data));
    }
  }
  EXPECT_TRUE(APropertyList::Parse("<plist>" + shallow + "</plist>", value, &problem)) << problem.UTF8();
  EXPECT_TRUE(APropertyList::Parse(NestedBinaryArrays(255), value, &problem)) << problem.UTF8();
  EXPECT_FALSE(ADictionary::FromXML("<plist><array/></plist>"));
  EXPECT_TRUE(ADictionary::FromXML("<plist><dict/></plist>"));
}

TEST(APropertyListTest, ParseFileNamesUnreadableFiles) {
  const std::filesystem::path directory = std::filesystem::temp_directory_path() / "ppdforge-core-plist";
  std::filesystem::create_directories(directory);
  const std::filesystem::path file = directory / "table.plist";
  std::ofstream(file, std::ios::binary) << "<plist><dict><key>k</key><string>v</string></dict></plist>";

  AValue value;
  AQVString problem;
  EXPECT_TRUE(APropertyList::ParseFile(file, value, &problem));
  EXPECT_FALSE(APropertyList::ParseFile(directory, value, &problem));
  EXPECT_EQ(problem, "cannot read file \"" + directory.string() + "\"");
  std::ofstream(file, std::ios::binary) << "not a plist";
  EXPECT_FALSE(APropertyList::ParseFile(file, value, &problem));
  EXPECT_EQ(problem, "file \"" + file.string() + "\": the data is not a property list");
  std::string bytes;
  EXPECT_FALSE(ReadFileBytes(directory / "missing", bytes));
  std::filesystem::remove_all(directory);
}

}  // namespace
}  // namespace ppdforge
