// The one-pass XML reader must give exactly what libplist gives for every
// text it takes on, and decline everything else (the libplist path then
// decides). Each case is checked against libplist itself.

#include <gtest/gtest.h>
#include <plist/plist.h>

#include <cstdint>
#include <cstdio>
#include <string>

#include "core/AArray.h"
#include "core/ADictionary.h"
#include "core/APropertyList.h"
#include "core/AWorkerPool.h"
#include "core/AXMLPropertyListReader.h"

namespace ppdforge {
namespace {

std::string Document(const std::string& body) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
         "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<plist version=\"1.0\">\n" +
         body + "\n</plist>\n";
}

// Kind-tagged text of a value, so that an integer and a real never compare
// equal as AValue's own equality lets them.
std::string Dump(const AValue& value) {
  switch (value.GetType()) {
    case AValue::Type::kBoolean: return value.BoolValue() ? "true" : "false";
    case AValue::Type::kInteger: return "i" + std::to_string(value.IntegerValue());
    case AValue::Type::kReal: {
      char text[64];
      std::snprintf(text, sizeof text, "r%.17g", value.DoubleValue() == 0 ? 0.0 : value.DoubleValue());
      return text;
    }
    case AValue::Type::kString: return "s\"" + value.AsString()->UTF8() + "\"";
    case AValue::Type::kArray: {
      AArray array;
      value.GetArray(array);
      std::string out = "[";
      for (const AValue& item : array) out += Dump(item) + ",";
      return out + "]";
    }
    case AValue::Type::kDictionary: {
      ADictionary dictionary;
      value.GetDictionary(dictionary);
      std::string out = "{";
      for (const auto& [key, item] : dictionary) out += key.UTF8() + "=" + Dump(item) + ";";
      return out + "}";
    }
    default: return "?" + std::string(AValue::TypeName(value.GetType()));
  }
}

// libplist's reading of `text`, as a binary list read back by the libplist
// path of APropertyList (which the one-pass reader never sees).
AValue ReadWithLibplist(const std::string& text) {
  plist_t root = nullptr;
  plist_from_xml(text.data(), static_cast<std::uint32_t>(text.size()), &root);
  EXPECT_NE(root, nullptr);
  char* bytes = nullptr;
  std::uint32_t length = 0;
  plist_to_bin(root, &bytes, &length);
  plist_free(root);
  AValue value;
  AQVString problem;
  EXPECT_TRUE(APropertyList::Parse(std::string(bytes, length), value, &problem)) << problem.UTF8();
  plist_to_bin_free(bytes);
  return value;
}

std::string NestedArrays(int depth) {
  std::string text;
  for (int i = 0; i < depth; ++i) text += "<array>";
  for (int i = 0; i < depth; ++i) text += "</array>";
  return text;
}

struct Case {
  const char* name;
  std::string body;
};

TEST(AXMLPropertyListReader, GivesWhatLibplistGives) {
  const Case cases[] = {
      {"SpacesKept", "<string>  a\tb\nc  </string>"},
      {"Entities", "<string>a&amp;b&lt;c&gt;d&quot;e&apos;f</string>"},
      {"RawGreaterThan", "<string>a>b</string>"},
      {"EmptyString", "<string></string>"},
      {"EmptyStringTag", "<string/>"},
      {"NonASCII", "<string>Général € 日本</string>"},
      {"Integers", "<array><integer>0</integer><integer>-0</integer><integer>-42</integer>"
                   "<integer>123456789012345678</integer></array>"},
      {"Reals", "<array><real>1.5</real><real>1</real><real>-0.25</real><real>1e3</real>"
                "<real>2.5E-3</real><real>0.1</real><real>235.2756</real><real>-0</real></array>"},
      {"Booleans", "<array><true/><false/></array>"},
      {"EmptyContainers", "<array><array/><dict/><array></array><dict></dict></array>"},
      {"KeysWithSpaces", "<dict><key> k </key><string>v</string><key></key><string>e</string></dict>"},
      {"DuplicateKeyLastWins", "<dict><key>a</key><string>1</string><key>a</key><string>2</string></dict>"},
      {"CommentsBetweenElements", "<!-- before --><array><!-- c --><string>x</string><!-- d --></array>"},
      {"Nested", "<dict>\n\t<key>a</key>\n\t<array>\n\t\t<dict><key>b</key><integer>1</integer></dict>\n"
                 "\t</array>\n</dict>"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string text = Document(c.body);
    AValue fast;
    ASSERT_TRUE(AXMLPropertyListReader::Read(text, fast));
    EXPECT_EQ(Dump(fast), Dump(ReadWithLibplist(text)));
  }
}

TEST(AXMLPropertyListReader, LeavesEverythingElseToLibplist) {
  const Case cases[] = {
      {"EmptyKeyTag", "<dict><key/><string>v</string></dict>"},
      {"NumericCharacterReference", "<string>&#65;</string>"},
      {"UnknownEntity", "<string>&nbsp;</string>"},
      {"BareAmpersand", "<string>a & b</string>"},
      {"CDATA", "<string><![CDATA[x]]></string>"},
      {"CommentInText", "<string>a<!-- c -->b</string>"},
      {"CarriageReturn", "<string>a\r\nb</string>"},
      {"OctalLookingInteger", "<integer>010</integer>"},
      {"HexInteger", "<integer>0x10</integer>"},
      {"PlusSign", "<integer>+5</integer>"},
      {"SpacedInteger", "<integer> 5 </integer>"},
      {"HugeInteger", "<integer>9223372036854775807</integer>"},
      {"RealWithoutDigits", "<real>.5</real>"},
      {"InfiniteReal", "<real>inf</real>"},
      {"Date", "<date>2001-01-01T00:01:00Z</date>"},
      {"Data", "<data>AAEC</data>"},
      {"Attributes", "<string id=\"1\">x</string>"},
      {"InvalidUTF8", "<string>\xC3\x28</string>"},
      {"Unclosed", "<array><string>x</string>"},
      {"TrueWithContent", "<true></true>"},
      {"TwoRoots", "<string>a</string><string>b</string>"},
      {"Deep", NestedArrays(100)},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    AValue out(AQVString("untouched"));
    EXPECT_FALSE(AXMLPropertyListReader::Read(Document(c.body), out));
    EXPECT_TRUE(out == AValue(AQVString("untouched")));
  }
  AValue out;
  EXPECT_FALSE(AXMLPropertyListReader::Read("<string>x</string>", out));
  EXPECT_FALSE(AXMLPropertyListReader::Read("", out));
  // Declined texts still parse, through libplist.
  ASSERT_TRUE(APropertyList::Parse(Document("<string>&#65;<![CDATA[<b>]]></string>"), out));
  ASSERT_NE(out.AsString(), nullptr);
  EXPECT_EQ(out.AsString()->UTF8(), "A<b>");
}

// Large texts are read in two halves side by side when the process has
// helpers; the result must be the whole reading's, whether the place chosen
// for the split is a member of the root or lies deeper.
TEST(AXMLPropertyListReader, HalvesReadSideBySideGiveTheWholeReading) {
  AWorkerPool::Shared().Reserve(2);
  std::string filler;
  for (int i = 0; i < 2000; ++i) filler += "\t\t<string>entry " + std::to_string(i) + " of the filler</string>\n";
  const struct {
    const char* name;
    std::string inside;  // at the end of the first member, which fills the first half
    std::string tail;    // the members after it
    bool readable;
  } cases[] = {
      {"MemberAfterTheMiddle", "", "\t<key>b</key>\n\t<integer>1</integer>\n\t<key>a</key>\n\t<true/>\n", true},
      {"KeyLookalikeDeeper", "\t\t<dict>\n\t<key>c</key>\n\t<string>x</string>\n\t\t</dict>\n",
       "\t<key>b</key>\n\t<integer>1</integer>\n", true},
      {"BadTextAfterTheSplit", "", "\t<key>b</key>\n\t<string>\xC3\x28</string>\n", false},
      {"UnclosedAfterTheSplit", "", "\t<key>b</key>\n\t<array>\n", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string text =
        Document("<dict>\n\t<key>a</key>\n\t<array>\n" + filler + c.inside + "\t</array>\n" + c.tail + "</dict>");
    ASSERT_GT(text.size(), 64u * 1024);
    AValue value;
    EXPECT_EQ(AXMLPropertyListReader::Read(text, value), c.readable);
    if (c.readable) {
      EXPECT_EQ(Dump(value), Dump(ReadWithLibplist(text)));
    }
  }
}

}  // namespace
}  // namespace ppdforge
