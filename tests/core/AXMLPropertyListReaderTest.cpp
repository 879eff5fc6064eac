// The one-pass XML reader must give exactly what libplist gives for every
// text it takes on, and decline everything else (the libplist path then
// decides). Each case is checked against libplist itself.

#include <gtest/gtest.h>
#include <plist/plist.h>

#include <cstdint>
#include <cstdlib>
#include <functional>
#include <string>

#include "core/AArray.h"
#include "core/ADictionary.h"
#include "core/APropertyList.h"
#include "core/AXMLPropertyListReader.h"

namespace ppdforge {
namespace {

const std::string kHeader =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<plist version=\"1.0\">\n";

std::string Document(const std::string& body) { return kHeader + body + "\n</plist>\n"; }

// libplist's reading of `text`, as values of the same kinds; false when
// libplist refuses it.
bool ReadWithLibplist(const std::string& text, AValue& out) {
  plist_t root = nullptr;
  plist_from_xml(text.data(), static_cast<std::uint32_t>(text.size()), &root);
  if (root == nullptr) return false;
  std::function<bool(plist_t, AValue&)> convert = [&](plist_t node, AValue& value) {
    switch (plist_get_node_type(node)) {
      case PLIST_BOOLEAN: {
        std::uint8_t flag = 0;
        plist_get_bool_val(node, &flag);
        value = AValue(flag != 0);
        return true;
      }
      case PLIST_UINT: {
        std::uint64_t number = 0;
        plist_get_uint_val(node, &number);
        value = AValue(static_cast<long long>(number));
        return true;
      }
      case PLIST_REAL: {
        double number = 0;
        plist_get_real_val(node, &number);
        value = AValue(number);
        return true;
      }
      case PLIST_STRING: {
        std::uint64_t length = 0;
        const char* bytes = plist_get_string_ptr(node, &length);
        value = AValue(AQVString(std::string(bytes == nullptr ? "" : bytes, length)));
        return true;
      }
      case PLIST_ARRAY: {
        AArray array;
        for (std::uint32_t i = 0; i < plist_array_get_size(node); ++i) {
          AValue item;
          if (!convert(plist_array_get_item(node, i), item)) return false;
          array.Append(item);
        }
        value = AValue(array);
        return true;
      }
      case PLIST_DICT: {
        ADictionary dictionary;
        plist_dict_iter iterator = nullptr;
        plist_dict_new_iter(node, &iterator);
        for (;;) {
          char* key = nullptr;
          plist_t item = nullptr;
          plist_dict_next_item(node, iterator, &key, &item);
          if (item == nullptr) {
            std::free(key);
            break;
          }
          AValue converted;
          const bool ok = convert(item, converted);
          dictionary.Set(AQVString(key), converted);
          std::free(key);
          if (!ok) {
            std::free(iterator);
            return false;
          }
        }
        std::free(iterator);
        value = AValue(dictionary);
        return true;
      }
      default:
        return false;
    }
  };
  const bool converted = convert(root, out);
  plist_free(root);
  return converted;
}

// Equal and of the same kinds all the way down (AValue's own equality lets
// an integer equal a real).
void ExpectSame(const AValue& a, const AValue& b, const std::string& where) {
  ASSERT_EQ(a.GetType(), b.GetType()) << where;
  switch (a.GetType()) {
    case AValue::Type::kArray: {
      AArray x;
      AArray y;
      a.GetArray(x);
      b.GetArray(y);
      ASSERT_EQ(x.Count(), y.Count()) << where;
      for (std::size_t i = 0; i < x.Count(); ++i) ExpectSame(x[i], y[i], where + "[" + std::to_string(i) + "]");
      return;
    }
    case AValue::Type::kDictionary: {
      ADictionary x;
      ADictionary y;
      a.GetDictionary(x);
      b.GetDictionary(y);
      ASSERT_EQ(x.Count(), y.Count()) << where;
      for (const auto& [key, value] : x) {
        const AValue* other = y.Get(key);
        ASSERT_NE(other, nullptr) << where << "." << key.UTF8();
        ExpectSame(value, *other, where + "." + key.UTF8());
      }
      return;
    }
    case AValue::Type::kReal:
      EXPECT_EQ(a.DoubleValue(), b.DoubleValue()) << where;
      return;
    default:
      EXPECT_TRUE(a == b) << where;
  }
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

class TakenOn : public ::testing::TestWithParam<Case> {};

TEST_P(TakenOn, GivesWhatLibplistGives) {
  const std::string text = Document(GetParam().body);
  AValue fast;
  ASSERT_TRUE(AXMLPropertyListReader::Read(text, fast));
  AValue slow;
  ASSERT_TRUE(ReadWithLibplist(text, slow));
  ExpectSame(fast, slow, GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(
    AXMLPropertyListReader, TakenOn,
    ::testing::Values(
        Case{"SpacesKept", "<string>  a\tb\nc  </string>"},
        Case{"Entities", "<string>a&amp;b&lt;c&gt;d&quot;e&apos;f</string>"},
        Case{"RawGreaterThan", "<string>a>b</string>"},
        Case{"EmptyString", "<string></string>"},
        Case{"EmptyStringTag", "<string/>"},
        Case{"NonASCII", "<string>Général € 日本</string>"},
        Case{"Integers", "<array><integer>0</integer><integer>-0</integer><integer>-42</integer>"
                         "<integer>123456789012345678</integer></array>"},
        Case{"Reals", "<array><real>1.5</real><real>1</real><real>-0.25</real><real>1e3</real>"
                      "<real>2.5E-3</real><real>0.1</real><real>235.2756</real><real>-0</real></array>"},
        Case{"Booleans", "<array><true/><false/></array>"},
        Case{"EmptyContainers", "<array><array/><dict/><array></array><dict></dict></array>"},
        Case{"KeysWithSpaces", "<dict><key> k </key><string>v</string><key></key><string>e</string></dict>"},
        Case{"DuplicateKeyLastWins", "<dict><key>a</key><string>1</string><key>a</key><string>2</string></dict>"},
        Case{"CommentsBetweenElements", "<!-- before --><array><!-- c --><string>x</string><!-- d --></array>"},
        Case{"Nested", "<dict>\n\t<key>a</key>\n\t<array>\n\t\t<dict><key>b</key><integer>1</integer></dict>\n"
                       "\t</array>\n</dict>"}),
    [](const ::testing::TestParamInfo<Case>& param) { return std::string(param.param.name); });

class Declined : public ::testing::TestWithParam<Case> {};

TEST_P(Declined, LeavesTheTextToLibplist) {
  AValue out(AQVString("untouched"));
  EXPECT_FALSE(AXMLPropertyListReader::Read(Document(GetParam().body), out));
  EXPECT_TRUE(out == AValue(AQVString("untouched")));
}

INSTANTIATE_TEST_SUITE_P(
    AXMLPropertyListReader, Declined,
    ::testing::Values(
        Case{"EmptyKeyTag", "<dict><key/><string>v</string></dict>"},
        Case{"NumericCharacterReference", "<string>&#65;</string>"},
        Case{"UnknownEntity", "<string>&nbsp;</string>"},
        Case{"BareAmpersand", "<string>a & b</string>"},
        Case{"CDATA", "<string><![CDATA[x]]></string>"},
        Case{"CommentInText", "<string>a<!-- c -->b</string>"},
        Case{"CarriageReturn", "<string>a\r\nb</string>"},
        Case{"OctalLookingInteger", "<integer>010</integer>"},
        Case{"HexInteger", "<integer>0x10</integer>"},
        Case{"PlusSign", "<integer>+5</integer>"},
        Case{"SpacedInteger", "<integer> 5 </integer>"},
        Case{"HugeInteger", "<integer>9223372036854775807</integer>"},
        Case{"RealWithoutDigits", "<real>.5</real>"},
        Case{"InfiniteReal", "<real>inf</real>"},
        Case{"Date", "<date>2001-01-01T00:01:00Z</date>"},
        Case{"Data", "<data>AAEC</data>"},
        Case{"Attributes", "<string id=\"1\">x</string>"},
        Case{"InvalidUTF8", "<string>\xC3\x28</string>"},
        Case{"Unclosed", "<array><string>x</string>"},
        Case{"TrueWithContent", "<true></true>"},
        Case{"TwoRoots", "<string>a</string><string>b</string>"},
        Case{"Deep", NestedArrays(100)}),
    [](const ::testing::TestParamInfo<Case>& param) { return std::string(param.param.name); });

TEST(AXMLPropertyListReader, DeclinesTextWithoutThePlistElement) {
  AValue out;
  EXPECT_FALSE(AXMLPropertyListReader::Read("<string>x</string>", out));
  EXPECT_FALSE(AXMLPropertyListReader::Read("", out));
}

// Declined texts still parse, through libplist, to the same value.
TEST(AXMLPropertyListReader, DeclinedTextsStillParse) {
  AValue out;
  ASSERT_TRUE(APropertyList::Parse(Document("<string>&#65;<![CDATA[<b>]]></string>"), out));
  ASSERT_NE(out.AsString(), nullptr);
  EXPECT_EQ(out.AsString()->UTF8(), "A<b>");
}

}  // namespace
}  // namespace ppdforge
